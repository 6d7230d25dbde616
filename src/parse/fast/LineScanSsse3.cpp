// Built for processors with SSSE3, and used only where the machine has it. Nothing but the loop may be used
// here: what a header brings along would be built for those processors, too.
#include "parse/fast/LineScanLoop.h"

#if defined(__SSSE3__)
#include <tmmintrin.h>
#endif

namespace carvelot {

#if defined(__SSSE3__)

namespace {

// 64 bytes in four steps.
class Stretch16 {
public:
    explicit Stretch16(const ClassTables& tables)
        : m_firstLow(Table(tables.firstLow)), m_firstHigh(Table(tables.firstHigh)),
          m_secondLow(Table(tables.secondLow)), m_secondHigh(Table(tables.secondHigh)) {}

    void Look(const char* p) {
        m_ends = 0;
        m_misses = 0;
        for (unsigned at = 0; at < 64; at += 16) {
            const __m128i v = Load(p + at);
            const __m128i next = Load(p + at + 1);
            m_all = _mm_or_si128(m_all, v);
            m_least = _mm_min_epu8(m_least, v);
            const __m128i here = ClassesOf(v, m_firstLow, m_firstHigh);
            const __m128i behind = ClassesOf(next, m_secondLow, m_secondHigh);
            m_ends |= std::uint64_t{TopBits(here)} << at;
            m_misses |= std::uint64_t{TopBits(IsZero(_mm_and_si128(here, behind)))} << at;
        }
    }
    std::uint64_t LineEnds() const { return m_ends; }
    std::uint64_t Marks() const { return ~m_misses; }
    bool IsAscii() const { return TopBits(m_all) == 0; }
    bool HoldsNul() const { return TopBits(IsZero(m_least)) != 0; }

private:
    static __m128i Load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static __m128i Table(const unsigned char* table) {
        return _mm_load_si128(reinterpret_cast<const __m128i*>(table));
    }
    // A byte beyond ASCII is of no class.
    static __m128i ClassesOf(__m128i v, __m128i low, __m128i high) {
        const __m128i highHalves = _mm_and_si128(_mm_srli_epi16(v, 4), _mm_set1_epi8(0x0F));
        return _mm_and_si128(_mm_shuffle_epi8(low, v), _mm_shuffle_epi8(high, highHalves));
    }
    static __m128i IsZero(__m128i v) { return _mm_cmpeq_epi8(v, _mm_setzero_si128()); }
    static std::uint32_t TopBits(__m128i v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }

    __m128i m_firstLow;
    __m128i m_firstHigh;
    __m128i m_secondLow;
    __m128i m_secondHigh;
    __m128i m_all = _mm_setzero_si128();
    __m128i m_least = _mm_set1_epi8(-1);
    std::uint64_t m_ends = 0;
    std::uint64_t m_misses = 0;
};

} // namespace

BlockScan ScanBy16(LogFormat format) {
    return __builtin_cpu_supports("ssse3") ? ScanOf<Stretch16>(format) : nullptr;
}

#else

BlockScan ScanBy16(LogFormat) { return nullptr; }

#endif

} // namespace carvelot
