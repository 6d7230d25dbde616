// Built for processors with AVX-512 VBMI, and used only where the machine has it. Nothing but the loop may be
// used here: what a header brings along would be built for those processors, too.
#include "text/LineScanLoop.h"

#if defined(__AVX512VBMI__) && defined(__AVX512BW__)
#include <immintrin.h>
#endif

namespace carvelot {

#if defined(__AVX512VBMI__) && defined(__AVX512BW__)

namespace {

// 64 bytes in one step: a single lookup tells the classes of an ASCII character.
class WideStretch {
public:
    explicit WideStretch(const ClassTables& tables)
        : m_first(tables.firstLow, tables.firstHigh), m_second(tables.secondLow, tables.secondHigh) {}

    void Look(const char* p) {
        const __m512i v = _mm512_loadu_si512(p);
        const __m512i here = m_first.ClassesOf(v);
        m_upper |= _mm512_movepi8_mask(v);
        m_nul |= _mm512_testn_epi8_mask(v, v);
        m_ends = _mm512_movepi8_mask(here);
        m_hints = _mm512_test_epi8_mask(here, m_second.ClassesOf(_mm512_loadu_si512(p + 1)));
    }
    std::uint64_t LineEnds() const { return m_ends; }
    std::uint64_t Hints() const { return m_hints; }
    bool IsAscii() const { return m_upper == 0; }
    bool HoldsNul() const { return m_nul != 0; }

private:
    struct Table {
        Table(const unsigned char (&low)[16], const unsigned char (&high)[16]) {
            alignas(64) unsigned char classes[128];
            for (unsigned c = 0; c < 128; ++c) {
                classes[c] = low[c & 0xFU] & high[c >> 4U];
            }
            m_lower = _mm512_load_si512(classes);
            m_upper = _mm512_load_si512(classes + 64);
        }
        __m512i ClassesOf(__m512i v) const {
            return _mm512_maskz_permutex2var_epi8(~_mm512_movepi8_mask(v), m_lower, v, m_upper);
        }

        __m512i m_lower; // of the characters 0 to 63
        __m512i m_upper;
    };

    Table m_first;
    Table m_second;
    std::uint64_t m_upper = 0;
    std::uint64_t m_nul = 0;
    std::uint64_t m_ends = 0;
    std::uint64_t m_hints = 0;
};

} // namespace

ScanBlockFunction ScanBy64(HintSet set) {
    return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi")
               ? ScanOf<WideStretch>(set)
               : nullptr;
}

#else

ScanBlockFunction ScanBy64(HintSet) { return nullptr; }

#endif

} // namespace carvelot
