// What a load can tell of its log, beside the records.
#pragma once

#include "parse/Dialects.h"
#include "parse/RefusedLines.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CCarvelotDoc;

// Lines with a word that became no record for one reason.
struct RefusedFor {
    std::string_view reason; // "the third word is no time"
    std::uint64_t count = 0;
    std::vector<RefusedLine> first; // at most three
};

struct LogFacts {
    std::uint64_t bytes = 0;
    std::uint64_t lines = 0;
    std::uint64_t records = 0;
    std::vector<RefusedFor> refused; // those reasons that a line was refused for
    std::string_view format;         // "debug log"
    std::string columns;             // where the statement text stands
    std::string codePage;
    std::string from; // the stamps of the first record with a time and of the last one; empty without any
    std::string to;
    std::size_t pieces = 1;
    CDialects dialects; // chosen
    CDialects offered;  // that would read more of it
};
LogFacts FactsOf(const CCarvelotDoc& session);

// Whether more than a tenth of the lines with a word became no record. Those of other processes than the one
// that was asked for are none of them.
bool ManyLinesAreUnread(const CCarvelotDoc& session);

} // namespace carvelot
