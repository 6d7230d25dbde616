// What the text of a line is that begins as an earlier one did, and how it is kept for the line's turn.
#pragma once

#include "parse/Classifier.h"
#include "parse/LogReader.h"
#include "parse/StatementParts.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// Names that are no slices of the text; each thread has its own.
struct NameScratch {
    std::string display;
    std::string table;
};

struct UsualText {
    std::string_view text = {}; // perhaps that of the pending statement
    Classification result = {};
    SqlOperation operation = SQL_NONE;
    std::string_view name = {}; // the display name, or the table of a SQL record

    // Reads the name of a text that is classified.
    [[gnu::always_inline]] inline void ReadName(NameScratch& scratch) {
        name = result.Name(scratch.display);
        if (result.kind == LOG_SQL) {
            const SqlParts parts = SplitSQLStatement(text, scratch.table);
            operation = parts.operation;
            name = parts.table;
        }
    }

    // With the places of text and name in the line, of which the text is a slice; a name that is none leaves
    // the line not classified.
    PreparedLine PreparedIn(std::string_view line) const {
        const auto place = [&](std::string_view slice) {
            return static_cast<std::uint16_t>(slice.data() - line.data());
        };
        PreparedLine prepared;
        prepared.textBegin = text.empty() ? std::uint16_t{0} : place(text);
        prepared.textSize = prepared.storedSize = static_cast<std::uint16_t>(text.size());
        prepared.kind = result.kind;
        prepared.returnCode = static_cast<std::uint8_t>(result.returnCode);
        prepared.operation = operation;
        prepared.classified = name.empty();
        const std::less_equal<> ahead;
        if (!name.empty() && ahead(line.data(), name.data()) &&
            ahead(name.data() + name.size(), line.data() + line.size())) {
            prepared.classified = true;
            prepared.nameBegin = place(name);
            prepared.nameSize = static_cast<std::uint16_t>(name.size());
        }
        return prepared;
    }
    void TakePrepared(const PreparedLine& prepared, std::string_view line) {
        text = prepared.Text(line);
        result.kind = prepared.kind;
        result.returnCode = prepared.returnCode;
        operation = prepared.operation;
        name = prepared.Name(line);
    }
};

// `prepare` tells of a line what it can; false for one that is left as it is. Of the stamp of the others it
// tells the latest.
template <class Prepare>
void PrepareEach(CBlockLines lines, PreparedLines& prepared, const LineStamp& stamp, const Prepare& prepare) {
    LogLine line;
    for (std::uint32_t begin = 0; lines.Next(line); begin = lines.Begin()) {
        PreparedLine ahead;
        if (!prepare(line, ahead)) {
            continue;
        }
        // Most lines of a block are of the same second.
        if (prepared.stamps.empty() || prepared.stamps.back().packed != stamp.packed) {
            prepared.stamps.push_back(stamp);
        }
        ahead.begin = begin;
        ahead.stamp = static_cast<std::uint32_t>(prepared.stamps.size() - 1);
        prepared.lines.push_back(ahead);
    }
    prepared.lines.emplace_back();
}

} // namespace carvelot
