// Built for processors with AVX2, and used only where the machine has it. Nothing but the loop may be used
// here: what a header brings along would be built for those processors, too.
#include "logcore/LineScanLoop.h"

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace carvelot {

#if defined(__AVX2__)

namespace {

struct By32 {
    static constexpr std::size_t kSize = 32;
    static __m256i Load(const char* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static __m256i None() { return _mm256_setzero_si256(); }
    static __m256i Equal(__m256i v, char c) { return _mm256_cmpeq_epi8(v, _mm256_set1_epi8(c)); }
    static __m256i Or(__m256i a, __m256i b) { return _mm256_or_si256(a, b); }
    static __m256i And(__m256i a, __m256i b) { return _mm256_and_si256(a, b); }
    static std::uint32_t Bits(__m256i v) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(v)); }
};

template <HintSet set> LineScan ScanByAvx2(const char* first, std::size_t limit, LineHints& hints) {
    return ScanLine<By32, set>(first, limit, hints);
}

} // namespace

template <HintSet set> ScanLineFunction ScanLineBy32() {
    return __builtin_cpu_supports("avx2") ? &ScanByAvx2<set> : nullptr;
}

#else

template <HintSet set> ScanLineFunction ScanLineBy32() { return nullptr; }

#endif

template ScanLineFunction ScanLineBy32<HintSet::None>();
template ScanLineFunction ScanLineBy32<HintSet::Debug>();
template ScanLineFunction ScanLineBy32<HintSet::Jas>();

} // namespace carvelot
