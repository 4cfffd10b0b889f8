// SPDX-License-Identifier: MIT

// The vector kernels of shade.h, compiled once per vector level.
#if defined(OMNAR_TONE_SHADE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_SHADE_INL_H_
#undef OMNAR_TONE_SHADE_INL_H_
#else
#define OMNAR_TONE_SHADE_INL_H_
#endif

#include <concepts>
#include <type_traits>

#include "compositing/samples-inl.h"
#include "tone/luminance-inl.h"
#include "tone/shade.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Vector kernel of Bands, in 16-bit lanes. The middle band weighs what the other two leave, so that each of these
/// counts with its own flag less the middle one's.
class BandWeights {
public:
    HWY_INLINE BandWeights(Bands bands, uint16_t full)
        : full_(hn::Set(D16(), full)),
          base_(hn::Set(D16(), bands.middle ? full : 0)),
          light_(sign(bands.light, bands.middle)),
          dark_(sign(bands.dark, bands.middle)) {}

    /// Any number for ink above full.
    HWY_INLINE V16 inkWeight(V16 ink) const {
        const V16 twice = hn::Add(ink, ink);
        return sum(hn::SaturatedSub(full_, twice), hn::SaturatedSub(twice, hn::Sub(full_, hn::Set(D16(), 1))));
    }
    HWY_INLINE V16 luminanceWeight(V16 luminance) const {
        const V16 darkWeight = hn::ShiftLeft<2>(hn::SaturatedSub(hn::Set(D16(), 128), luminance));
        return sum(hn::SaturatedSub(hn::Add(luminance, luminance), full_), hn::Min(darkWeight, full_));
    }

private:
    HWY_INLINE static V16 sign(bool band, bool middle) { return hn::Set(D16(), static_cast<uint16_t>(band - middle)); }
    HWY_INLINE V16 sum(V16 lightWeight, V16 darkWeight) const {
        return hn::Add(base_, hn::Add(hn::Mul(lightWeight, light_), hn::Mul(darkWeight, dark_)));
    }

    V16 full_, base_, light_, dark_;
};

/// x * opacity / 65025 for 16-bit lanes x, as x * factor >> 32. `opaque` means that the opacity is 255.
///
/// The factor is too large by less than 1, and so the quotient by less than 2^16 / 2^32. The next integer is at least
/// 1 / 65025 away.
template <bool opaque>
class Share {
public:
    HWY_INLINE explicit Share(int opacity) {
        const uint64_t factor = ((static_cast<uint64_t>(opacity) << 32) + 65024) / 65025;
        high_ = hn::Set(D16(), static_cast<uint16_t>(factor >> 16));
        low_ = hn::Set(D16(), static_cast<uint16_t>(factor));
    }

    HWY_INLINE V16 apply(V16 x) const {
        if constexpr (opaque) return dividedBy255(x);
        const V16 fromLow = hn::MulHigh(x, low_);
        const V16 fraction = hn::Add(hn::Mul(x, high_), fromLow);
        const V16 carry = hn::And(hn::VecFromMask(D16(), hn::Lt(fraction, fromLow)), hn::Set(D16(), 1));
        return hn::Add(hn::MulHigh(x, high_), carry);
    }

private:
    V16 high_, low_;
};

/// The vector kernel of an operation: `shaded` returns a block shaded under its coverage, `shadeTransparent` shades a
/// block whose coverage is 0 throughout. `allBands` means that no band is left out.
template <class Operation, bool opaque, bool allBands, class Px = typename Operation::Pixel>
class Shading;

template <class Operation, bool opaque, bool allBands>
class Shading<Operation, opaque, allBands, L08> {
public:
    HWY_INLINE explicit Shading(const Shade& shade)
        : weights_(shade.bands, 255),
          opacity_(hn::Set(D8(), static_cast<uint8_t>(shade.opacity))),
          share_(shade.opacity),
          recoils_(hn::Set(D8(), shade.bands.middle && !shade.bands.dark && shade.opacity != 0 ? 255 : 0)) {}

    HWY_INLINE V8 shaded(V8 ink, V8 alpha) const {
        if constexpr (darker) {
            const V8 more = hn::Add(hn::SaturatedAdd(ink, change(ink, alpha)), recoil(ink, alpha));
            return hn::IfThenZeroElse(isZero(ink), more);
        }
        return hn::Sub(hn::SaturatedSub(ink, change(ink, alpha)), recoil(ink, alpha));
    }
    HWY_INLINE static void shadeTransparent(L08*, auto) {}

private:
    static constexpr bool darker = std::is_same_v<Operation, Darker<L08>>;

    /// The change where it is not negative, at most 255.
    HWY_INLINE V8 change(V8 ink, V8 alpha) const {
        if constexpr (allBands && opaque) return alpha;
        if constexpr (allBands) return scaledAlpha(alpha, opacity_);
        const V16 lowByte = hn::Set(D16(), 0x00FF);
        const V16 even = change(hn::And(words(ink), lowByte), hn::And(words(alpha), lowByte));
        const V16 odd = change(hn::ShiftRight<8>(words(ink)), hn::ShiftRight<8>(words(alpha)));
        return bytes(hn::Or(even, hn::ShiftLeft<8>(odd)));
    }
    HWY_INLINE V16 change(V16 ink, V16 alpha) const {
        const hn::RebindToSigned<D16> d;
        const V16 weight = hn::BitCast(D16(), hn::Max(hn::BitCast(d, weights_.inkWeight(ink)), hn::Zero(d)));
        const V16 product = hn::Mul(alpha, weight);
        if constexpr (darker && !opaque) return hn::MulHigh(product, hn::ShiftRight<8>(words(opacity_)));
        return hn::Min(share_.apply(product), hn::Set(D16(), 255));
    }

    /// -1 as a byte where the change is -1: at full ink under the middle band without the dark one, if the coverage
    /// suffices. 0 elsewhere.
    HWY_INLINE V8 recoil(V8 ink, V8 alpha) const {
        const D8 d;
        if constexpr (allBands || !(opaque || darker)) return hn::Zero(d);
        const auto tooLittle = hn::Lt(alpha, hn::Set(d, opaque ? 255 : 1));
        const auto full = hn::Eq(ink, hn::Set(d, 255));
        return hn::IfThenZeroElse(tooLittle, hn::IfThenElseZero(full, recoils_));
    }

    BandWeights weights_;
    V8 opacity_;
    Share<opaque> share_;
    V8 recoils_;
};

template <class Operation, bool opaque, bool allBands>
class Shading<Operation, opaque, allBands, L12> {
public:
    HWY_INLINE explicit Shading(const Shade& shade)
        : weights_(shade.bands, full), opacity_(hn::Set(D16(), static_cast<uint16_t>(shade.opacity))) {}

    HWY_INLINE V16 shaded(V16 ink, V16 alpha) const {
        const V16 maximum = hn::Set(D16(), full);
        if constexpr (darker) return hn::Min(hn::SaturatedAdd(ink, change(ink, alpha)), maximum);
        if constexpr (opaque) return hn::SaturatedSub(ink, alpha);
        const V16 more = scaledAlpha(alpha, opacity_);
        const V16 missing = hn::SaturatedSub(maximum, hn::SaturatedAdd(ink, more));
        return hn::Add(hn::Add(ink, more), missing);
    }
    HWY_INLINE static void shadeTransparent(L12* dst, auto part) {
        if constexpr (opaque && !darker) return;
        const V16 ink = loadBlock(dst, part);
        const V16 maximum = hn::Set(D16(), full);
        storeBlock(dst, part, darker ? hn::Min(ink, maximum) : hn::Max(ink, maximum));
    }

private:
    static constexpr bool darker = std::is_same_v<Operation, Darker<L12>>;
    static constexpr uint16_t full = fullOf<L12>;

    /// Any number for ink that is full. Below that the weight is not negative and fits 12 bits.
    HWY_INLINE V16 change(V16 ink, V16 alpha) const {
        if constexpr (allBands) return alpha;
        const V16 weight = weights_.inkWeight(ink);
        if constexpr (opaque) return highOf4095Times(alpha, weight);
        return hn::ShiftRight<8>(highOf4095Times(hn::Mul(alpha, opacity_), weight));
    }

    /// The high half of 4095 * a * b modulo 2^32: 4096 times the product less the product.
    HWY_INLINE static V16 highOf4095Times(V16 a, V16 b) {
        const V16 high = hn::MulHigh(a, b);
        const V16 low = hn::Mul(a, b);
        const V16 borrow = hn::And(hn::VecFromMask(D16(), hn::Lt(hn::ShiftLeft<12>(low), low)), hn::Set(D16(), 1));
        return hn::Sub(hn::Or(hn::ShiftLeft<12>(high), hn::ShiftRight<4>(low)), hn::Add(high, borrow));
    }

    BandWeights weights_;
    V16 opacity_;
};

// A number per true-colour pixel is in the lower of its two 16-bit lanes; the other lane is 0.

constexpr auto kCoverToLow = shuffle([](size_t byte) { return byte % 4 == 0 ? byte / 4 : kNone; });

/// From the low byte of each pixel to its colour bytes; from its low or high half to both halves.
constexpr auto kLowToColour = shuffle([](size_t byte) { return byte % 4 == 3 ? kNone : byte % 16 / 4 * 4; });
constexpr auto kLowToBoth = shuffle([](size_t byte) { return byte % 16 / 4 * 4 + byte % 2; });
constexpr auto kHighToBoth = shuffle([](size_t byte) { return byte % 16 / 4 * 4 + byte % 2 + 2; });

/// x * numerator / denominator for the channels of a pixel, as x * ratio >> 16. A denominator of 0 counts as 1.
///
/// The division is rounded by less than 1 / denominator, which is also the least distance of a quotient below the next
/// integer. The ratio is therefore too large by at most 1 and the product by 255 / 2^16, while the next integer is at
/// least 1 / 255 away.
class Ratio {
public:
    HWY_INLINE Ratio(V32 numerator, V32 denominator) {
        const hn::Repartition<int32_t, D8> d;
        const hn::Repartition<float, D8> df;
        const auto dividend = hn::ConvertTo(df, hn::BitCast(d, hn::ShiftLeft<16>(numerator)));
        const auto divisor = hn::ConvertTo(df, hn::BitCast(d, hn::Max(denominator, hn::Set(D32(), 1))));
        const auto ratio = hn::BitCast(D8(), hn::Add(hn::ConvertTo(d, hn::Div(dividend, divisor)), hn::Set(d, 1)));
        units_ = words(hn::TableLookupBytes(ratio, partOf(kHighToBoth, 0)));
        fraction_ = words(hn::TableLookupBytes(ratio, partOf(kLowToBoth, 0)));
    }
    HWY_INLINE V16 apply(V16 x) const { return hn::Add(hn::Mul(x, units_), hn::MulHigh(x, fraction_)); }

private:
    V16 units_, fraction_;
};

/// Vector kernel of omnar::relit.
HWY_INLINE V32 relit(V32 pixels, V32 oldLuminance, V32 newLuminance) {
    const D32 d;
    const V16 maximum = hn::Set(D16(), 255);
    const Ratio ratio(newLuminance, oldLuminance);
    const V16 blueAndRed = hn::And(words(bytes(pixels)), maximum);
    const V16 greenAndAlpha = hn::ShiftRight<8>(words(bytes(pixels)));
    const V16 even = hn::Min(ratio.apply(blueAndRed), maximum);
    const V16 odd = hn::Min(ratio.apply(greenAndAlpha), maximum);
    const V32 scaled = hn::BitCast(d, hn::Or(even, hn::ShiftLeft<8>(odd)));
    const V32 grey = hn::BitCast(d, hn::TableLookupBytesOr0(bytes(newLuminance), partOf(kLowToColour, 0)));
    const V32 colour = hn::IfThenElse(isZero(oldLuminance), grey, scaled);
    return hn::OrAnd(hn::And(pixels, hn::Set(d, 0xFF000000)), colour, hn::Set(d, 0x00FFFFFF));
}

template <class Operation, bool opaque, bool allBands>
class Shading<Operation, opaque, allBands, TRC> {
public:
    HWY_INLINE explicit Shading(const Shade& shade)
        : weights_(shade.bands, 255),
          opacity_(hn::Set(D16(), static_cast<uint16_t>(shade.opacity))),
          share_(shade.opacity) {}

    template <size_t vectors>
    HWY_INLINE Pixels<vectors> shaded(Pixels<vectors> pixels, V8 alpha) const {
        for (size_t k = 0; k < vectors; ++k) {
            const V32 old = hn::BitCast(D32(), pixels.v[k]);
            const V32 luma = luminance(old);
            const V16 shadedLuma =
                shadedLuminance(words(bytes(luma)), words(hn::TableLookupBytesOr0(alpha, partOf(kCoverToLow, k))));
            pixels.v[k] = bytes(relit(old, luma, hn::BitCast(D32(), shadedLuma)));
        }
        return pixels;
    }

    /// Pixels of luminance 0 become black.
    HWY_INLINE static void shadeTransparent(TRC* dst, auto part) {
        auto pixels = loadBlock(dst, part);
        for (V8& v : pixels.v) {
            const V32 old = hn::BitCast(D32(), v);
            const V32 black = hn::And(old, hn::Set(D32(), 0xFF000000));
            v = bytes(hn::IfThenElse(isZero(luminance(old)), black, old));
        }
        storeBlock(dst, part, pixels);
    }

private:
    HWY_INLINE V16 shadedLuminance(V16 luma, V16 alpha) const {
        if constexpr (std::is_same_v<Operation, Darker<TRC>>) return hn::SaturatedSub(luma, change(luma, alpha));
        return hn::Min(hn::Add(luma, change(luma, alpha)), hn::Set(D16(), 255));
    }
    HWY_INLINE V16 change(V16 luma, V16 alpha) const {
        if constexpr (allBands && opaque) return alpha;
        if constexpr (allBands) return scaledAlpha(alpha, opacity_);
        return share_.apply(hn::Mul(alpha, weights_.luminanceWeight(luma)));
    }

    BandWeights weights_;
    V16 opacity_;
    Share<opaque> share_;
};

/// One byte of coverage for each pixel of a block of true colour.
HWY_INLINE V8 loadCover(D32, const L08* alpha, auto part) { return loadCover(alpha, part); }

template <class Shading, class Px>
class ShadeStep {
public:
    HWY_INLINE explicit ShadeStep(const Shade& shade) : shading_(shade), alpha_(shade.alpha.row()) {}

    HWY_INLINE auto at(const Px* dst, size_t i, auto part) const {
        return shading_.shaded(loadBlock(dst + i, part), loadCover(DOf<Px>(), alpha_ + i, part));
    }
    HWY_INLINE void write(Px* dst, size_t i, auto part) const {
        const auto alpha = loadCover(DOf<Px>(), alpha_ + i, part);
        if (hn::AllTrue(hn::DFromV<decltype(alpha)>(), isZero(alpha))) return shading_.shadeTransparent(dst + i, part);
        storeBlock(dst + i, part, shading_.shaded(loadBlock(dst + i, part), alpha));
    }

private:
    Shading shading_;
    const L08* alpha_;
};

/// Opacity 255 and all bands have loops of their own.
template <class Operation>
requires std::derived_from<Operation, Shade>
struct Walk<Operation> {
    HWY_INLINE static void rows(RowCursor<Operation> at, size_t n) {
        const bool opaque = at.operation.opacity == 255;
        if (at.operation.bands.all()) {
            opaque ? rows<true, true>(at, n) : rows<false, true>(at, n);
        } else {
            opaque ? rows<true, false>(at, n) : rows<false, false>(at, n);
        }
    }

private:
    template <bool opaque, bool allBands>
    HWY_INLINE static void rows(RowCursor<Operation> at, size_t n) {
        using Step = ShadeStep<Shading<Operation, opaque, allBands>, typename Operation::Pixel>;
        const Fetching<Operation, false> fetching(at, n);
        do walkRow(at.dst.row(), Step(at.operation), n, fetching);
        while (at.next());
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
