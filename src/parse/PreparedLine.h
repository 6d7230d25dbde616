// What the thread that reads ahead can tell of a line before its turn comes: a line of the usual form, which
// begins as an earlier one did.
#pragma once

#include "parse/BlockScan.h"
#include "records/UsualLine.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace carvelot {

// No line is longer than 16 bits can say.
struct PreparedLine {
    std::uint32_t begin = LineIndex::kNoMore; // of the line, in its block
    std::uint32_t stamp = 0;                  // number among those of its block
    std::uint32_t fraction = 0;               // microseconds
    std::uint32_t context = kNoContext;
    std::uint16_t textBegin = 0; // in the line
    std::uint16_t textSize = 0;
    std::uint16_t storedSize = 0; // of the text and perhaps blanks behind it that belong to its label
    std::uint16_t nameBegin = 0;  // of the display name or table, in the line
    std::uint16_t nameSize = 0;
    LogKind kind = LOG_NONE;
    std::uint8_t returnCode = 0;
    SqlOperation operation = SQL_NONE;
    bool levelDecides = false; // of a JAS line's kind
    bool labelRunsOn = false;  // the label goes on into the text, to the next tab
    // Kind and name are known; otherwise they depend on earlier lines, or the name is no slice of the line.
    bool classified = false;

    std::string_view Text(std::string_view line) const { return line.substr(textBegin, textSize); }
    std::string_view Stored(std::string_view line) const { return line.substr(textBegin, storedSize); }
    std::string_view Name(std::string_view line) const { return line.substr(nameBegin, nameSize); }
};

// Those of a block.
struct PreparedLines {
    std::vector<PreparedLine> lines; // in their order; behind the last, one that stands nowhere
    std::vector<LineStamp> stamps;
    std::uint32_t generation = 0; // of the knowledge that they were prepared with

    void Clear() {
        lines.clear();
        stamps.clear();
    }
};

} // namespace carvelot
