// SPDX-License-Identifier: MIT

// The vector kernels of weighting.h, compiled once for every vector level (the include guard is Highway's).
#if defined(OMNAR_BUFFERS_WEIGHTING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_BUFFERS_WEIGHTING_INL_H_
#undef OMNAR_BUFFERS_WEIGHTING_INL_H_
#else
#define OMNAR_BUFFERS_WEIGHTING_INL_H_
#endif

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::Repartition<uint16_t, D8>;
using D32 = hn::Repartition<uint32_t, D8>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;
using V32 = hn::Vec<D32>;

HWY_INLINE V16 words(V8 v) { return hn::BitCast(D16(), v); }
HWY_INLINE V8 bytes(V16 v) { return hn::BitCast(D8(), v); }
HWY_INLINE V8 bytes(V32 v) { return hn::BitCast(D8(), v); }

// Exact quotients by 255 without a division. For bytes x and a, twice in 16-bit arithmetic:
//
//     x * a / 255 = high byte of ((x * 257) * (a * 256 + 1) >> 16)
//     x * a / 255 = x * (a * 257 + 1) >> 16 = high byte of ((x * 256) * (a * 257 + 1) >> 16), for a below 255
//
// x * 257 is the byte x doubled, by a byte shuffle; a * 256 + 1 is called the factor of the weight a. a * 257 + 1 is
// called its multiplier. The multiplier is cheaper, since x and x * 256 need only a mask, but fits in 16 bits only for a
// below 255. For v below 65536, v / 255 = (v * 0x8081 >> 16) >> 7. weighting_test.cpp tests all x, a and v.

/// The factor of one weight for all lanes.
HWY_INLINE V16 factorOf(unsigned weight) { return hn::Set(D16(), static_cast<uint16_t>(weight * 256 + 1)); }

/// The factors of weights in the high bytes of 16-bit lanes; the low bytes are ignored.
HWY_INLINE V16 factorOfHigh(V16 weights) {
    const D16 d;
    return hn::OrAnd(hn::Set(d, 1), weights, hn::Set(d, 0xFF00));
}

/// The multiplier of one weight below 255 for all lanes.
HWY_INLINE V16 multiplierOf(unsigned weight) { return hn::Set(D16(), static_cast<uint16_t>(weight * 257 + 1)); }

/// The multipliers of weights below 255, from 16-bit lanes with the weight in both bytes.
HWY_INLINE V16 multiplierOfDoubled(V8 weights) { return hn::Add(words(weights), hn::Set(D16(), 1)); }

/// v / 255 for every 16-bit lane.
HWY_INLINE V16 dividedBy255(V16 v) { return hn::ShiftRight<7>(hn::MulHigh(v, hn::Set(D16(), 0x8081))); }

/// x * a / 255 for 16-bit lanes x and a <= 255, although the product takes 24 bits. With the product hi * 65536 + lo,
/// and since 65536 = 257 * 255 + 1, it is hi * 257 + (hi + lo) / 255; where hi + lo passes 16 bits, the carry adds
/// another 257 and another 1 to be divided.
HWY_INLINE V16 scaledWide(V16 x, V16 a) {
    const D16 d;
    const V16 hi = hn::MulHigh(x, a);
    const V16 lo = hn::Mul(x, a);
    const V16 sum = hn::Add(hi, lo);
    const V16 carry = hn::And(hn::VecFromMask(d, hn::Lt(sum, lo)), hn::Set(d, 1));
    const V16 high = hn::Add(hi, carry);
    return hn::Add(hn::Or(hn::ShiftLeft<8>(high), high), dividedBy255(hn::Add(sum, carry)));
}

/// Moves `old` by `step` up where it is `low`, the lower of old and target, down elsewhere; the sum wraps.
template <class V>
HWY_INLINE V stepped(V old, V low, V step) {
    const auto up = hn::Eq(low, old);
#if HWY_TARGET == HWY_AVX3
    return hn::IfThenElse(up, hn::Add(old, step), hn::Sub(old, step));  // adds under a mask
#else
    // With `all` for all bits, -1: old - 1 - (step ^ all) = old - 1 - (-1 - step) = old + step.
    const V all = hn::VecFromMask(hn::DFromV<V>(), up);
    return hn::Sub(hn::Add(old, all), hn::Xor(step, all));
#endif
}

/// The even bytes of `even` and the odd bytes of `odd`.
HWY_INLINE V8 joined(V16 even, V16 odd) { return hn::OddEven(bytes(odd), bytes(even)); }

/// The bytes of x in the channels of `moving`, others 0: the even ones in 16-bit lanes, and the odd ones times 256.
HWY_INLINE V16 evenOf(V8 x, uint32_t moving) { return words(hn::And(x, bytes(hn::Set(D32(), moving & 0x00FF00FF)))); }
HWY_INLINE V16 oddOf(V8 x, uint32_t moving) { return words(hn::And(x, bytes(hn::Set(D32(), moving & 0xFF00FF00)))); }

/// x * a / 255 for bytes, by weights below 255 given as multipliers: one for the even bytes of the 16-bit lanes, one
/// for the odd ones. It is 0 for the channels that are 0 in `moving`.
HWY_INLINE V8 scaledBelow255(V8 x, V16 evenMultiplier, V16 oddMultiplier, uint32_t moving) {
    return joined(hn::MulHigh(evenOf(x, moving), evenMultiplier), hn::MulHigh(oddOf(x, moving), oddMultiplier));
}

/// Vector kernel of omnar::toward for bytes, by weights below 255 given as multipliers. Channels that are 0 in `moving`
/// stay.
HWY_INLINE V8 towardBelow255(V8 old, V8 target, V16 evenMultiplier, V16 oddMultiplier, uint32_t moving) {
    const V8 low = hn::Min(old, target);
    const V8 distance = hn::Sub(hn::Max(old, target), low);
    return stepped(old, low, scaledBelow255(distance, evenMultiplier, oddMultiplier, moving));
}

/// x * a / 255 for bytes, by weights given as factors: one for the even bytes of the 16-bit lanes, one for the odd
/// ones. `even` and `odd` are the shuffles that double those bytes; where they give 0 instead, the product is 0.
HWY_INLINE V8 scaledBytes(V8 x, V16 evenFactor, V16 oddFactor, V8 even, V8 odd) {
    const V16 evenStep = hn::MulHigh(words(hn::TableLookupBytesOr0(x, even)), evenFactor);
    const V16 oddStep = hn::MulHigh(words(hn::TableLookupBytesOr0(x, odd)), oddFactor);
    return bytes(hn::OrAnd(hn::ShiftRight<8>(evenStep), oddStep, hn::Set(D16(), 0xFF00)));
}

/// Vector kernel of omnar::toward for bytes, by weights of 0..255 given as factors, with the shuffles of scaledBytes().
HWY_INLINE V8 toward(V8 old, V8 target, V16 evenFactor, V16 oddFactor, V8 even, V8 odd) {
    const V8 low = hn::Min(old, target);
    const V8 distance = hn::Sub(hn::Max(old, target), low);
    return stepped(old, low, scaledBytes(distance, evenFactor, oddFactor, even, odd));
}

/// Vector kernel of omnar::toward for 16-bit samples, by weights of 0..255 in the lanes.
HWY_INLINE V16 toward(V16 old, V16 target, V16 weight) {
    const V16 low = hn::Min(old, target);
    return stepped(old, low, scaledWide(hn::Sub(hn::Max(old, target), low), weight));
}

/// Vector kernel of omnar::toward for bytes, by weights of 0..257 in 16-bit lanes. Bytes that are 0 in `moving` stay.
HWY_INLINE V8 towardWide(V8 old, V8 target, V16 weight, V8 moving) {
    const D16 d;
    const V8 low = hn::Min(old, target);
    const V16 distance = words(hn::And(hn::Sub(hn::Max(old, target), low), moving));
    const V16 lowByte = hn::Set(d, 0x00FF);
    const V16 evenStep = dividedBy255(hn::Mul(hn::And(distance, lowByte), weight));
    const V16 oddStep = dividedBy255(hn::Mul(hn::ShiftRight<8>(distance), weight));
    return stepped(old, low, joined(evenStep, hn::ShiftLeft<8>(oddStep)));
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
