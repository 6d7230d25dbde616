// What is counted by function, as a list shows it.
#pragma once

#include "explore/Profile.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

struct FunctionRow {
    FunctionProfile counts;
    std::string name;     // with its kind's letter
    double selfShare = 0; // of the largest
    double totalShare = 0;

    static CColumnTable<FunctionRow> Columns();
};

// "F  Name", "(top)" of none.
std::string LetterAndName(const CFrameKeys& keys, std::uint32_t key);
// How much a time is of another one, 0 of none.
double ShareOf(std::int64_t time, std::int64_t whole);

// By self falling, then total falling, then kind and name.
std::vector<FunctionRow> MakeFunctionRows(const CFrameKeys& keys, const CProfile& profile);

// The record of a key's longest frame in a cut, the first of several; kNoRecord without one.
RecordIndex LongestRecord(const CCut& cut, std::uint32_t key);

} // namespace carvelot
