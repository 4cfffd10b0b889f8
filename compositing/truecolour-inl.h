// SPDX-License-Identifier: MIT

// The vector kernels of operands.h for true colour, 16 pixels at a time, compiled once for every vector level.
#if defined(OMNAR_COMPOSITING_TRUECOLOUR_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_COMPOSITING_TRUECOLOUR_INL_H_
#undef OMNAR_COMPOSITING_TRUECOLOUR_INL_H_
#else
#define OMNAR_COMPOSITING_TRUECOLOUR_INL_H_
#endif

#include "compositing/blend-inl.h"
#include "compositing/operands.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

// Coverage of a block. `none` is true if all of it is 0, `full` if all of it is 255. For vector k, `all` has the
// coverage of each pixel in its 4 bytes; `high` has it in the high bytes of its 16-bit lanes and 0 in the low bytes.

struct PlaneCoverage {
    V8 cover;

    HWY_INLINE bool none() const { return hn::AllTrue(D8(), hn::Eq(cover, hn::Zero(D8()))); }
    HWY_INLINE bool full() const { return hn::AllTrue(D8(), hn::Eq(cover, hn::Set(D8(), 255))); }
    HWY_INLINE V8 all(size_t k) const { return hn::TableLookupBytes(cover, partOf(kCoverageToAll, k)); }
    HWY_INLINE V16 high(size_t k) const { return words(hn::TableLookupBytesOr0(cover, partOf(kCoverageToHigh, k))); }

    /// The multipliers of the weights of vector k under an opacity below 255, from the multiplier of the opacity.
    HWY_INLINE V16 multiplier(size_t k, V16 opacityMultiplier) const {
        const V16 pair =
            hn::MulHigh(words(hn::TableLookupBytesOr0(cover, partOf(kCoverageToPairs, k / 2))), opacityMultiplier);
        const V8 toAll = k % 2 == 0 ? partOf(kPairToAll<0>, 0) : partOf(kPairToAll<1>, 0);
        return multiplierOfDoubled(hn::TableLookupBytes(bytes(pair), toAll));
    }

    /// A target with the coverage in all 4 bytes of each pixel.
    template <class Part>
    HWY_INLINE Pixels<Part::vectors> pixels(Part) const {
        Pixels<Part::vectors> block;
        for (size_t k = 0; k < Part::vectors; ++k) block.v[k] = all(k);
        return block;
    }
};

template <size_t c, size_t vectors>
struct ChannelCoverage {
    Pixels<vectors> pixels;

    HWY_INLINE bool none() const {
        V8 any = pixels.v[0];
        for (size_t k = 1; k < vectors; ++k) any = hn::Or(any, pixels.v[k]);
        return hn::AllTrue(D8(), hn::Eq(hn::And(any, channel()), hn::Zero(D8())));
    }
    HWY_INLINE bool full() const {
        V8 every = pixels.v[0];
        for (size_t k = 1; k < vectors; ++k) every = hn::And(every, pixels.v[k]);
        return hn::AllTrue(D8(), hn::Eq(hn::And(every, channel()), channel()));
    }
    HWY_INLINE V8 all(size_t k) const { return hn::TableLookupBytes(pixels.v[k], partOf(kChannelToAll<c>, k)); }
    HWY_INLINE V16 high(size_t k) const {
        return words(hn::TableLookupBytesOr0(pixels.v[k], partOf(kChannelToHigh<c>, k)));
    }

    /// The multipliers of the weights of vector k under an opacity below 255, from the multiplier of the opacity.
    HWY_INLINE V16 multiplier(size_t k, V16 opacityMultiplier) const {
        constexpr size_t highByte = c | 1;  // of the 16-bit lane that holds the weight
        const V16 coverage =
            c == highByte ? words(hn::And(pixels.v[k], channel())) : hn::ShiftLeft<8>(words(pixels.v[k]));
        const V16 weight = hn::MulHigh(coverage, opacityMultiplier);
        return multiplierOfDoubled(hn::TableLookupBytes(bytes(weight), partOf(kChannelToAll<highByte>, 0)));
    }

private:
    HWY_INLINE static V8 channel() { return everywhere(TRC{255} << 8 * c); }
};

template <>
class Covering<Cover, TRC> {
public:
    HWY_INLINE explicit Covering(const Cover& cover) : row_(cover.plane.row()) {}
    HWY_INLINE PlaneCoverage at(size_t i, auto part, const auto& /*aim*/) const { return {loadCover(row_ + i, part)}; }

private:
    const L08* row_;
};

template <>
class Covering<Complement, TRC> {
public:
    HWY_INLINE explicit Covering(const Complement& cover) : row_(cover.plane.row()) {}
    HWY_INLINE PlaneCoverage at(size_t i, auto part, const auto& /*aim*/) const {
        return {hn::Xor(loadCover(row_ + i, part), hn::Set(D8(), 255))};
    }

private:
    const L08* row_;
};

template <>
class Covering<Blue, TRC> {
public:
    HWY_INLINE explicit Covering(const Blue& blue) : row_(blue.plane.row()) {}
    template <class Part>
    HWY_INLINE ChannelCoverage<0, Part::vectors> at(size_t i, Part part, const auto& /*aim*/) const {
        return {loadBlock(row_ + i, part)};
    }

private:
    const TRC* row_;
};

template <>
class Covering<OwnAlpha, TRC> {
public:
    HWY_INLINE explicit Covering(const OwnAlpha&) {}

    /// Loads the pixels of the target. The compiler merges this load with that of the blend.
    template <class Part>
    HWY_INLINE ChannelCoverage<3, Part::vectors> at(size_t i, Part part, const auto& aim) const {
        return {aim.at(i, part)};
    }
};

// Weights of a block. `unchanged` is true if all pixels are unchanged, `reachesTarget` if all reach the target. `step`
// moves the pixels of vector k.

/// Moves the channels of `Destination::moving` by multipliers.
template <class Destination>
HWY_INLINE V8 movedBelow255(V8 old, V8 target, V16 multiplier) {
    return towardBelow255(old, target, multiplier, multiplier, Destination::moving);
}

/// Moves the channels of `Destination::moving` by the factors of vector k.
template <class Destination>
HWY_INLINE V8 moved(size_t k, V8 old, V8 target, V16 factor) {
    static constexpr auto even = doubling(Destination::moving, 0);
    static constexpr auto odd = doubling(Destination::moving, 1);
    return toward(old, target, factor, factor, partOf(even, k), partOf(odd, k));
}

template <bool opaque>
class Weigh<Constant, TRC, opaque> {
public:
    HWY_INLINE explicit Weigh(const Constant& weight) : block_{multiplierOf(weight.opacity), weight.opacity == 0} {}

    struct Block {
        V16 multiplier;
        bool isZero;

        HWY_INLINE bool unchanged() const { return isZero; }
        HWY_INLINE bool reachesTarget() const { return opaque; }
        template <class Destination>
        HWY_INLINE V8 step(size_t, V8 old, V8 target) const {
            if constexpr (opaque) return Destination::merged(old, target);
            return movedBelow255<Destination>(old, target, multiplier);
        }
    };
    HWY_INLINE Block at(size_t, auto, const auto&) const { return block_; }

private:
    Block block_;
};

template <class Coverage, bool opaque>
class Weigh<Scaled<Coverage>, TRC, opaque> {
public:
    HWY_INLINE explicit Weigh(const Scaled<Coverage>& weight)
        : coverage_(weight.coverage), opacityMultiplier_(multiplierOf(weight.opacity)) {}

    template <class Covered>
    struct Block {
        Covered coverage;
        V16 opacityMultiplier;

        HWY_INLINE bool unchanged() const { return coverage.none(); }
        HWY_INLINE bool reachesTarget() const { return opaque && coverage.full(); }
        template <class Destination>
        HWY_INLINE V8 step(size_t k, V8 old, V8 target) const {
            if constexpr (opaque) {
                return moved<Destination>(k, old, target, hn::Or(coverage.high(k), hn::Set(D16(), 1)));
            }
            return movedBelow255<Destination>(old, target, coverage.multiplier(k, opacityMultiplier));
        }
    };
    HWY_INLINE auto at(size_t i, auto part, const auto& aim) const {
        return Block<decltype(coverage_.at(i, part, aim))>{coverage_.at(i, part, aim), opacityMultiplier_};
    }

private:
    Covering<Coverage, TRC> coverage_;
    V16 opacityMultiplier_;
};

template <class Coverage, bool opaque>
class Weigh<Binary<Coverage>, TRC, opaque> {
public:
    HWY_INLINE explicit Weigh(const Binary<Coverage>& weight)
        : coverage_(weight.coverage), opacityMultiplier_(multiplierOf(weight.opacity)) {}

    template <class Covered>
    struct Block {
        Covered coverage;
        V16 opacityMultiplier;

        HWY_INLINE bool unchanged() const { return coverage.none(); }
        HWY_INLINE bool reachesTarget() const {
            return false;
        }  // would need a test for coverage nowhere 0, which does not pay
        HWY_INLINE auto uncovered(size_t k) const { return hn::Eq(coverage.all(k), hn::Zero(D8())); }
        template <class Destination>
        HWY_INLINE V8 step(size_t k, V8 old, V8 target) const {
            if constexpr (opaque) return hn::IfThenElse(uncovered(k), old, Destination::merged(old, target));
            return hn::IfThenElse(uncovered(k), old, movedBelow255<Destination>(old, target, opacityMultiplier));
        }
    };
    HWY_INLINE auto at(size_t i, auto part, const auto& aim) const {
        return Block<decltype(coverage_.at(i, part, aim))>{coverage_.at(i, part, aim), opacityMultiplier_};
    }

private:
    Covering<Coverage, TRC> coverage_;
    V16 opacityMultiplier_;
};

template <bool opaque>
class Weigh<InkWeight, TRC, opaque> {
public:
    HWY_INLINE explicit Weigh(const InkWeight& weight)
        : row_(weight.plane.row()), opacity_(hn::Set(D16(), static_cast<uint16_t>(weight.opacity))) {}

    template <size_t vectors>
    struct Block {
        V16 weights[vectors];

        HWY_INLINE bool unchanged() const {
            V16 any = weights[0];
            for (size_t k = 1; k < vectors; ++k) any = hn::Or(any, weights[k]);
            return hn::AllTrue(D16(), hn::Eq(any, hn::Zero(D16())));
        }
        HWY_INLINE bool reachesTarget() const { return false; }  // needs samples of 65025 or more, beyond 12 bits
        template <class Destination>
        HWY_INLINE V8 step(size_t k, V8 old, V8 target) const {
            return towardWide(old, target, weights[k], everywhere(Destination::moving));
        }
    };
    template <class Part>
    HWY_INLINE Block<Part::vectors> at(size_t i, Part part, const auto&) const {
        Block<Part::vectors> block;
        for (size_t k = 0; k < Part::vectors; ++k) {
            const auto samples = loadVector(hn::Rebind<uint16_t, D32>(), row_ + i, part, k);
            const V16 lowHalf = dividedBy255(hn::BitCast(D16(), hn::PromoteTo(D32(), samples)));
            const V32 weight = hn::BitCast(D32(), dividedBy255(hn::Mul(lowHalf, opacity_)));
            block.weights[k] = hn::BitCast(D16(), hn::Or(weight, hn::ShiftLeft<16>(weight)));
        }
        return block;
    }

private:
    const L12* row_;
    V16 opacity_;
};

// Targets.

template <>
class Aim<SourcePixels<TRC>, TRC> {
public:
    HWY_INLINE explicit Aim(const SourcePixels<TRC>& target) : row_(target.plane.row()) {}
    HWY_INLINE auto at(size_t i, auto part) const { return loadBlock(row_ + i, part); }

private:
    const TRC* row_;
};

template <>
class Aim<Flat, TRC> {
public:
    HWY_INLINE explicit Aim(const Flat& target) : color_(everywhere(target.value)) {}
    template <class Part>
    HWY_INLINE Pixels<Part::vectors> at(size_t, Part) const {
        Pixels<Part::vectors> pixels;
        for (V8& v : pixels.v) v = color_;
        return pixels;
    }

private:
    V8 color_;
};

template <>
class Aim<Grey, TRC> {
public:
    HWY_INLINE explicit Aim(const Grey& target) : row_(target.plane.row()) {}
    HWY_INLINE auto at(size_t i, auto part) const { return PlaneCoverage{loadCover(row_ + i, part)}.pixels(part); }

private:
    const L08* row_;
};

template <class Coverage>
class Aim<ColorOnBackground<Coverage>, TRC> {
public:
    HWY_INLINE explicit Aim(const ColorOnBackground<Coverage>& target)
        : background_(everywhere(target.background)),
          color_(everywhere(target.color)),
          weigh_({target.coverage, 255}) {}
    template <class Part>
    HWY_INLINE Pixels<Part::vectors> at(size_t i, Part part) const;

private:
    V8 background_;
    V8 color_;
    Weigh<Scaled<Coverage>, TRC, true> weigh_;
};

// Destinations. `moving` masks the bytes that move; `merged` gives pixels that reach the target; `finished` is applied
// to pixels after their step.

struct MovingColor {
    using Pixel = TRC;
    static constexpr uint32_t moving = 0x00FFFFFF;
};

/// Leaves the other bytes unchanged.
template <class Destination>
struct KeepsOtherBytes : Destination {
    HWY_INLINE static V8 merged(V8 old, V8 target) {
        return hn::OrAnd(hn::And(old, everywhere(~Destination::moving)), target, everywhere(Destination::moving));
    }
    HWY_INLINE static V8 finished(size_t, V8 moved, V8, const auto&) { return moved; }
};

template <>
struct Into<Color> : KeepsOtherBytes<MovingColor> {};

template <>
struct Into<ColorErasingAlpha> : MovingColor {
    HWY_INLINE static V8 merged(V8, V8 target) { return hn::And(target, everywhere(moving)); }
    HWY_INLINE static V8 finished(size_t k, V8 moved, V8, const auto& weight) {
        const auto uncovered = hn::Eq(weight.coverage.all(k), hn::Zero(D8()));
        return hn::And(moved, hn::Or(hn::VecFromMask(D8(), uncovered), everywhere(moving)));
    }
};

struct MovingAlpha {
    using Pixel = TRC;
    static constexpr uint32_t moving = 0xFF000000;
};
template <>
struct Into<AlphaByte> : KeepsOtherBytes<MovingAlpha> {};

struct MovingAll {
    using Pixel = TRC;
    static constexpr uint32_t moving = 0xFFFFFFFF;
};
template <>
struct Into<Overwrite<TRC>> : KeepsOtherBytes<MovingAll> {};

/// The new values of a block.
template <class Into, size_t vectors>
HWY_INLINE Pixels<vectors> blended(Pixels<vectors> pixels, const Pixels<vectors>& target, const auto& weight) {
    for (size_t k = 0; k < vectors; ++k) {
        const V8 moved = weight.template step<Into>(k, pixels.v[k], target.v[k]);
        pixels.v[k] = Into::finished(k, moved, target.v[k], weight);
    }
    return pixels;
}

/// Blends a block. If all its pixels are unchanged, the destination is not loaded; if all reach the target, no step is
/// computed.
template <class Into>
HWY_INLINE void blendBlock(TRC* dst, size_t i, auto part, const auto& aim, const auto& weigh) {
    const auto weight = weigh.at(i, part, aim);
    if (weight.unchanged()) return;
    const auto target = aim.at(i, part);
    auto pixels = loadBlock(dst + i, part);
    if (weight.reachesTarget()) {
        for (size_t k = 0; k < part.vectors; ++k) pixels.v[k] = Into::merged(pixels.v[k], target.v[k]);
    } else {
        pixels = blended<Into>(pixels, target, weight);
    }
    storeBlock(dst + i, part, pixels);
}

template <class Coverage>
template <class Part>
HWY_INLINE Pixels<Part::vectors> Aim<ColorOnBackground<Coverage>, TRC>::at(size_t i, Part part) const {
    const auto weight = weigh_.at(i, part, *this);
    Pixels<Part::vectors> pixels;
    for (size_t k = 0; k < Part::vectors; ++k) pixels.v[k] = weight.template step<Into<Color>>(k, background_, color_);
    return pixels;
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
