// Built for processors with AVX2, and used only where the machine has it. Nothing but the loop may be used
// here: what a header brings along would be built for those processors, too.
#include "text/LineScanLoop.h"

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace carvelot {

#if defined(__AVX2__)

namespace {

struct By32 {
    using Type = __m256i;
    static constexpr unsigned kSize = 32;
    static __m256i Load(const char* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static __m256i Table(const unsigned char* table) {
        return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table)));
    }
    static __m256i Lookup(__m256i table, __m256i v) { return _mm256_shuffle_epi8(table, v); }
    static __m256i HighHalves(__m256i v) {
        return _mm256_and_si256(_mm256_srli_epi16(v, 4), _mm256_set1_epi8(0x0F));
    }
    static __m256i Zero() { return _mm256_setzero_si256(); }
    static __m256i IsZero(__m256i v) { return _mm256_cmpeq_epi8(v, _mm256_setzero_si256()); }
    static __m256i Or(__m256i a, __m256i b) { return _mm256_or_si256(a, b); }
    static __m256i And(__m256i a, __m256i b) { return _mm256_and_si256(a, b); }
    static __m256i Min(__m256i a, __m256i b) { return _mm256_min_epu8(a, b); }
    static std::uint32_t TopBits(__m256i v) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(v)); }
};

} // namespace

ScanBlockFunction ScanBy32(HintSet set) {
    return __builtin_cpu_supports("avx2") ? ScanOf<VectorStretch<By32>>(set) : nullptr;
}

#else

ScanBlockFunction ScanBy32(HintSet) { return nullptr; }

#endif

} // namespace carvelot
