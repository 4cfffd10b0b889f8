// SPDX-License-Identifier: MIT

// The vector kernels of convert.h, compiled once per vector level.
#if defined(OMNAR_TONE_CONVERT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_CONVERT_INL_H_
#undef OMNAR_TONE_CONVERT_INL_H_
#else
#define OMNAR_TONE_CONVERT_INL_H_
#endif

#include "buffers/walk-inl.h"
#include "tone/convert.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// 16-bit samples, as many as a vector has bytes.
struct Wide {
    V16 first, second;
};

HWY_INLINE Wide loadWide(const L12* row, All) { return {loadBlock(row, All()), loadBlock(row + kBlock<L12>, All())}; }
template <size_t end>
HWY_INLINE Wide loadWide(const L12* row, Ends<end> part) {
    if constexpr (end < kBlock<L12>) {
        return {loadBlock(row, part), hn::Zero(D16())};
    } else {
        return {loadBlock(row, All()), loadBlock(row + part.n - end, All())};
    }
}

/// The low bytes of 16-bit lanes.
HWY_INLINE V8 narrowed(V16 first, V16 second) { return hn::ConcatEven(D8(), bytes(second), bytes(first)); }

template <>
class Twin<Narrowed> {
public:
    HWY_INLINE explicit Twin(const Narrowed& operation) : row_(operation.source.row()) {}
    HWY_INLINE V8 at(const L08*, size_t i, auto part) const {
        const Wide samples = loadWide(row_ + i, part);
        return narrowed(hn::ShiftRight<4>(samples.first), hn::ShiftRight<4>(samples.second));
    }

private:
    const L12* row_;
};

/// All bits set in lanes whose sample is at least the threshold, 0 in the others.
template <class V>
HWY_INLINE V reaching(V samples, V threshold) {
    const hn::DFromV<V> d;
    return hn::VecFromMask(d, hn::Eq(hn::SaturatedSub(threshold, samples), hn::Zero(d)));  // reads `samples` once
}

template <class Px>
class Twin<TwoLevels<Px, Px>> {
public:
    HWY_INLINE explicit Twin(const TwoLevels<Px, Px>& operation)
        : row_(operation.source.row()),
          threshold_(hn::Set(D(), operation.threshold)),
          full_(hn::Set(D(), operation.full)) {}
    HWY_INLINE auto at(const Px*, size_t i, auto part) const {
        return hn::And(reaching(loadBlock(row_ + i, part), threshold_), full_);
    }

private:
    using D = hn::ScalableTag<Px>;

    const Px* row_;
    hn::Vec<D> threshold_;
    hn::Vec<D> full_;
};

template <>
class Twin<TwoLevels<L12, L08>> {
public:
    HWY_INLINE explicit Twin(const TwoLevels<L12, L08>& operation)
        : row_(operation.source.row()),
          threshold_(hn::Set(D16(), operation.threshold)),
          full_(hn::Set(D8(), operation.full)) {}
    HWY_INLINE V8 at(const L08*, size_t i, auto part) const {
        const Wide samples = loadWide(row_ + i, part);
        return hn::And(narrowed(reaching(samples.first, threshold_), reaching(samples.second, threshold_)), full_);
    }

private:
    const L12* row_;
    V16 threshold_;
    V8 full_;
};

// Packed pixels: a byte shuffle drops the alpha bytes of four pixels, which leaves twelve bytes in 128 bits. These are
// joined to vectors without gaps.

template <class D>
HWY_INLINE hn::Vec<D> withoutAlpha(D d, const TRC* pixels) {
    static constexpr auto colours = shuffle([](size_t byte) {
        const size_t place = byte % 16;
        return place < 12 ? place / 3 * 4 + place % 3 : kNone;
    });
    return hn::TableLookupBytesOr0(hn::BitCast(d, hn::LoadU(hn::Repartition<uint32_t, D>(), pixels)),
                                   hn::LoadU(d, colours.data()));
}

using D128 = hn::Full128<uint8_t>;

#if HWY_MAX_BYTES >= 32

using D256 = hn::Full256<uint8_t>;

struct PackedPixels {
    hn::Vec<D256> first;
    hn::Vec<D128> rest;
};

HWY_INLINE PackedPixels packed(const TRC* pixels) {
    constexpr hn::Repartition<uint32_t, D256> d;
    alignas(32) static constexpr uint32_t inOrder[8] = {0, 1, 2, 4, 5, 6, 3, 3};
    alignas(32) static constexpr uint32_t turned[8] = {2, 4, 5, 6, 3, 3, 0, 1};
    const auto lower = hn::BitCast(d, withoutAlpha(D256(), pixels));
    const auto upper = hn::BitCast(d, withoutAlpha(D256(), pixels + 8));
    const auto first = hn::TableLookupLanes(lower, hn::SetTableIndices(d, inOrder));
    const auto rest = hn::TableLookupLanes(upper, hn::SetTableIndices(d, turned));
    return {hn::BitCast(D256(), hn::IfThenElse(hn::FirstN(d, 6), first, rest)),
            hn::LowerHalf(D128(), hn::BitCast(D256(), rest))};
}

HWY_INLINE void storeBlock(Bgr* to, All, const PackedPixels& pixels) {
    hn::StoreU(pixels.first, D256(), &to->blue);
    hn::StoreU(pixels.rest, D128(), &to->blue + 32);
}

#else

struct PackedPixels {
    hn::Vec<D128> v[3];
};

HWY_INLINE PackedPixels packed(const TRC* pixels) {
    const D128 d;
    const auto p0 = withoutAlpha(d, pixels), p1 = withoutAlpha(d, pixels + 4);
    const auto p2 = withoutAlpha(d, pixels + 8), p3 = withoutAlpha(d, pixels + 12);
    return {{hn::Or(p0, hn::ShiftLeftBytes<12>(p1)), hn::Or(hn::ShiftRightBytes<4>(d, p1), hn::ShiftLeftBytes<8>(p2)),
             hn::Or(hn::ShiftRightBytes<8>(d, p2), hn::ShiftLeftBytes<4>(p3))}};
}

HWY_INLINE void storeBlock(Bgr* to, All, const PackedPixels& pixels) {
    for (size_t k = 0; k < 3; ++k) hn::StoreU(pixels.v[k], D128(), &to->blue + k * 16);
}

#endif

HWY_INLINE void storeBlock(Bgr* to, First part, const PackedPixels& pixels) {  // copied in order, as for loads
    Padded<Bgr> padded;
    storeBlock(padded.values, All(), pixels);
    copyFew<kPixels>(to, padded.values, part.n);
}

template <>
class Twin<Packed> {
public:
    HWY_INLINE explicit Twin(const Packed& operation) : row_(operation.source.row()) {}
    HWY_INLINE PackedPixels at(const Bgr*, size_t i, All) const { return packed(row_ + i); }
    HWY_INLINE PackedPixels at(const Bgr*, size_t i, First part) const {
        return packed(Padded<TRC>(row_ + i, part).values);
    }

private:
    const TRC* row_;
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
