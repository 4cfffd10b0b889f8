// The vector twins of shades.h, compiled once for every level.
#if defined(OMNAR_TONE_SHADES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_SHADES_INL_H_
#undef OMNAR_TONE_SHADES_INL_H_
#else
#define OMNAR_TONE_SHADES_INL_H_
#endif

#include <concepts>
#include <type_traits>

#include "compositing/samples-inl.h"
#include "tone/shades.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Twin of Bands, in 16-bit lanes. The middle band weighs what the other two leave, so each of these counts with the sign
/// of its own flag less the middle one's.
class BandWeights {
public:
    HWY_INLINE BandWeights(Bands bands, uint16_t full)
        : full_(hn::Set(D16(), full)),
          base_(hn::Set(D16(), bands.middle ? full : 0)),
          light_(sign(bands.light, bands.middle)),
          dark_(sign(bands.dark, bands.middle)) {}

    /// Any number for ink above full.
    HWY_INLINE V16 ofInk(V16 ink) const {
        const V16 twice = hn::Add(ink, ink);
        return sum(hn::SaturatedSub(full_, twice), hn::SaturatedSub(twice, hn::Sub(full_, hn::Set(D16(), 1))));
    }
    HWY_INLINE V16 ofDarkness(V16 darkness) const {
        const V16 ofDark = hn::ShiftLeft<2>(hn::SaturatedSub(darkness, hn::Set(D16(), 127)));
        return sum(hn::SaturatedSub(full_, hn::Add(darkness, darkness)), hn::Min(ofDark, full_));
    }

private:
    HWY_INLINE static V16 sign(bool band, bool middle) { return hn::Set(D16(), static_cast<uint16_t>(band - middle)); }
    HWY_INLINE V16 sum(V16 ofLight, V16 ofDark) const {
        return hn::Add(base_, hn::Add(hn::Mul(ofLight, light_), hn::Mul(ofDark, dark_)));
    }

    V16 full_, base_, light_, dark_;
};

/// Twin of Shade::change for weights of 0..256 in 16-bit lanes; `whole` says that the opacity is 255.
template <bool whole>
HWY_INLINE V16 change(V16 alpha, V16 weight, V16 opacity) {
    const V16 product = hn::Mul(alpha, weight);
    if constexpr (whole) return dividedBy255(product);
    return dividedBy255(scaledWide(product, opacity));
}

/// An operation's twin gives with `shaded` what becomes of a block under the alpha of its pixels. If `clearStays`, a
/// block whose alpha is 0 throughout stays as it is. `every` says that no band is left out.
template <class Operation, bool whole, bool every, class Px = typename Operation::Pixel>
class Shading;

template <class Operation, bool whole, bool every>
class Shading<Operation, whole, every, L08> {
public:
    static constexpr bool clearStays = true;

    HWY_INLINE explicit Shading(const Shade& shade)
        : weights_(shade.bands, 255), opacity_(hn::Set(D8(), static_cast<uint8_t>(shade.opacity))) {
        const bool negative = shade.bands.middle && !shade.bands.dark && shade.opacity != 0;
        recoiling_ = hn::Set(D8(), negative ? 255 : 0);
    }

    HWY_INLINE V8 shaded(V8 ink, V8 alpha) const {
        if constexpr (darker) {
            const V8 shaded = hn::Add(hn::SaturatedAdd(ink, change(ink, alpha)), recoil(ink, alpha));
            return hn::IfThenZeroElse(isZero(ink), shaded);
        }
        return hn::Sub(hn::SaturatedSub(ink, change(ink, alpha)), recoil(ink, alpha));
    }

private:
    static constexpr bool darker = std::is_same_v<Operation, Darker<L08>>;

    /// The change where it is positive, at most 255.
    HWY_INLINE V8 change(V8 ink, V8 alpha) const {
        if constexpr (every && whole) return alpha;
        if constexpr (every) return scaledAlpha(alpha, opacity_);
        const V16 lowByte = hn::Set(D16(), 0x00FF);
        const V16 even = change(hn::And(words(ink), lowByte), hn::And(words(alpha), lowByte));
        const V16 odd = change(hn::ShiftRight<8>(words(ink)), hn::ShiftRight<8>(words(alpha)));
        return bytes(hn::Or(even, hn::ShiftLeft<8>(odd)));
    }
    HWY_INLINE V16 change(V16 ink, V16 alpha) const {
        const hn::RebindToSigned<D16> d;
        const V16 weight = hn::BitCast(D16(), hn::Max(hn::BitCast(d, weights_.ofInk(ink)), hn::Zero(d)));
        const V16 opacity = hn::ShiftRight<8>(words(opacity_));
        if constexpr (darker && !whole) return hn::MulHigh(hn::Mul(alpha, weight), opacity);
        return hn::Min(HWY_NAMESPACE::change<whole>(alpha, weight, opacity), hn::Set(D16(), 255));
    }

    /// -1 where the change is: under the middle band without the dark one, at full ink.
    HWY_INLINE V8 recoil(V8 ink, V8 alpha) const {
        const D8 d;
        if constexpr (every || !(whole || darker)) return hn::Zero(d);
        const auto tooLittle = hn::Lt(alpha, hn::Set(d, whole ? 255 : 1));
        const V8 full = hn::VecFromMask(d, hn::Eq(ink, hn::Set(d, 255)));
        return hn::IfThenZeroElse(tooLittle, hn::And(full, recoiling_));
    }

    BandWeights weights_;
    V8 opacity_, recoiling_;
};

template <class Operation, bool whole, bool every>
class Shading<Operation, whole, every, L12> {
public:
    static constexpr bool darker = std::is_same_v<Operation, Darker<L12>>;
    static constexpr bool clearStays = whole && !darker;

    HWY_INLINE explicit Shading(const Shade& shade)
        : weights_(shade.bands, Operation::full), opacity_(hn::Set(D16(), static_cast<uint16_t>(shade.opacity))) {}

    HWY_INLINE V16 shaded(V16 ink, V16 alpha) const {
        const V16 full = hn::Set(D16(), Operation::full);
        if constexpr (darker) return hn::Min(hn::SaturatedAdd(ink, more(ink, alpha)), full);
        if constexpr (whole) return hn::SaturatedSub(ink, alpha);
        const V16 more = scaledAlpha(alpha, opacity_);
        const V16 missing = hn::SaturatedSub(full, hn::SaturatedAdd(ink, more));
        return hn::Add(hn::Add(ink, more), missing);
    }

private:
    /// Any number for ink that is full already. Below that the weight is not negative and has no more than 12 bits.
    HWY_INLINE V16 more(V16 ink, V16 alpha) const {
        if constexpr (every) return alpha;
        const V16 weight = weights_.ofInk(ink);
        if constexpr (whole) return highOf4095Times(alpha, weight);
        return hn::ShiftRight<8>(highOf4095Times(hn::Mul(alpha, opacity_), weight));
    }

    /// The high half of 4095 * a * b, which wraps around at 32 bits. It is formed of both halves of the product a * b as
    /// 4096 times the product less the product.
    HWY_INLINE static V16 highOf4095Times(V16 a, V16 b) {
        const V16 hi = hn::MulHigh(a, b);
        const V16 lo = hn::Mul(a, b);
        const V16 shiftedHi = hn::Or(hn::ShiftLeft<12>(hi), hn::ShiftRight<4>(lo));
        const V16 borrow = hn::And(hn::VecFromMask(D16(), hn::Lt(hn::ShiftLeft<12>(lo), lo)), hn::Set(D16(), 1));
        return hn::Sub(shiftedHi, hn::Add(hi, borrow));
    }

    BandWeights weights_;
    V16 opacity_;
};

/// The alpha of each pixel in the lowest of its bytes, with 0 in the others.
constexpr auto kCoverToLow = shuffle([](size_t byte) { return byte % 4 == 0 ? byte / 4 : kNone; });

/// From the low half of each pixel, or from its high half, to both.
constexpr auto kLowToBoth = shuffle([](size_t byte) { return byte % 16 / 4 * 4 + byte % 2; });
constexpr auto kHighToBoth = shuffle([](size_t byte) { return byte % 16 / 4 * 4 + byte % 2 + 2; });

/// The byte everywhere but in the alpha
constexpr auto kLowToColour = shuffle([](size_t byte) { return byte % 4 == 3 ? kNone : byte % 16 / 4 * 4; });

/// What concerns a pixel as a whole stands in the low one of its two 16-bit lanes, with 0 in the high one.
template <class Operation, bool whole, bool every>
class Shading<Operation, whole, every, TRC> {
public:
    static constexpr bool clearStays = false;  // the darkest colours become black

    HWY_INLINE explicit Shading(const Shade& shade)
        : weights_(shade.bands, 255), opacity_(hn::Set(D16(), static_cast<uint16_t>(shade.opacity))) {}

    HWY_INLINE Pixels shaded(Pixels pixels, V8 alpha) const {
        for (size_t k = 0; k < kVectors; ++k) {
            const V8 low = hn::TableLookupBytesOr0(alpha, partOf(kCoverToLow, k));
            pixels.v[k] = shadedVector(pixels.v[k], words(low));
        }
        return pixels;
    }

private:
    HWY_INLINE V8 shadedVector(V8 old, V16 alpha) const {
        const D32 d;
        const V16 even = hn::And(words(old), hn::Set(D16(), 0x00FF));
        const V16 odd = hn::ShiftRight<8>(words(old));
        const V16 from = luminance(even, odd);
        const V16 to = target(from, change(from, alpha));

        // Multiplied by the ratio in two parts, whole and 16 bits of fraction.
        const hn::Repartition<int32_t, D8> di;
        const hn::Repartition<float, D8> df;
        const auto numerator = hn::ConvertTo(df, hn::BitCast(di, hn::ShiftLeft<16>(hn::BitCast(d, to))));
        const auto divisor = hn::ConvertTo(df, hn::Max(hn::BitCast(di, from), hn::Set(di, 1)));
        const auto ratio = hn::BitCast(D8(), hn::Add(hn::ConvertTo(di, hn::Div(numerator, divisor)), hn::Set(di, 1)));
        const V16 units = words(hn::TableLookupBytes(ratio, partOf(kHighToBoth, 0)));
        const V16 fraction = words(hn::TableLookupBytes(ratio, partOf(kLowToBoth, 0)));
        const V8 scaled = bytes(hn::Or(times(even, units, fraction), hn::ShiftLeft<8>(times(odd, units, fraction))));

        const auto unlit = hn::Eq(hn::BitCast(d, from), hn::Zero(d));
        const V8 grey = hn::TableLookupBytesOr0(bytes(to), partOf(kLowToColour, 0));
        const V8 colour = hn::BitCast(D8(), hn::IfThenElse(unlit, hn::BitCast(d, grey), hn::BitCast(d, scaled)));
        return hn::OrAnd(hn::And(old, everywhere(0xFF000000)), colour, everywhere(0x00FFFFFF));
    }

    HWY_INLINE static V16 luminance(V16 even, V16 odd) {
        const D32 d;
        const V16 blueAndRed = hn::Mul(even, hn::BitCast(D16(), hn::Set(d, 30 << 16 | 11)));
        const V16 green = hn::Mul(odd, hn::BitCast(D16(), hn::Set(d, 59)));
        const V32 halves = hn::BitCast(d, hn::Add(blueAndRed, green));
        const V32 sum = hn::ShiftRight<16>(hn::Add(halves, hn::ShiftLeft<16>(halves)));
        return hn::ShiftRight<3>(hn::MulHigh(hn::BitCast(D16(), sum), hn::Set(D16(), 5243)));
    }

    HWY_INLINE V16 change(V16 from, V16 alpha) const {
        if constexpr (every && whole) return alpha;
        if constexpr (every) return scaledAlpha(alpha, opacity_);
        const V16 weight = weights_.ofDarkness(hn::Xor(from, hn::Set(D16(), 255)));
        return HWY_NAMESPACE::change<whole>(alpha, weight, opacity_);
    }

    HWY_INLINE static V16 target(V16 from, V16 change) {
        if constexpr (std::is_same_v<Operation, Darker<TRC>>) return hn::SaturatedSub(from, change);
        return hn::Min(hn::Add(from, change), hn::Set(D16(), 255));
    }

    HWY_INLINE static V16 times(V16 channel, V16 units, V16 fraction) {
        return hn::Min(hn::Add(hn::Mul(channel, units), hn::MulHigh(channel, fraction)), hn::Set(D16(), 255));
    }

    BandWeights weights_;
    V16 opacity_;
};

HWY_INLINE V8 loadCover(D32, const L08* from, auto part) { return loadCover(from, part); }

template <class Shading, class Px>
class ShadeStep {
public:
    HWY_INLINE explicit ShadeStep(const Shade& shade) : shading_(shade), alpha_(shade.alpha.row()) {}

    HWY_INLINE auto at(const Px* dst, size_t i, auto part) const {
        return shading_.shaded(loadBlock(dst + i, part), loadCover(DOf<Px>(), alpha_ + i, part));
    }
    HWY_INLINE void write(Px* dst, size_t i, auto part) const {
        const auto alpha = loadCover(DOf<Px>(), alpha_ + i, part);
        if constexpr (Shading::clearStays) {
            if (hn::AllTrue(DOf<Px>(), isZero(alpha))) return;
        }
        storeBlock(dst + i, part, shading_.shaded(loadBlock(dst + i, part), alpha));
    }

private:
    Shading shading_;
    const L08* alpha_;
};

/// Opacity 255 and all bands are kernels of their own.
template <class Operation>
requires std::derived_from<Operation, Shade>
struct Walk<Operation> {
    using Px = typename Operation::Pixel;

    HWY_INLINE static void row(Px* dst, const Operation& operation, size_t n) {
        const bool whole = operation.opacity == 255;
        if (operation.bands.all()) {
            whole ? row<true, true>(dst, operation, n) : row<false, true>(dst, operation, n);
        } else {
            whole ? row<true, false>(dst, operation, n) : row<false, false>(dst, operation, n);
        }
    }

private:
    template <bool whole, bool every>
    HWY_INLINE static void row(Px* dst, const Operation& operation, size_t n) {
        walkRow(dst, ShadeStep<Shading<Operation, whole, every>, Px>(operation), n);
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
