// SPDX-License-Identifier: MIT

// The vector kernels of operands.h for single channels, one vector of samples at a time, compiled once for every vector
// level. Lanes of coverage and weights are as wide as the samples.
#if defined(OMNAR_COMPOSITING_SAMPLES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_COMPOSITING_SAMPLES_INL_H_
#undef OMNAR_COMPOSITING_SAMPLES_INL_H_
#else
#define OMNAR_COMPOSITING_SAMPLES_INL_H_
#endif

#include "compositing/blend-inl.h"
#include "compositing/operands.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// The lanes of samples.
template <class Px>
using DOf = hn::ScalableTag<Px>;
template <class Px>
using VOf = hn::Vec<DOf<Px>>;

template <class V>
HWY_INLINE auto isZero(V v) {
    return hn::Eq(v, hn::Zero(hn::DFromV<V>()));
}

// The arithmetic of both sample widths, overloaded.

/// scaledBytes() with shuffles that move every byte.
HWY_INLINE V8 scaledBytes(V8 x, V16 evenFactor, V16 oddFactor) {
    static constexpr auto even = doubling(0xFFFFFFFF, 0);
    static constexpr auto odd = doubling(0xFFFFFFFF, 1);
    return scaledBytes(x, evenFactor, oddFactor, partOf(even, 0), partOf(odd, 0));
}

/// x * a / 255, truncated.
HWY_INLINE V8 scaledSamples(V8 x, V8 a) {
    const V16 evenFactor = hn::Or(hn::ShiftLeft<8>(words(a)), hn::Set(D16(), 1));
    return scaledBytes(x, evenFactor, factorOfHigh(words(a)));
}
HWY_INLINE V16 scaledSamples(V16 x, V16 a) { return scaledWide(x, a); }

constexpr uint32_t kAllChannels = 0xFFFFFFFF;

/// Weights below 255, as multipliers for the even and the odd bytes.
struct Multipliers {
    V16 even, odd;
};
HWY_INLINE V8 scaledSamples(V8 x, Multipliers weights) {
    return scaledBelow255(x, weights.even, weights.odd, kAllChannels);
}

/// The weights of `coverage` under an opacity below 255, from the multiplier of the opacity.
HWY_INLINE Multipliers multipliersUnder(V8 coverage, V16 opacityMultiplier) {
    static constexpr auto lowToBoth = shuffle([](size_t byte) { return byte % 16 / 2 * 2; });
    static constexpr auto highToBoth = shuffle([](size_t byte) { return byte % 16 / 2 * 2 + 1; });
    const V8 even = bytes(hn::MulHigh(evenOf(coverage, kAllChannels), opacityMultiplier));
    const V8 odd = bytes(hn::MulHigh(oddOf(coverage, kAllChannels), opacityMultiplier));
    return {multiplierOfDoubled(hn::TableLookupBytes(even, partOf(lowToBoth, 0))),
            multiplierOfDoubled(hn::TableLookupBytes(odd, partOf(highToBoth, 0)))};
}

/// A weight below 255 where the coverage is not 0, else 0.
struct BinaryMultiplier {
    V8 covered;
    V16 multiplier;
};
HWY_INLINE V8 scaledSamples(V8 x, BinaryMultiplier weights) {
    return scaledSamples(hn::And(x, weights.covered), Multipliers{weights.multiplier, weights.multiplier});
}

/// Vector kernel of omnar::scaled for coverage and opacity of 0..255, whose product fits in 16 bits.
HWY_INLINE V8 scaledAlpha(V8 alpha, V8 opacity) { return scaledSamples(alpha, opacity); }
HWY_INLINE V16 scaledAlpha(V16 alpha, V16 opacity) { return dividedBy255(hn::Mul(alpha, opacity)); }

/// The weights as values of the lanes.
HWY_INLINE V8 valuesOf(V8 weights) { return weights; }
HWY_INLINE V16 valuesOf(V16 weights) { return weights; }
HWY_INLINE V8 valuesOf(Multipliers weights) {
    const V16 one = hn::Set(D16(), 1);
    return joined(hn::Sub(weights.even, one), hn::Sub(weights.odd, one));
}
HWY_INLINE V8 valuesOf(BinaryMultiplier weights) {
    return hn::And(weights.covered, bytes(hn::Sub(weights.multiplier, hn::Set(D16(), 1))));
}

/// Vector kernel of omnar::toward for weights of 0..255.
template <class V>
HWY_INLINE V towardSamples(V old, V target, auto weights) {
    const V low = hn::Min(old, target);
    return stepped(old, low, scaledSamples(hn::Sub(hn::Max(old, target), low), weights));
}

// Coverage.

HWY_INLINE V8 loadCover(DOf<L08>, const L08* from, auto part) { return loadBlock(from, part); }
HWY_INLINE V16 loadCover(DOf<L12> d, const L08* from, auto part) {
    return hn::PromoteTo(d, loadVector(hn::Rebind<L08, DOf<L12>>(), from, part));
}

template <class Px>
class Covering<Cover, Px> {
public:
    HWY_INLINE explicit Covering(const Cover& cover) : row_(cover.plane.row()) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const { return loadCover(DOf<Px>(), row_ + i, part); }

private:
    const L08* row_;
};

template <class Px>
class Covering<Complement, Px> {
public:
    HWY_INLINE explicit Covering(const Complement& cover) : row_(cover.plane.row()) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const {
        return hn::Xor(loadCover(DOf<Px>(), row_ + i, part), hn::Set(DOf<Px>(), 255));
    }

private:
    const L08* row_;
};

template <unsigned value, class Px>
class Covering<AlphaIs<value>, Px> {
public:
    HWY_INLINE explicit Covering(const AlphaIs<value>& cover) : row_(cover.plane.row()) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const {
        const DOf<Px> d;
        return hn::IfThenElseZero(hn::Eq(loadCover(d, row_ + i, part), hn::Set(d, value)), hn::Set(d, 255));
    }

private:
    const L08* row_;
};

/// One byte for each pixel of true colour: the lowest byte of `byteInLowest(pixels)`. `load(k)` gives vector k of the
/// pixels, for k below `vectors`, at most 4.
template <size_t vectors>
HWY_INLINE V8 lowestBytes(const auto& load, const auto& byteInLowest) {
    const auto quarter = [&](size_t k)
                             HWY_ATTR { return k < vectors ? words(bytes(byteInLowest(load(k)))) : hn::Zero(D16()); };
    const V16 low = hn::ConcatEven(D16(), quarter(1), quarter(0));
    const V16 high = vectors > 2 ? hn::ConcatEven(D16(), quarter(3), quarter(2)) : hn::Zero(D16());
    return hn::ConcatEven(D8(), bytes(high), bytes(low));
}
HWY_INLINE V8 byteOfEach(const TRC* row, All, const auto& byteInLowest) {
    return lowestBytes<4>([=](size_t k) HWY_ATTR { return hn::LoadU(D32(), row + k * kPixelsPerVector); },
                          byteInLowest);
}
template <size_t end>
HWY_INLINE V8 byteOfEach(const TRC* row, Ends<end> part, const auto& byteInLowest) {
    return lowestBytes<part.vectors>([=](size_t k) HWY_ATTR { return loadVector(D32(), row, part, k); }, byteInLowest);
}

template <>
class Covering<Blue, L08> {
public:
    HWY_INLINE explicit Covering(const Blue& blue) : row_(blue.plane.row()) {}
    HWY_INLINE V8 at(size_t i, auto part) const {
        return byteOfEach(row_ + i, part, [](V32 pixels) HWY_ATTR { return pixels; });
    }

private:
    const TRC* row_;
};

template <>
class Covering<Inked, L12> {
public:
    HWY_INLINE explicit Covering(const Inked& inked) : row_(inked.plane.row()) {}
    HWY_INLINE V16 at(size_t i, auto part) const { return loadBlock(row_ + i, part); }

private:
    const L12* row_;
};

// Weights. `unchanged` is true if every coverage, before the opacity, is 0.

template <class Values, class V>
struct SampleWeights {
    Values values;
    V coverage;

    HWY_INLINE bool unchanged() const { return hn::AllTrue(hn::DFromV<V>(), isZero(coverage)); }
};

/// True if weights are multipliers: those of bytes under an opacity below 255.
template <class Px, bool opaque>
constexpr bool kMultiplied = sizeof(Px) == 1 && !opaque;

/// The opacity in all lanes, or its multiplier if weights are multipliers.
template <class Px, bool opaque>
HWY_INLINE auto opacityOperand(unsigned opacity) {
    if constexpr (kMultiplied<Px, opaque>) {
        return multiplierOf(opacity);
    } else {
        return hn::Set(DOf<Px>(), static_cast<Px>(opacity));
    }
}
template <class Px, bool opaque>
using OpacityOperand = decltype(opacityOperand<Px, opaque>(0));

template <class Px, bool opaque>
class Weigh<Constant, Px, opaque> {
public:
    HWY_INLINE explicit Weigh(const Constant& weight)
        : opacityOperand_(opacityOperand<Px, opaque>(weight.opacity)),
          coverage_(hn::Set(DOf<Px>(), static_cast<Px>(weight.opacity))) {}
    HWY_INLINE auto at(size_t, auto, const auto&) const {
        if constexpr (kMultiplied<Px, opaque>) {
            return SampleWeights<Multipliers, V8>{{opacityOperand_, opacityOperand_}, coverage_};
        } else {
            return SampleWeights<VOf<Px>, VOf<Px>>{opacityOperand_, coverage_};
        }
    }

private:
    OpacityOperand<Px, opaque> opacityOperand_;
    VOf<Px> coverage_;
};

template <class Coverage, class Px, bool opaque>
class Weigh<Scaled<Coverage>, Px, opaque> {
public:
    HWY_INLINE explicit Weigh(const Scaled<Coverage>& weight)
        : coverage_(weight.coverage), opacityOperand_(opacityOperand<Px, opaque>(weight.opacity)) {}
    HWY_INLINE auto at(size_t i, auto part, const auto&) const {
        const VOf<Px> coverage = coverage_.at(i, part);
        if constexpr (opaque) {
            return SampleWeights<VOf<Px>, VOf<Px>>{coverage, coverage};
        } else if constexpr (kMultiplied<Px, opaque>) {
            return SampleWeights<Multipliers, V8>{multipliersUnder(coverage, opacityOperand_), coverage};
        } else {
            return SampleWeights<VOf<Px>, VOf<Px>>{scaledAlpha(coverage, opacityOperand_), coverage};
        }
    }

private:
    Covering<Coverage, Px> coverage_;
    OpacityOperand<Px, opaque> opacityOperand_;
};

template <class Coverage, class Px, bool opaque>
class Weigh<Binary<Coverage>, Px, opaque> {
public:
    HWY_INLINE explicit Weigh(const Binary<Coverage>& weight)
        : coverage_(weight.coverage), opacityOperand_(opacityOperand<Px, opaque>(weight.opacity)) {}
    HWY_INLINE auto at(size_t i, auto part, const auto&) const {
        const VOf<Px> coverage = coverage_.at(i, part);
        const auto uncovered = isZero(coverage);
        if constexpr (kMultiplied<Px, opaque>) {
            const V8 covered = hn::Not(hn::VecFromMask(DOf<Px>(), uncovered));
            return SampleWeights<BinaryMultiplier, V8>{{covered, opacityOperand_}, coverage};
        } else {
            return SampleWeights<VOf<Px>, VOf<Px>>{hn::IfThenZeroElse(uncovered, opacityOperand_), coverage};
        }
    }

private:
    Covering<Coverage, Px> coverage_;
    OpacityOperand<Px, opaque> opacityOperand_;
};

// Targets.

template <class Px>
class Aim<SourcePixels<Px>, Px> {
public:
    HWY_INLINE explicit Aim(const SourcePixels<Px>& target) : row_(target.plane.row()) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const { return loadBlock(row_ + i, part); }

private:
    const Px* row_;
};

template <>
class Aim<DividedPixels, L12> {
public:
    HWY_INLINE explicit Aim(const DividedPixels& target) : row_(target.plane.row()) {}
    HWY_INLINE V16 at(size_t i, auto part) const { return dividedBy255(loadBlock(row_ + i, part)); }

private:
    const L12* row_;
};

template <class Px>
class Aim<Flat, Px> {
public:
    HWY_INLINE explicit Aim(const Flat& target) : value_(hn::Set(DOf<Px>(), static_cast<Px>(target.value))) {}
    HWY_INLINE VOf<Px> at(size_t, auto) const { return value_; }

private:
    VOf<Px> value_;
};

template <class Coverage, class Px>
class Aim<ValueOnZero<Coverage>, Px> {
public:
    HWY_INLINE explicit Aim(const ValueOnZero<Coverage>& target)
        : value_(hn::Set(DOf<Px>(), static_cast<Px>(target.value))), coverage_(target.coverage) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const { return scaledSamples(value_, coverage_.at(i, part)); }

private:
    VOf<Px> value_;
    Covering<Coverage, Px> coverage_;
};

// Destinations: `step` gives the new values of samples; `keepsAtWeight0` is true if samples of coverage 0 are
// unchanged.

template <class Px>
struct Into<Sample<Px>> {
    static constexpr bool keepsAtWeight0 = true;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px> target, auto weights) {
        return towardSamples(old, target, weights);
    }
};

template <class Px>
struct Into<TwoLevel<Px>> {
    static constexpr bool keepsAtWeight0 = false;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px> target, auto weights) {
        return hn::IfThenZeroElse(isZero(towardSamples(old, target, weights)), hn::Set(DOf<Px>(), fullOf<Px>));
    }
};

template <>
struct Into<FilledFirst> {
    static constexpr bool keepsAtWeight0 = false;

    HWY_INLINE static V16 step(V16 old, V16 target, auto weights) {
        const V16 filled = hn::IfThenZeroElse(isZero(old), hn::Set(D16(), fullOf<L12>));
        return towardSamples(filled, target, weights);
    }
};

template <class Base>
struct Into<WhereInk<Base>> {
    static constexpr bool keepsAtWeight0 = Into<Base>::keepsAtWeight0;

    template <class V>
    HWY_INLINE static V step(V old, V target, auto weights) {
        return hn::IfThenElse(isZero(target), old, Into<Base>::step(old, target, weights));
    }
};

template <class Px>
struct Into<Multiplied<Px>> {
    static constexpr bool keepsAtWeight0 = false;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px>, auto weights) { return scaledSamples(old, weights); }
};

template <class Px>
struct Into<Overwrite<Px>> {
    static constexpr bool keepsAtWeight0 = true;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px> target, auto weights) {
        return hn::IfThenElse(isZero(valuesOf(weights)), old, target);
    }
};

/// The new values of a block.
template <class Into, class V>
HWY_INLINE V blended(V old, V target, const auto& weights) {
    if constexpr (requires { Into::stepByCoverage(old, target, weights); })
        return Into::stepByCoverage(old, target, weights);
    else
        return Into::step(old, target, weights.values);
}

/// Blends a block. If all its samples are unchanged, the destination is not loaded.
template <class Into, class Px>
HWY_INLINE void blendBlock(Px* dst, size_t i, auto part, const auto& aim, const auto& weigh) {
    const auto weights = weigh.at(i, part, aim);
    if constexpr (Into::keepsAtWeight0) {
        if (weights.unchanged()) return;
    }
    storeBlock(dst + i, part, blended<Into>(loadBlock(dst + i, part), aim.at(i, part), weights));
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
