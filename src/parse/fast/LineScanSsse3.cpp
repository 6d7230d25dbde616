// Built for processors with SSSE3, and used only where the machine has it. Nothing but the loop may be used
// here: what a header brings along would be built for those processors, too.
#include "parse/fast/LineScanLoop.h"

#if defined(__SSSE3__)
#include <tmmintrin.h>
#endif

namespace carvelot {

#if defined(__SSSE3__)

namespace {

struct By16 {
    using Vector = __m128i;
    static constexpr unsigned kStep = 16;

    static Vector Load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const Vector*>(p)); }
    static Vector Table(const unsigned char* table) {
        return _mm_load_si128(reinterpret_cast<const __m128i*>(table));
    }
    static Vector Each(char byte) { return _mm_set1_epi8(byte); }
    static Vector And(Vector a, Vector b) { return _mm_and_si128(a, b); }
    static Vector Or(Vector a, Vector b) { return _mm_or_si128(a, b); }
    static Vector Least(Vector a, Vector b) { return _mm_min_epu8(a, b); }
    static Vector UpperHalves(Vector v) { return And(_mm_srli_epi16(v, 4), Each(0x0F)); }
    static Vector LookUp(Vector table, Vector v) { return _mm_shuffle_epi8(table, v); }
    static Vector IsZero(Vector v) { return _mm_cmpeq_epi8(v, Each(0)); }
    static std::uint32_t TopBits(Vector v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }
};

} // namespace

BlockScan ScanBy16(LogFormat format) {
    return __builtin_cpu_supports("ssse3") ? ScanOf<VectorStretch<By16>>(format) : nullptr;
}

#else

BlockScan ScanBy16(LogFormat) { return nullptr; }

#endif

} // namespace carvelot
