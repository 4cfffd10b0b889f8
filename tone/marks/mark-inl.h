// SPDX-License-Identifier: MIT

// The vector kernels of mark.h, compiled once per vector level.
#if defined(OMNAR_TONE_MARKS_MARK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_MARKS_MARK_INL_H_
#undef OMNAR_TONE_MARKS_MARK_INL_H_
#else
#define OMNAR_TONE_MARKS_MARK_INL_H_
#endif

#include <limits>

#include "buffers/value_set-inl.h"
#include "compositing/truecolour-inl.h"
#include "hwy/cache_control.h"
#include "tone/luminance-inl.h"
#include "tone/marks/mark.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

template <class Target>
class Twin<Assign<Target>> {
public:
    HWY_INLINE explicit Twin(const Assign<Target>& operation) : aim_(operation.target) {}
    HWY_INLINE auto at(const TRC*, size_t i, auto part) const { return aim_.at(i, part); }

private:
    Aim<Target, TRC> aim_;
};

/// A step with non-temporal stores.
template <class Target>
struct StreamedBlocks : EveryBlock<Assign<Target>> {
    static constexpr bool streams = true;
    using EveryBlock<Assign<Target>>::write;

    HWY_INLINE void write(TRC* dst, size_t i, All part) const {
        const auto pixels = this->at(dst, i, part);
        for (size_t k = 0; k < kVectors; ++k) {
            hn::Stream(hn::BitCast(D32(), pixels.v[k]), D32(), dst + i + k * kPixelsPerVector);
        }
    }
};

/// The least working set in bytes for which non-temporal stores pay.
///
/// Measured with 64 MiB, against prefetched blocks. Cascade Lake, whose widest vector level is avx512 without byte
/// permutations: streamed copies take 1.3 times as long, streamed fills 1.5 times. Zen 4, which has them: streamed
/// copies gain 30 %, streamed fills lose 15 %. Zen 3, whose widest vector level is avx2: streamed fills gain 30 % to
/// 60 %.
template <class Target>
HWY_INLINE size_t streamedFrom() {
    constexpr size_t bytes = size_t{32} << 20;
#if HWY_TARGET == HWY_AVX3
    const bool pays = !std::is_same_v<Target, Flat> && permutesBytes();
    return pays ? bytes : std::numeric_limits<size_t>::max();
#else
    return bytes;
#endif
}

template <class Target>
struct Walk<Assign<Target>> {
    using Operation = Assign<Target>;

    HWY_INLINE static void rows(RowCursor<Operation> at, size_t n) {
        size_t bytesOfPixel = sizeof(TRC);
        at.operation.eachPlane([&](const auto& plane) { bytesOfPixel += sizeof(plane[0]); });
        constexpr size_t aligned = 8 * kBlock<TRC>;  // walkRow() aligns the blocks of rows of this length
        if (n < aligned || at.rowsLeft * n < streamedFrom<Target>() / bytesOfPixel) {
            return rows<EveryBlock<Operation>>(at, n);
        }
        rows<StreamedBlocks<Target>>(at, n);
        hwy::FlushStream();
    }

private:
    template <class Step>
    HWY_INLINE static void rows(RowCursor<Operation> at, size_t n) {
        const Fetching < Operation, !requires { Step::streams; }
        > fetching(at, n);
        do walkRow(at.dst.row(), Step{Twin<Operation>(at.operation)}, n, fetching);
        while (at.next());
    }
};

// Coverage.

/// 255 for pixels that differ from the key colour.
template <size_t vectors>
struct KeyCoverage {
    Pixels<vectors> pixels;
    V8 key;

    HWY_INLINE bool none() const {
        V8 differing = hn::Zero(D8());
        for (const V8& v : pixels.v) differing = hn::Or(differing, hn::Xor(v, key));
        return hn::AllTrue(D8(), hn::Eq(differing, hn::Zero(D8())));
    }
    HWY_INLINE V8 all(size_t k) const {
        const auto isKey = hn::Eq(hn::BitCast(D32(), pixels.v[k]), hn::BitCast(D32(), key));
        return bytes(hn::Not(hn::VecFromMask(D32(), isKey)));
    }
};

template <>
class Covering<NotKeyColor, TRC> {
public:
    HWY_INLINE explicit Covering(const NotKeyColor& coverage)
        : row_(coverage.plane.row()), key_(everywhere(coverage.key)) {}
    template <class Part>
    HWY_INLINE KeyCoverage<Part::vectors> at(size_t i, Part part, const auto& /*aim*/) const {
        return {loadBlock(row_ + i, part), key_};
    }

private:
    const TRC* row_;
    V8 key_;
};

template <>
class Covering<ChosenValues, TRC> {
public:
    HWY_INLINE explicit Covering(const ChosenValues& coverage) : row_(coverage.plane.row()), values_(coverage.values) {}
    HWY_INLINE PlaneCoverage at(size_t i, auto part, const auto& /*aim*/) const {
        return {values_.contains(loadCover(row_ + i, part))};
    }

private:
    const L08* row_;
    VectorSet<D8> values_;
};

template <>
class Covering<Background, TRC> {
public:
    HWY_INLINE explicit Covering(const Background& coverage)
        : layers_(coverage.layers),
          indices_(coverage.indices),
          count_(coverage.count),
          offset_(coverage.count > 0 ? coverage.offset() : 0) {}
    HWY_INLINE PlaneCoverage at(size_t i, auto part, const auto& /*aim*/) const {
        V8 any = hn::Zero(D8());
        for (int k = 0; k < count_; ++k) any = hn::Or(any, loadCover(layers_[indices_[k]] + offset_ + i, part));
        return {hn::VecFromMask(D8(), hn::Eq(any, hn::Zero(D8())))};
    }

private:
    const L08* const* layers_;
    const int* indices_;
    int count_;
    std::ptrdiff_t offset_;
};

/// The mark as the high byte of the target of OutsideLimits.
class LimitMarks {
public:
    HWY_INLINE explicit LimitMarks(const OutsideLimits& limits)
        : row_(limits.plane.row()), low_(hn::Set(D8(), limits.low)), high_(hn::Set(D8(), limits.high)) {}
    HWY_INLINE V8 marks(size_t i, auto part) const {
        const D8 d;
        const V8 values = loadCover(row_ + i, part);
        const auto notAbove = hn::Eq(hn::Min(values, high_), values);
        const auto notBelow = hn::Eq(hn::Max(values, low_), values);
        const V8 above = hn::IfThenZeroElse(notAbove, hn::Set(d, 0x40));
        const V8 mark = hn::IfThenElse(notBelow, above, hn::Set(d, 0x80));
        return hn::IfThenZeroElse(hn::Eq(values, hn::Zero(d)), mark);
    }

private:
    const L08* row_;
    V8 low_;
    V8 high_;
};

template <>
class Covering<OutsideLimits, TRC> : LimitMarks {
public:
    HWY_INLINE explicit Covering(const OutsideLimits& limits) : LimitMarks(limits) {}
    HWY_INLINE PlaneCoverage at(size_t i, auto part, const auto& /*aim*/) const { return {marks(i, part)}; }
};

// Targets.

template <>
class Aim<OutsideLimits, TRC> : LimitMarks {
public:
    HWY_INLINE explicit Aim(const OutsideLimits& limits) : LimitMarks(limits) {}

    /// The mark in all bytes, of which the destination takes the alpha byte.
    HWY_INLINE auto at(size_t i, auto part) const { return PlaneCoverage{marks(i, part)}.pixels(part); }
};

template <>
class Aim<Shaded, TRC> {
public:
    HWY_INLINE explicit Aim(const Shaded& target)
        : row_(target.source.row()),
          color_(everywhere(target.color)),
          contrast_(hn::Set(D(), target.contrast)),
          brightness_(hn::Set(D(), target.brightness)) {}
    HWY_INLINE auto at(size_t i, auto part) const {
        static constexpr auto even = doubling(MovingColour::moving, 0);
        static constexpr auto odd = doubling(MovingColour::moving, 1);
        auto pixels = loadBlock(row_ + i, part);
        for (V8& pixel : pixels.v) {
            const V32 light = lightOf(luminance(hn::BitCast(D32(), pixel)));
            const V32 factorHigh = hn::Or(hn::ShiftLeft<8>(light), hn::ShiftLeft<24>(light));
            const V16 factor = hn::Or(words(bytes(factorHigh)), hn::Set(D16(), 1));
            pixel = toward(color_, everywhere(0xFFFFFFFF), factor, factor, partOf(even, 0), partOf(odd, 0));
        }
        return pixels;
    }

private:
    using DI = hn::RebindToSigned<D32>;
    using DHalf = hn::Half<DI>;
    using D = hn::Rebind<double, DHalf>;

    /// Vector kernel of Shaded::light, also in double precision.
    HWY_INLINE V32 lightOf(V32 luminance) const {
        const auto integers = hn::BitCast(DI(), luminance);
        const auto lower = lightOfHalf(hn::LowerHalf(DHalf(), integers));
        const auto upper = lightOfHalf(hn::UpperHalf(DHalf(), integers));
        return hn::BitCast(D32(), hn::Combine(DI(), upper, lower));
    }
    HWY_INLINE hn::Vec<DHalf> lightOfHalf(hn::Vec<DHalf> luminance) const {
        const D d;
        const auto centred = hn::Sub(hn::PromoteTo(d, luminance), hn::Set(d, 127.5));
        const auto light = hn::Add(hn::Mul(centred, contrast_), brightness_);
        return hn::DemoteTo(DHalf(), hn::Min(hn::Max(light, hn::Zero(d)), hn::Set(d, 255.0)));
    }

    const TRC* row_;
    V8 color_;
    hn::Vec<D> contrast_;
    hn::Vec<D> brightness_;
};

// Destinations.

template <>
struct Into<ColourOrOverwrite> : MovingColour {
    HWY_INLINE static V8 merged(V8, V8 target) { return target; }
    HWY_INLINE static V8 finished(size_t k, V8 moved, V8 target, const auto& weight) {
        const auto full = hn::Eq(weight.coverage.all(k), hn::Set(D8(), 255));
        return hn::IfThenElse(full, target, moved);
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
