// SPDX-License-Identifier: MIT

// The vector kernel of luminance.h, compiled once per vector level.
#if defined(OMNAR_TONE_LUMINANCE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_LUMINANCE_INL_H_
#undef OMNAR_TONE_LUMINANCE_INL_H_
#else
#define OMNAR_TONE_LUMINANCE_INL_H_
#endif

#include "buffers/weighting-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Vector kernel of omnar::luminance, one pixel per lane. The weighted sum is at most 25500, and for sums up to that
/// the quotient by 100 is sum * 41944 >> 22.
HWY_INLINE V32 luminance(V32 pixels) {
    const D16 d16;
    const D32 d32;
    const V16 blueRed = hn::BitCast(d16, hn::And(pixels, hn::Set(d32, 0x00FF00FF)));
    const V16 greenAlpha = hn::ShiftRight<8>(hn::BitCast(d16, pixels));
    const V16 sums = hn::Add(hn::Mul(blueRed, hn::BitCast(d16, hn::Set(d32, 30U << 16 | 11U))),
                             hn::Mul(greenAlpha, hn::BitCast(d16, hn::Set(d32, 59U))));
    const V32 sum =
        hn::Add(hn::And(hn::BitCast(d32, sums), hn::Set(d32, 0xFFFF)), hn::ShiftRight<16>(hn::BitCast(d32, sums)));
    const V16 shifted = hn::MulHigh(hn::BitCast(d16, sum), hn::Set(d16, 41944));
    return hn::BitCast(d32, hn::ShiftRight<22 - 16>(shifted));
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
