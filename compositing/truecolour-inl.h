// SPDX-License-Identifier: MIT

// The vector twins of operands.h for true colour, sixteen pixels at a time, compiled once for every level.
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

// Coverage. A block of it can tell whether it is 0 or 255 throughout, and gives for vector k the coverage of each pixel
// in all of its bytes, or in the high bytes of its 16-bit lanes with 0 in the low ones.

struct PlaneCoverage {
    V8 cover;

    HWY_INLINE bool none() const { return hn::AllTrue(D8(), hn::Eq(cover, hn::Zero(D8()))); }
    HWY_INLINE bool full() const { return hn::AllTrue(D8(), hn::Eq(cover, hn::Set(D8(), 255))); }
    HWY_INLINE V8 all(size_t k) const { return hn::TableLookupBytes(cover, partOf(kCoverToAll, k)); }
    HWY_INLINE V16 high(size_t k) const { return words(hn::TableLookupBytesOr0(cover, partOf(kCoverToHigh, k))); }

    /// The multipliers of the weights of vector k, under an opacity below 255 that is given by its multiplier.
    HWY_INLINE V16 multiplier(size_t k, V16 opacity) const {
        const V16 pair = hn::MulHigh(words(hn::TableLookupBytesOr0(cover, partOf(kCoverToPairs, k / 2))), opacity);
        const V8 toAll = k % 2 == 0 ? partOf(kPairToAll<0>, 0) : partOf(kPairToAll<1>, 0);
        return multiplierOfDoubled(hn::TableLookupBytes(bytes(pair), toAll));
    }

    /// A target that has the coverage in all bytes of each pixel.
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

    /// The multipliers of the weights of vector k, under an opacity below 255 that is given by its multiplier.
    HWY_INLINE V16 multiplier(size_t k, V16 opacity) const {
        constexpr size_t inHigh = c | 1;  // where the channel's weight is, in the high byte of a 16-bit lane
        const V16 coverage =
            c == inHigh ? words(hn::And(pixels.v[k], channel())) : hn::ShiftLeft<8>(words(pixels.v[k]));
        const V16 weight = hn::MulHigh(coverage, opacity);
        return multiplierOfDoubled(hn::TableLookupBytes(bytes(weight), partOf(kChannelToAll<inHigh>, 0)));
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

    /// Loads the target's pixels, which the compiler sees are the ones that the blend loads itself.
    template <class Part>
    HWY_INLINE ChannelCoverage<3, Part::vectors> at(size_t i, Part part, const auto& aim) const {
        return {aim.at(i, part)};
    }
};

// Weights. A block can tell whether it leaves every pixel alone (`clear`), or whether every pixel reaches its target
// (`solid`); `step` moves the pixels of vector k otherwise.

/// Moves the channels that `Destination` says by multipliers.
template <class Destination>
HWY_INLINE V8 movedBelow255(V8 old, V8 target, V16 multiplier) {
    return towardBelow255(old, target, multiplier, multiplier, Destination::moving);
}

/// Moves the channels that `Destination` says by the factors of vector k.
template <class Destination>
HWY_INLINE V8 moved(size_t k, V8 old, V8 target, V16 factor) {
    static constexpr auto even = doubling(Destination::moving, 0);
    static constexpr auto odd = doubling(Destination::moving, 1);
    return toward(old, target, factor, factor, partOf(even, k), partOf(odd, k));
}

template <bool whole>
class Weigh<Constant, TRC, whole> {
public:
    HWY_INLINE explicit Weigh(const Constant& weight) : block_{multiplierOf(weight.opacity), weight.opacity == 0} {}

    struct Block {
        V16 multiplier;
        bool none;

        HWY_INLINE bool clear() const { return none; }
        HWY_INLINE bool solid() const { return whole; }
        template <class Destination>
        HWY_INLINE V8 step(size_t, V8 old, V8 target) const {
            if constexpr (whole) return Destination::merged(old, target);
            return movedBelow255<Destination>(old, target, multiplier);
        }
    };
    HWY_INLINE Block at(size_t, auto, const auto&) const { return block_; }

private:
    Block block_;
};

template <class Coverage, bool whole>
class Weigh<Scaled<Coverage>, TRC, whole> {
public:
    HWY_INLINE explicit Weigh(const Scaled<Coverage>& weight)
        : coverage_(weight.coverage), opacity_(multiplierOf(weight.opacity)) {}

    template <class Covered>
    struct Block {
        Covered coverage;
        V16 opacity;

        HWY_INLINE bool clear() const { return coverage.none(); }
        HWY_INLINE bool solid() const { return whole && coverage.full(); }
        template <class Destination>
        HWY_INLINE V8 step(size_t k, V8 old, V8 target) const {
            if constexpr (whole) {
                return moved<Destination>(k, old, target, hn::Or(coverage.high(k), hn::Set(D16(), 1)));
            }
            return movedBelow255<Destination>(old, target, coverage.multiplier(k, opacity));
        }
    };
    HWY_INLINE auto at(size_t i, auto part, const auto& aim) const {
        return Block<decltype(coverage_.at(i, part, aim))>{coverage_.at(i, part, aim), opacity_};
    }

private:
    Covering<Coverage, TRC> coverage_;
    V16 opacity_;
};

template <class Coverage, bool whole>
class Weigh<Binary<Coverage>, TRC, whole> {
public:
    HWY_INLINE explicit Weigh(const Binary<Coverage>& weight)
        : coverage_(weight.coverage), opacity_(multiplierOf(weight.opacity)) {}

    template <class Covered>
    struct Block {
        Covered coverage;
        V16 opacity;

        HWY_INLINE bool clear() const { return coverage.none(); }
        HWY_INLINE bool solid() const { return false; }  // full() does not tell; "nowhere 0" is not worth a test
        HWY_INLINE auto uncovered(size_t k) const { return hn::Eq(coverage.all(k), hn::Zero(D8())); }
        template <class Destination>
        HWY_INLINE V8 step(size_t k, V8 old, V8 target) const {
            if constexpr (whole) return hn::IfThenElse(uncovered(k), old, Destination::merged(old, target));
            return hn::IfThenElse(uncovered(k), old, movedBelow255<Destination>(old, target, opacity));
        }
    };
    HWY_INLINE auto at(size_t i, auto part, const auto& aim) const {
        return Block<decltype(coverage_.at(i, part, aim))>{coverage_.at(i, part, aim), opacity_};
    }

private:
    Covering<Coverage, TRC> coverage_;
    V16 opacity_;
};

template <bool whole>
class Weigh<Coverage16, TRC, whole> {
public:
    HWY_INLINE explicit Weigh(const Coverage16& weight)
        : row_(weight.plane.row()), opacity_(hn::Set(D16(), static_cast<uint16_t>(weight.opacity))) {}

    template <size_t vectors>
    struct Block {
        V16 weights[vectors];

        HWY_INLINE bool clear() const {
            V16 any = weights[0];
            for (size_t k = 1; k < vectors; ++k) any = hn::Or(any, weights[k]);
            return hn::AllTrue(D16(), hn::Eq(any, hn::Zero(D16())));
        }
        HWY_INLINE bool solid() const { return false; }  // takes samples that no 12-bit coverage has
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
class Aim<From<TRC>, TRC> {
public:
    HWY_INLINE explicit Aim(const From<TRC>& target) : row_(target.plane.row()) {}
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
class Aim<LaidOn<Coverage>, TRC> {
public:
    HWY_INLINE explicit Aim(const LaidOn<Coverage>& target)
        : ground_(everywhere(target.ground)), color_(everywhere(target.color)), weigh_({target.coverage, 255}) {}
    template <class Part>
    HWY_INLINE Pixels<Part::vectors> at(size_t i, Part part) const;

private:
    V8 ground_;
    V8 color_;
    Weigh<Scaled<Coverage>, TRC, true> weigh_;
};

// Destinations: which bytes move, what a pixel is that reaches its target, and what is done to pixels that moved.

struct MovingColour {
    using Pixel = TRC;
    static constexpr uint32_t moving = 0x00FFFFFF;
};

/// Bytes that do not move stay.
template <class Destination>
struct KeepingTheRest : Destination {
    HWY_INLINE static V8 merged(V8 old, V8 target) {
        return hn::OrAnd(hn::And(old, everywhere(~Destination::moving)), target, everywhere(Destination::moving));
    }
    HWY_INLINE static V8 finished(size_t, V8 moved, V8, const auto&) { return moved; }
};

template <>
struct Into<Colour> : KeepingTheRest<MovingColour> {};

template <>
struct Into<ColourClearingAlpha> : MovingColour {
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
struct Into<AlphaByte> : KeepingTheRest<MovingAlpha> {};

struct MovingAll {
    using Pixel = TRC;
    static constexpr uint32_t moving = 0xFFFFFFFF;
};
template <>
struct Into<Whole<TRC>> : KeepingTheRest<MovingAll> {};

/// What becomes of the pixels of a block.
template <class Into, size_t vectors>
HWY_INLINE Pixels<vectors> blended(Pixels<vectors> pixels, const Pixels<vectors>& target, const auto& weight) {
    for (size_t k = 0; k < vectors; ++k) {
        const V8 moved = weight.template step<Into>(k, pixels.v[k], target.v[k]);
        pixels.v[k] = Into::finished(k, moved, target.v[k], weight);
    }
    return pixels;
}

/// What becomes of the pixels of a block that leaves some alone. A block without any coverage is not even loaded, and one
/// that is covered in full is not computed.
template <class Into>
HWY_INLINE void blendBlock(TRC* dst, size_t i, auto part, const auto& aim, const auto& weigh) {
    const auto weight = weigh.at(i, part, aim);
    if (weight.clear()) return;
    const auto target = aim.at(i, part);
    auto pixels = loadBlock(dst + i, part);
    if (weight.solid()) {
        for (size_t k = 0; k < part.vectors; ++k) pixels.v[k] = Into::merged(pixels.v[k], target.v[k]);
    } else {
        pixels = blended<Into>(pixels, target, weight);
    }
    storeBlock(dst + i, part, pixels);
}

template <class Coverage>
template <class Part>
HWY_INLINE Pixels<Part::vectors> Aim<LaidOn<Coverage>, TRC>::at(size_t i, Part part) const {
    const auto weight = weigh_.at(i, part, *this);
    Pixels<Part::vectors> pixels;
    for (size_t k = 0; k < Part::vectors; ++k) pixels.v[k] = weight.template step<Into<Colour>>(k, ground_, color_);
    return pixels;
}

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
