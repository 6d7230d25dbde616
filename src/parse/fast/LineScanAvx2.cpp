// Built for processors with AVX2, and used only where the machine has it. Nothing but the loop may be used
// here: what a header brings along would be built for those processors, too.
#include "parse/fast/LineScanLoop.h"

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace carvelot {

#if defined(__AVX2__)

namespace {

struct By32 {
    using Vector = __m256i;
    static constexpr unsigned kStep = 32;

    static Vector Load(const char* p) { return _mm256_loadu_si256(reinterpret_cast<const Vector*>(p)); }
    static Vector Table(const unsigned char* table) {
        return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table)));
    }
    static Vector Each(char byte) { return _mm256_set1_epi8(byte); }
    static Vector And(Vector a, Vector b) { return _mm256_and_si256(a, b); }
    static Vector Or(Vector a, Vector b) { return _mm256_or_si256(a, b); }
    static Vector Least(Vector a, Vector b) { return _mm256_min_epu8(a, b); }
    static Vector UpperHalves(Vector v) { return And(_mm256_srli_epi16(v, 4), Each(0x0F)); }
    static Vector LookUp(Vector table, Vector v) { return _mm256_shuffle_epi8(table, v); }
    static Vector IsZero(Vector v) { return _mm256_cmpeq_epi8(v, Each(0)); }
    static std::uint32_t TopBits(Vector v) { return static_cast<std::uint32_t>(_mm256_movemask_epi8(v)); }
};

} // namespace

BlockScan ScanBy32(LogFormat format) {
    return __builtin_cpu_supports("avx2") ? ScanOf<VectorStretch<By32>>(format) : nullptr;
}

#else

BlockScan ScanBy32(LogFormat) { return nullptr; }

#endif

} // namespace carvelot
