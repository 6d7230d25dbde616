// What every scan of a block must find in bytes of any kind.
#pragma once

#include "parse/fast/LineScan.h"
#include "parse/fast/MarkedSigns.h"
#include "support/Require.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace carvelot::fuzz {

// All scans agree, the line ends are those that a plain search finds, and the marks of a text lead to every
// sign that a search of the whole text sees. `signs` are those that lines of the format are searched for.
inline void CheckScans(LogFormat format, std::string_view bytes, std::uint32_t signs) {
    const auto buffer = std::make_unique_for_overwrite<char[]>(bytes.size() + kScanPadding);
    std::copy(bytes.begin(), bytes.end(), buffer.get());
    std::fill_n(buffer.get() + bytes.size(), kScanPadding, 'C');
    // Behind the last place of each list stands kNoMore.
    const auto same = [](const std::uint32_t* one, const std::uint32_t* other) {
        while (*one == *other && *one != LineIndex::kNoMore) {
            ++one;
            ++other;
        }
        return *one == *other;
    };
    LineIndex index(bytes.size());
    ScanByBytes(format)(buffer.get(), bytes.size(), index);
    LineIndex other(bytes.size());
    for (const BlockScan scan : {ScanBy16(format), ScanBy32(format), BlockScan{FindLineEnds}}) {
        if (scan != nullptr) {
            scan(buffer.get(), bytes.size(), other);
            Require(same(index.ends.get(), other.ends.get()) && index.ascii == other.ascii &&
                        index.holdsNul == other.holdsNul,
                    "all scans agree");
            Require(scan == FindLineEnds || same(index.marks.get(), other.marks.get()), "all marks agree");
        }
    }
    const std::uint32_t* end = index.ends.get();
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (bytes[at] == '\n' || bytes[at] == '\r') {
            Require(*end == at, "the scan finds each line's end");
            ++end;
        }
    }
    Require(*end == LineIndex::kNoMore, "the scan finds no other line's end");
    Require(index.holdsNul == (bytes.find('\0') != std::string_view::npos), "the scan finds a NUL");
    Require(index.ascii == std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; }),
            "the scan tells ASCII");

    const std::string_view text(buffer.get(), std::min<std::size_t>(bytes.size(), *index.ends.get()));
    const std::uint32_t* last = index.marks.get();
    while (*last < text.size()) {
        ++last;
    }
    const LineMarks marks(index.marks.get(), last, 0);
    for (const std::string_view part : {text, text.substr(text.size() / 3)}) {
        Require(((FindSigns(part).found ^ FindSigns(part, text, marks).inText.found) & signs) == 0,
                "the marks lead to every word");
    }
}

} // namespace carvelot::fuzz
