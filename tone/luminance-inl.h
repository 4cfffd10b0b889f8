// The vector twin of luminance.h, compiled once for every level.
#if defined(OMNAR_TONE_LUMINANCE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_LUMINANCE_INL_H_
#undef OMNAR_TONE_LUMINANCE_INL_H_
#else
#define OMNAR_TONE_LUMINANCE_INL_H_
#endif

#include "buffers/blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Twin of omnar::luminance for each 32-bit lane. For sums up to 25500, x / 100 = (x * 5243 >> 16) >> 3; the high half
/// of a lane, where the sum is 0, stays 0.
HWY_INLINE V32 luminance(V32 pixels) {
    const D16 d;
    const V16 low = hn::BitCast(d, hn::And(pixels, hn::Set(D32(), 0x00FF00FF)));  // blue and red
    const V16 green = hn::And(hn::ShiftRight<8>(hn::BitCast(d, pixels)), hn::BitCast(d, hn::Set(D32(), 0x000000FF)));
    const V16 parts = hn::Mul(low, hn::BitCast(d, hn::Set(D32(), 30U << 16 | 11U)));
    const V16 folded = hn::Add(parts, hn::BitCast(d, hn::ShiftRight<16>(hn::BitCast(D32(), parts))));
    const V16 sum = hn::And(hn::Add(folded, hn::Mul(green, hn::Set(d, 59))), hn::BitCast(d, hn::Set(D32(), 0xFFFF)));
    return hn::BitCast(D32(), hn::ShiftRight<3>(hn::MulHigh(sum, hn::Set(d, 5243))));
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
