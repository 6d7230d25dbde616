// Who calls a function and whom it calls, as lists show it.
#pragma once

#include "explore/Profile.h"
#include "text/ColumnTable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace carvelot {

struct EdgeRow {
    std::uint32_t key = kNoKey; // of the caller or callee, none at the top
    std::string name;           // with its kind's letter
    std::uint32_t calls = 0;
    std::int64_t total = 0; // microseconds
    double share = 0;       // of the largest

    static CColumnTable<EdgeRow> Columns();
};

// By total falling, then kind and name.
std::vector<EdgeRow> MakeCallerRows(const CFrameKeys& keys, const CProfile& profile, std::uint32_t callee);
std::vector<EdgeRow> MakeCalleeRows(const CFrameKeys& keys, const CProfile& profile, std::uint32_t caller);

} // namespace carvelot
