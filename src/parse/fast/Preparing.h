// What preparing the lines of a block takes, whatever their format.
#pragma once

#include "parse/LogReader.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace carvelot {

// `prepare` tells of a line what it can; false for one that is left as it is.
template <class Prepare>
void PrepareEach(CBlockLines lines, PreparedLines& prepared, const Prepare& prepare) {
    LogLine line;
    for (std::uint32_t begin = 0; lines.Next(line); begin = lines.Begin()) {
        PreparedLine ahead;
        if (prepare(line, ahead)) {
            ahead.begin = begin;
            prepared.lines.push_back(ahead);
        }
    }
    prepared.lines.emplace_back();
}

// Most lines of a block are of the same second.
inline std::uint32_t NumberOf(const LineStamp& stamp, std::vector<LineStamp>& stamps) {
    if (stamps.empty() || stamps.back().packed != stamp.packed) {
        stamps.push_back(stamp);
    }
    return static_cast<std::uint32_t>(stamps.size() - 1);
}

// The places of slices of a line; a name that is none leaves it not classified.
inline PreparedLine Prepared(std::string_view line, std::string_view text, std::string_view stored,
                             std::string_view name) {
    const auto place = [&](std::string_view slice) {
        return static_cast<std::uint16_t>(slice.data() - line.data());
    };
    PreparedLine prepared;
    prepared.textBegin = text.empty() ? 0 : place(text);
    prepared.textSize = static_cast<std::uint16_t>(text.size());
    prepared.storedSize = static_cast<std::uint16_t>(stored.size());
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

} // namespace carvelot
