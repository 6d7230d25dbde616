// What every scan of a block must find in bytes of any kind.
#pragma once

#include "parse/Classifier.h"
#include "support/FuzzSession.h"
#include "text/LineScan.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

namespace carvelot::fuzz {

// All scans agree, the line ends are those that a plain search finds, and the hints of a text lead to every
// sign that a search of the whole text sees. `signs` are those that the set looks for.
inline void CheckScans(HintSet set, std::string_view bytes, std::uint32_t signs) {
    const auto buffer = std::make_unique<char[]>(bytes.size() + kScanPadding);
    std::copy(bytes.begin(), bytes.end(), buffer.get());
    std::fill_n(buffer.get() + bytes.size(), kScanPadding, 'C');
    LineIndex index(bytes.size());
    const auto scan = [&](ScanBlockFunction function) {
        function(buffer.get(), bytes.size(), index);
        std::vector<std::uint32_t> seen;
        for (const std::uint32_t* places : {index.ends.get(), index.hints.get()}) {
            while (*places != LineIndex::kNoMore) {
                seen.push_back(*places++);
            }
            seen.push_back(LineIndex::kNoMore);
        }
        seen.push_back(index.ascii ? 1 : 0);
        seen.push_back(index.holdsNul ? 1 : 0);
        return seen;
    };
    const std::vector<std::uint32_t> plain = scan(ScanByBytes(set));
    for (const ScanBlockFunction function : {ScanBy16(set), ScanBy32(set), ScanBy64(set)}) {
        Require(function == nullptr || scan(function) == plain, "all scans agree");
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
    const std::uint32_t* last = index.hints.get();
    while (*last < text.size()) {
        ++last;
    }
    const LineHints hints(index.hints.get(), last, 0);
    for (const std::string_view part : {text, text.substr(text.size() / 3)}) {
        Require(((FindSigns(part).found ^ FindSigns(part, text, hints).found) & signs) == 0,
                "the hints lead to every word");
    }
}

} // namespace carvelot::fuzz
