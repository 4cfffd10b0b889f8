// SPDX-License-Identifier: MIT

// The vector twins of operands.h for single channels, one vector of samples at a time, compiled once for every level.
// Coverage and weights stand in lanes as wide as the samples.
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
// The arithmetic of both widths under one name.

/// The shuffles of scaledBytes() for bytes that all move.
HWY_INLINE V8 scaledBytes(V8 x, V16 evenFactor, V16 oddFactor) {
    static constexpr auto even = doubling(0xFFFFFFFF, 0);
    static constexpr auto odd = doubling(0xFFFFFFFF, 1);
    return scaledBytes(x, evenFactor, oddFactor, partOf(even, 0), partOf(odd, 0));
}

/// x * a / 255.
HWY_INLINE V8 scaledSamples(V8 x, V8 a) {
    const V16 evenFactor = hn::Or(hn::ShiftLeft<8>(words(a)), hn::Set(D16(), 1));
    return scaledBytes(x, evenFactor, factorOfHigh(words(a)));
}
HWY_INLINE V16 scaledSamples(V16 x, V16 a) { return scaledWide(x, a); }

constexpr uint32_t kAllChannels = 0xFFFFFFFF;

/// Weights of bytes that are all below 255, as multipliers for the even and the odd bytes.
struct Multipliers {
    V16 even, odd;
};
HWY_INLINE V8 scaledSamples(V8 x, Multipliers by) { return scaledBelow255(x, by.even, by.odd, kAllChannels); }

/// The weights of bytes of coverage under an opacity below 255, which is given by its multiplier.
HWY_INLINE Multipliers multipliersUnder(V8 coverage, V16 opacity) {
    static constexpr auto lowToBoth = shuffle([](size_t byte) { return byte % 16 / 2 * 2; });
    static constexpr auto highToBoth = shuffle([](size_t byte) { return byte % 16 / 2 * 2 + 1; });
    const V8 even = bytes(hn::MulHigh(evenOf(coverage, kAllChannels), opacity));
    const V8 odd = bytes(hn::MulHigh(oddOf(coverage, kAllChannels), opacity));
    return {multiplierOfDoubled(hn::TableLookupBytes(even, partOf(lowToBoth, 0))),
            multiplierOfDoubled(hn::TableLookupBytes(odd, partOf(highToBoth, 0)))};
}

/// One weight below 255 where there is coverage, 0 elsewhere.
struct BinaryMultiplier {
    V8 covered;
    V16 multiplier;
};
HWY_INLINE V8 scaledSamples(V8 x, BinaryMultiplier by) {
    return scaledSamples(hn::And(x, by.covered), Multipliers{by.multiplier, by.multiplier});
}

/// Twin of omnar::scaled for alpha and opacity, whose product fits 16 bits.
HWY_INLINE V8 scaledAlpha(V8 alpha, V8 opacity) { return scaledSamples(alpha, opacity); }
HWY_INLINE V16 scaledAlpha(V16 alpha, V16 opacity) { return dividedBy255(hn::Mul(alpha, opacity)); }

/// The weights themselves.
HWY_INLINE V8 valuesOf(V8 weights) { return weights; }
HWY_INLINE V16 valuesOf(V16 weights) { return weights; }
HWY_INLINE V8 valuesOf(Multipliers by) {
    const V16 one = hn::Set(D16(), 1);
    return joined(hn::Sub(by.even, one), hn::Sub(by.odd, one));
}
HWY_INLINE V8 valuesOf(BinaryMultiplier by) {
    return hn::And(by.covered, bytes(hn::Sub(by.multiplier, hn::Set(D16(), 1))));
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
class Covering<Only<value>, Px> {
public:
    HWY_INLINE explicit Covering(const Only<value>& cover) : row_(cover.plane.row()) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const {
        const DOf<Px> d;
        return hn::IfThenElseZero(hn::Eq(loadCover(d, row_ + i, part), hn::Set(d, value)), hn::Set(d, 255));
    }

private:
    const L08* row_;
};

/// One byte for each pixel of true colour in a block of bytes: the lowest of what `of` makes of a vector of pixels.
/// `load(k)` gives the k-th vector of pixels; there are `vectors` of them, up to four.
template <size_t vectors>
HWY_INLINE V8 lowestBytes(const auto& load, const auto& of) {
    const auto quarter = [&](size_t k) HWY_ATTR { return k < vectors ? words(bytes(of(load(k)))) : hn::Zero(D16()); };
    const V16 low = hn::ConcatEven(D16(), quarter(1), quarter(0));
    const V16 high = vectors > 2 ? hn::ConcatEven(D16(), quarter(3), quarter(2)) : hn::Zero(D16());
    return hn::ConcatEven(D8(), bytes(high), bytes(low));
}
HWY_INLINE V8 byteOfEach(const TRC* row, All, const auto& of) {
    return lowestBytes<4>([=](size_t k) HWY_ATTR { return hn::LoadU(D32(), row + k * kPixelsPerVector); }, of);
}
template <size_t end>
HWY_INLINE V8 byteOfEach(const TRC* row, Ends<end> part, const auto& of) {
    return lowestBytes<part.vectors>([=](size_t k) HWY_ATTR { return loadVector(D32(), row, part, k); }, of);
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

// Weights. A block of them can tell whether they leave every sample alone (`clear`). The coverage is before the opacity.

template <class Values, class V>
struct SampleWeights {
    Values values;
    V coverage;

    HWY_INLINE bool clear() const { return hn::AllTrue(hn::DFromV<V>(), isZero(coverage)); }
};

/// Bytes under an opacity below 255 have multipliers for weights.
template <class Px, bool whole>
constexpr bool kMultiplied = sizeof(Px) == 1 && !whole;

/// The opacity in all lanes, as its multiplier for weights that are multipliers.
template <class Px, bool whole>
HWY_INLINE auto opacityFor(unsigned opacity) {
    if constexpr (kMultiplied<Px, whole>) {
        return multiplierOf(opacity);
    } else {
        return hn::Set(DOf<Px>(), static_cast<Px>(opacity));
    }
}
template <class Px, bool whole>
using OpacityFor = decltype(opacityFor<Px, whole>(0));

template <class Px, bool whole>
class Weigh<Constant, Px, whole> {
public:
    HWY_INLINE explicit Weigh(const Constant& weight)
        : opacity_(opacityFor<Px, whole>(weight.opacity)),
          coverage_(hn::Set(DOf<Px>(), static_cast<Px>(weight.opacity))) {}
    HWY_INLINE auto at(size_t, auto, const auto&) const {
        if constexpr (kMultiplied<Px, whole>) {
            return SampleWeights<Multipliers, V8>{{opacity_, opacity_}, coverage_};
        } else {
            return SampleWeights<VOf<Px>, VOf<Px>>{opacity_, coverage_};
        }
    }

private:
    OpacityFor<Px, whole> opacity_;
    VOf<Px> coverage_;
};

template <class Coverage, class Px, bool whole>
class Weigh<Scaled<Coverage>, Px, whole> {
public:
    HWY_INLINE explicit Weigh(const Scaled<Coverage>& weight)
        : coverage_(weight.coverage), opacity_(opacityFor<Px, whole>(weight.opacity)) {}
    HWY_INLINE auto at(size_t i, auto part, const auto&) const {
        const VOf<Px> coverage = coverage_.at(i, part);
        if constexpr (whole) {
            return SampleWeights<VOf<Px>, VOf<Px>>{coverage, coverage};
        } else if constexpr (kMultiplied<Px, whole>) {
            return SampleWeights<Multipliers, V8>{multipliersUnder(coverage, opacity_), coverage};
        } else {
            return SampleWeights<VOf<Px>, VOf<Px>>{scaledAlpha(coverage, opacity_), coverage};
        }
    }

private:
    Covering<Coverage, Px> coverage_;
    OpacityFor<Px, whole> opacity_;
};

template <class Coverage, class Px, bool whole>
class Weigh<Binary<Coverage>, Px, whole> {
public:
    HWY_INLINE explicit Weigh(const Binary<Coverage>& weight)
        : coverage_(weight.coverage), opacity_(opacityFor<Px, whole>(weight.opacity)) {}
    HWY_INLINE auto at(size_t i, auto part, const auto&) const {
        const VOf<Px> coverage = coverage_.at(i, part);
        const auto uncovered = isZero(coverage);
        if constexpr (kMultiplied<Px, whole>) {
            const V8 covered = hn::Not(hn::VecFromMask(DOf<Px>(), uncovered));
            return SampleWeights<BinaryMultiplier, V8>{{covered, opacity_}, coverage};
        } else {
            return SampleWeights<VOf<Px>, VOf<Px>>{hn::IfThenZeroElse(uncovered, opacity_), coverage};
        }
    }

private:
    Covering<Coverage, Px> coverage_;
    OpacityFor<Px, whole> opacity_;
};

// Targets.

template <class Px>
class Aim<From<Px>, Px> {
public:
    HWY_INLINE explicit Aim(const From<Px>& target) : row_(target.plane.row()) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const { return loadBlock(row_ + i, part); }

private:
    const Px* row_;
};

template <>
class Aim<Divided, L12> {
public:
    HWY_INLINE explicit Aim(const Divided& target) : row_(target.plane.row()) {}
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
class Aim<LaidOnNothing<Coverage>, Px> {
public:
    HWY_INLINE explicit Aim(const LaidOnNothing<Coverage>& target)
        : level_(hn::Set(DOf<Px>(), static_cast<Px>(target.level))), coverage_(target.coverage) {}
    HWY_INLINE VOf<Px> at(size_t i, auto part) const { return scaledSamples(level_, coverage_.at(i, part)); }

private:
    VOf<Px> level_;
    Covering<Coverage, Px> coverage_;
};

// Destinations: what becomes of a sample, and whether those of weight 0 stay as they are.

template <class Px>
struct Into<Sample<Px>> {
    static constexpr bool clearStays = true;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px> target, auto weights) {
        return towardSamples(old, target, weights);
    }
};

template <class Px>
struct Into<TwoLevel<Px>> {
    static constexpr bool clearStays = false;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px> target, auto weights) {
        return hn::IfThenZeroElse(isZero(towardSamples(old, target, weights)), hn::Set(DOf<Px>(), fullOf<Px>));
    }
};

template <>
struct Into<Raised> {
    static constexpr bool clearStays = false;

    HWY_INLINE static V16 step(V16 old, V16 target, auto weights) {
        const V16 raised = hn::IfThenZeroElse(isZero(old), hn::Set(D16(), fullOf<L12>));
        return towardSamples(raised, target, weights);
    }
};

template <class Base>
struct Into<WhereInk<Base>> {
    static constexpr bool clearStays = Into<Base>::clearStays;

    template <class V>
    HWY_INLINE static V step(V old, V target, auto weights) {
        return hn::IfThenElse(isZero(target), old, Into<Base>::step(old, target, weights));
    }
};

template <class Px>
struct Into<Multiplied<Px>> {
    static constexpr bool clearStays = false;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px>, auto weights) { return scaledSamples(old, weights); }
};

template <class Px>
struct Into<Whole<Px>> {
    static constexpr bool clearStays = true;

    HWY_INLINE static VOf<Px> step(VOf<Px> old, VOf<Px> target, auto weights) {
        return hn::IfThenElse(isZero(valuesOf(weights)), old, target);
    }
};

/// What becomes of the samples of a block.
template <class Into, class V>
HWY_INLINE V blended(V old, V target, const auto& weights) {
    if constexpr (requires { Into::stepByCoverage(old, target, weights); })
        return Into::stepByCoverage(old, target, weights);
    else
        return Into::step(old, target, weights.values);
}

/// A block whose samples all stay is not even loaded.
template <class Into, class Px>
HWY_INLINE void blendBlock(Px* dst, size_t i, auto part, const auto& aim, const auto& weigh) {
    const auto weights = weigh.at(i, part, aim);
    if constexpr (Into::clearStays) {
        if (weights.clear()) return;
    }
    storeBlock(dst + i, part, blended<Into>(loadBlock(dst + i, part), aim.at(i, part), weights));
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
