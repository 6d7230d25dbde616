// The loop of every block scan; included by the sources that are built for one kind of processor each, so it
// uses nothing that a header would bring along.
#pragma once

#include "text/LineScan.h"

#if !defined(__GNUC__)
#include <bit>
#endif

namespace carvelot {

namespace {

// Each of the words that a classifier looks for anywhere in a text holds a pair of neighbouring letters that
// ordinary log text hardly holds. One group is any of the first letters before any of the second.
struct HintPairs {
    const char* first;
    const char* second;
};
constexpr HintPairs kDebugPairs[] = {
    {"eh", "C"},  // jdeCache, hCache:, hCursor:
    {"C", "0"},   // CAC0001111
    {"B", "349"}, // JDB3100001
    {"B", "P"},   // Exiting DBPerformRequest
    {"F", "o"},   // Found existing cache
    {"-", "U"},   // --UBE--
};
constexpr HintPairs kJasPairs[] = {
    {"eh", "C"}, // jdeCache, hCache:, hCursor:
    {"F", "o"},  // Found existing cache
    {"E", "v"},  // Event Starts :, Event Ends:
    {"L", "i"},  // at ER Line
    {"O", "b"},  // Object Called:
};

// Letters by class, one bit a class, looked up by the two halves of a byte: a byte is of a class when both
// tables say so. The top bit of the first letters' classes is that of the line ends, so 7 groups fit. A group
// with several letters may let a few others in; the place is then looked at in vain.
struct alignas(32) ClassTables {
    unsigned char firstLow[16] = {};
    unsigned char firstHigh[16] = {};
    unsigned char secondLow[16] = {};
    unsigned char secondHigh[16] = {};
};
constexpr unsigned char kLineEnd = 0x80;

constexpr void Enter(unsigned char (&low)[16], unsigned char (&high)[16], const char* letters,
                     unsigned char bit) {
    for (; *letters != '\0'; ++letters) {
        const auto c = static_cast<unsigned char>(*letters);
        low[c & 0xFU] = static_cast<unsigned char>(low[c & 0xFU] | bit);
        high[c >> 4U] = static_cast<unsigned char>(high[c >> 4U] | bit);
    }
}

template <HintSet set> constexpr ClassTables MakeTables() {
    ClassTables tables;
    Enter(tables.firstLow, tables.firstHigh, "\r\n", kLineEnd);
    unsigned char bit = 1;
    const auto enter = [&](const HintPairs& pairs) {
        Enter(tables.firstLow, tables.firstHigh, pairs.first, bit);
        Enter(tables.secondLow, tables.secondHigh, pairs.second, bit);
        bit = static_cast<unsigned char>(bit << 1U);
    };
    if constexpr (set == HintSet::Debug) {
        for (const HintPairs& pairs : kDebugPairs) {
            enter(pairs);
        }
    } else if constexpr (set == HintSet::Jas) {
        for (const HintPairs& pairs : kJasPairs) {
            enter(pairs);
        }
    }
    return tables;
}

template <HintSet set> constexpr ClassTables kTables = MakeTables<set>();

inline std::uint32_t LowestBit(std::uint64_t bits) {
#if defined(__GNUC__)
    return static_cast<std::uint32_t>(__builtin_ctzll(bits));
#else
    // Other compilers build the scan byte by byte alone.
    return static_cast<std::uint32_t>(std::countr_zero(bits));
#endif
}

// Writes the places of the bits. Whether there is one or none cannot be guessed by a processor: the first
// place, any for no bit, is always written, and written over if there was none.
inline std::uint32_t* WritePlaces(std::uint64_t bits, std::uint32_t origin, std::uint32_t* places) {
    *places = origin + LowestBit(bits | 1ULL << 63U);
    places += bits != 0 ? 1 : 0;
    for (bits &= bits - 1; bits != 0; bits &= bits - 1) {
        *places++ = origin + LowestBit(bits);
    }
    return places;
}

// `Stretch` looks at 64 bytes and the one behind them.
template <class Stretch, HintSet set> void ScanBlock(const char* first, std::size_t size, LineIndex& index) {
    Stretch stretch(kTables<set>);
    std::uint32_t* ends = index.ends.get();
    std::uint32_t* hints = index.hints.get();
    for (std::size_t at = 0; at < size; at += 64) {
        stretch.Look(first + at);
        const std::uint64_t valid = size - at >= 64 ? ~0ULL : (1ULL << (size - at)) - 1;
        const auto origin = static_cast<std::uint32_t>(at);
        ends = WritePlaces(stretch.LineEnds() & valid, origin, ends);
        if constexpr (set != HintSet::None) {
            hints = WritePlaces(stretch.Hints() & valid, origin, hints);
        }
    }
    *ends = LineIndex::kNoMore;
    *hints = LineIndex::kNoMore;
    index.ascii = stretch.IsAscii();
    index.holdsNul = stretch.HoldsNul();
}

template <class Stretch> ScanBlockFunction ScanOf(HintSet set) {
    switch (set) {
    case HintSet::Debug:
        return &ScanBlock<Stretch, HintSet::Debug>;
    case HintSet::Jas:
        return &ScanBlock<Stretch, HintSet::Jas>;
    case HintSet::None:
        break;
    }
    return &ScanBlock<Stretch, HintSet::None>;
}

// 64 bytes in several steps of `Vector::kSize`.
template <class Vector> class VectorStretch {
    using V = typename Vector::Type;

public:
    explicit VectorStretch(const ClassTables& tables)
        : m_firstLow(Vector::Table(tables.firstLow)), m_firstHigh(Vector::Table(tables.firstHigh)),
          m_secondLow(Vector::Table(tables.secondLow)), m_secondHigh(Vector::Table(tables.secondHigh)) {}

    void Look(const char* p) {
        m_ends = 0;
        m_misses = 0;
        for (unsigned at = 0; at < 64; at += Vector::kSize) {
            const V v = Vector::Load(p + at);
            const V next = Vector::Load(p + at + 1);
            m_all = Vector::Or(m_all, v);
            m_least = Vector::Min(m_least, v);
            const V here = Vector::And(Vector::Lookup(m_firstLow, v),
                                       Vector::Lookup(m_firstHigh, Vector::HighHalves(v)));
            const V behind = Vector::And(Vector::Lookup(m_secondLow, next),
                                         Vector::Lookup(m_secondHigh, Vector::HighHalves(next)));
            m_ends |= std::uint64_t{Vector::TopBits(here)} << at;
            m_misses |= std::uint64_t{Vector::TopBits(Vector::IsZero(Vector::And(here, behind)))} << at;
        }
    }
    std::uint64_t LineEnds() const { return m_ends; }
    std::uint64_t Hints() const { return ~m_misses; }
    bool IsAscii() const { return Vector::TopBits(m_all) == 0; }
    bool HoldsNul() const { return Vector::TopBits(Vector::IsZero(m_least)) != 0; }

private:
    V m_firstLow;
    V m_firstHigh;
    V m_secondLow;
    V m_secondHigh;
    V m_all = Vector::Zero();
    V m_least = Vector::IsZero(Vector::Zero());
    std::uint64_t m_ends = 0;
    std::uint64_t m_misses = 0;
};

} // namespace

} // namespace carvelot
