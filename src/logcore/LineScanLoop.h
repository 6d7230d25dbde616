// The loop of every line scan; included by the sources that are built for one kind of processor each.
// `Stretch` looks at Stretch::kSize bytes at once and gives one bit a byte.
#pragma once

#include "logcore/LineScan.h"

#include <bit>

namespace carvelot {

namespace {

// What one look at a stretch of bytes tells.
template <class Mask> struct Glance {
    Mask stops; // line feed, carriage return or NUL
    Mask highs; // not ASCII
    Mask hints; // a pair of letters that the classifying words hold
};

// The pairs: each of the words that a classifier looks for anywhere in a text holds one of them, and ordinary
// log text holds few. "Ca" jdeCache, hCache:, Object Called; "CA" CAC codes; "Cu" hCursor:; "DB" JDB codes,
// DBPerformRequest; "Fo" Found existing cache; "UB" --UBE--; "Ev" Event Starts, Event Ends; "ER" at ER Line.
template <class Stretch, HintSet set> inline auto Look(const char* p) {
    const auto v = Stretch::Load(p);
    const auto is = [](auto bytes, char c) { return Stretch::Equal(bytes, c); };
    auto stops = Stretch::Or(Stretch::Or(is(v, '\n'), is(v, '\r')), is(v, '\0'));
    auto hit = Stretch::None();
    if constexpr (set != HintSet::None) {
        const auto next = Stretch::Load(p + 1);
        auto behindC = Stretch::Or(is(next, 'a'), is(next, 'u'));
        hit = Stretch::And(is(v, 'F'), is(next, 'o'));
        if constexpr (set == HintSet::Debug) {
            behindC = Stretch::Or(behindC, is(next, 'A'));
            hit = Stretch::Or(hit, Stretch::And(Stretch::Or(is(v, 'D'), is(v, 'U')), is(next, 'B')));
        } else {
            hit = Stretch::Or(hit, Stretch::And(is(v, 'E'), Stretch::Or(is(next, 'v'), is(next, 'R'))));
        }
        hit = Stretch::Or(hit, Stretch::And(is(v, 'C'), behindC));
    }
    return Glance<std::uint32_t>{Stretch::Bits(stops), Stretch::Bits(v), Stretch::Bits(hit)};
}

template <class Stretch, HintSet set>
inline LineScan ScanLine(const char* first, std::size_t limit, LineHints& hints) {
    hints.Reset();
    LineScan scan{limit, limit, false, true};
    std::uint32_t highs = 0;
    for (std::size_t at = 0; at < limit; at += Stretch::kSize) {
        const auto glance = Look<Stretch, set>(first + at);
        for (std::uint32_t rest = glance.hints; rest != 0; rest &= rest - 1) {
            hints.Add(at + static_cast<std::size_t>(std::countr_zero(rest)));
        }
        if (glance.stops == 0) {
            highs |= glance.highs;
            continue;
        }
        // A NUL ends the text but not the line.
        std::uint32_t stops = glance.stops;
        while (stops != 0 && first[at + static_cast<std::size_t>(std::countr_zero(stops))] == '\0') {
            const std::size_t nul = at + static_cast<std::size_t>(std::countr_zero(stops));
            scan.nul = nul < scan.nul ? nul : scan.nul;
            stops &= stops - 1;
        }
        const std::size_t end = at + static_cast<std::size_t>(std::countr_zero(stops));
        if (stops != 0 && end < limit) {
            scan.length = end;
            scan.ended = true;
            highs |= glance.highs & ((stops & (~stops + 1)) - 1);
            break;
        }
        highs |= glance.highs;
    }
    scan.ascii = highs == 0;
    return scan;
}

} // namespace

} // namespace carvelot
