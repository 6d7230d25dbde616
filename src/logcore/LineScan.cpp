#include "logcore/LineScanLoop.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace carvelot {

namespace {

#if defined(__SSE2__)

struct By16 {
    static constexpr std::size_t kSize = 16;
    static __m128i Load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static __m128i None() { return _mm_setzero_si128(); }
    static __m128i Equal(__m128i v, char c) { return _mm_cmpeq_epi8(v, _mm_set1_epi8(c)); }
    static __m128i Or(__m128i a, __m128i b) { return _mm_or_si128(a, b); }
    static __m128i And(__m128i a, __m128i b) { return _mm_and_si128(a, b); }
    static std::uint32_t Bits(__m128i v) { return static_cast<std::uint32_t>(_mm_movemask_epi8(v)); }
};

#else

struct By16 {
    static constexpr std::size_t kSize = 16;
    struct Bytes {
        unsigned char b[kSize];
    };
    template <class Each> static Bytes Make(Each each) {
        Bytes v{};
        for (std::size_t i = 0; i < kSize; ++i) {
            v.b[i] = static_cast<unsigned char>(each(i));
        }
        return v;
    }
    static Bytes Load(const char* p) {
        return Make([&](std::size_t i) { return p[i]; });
    }
    static Bytes None() { return {}; }
    static Bytes Equal(const Bytes& v, char c) {
        return Make([&](std::size_t i) { return v.b[i] == static_cast<unsigned char>(c) ? 0xFF : 0; });
    }
    static Bytes Or(const Bytes& x, const Bytes& y) {
        return Make([&](std::size_t i) { return x.b[i] | y.b[i]; });
    }
    static Bytes And(const Bytes& x, const Bytes& y) {
        return Make([&](std::size_t i) { return x.b[i] & y.b[i]; });
    }
    static std::uint32_t Bits(const Bytes& v) {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < kSize; ++i) {
            bits |= static_cast<std::uint32_t>(v.b[i] >> 7U) << i;
        }
        return bits;
    }
};

#endif

} // namespace

template <HintSet set> LineScan ScanLineBy16(const char* first, std::size_t limit, LineHints& hints) {
    return ScanLine<By16, set>(first, limit, hints);
}

template <HintSet set> ScanLineFunction BestScanLine() {
    const ScanLineFunction wide = ScanLineBy32<set>();
    return wide != nullptr ? wide : &ScanLineBy16<set>;
}

template LineScan ScanLineBy16<HintSet::None>(const char*, std::size_t, LineHints&);
template LineScan ScanLineBy16<HintSet::Debug>(const char*, std::size_t, LineHints&);
template LineScan ScanLineBy16<HintSet::Jas>(const char*, std::size_t, LineHints&);
template ScanLineFunction BestScanLine<HintSet::None>();
template ScanLineFunction BestScanLine<HintSet::Debug>();
template ScanLineFunction BestScanLine<HintSet::Jas>();

} // namespace carvelot
