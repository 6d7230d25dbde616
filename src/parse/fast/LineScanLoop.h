// The loop of all block scans; included by sources that are built for processors of their own, so it uses
// nothing that a header would bring along.
#pragma once

#include "parse/fast/LineScan.h"

#if !defined(__GNUC__)
#include <bit>
#endif

namespace carvelot {

namespace {

// Each of the words that a classifier looks for anywhere in a text holds a pair of neighbouring letters that
// ordinary log text hardly holds. One group is any of the first letters before any of the second.
struct MarkedPairs {
    const char* first;
    const char* second;
};
constexpr MarkedPairs kDebugPairs[] = {
    {"eh", "C"},  // jdeCache, hCache:, hCursor:
    {"C", "0"},   // CAC0001111
    {"B", "349"}, // JDB3100001
    {"B", "P"},   // Exiting DBPerformRequest
    {"F", "o"},   // Found existing cache
    {"-", "U"},   // --UBE--
};
constexpr MarkedPairs kJasPairs[] = {
    {"eh", "C"}, // jdeCache, hCache:, hCursor:
    {"F", "o"},  // Found existing cache
    {"E", "v"},  // Event Starts :, Event Ends:
    {"L", "i"},  // at ER Line
    {"O", "b"},  // Object Called:
};

// Letters by class, one bit a class, looked up by the two halves of a byte: a byte is of a class when both
// tables say so. The top bit of the first letters' classes is that of the line ends, so 7 groups fit. A group
// with several letters may let a few others in; the place is then looked at in vain.
struct alignas(16) ClassTables {
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

template <LogFormat format> constexpr ClassTables MakeTables() {
    ClassTables tables;
    Enter(tables.firstLow, tables.firstHigh, "\r\n", kLineEnd);
    unsigned char bit = 1;
    const auto enter = [&](const MarkedPairs& pairs) {
        Enter(tables.firstLow, tables.firstHigh, pairs.first, bit);
        Enter(tables.secondLow, tables.secondHigh, pairs.second, bit);
        bit = static_cast<unsigned char>(bit << 1U);
    };
    if constexpr (format == LOG_FORMAT_DEBUG) {
        for (const MarkedPairs& pairs : kDebugPairs) {
            enter(pairs);
        }
    } else {
        for (const MarkedPairs& pairs : kJasPairs) {
            enter(pairs);
        }
    }
    return tables;
}

template <LogFormat format> constexpr ClassTables kTables = MakeTables<format>();

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
template <class Stretch, LogFormat format>
void ScanBlock(const char* first, std::size_t size, LineIndex& index) {
    Stretch stretch(kTables<format>);
    std::uint32_t* ends = index.ends.get();
    std::uint32_t* marks = index.marks.get();
    for (std::size_t at = 0; at < size; at += 64) {
        stretch.Look(first + at);
        const std::uint64_t valid = size - at >= 64 ? ~0ULL : (1ULL << (size - at)) - 1;
        const auto origin = static_cast<std::uint32_t>(at);
        ends = WritePlaces(stretch.LineEnds() & valid, origin, ends);
        marks = WritePlaces(stretch.Marks() & valid, origin, marks);
    }
    *ends = LineIndex::kNoMore;
    index.endCount = static_cast<std::uint32_t>(ends - index.ends.get());
    *marks = LineIndex::kNoMore;
    index.ascii = stretch.IsAscii();
    index.holdsNul = stretch.HoldsNul();
}

// `By` is the steps that a processor can do at once, and what it does with the bytes of one.
template <class By> class VectorStretch {
    using Vector = typename By::Vector;

public:
    explicit VectorStretch(const ClassTables& tables)
        : m_firstLow(By::Table(tables.firstLow)), m_firstHigh(By::Table(tables.firstHigh)),
          m_secondLow(By::Table(tables.secondLow)), m_secondHigh(By::Table(tables.secondHigh)) {}

    void Look(const char* p) {
        m_ends = 0;
        m_misses = 0;
        for (unsigned at = 0; at < 64; at += By::kStep) {
            const Vector v = By::Load(p + at);
            const Vector next = By::Load(p + at + 1);
            m_all = By::Or(m_all, v);
            m_least = By::Least(m_least, v);
            const Vector here = ClassesOf(v, m_firstLow, m_firstHigh);
            const Vector behind = ClassesOf(next, m_secondLow, m_secondHigh);
            m_ends |= std::uint64_t{By::TopBits(here)} << at;
            m_misses |= std::uint64_t{By::TopBits(By::IsZero(By::And(here, behind)))} << at;
        }
    }
    std::uint64_t LineEnds() const { return m_ends; }
    std::uint64_t Marks() const { return ~m_misses; }
    bool IsAscii() const { return By::TopBits(m_all) == 0; }
    bool HoldsNul() const { return By::TopBits(By::IsZero(m_least)) != 0; }

private:
    // A byte beyond ASCII is of no class.
    static Vector ClassesOf(Vector v, Vector low, Vector high) {
        return By::And(By::LookUp(low, v), By::LookUp(high, By::UpperHalves(v)));
    }

    Vector m_firstLow;
    Vector m_firstHigh;
    Vector m_secondLow;
    Vector m_secondHigh;
    Vector m_all = By::Each(0);
    Vector m_least = By::Each(-1);
    std::uint64_t m_ends = 0;
    std::uint64_t m_misses = 0;
};

template <class Stretch> BlockScan ScanOf(LogFormat format) {
    return format == LOG_FORMAT_DEBUG ? &ScanBlock<Stretch, LOG_FORMAT_DEBUG>
                                      : &ScanBlock<Stretch, LOG_FORMAT_JAS>;
}

} // namespace

} // namespace carvelot
