// Built for processors with SSSE3, and used only where the machine has it. Nothing but the loop may be used
// here: what a header brings along would be built for those processors, too.
#include "text/LineScanLoop.h"

#if defined(__SSSE3__)
#include <tmmintrin.h>
#endif

namespace carvelot {

#if defined(__SSSE3__)

namespace {

struct By16 {
    using Type = __m128i;
    static constexpr unsigned kSize = 16;
    static __m128i Load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static __m128i Table(const unsigned char* table) {
        return _mm_load_si128(reinterpret_cast<const __m128i*>(table));
    }
    static __m128i Lookup(__m128i table, __m128i v) { return _mm_shuffle_epi8(table, v); }
    static __m128i HighHalves(__m128i v) { return _mm_and_si128(_mm_srli_epi16(v, 4), _mm_set1_epi8(0x0F)); }
    static __m128i Zero() { return _mm_setzero_si128(); }
    static __m128i IsZero(__m128i v) { return _mm_cmpeq_epi8(v, _mm_setzero_si128()); }
    static __m128i Or(__m128i a, __m128i b) { return _mm_or_si128(a, b); }
    static __m128i And(__m128i a, __m128i b) { return _mm_and_si128(a, b); }
    static __m128i Min(__m128i a, __m128i b) { return _mm_min_epu8(a, b); }
    static std::uint32_t TopBits(__m128i v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }
};

} // namespace

ScanBlockFunction ScanBy16(HintSet set) {
    return __builtin_cpu_supports("ssse3") ? ScanOf<VectorStretch<By16>>(set) : nullptr;
}

#else

ScanBlockFunction ScanBy16(HintSet) { return nullptr; }

#endif

} // namespace carvelot
