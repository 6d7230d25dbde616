#include "logcore/LogReader.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

namespace {

// What one look at a stretch of bytes tells, one bit a byte.
struct Glance {
    std::uint32_t stops; // line feed, carriage return or NUL
    std::uint32_t highs; // not ASCII
    std::uint32_t hints; // a pair of letters that the classifying words hold
};

constexpr std::size_t kStretch = 16;

// The pairs: each of the words that a classifier looks for anywhere in a text holds one of them, and ordinary log text
// holds few. "Ca" jdeCache, hCache:, Object Called; "CA" CAC codes; "Cu" hCursor:; "DB" JDB codes, DBPerformRequest;
// "Fo" Found existing cache; "UB" --UBE--; "Ev" Event Starts, Event Ends; "ER" at ER Line.
template <HintSet set> constexpr bool IsHint(char first, char second) {
    if constexpr (set == HintSet::Debug) {
        return (first == 'C' && (second == 'a' || second == 'A' || second == 'u')) ||
               ((first == 'D' || first == 'U') && second == 'B') || (first == 'F' && second == 'o');
    } else if constexpr (set == HintSet::Jas) {
        return (first == 'C' && (second == 'a' || second == 'u')) ||
               (first == 'E' && (second == 'v' || second == 'R')) || (first == 'F' && second == 'o');
    } else {
        return false;
    }
}

#if defined(__SSE2__)

inline std::uint32_t Bits(__m128i v) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(v));
}

inline __m128i Is(__m128i v, char c) {
    return _mm_cmpeq_epi8(v, _mm_set1_epi8(c));
}

template <HintSet set> Glance Look(const char* p) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    Glance glance{Bits(_mm_or_si128(_mm_or_si128(Is(v, '\n'), Is(v, '\r')), Is(v, '\0'))), Bits(v), 0};
    if constexpr (set != HintSet::None) {
        const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 1));
        __m128i hit = _mm_and_si128(Is(v, 'F'), Is(next, 'o'));
        if constexpr (set == HintSet::Debug) {
            const __m128i behindC = _mm_or_si128(_mm_or_si128(Is(next, 'a'), Is(next, 'A')), Is(next, 'u'));
            hit = _mm_or_si128(hit, _mm_and_si128(Is(v, 'C'), behindC));
            hit = _mm_or_si128(hit, _mm_and_si128(_mm_or_si128(Is(v, 'D'), Is(v, 'U')), Is(next, 'B')));
        } else {
            const __m128i behindC = _mm_or_si128(Is(next, 'a'), Is(next, 'u'));
            hit = _mm_or_si128(hit, _mm_and_si128(Is(v, 'C'), behindC));
            const __m128i behindE = _mm_or_si128(Is(next, 'v'), Is(next, 'R'));
            hit = _mm_or_si128(hit, _mm_and_si128(Is(v, 'E'), behindE));
        }
        glance.hints = Bits(hit);
    }
    return glance;
}

#else

template <HintSet set> Glance Look(const char* p) {
    Glance glance{0, 0, 0};
    for (std::uint32_t i = 0; i < kStretch; ++i) {
        const std::uint32_t bit = 1U << i;
        glance.stops |= p[i] == '\n' || p[i] == '\r' || p[i] == '\0' ? bit : 0;
        glance.highs |= static_cast<unsigned char>(p[i]) >= 0x80 ? bit : 0;
        glance.hints |= IsHint<set>(p[i], p[i + 1]) ? bit : 0;
    }
    return glance;
}

#endif

} // namespace

CLogReader::CLogReader(platform::SharedFile& file)
    : m_file(file), m_buffer(std::make_unique<char[]>(kLongestLine + kBlock + kPadding)) {}

void CLogReader::Rewind() {
    m_file.Rewind();
    m_nBegin = m_nEnd = 0;
    m_nConsumed = 0;
}

bool CLogReader::Refill() {
    const std::size_t rest = m_nEnd - m_nBegin;
    std::memmove(m_buffer.get(), m_buffer.get() + m_nBegin, rest);
    m_nBegin = 0;
    m_nEnd = rest;
    const std::size_t got = m_file.Read(m_buffer.get() + rest, kBlock);
    m_nEnd += got;
    return got > 0;
}

template <HintSet set> bool CLogReader::ReadLogLine(LogLine& line) {
    for (;;) {
        const char* const first = m_buffer.get() + m_nBegin;
        const std::size_t limit = std::min(kLongestLine, m_nEnd - m_nBegin);
        line.hints.Reset();
        std::size_t length = limit;
        std::size_t nul = limit;
        bool ended = false;
        std::uint32_t highs = 0;
        for (std::size_t at = 0; at < limit; at += kStretch) {
            const Glance glance = Look<set>(first + at);
            for (std::uint32_t hints = glance.hints; hints != 0; hints &= hints - 1) {
                line.hints.Add(at + static_cast<std::size_t>(std::countr_zero(hints)));
            }
            if (glance.stops == 0) {
                highs |= glance.highs;
                continue;
            }
            std::uint32_t stops = glance.stops;
            while (stops != 0 && first[at + static_cast<std::size_t>(std::countr_zero(stops))] == '\0') {
                nul = std::min(nul, at + static_cast<std::size_t>(std::countr_zero(stops)));
                stops &= stops - 1;
            }
            const std::size_t end = at + static_cast<std::size_t>(std::countr_zero(stops));
            if (stops != 0 && end < limit) {
                ended = true;
                length = end;
                highs |= glance.highs & ((stops & (~stops + 1)) - 1);
                break;
            }
            highs |= glance.highs;
        }
        if (!ended && limit < kLongestLine) {
            if (!Refill()) {
                return false;
            }
            continue;
        }
        const std::size_t taken = length + (ended ? 1 : 0);
        m_nBegin += taken;
        m_nConsumed += taken;
        line.bytes = {first, std::min(length, nul)};
        line.ascii = highs == 0;
        return true;
    }
}

template bool CLogReader::ReadLogLine<HintSet::None>(LogLine&);
template bool CLogReader::ReadLogLine<HintSet::Debug>(LogLine&);
template bool CLogReader::ReadLogLine<HintSet::Jas>(LogLine&);

} // namespace carvelot
