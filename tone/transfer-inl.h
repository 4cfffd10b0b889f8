// SPDX-License-Identifier: MIT

// The vector kernels of transfer.h, compiled once per vector level.
#if defined(OMNAR_TONE_TRANSFER_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_TONE_TRANSFER_INL_H_
#undef OMNAR_TONE_TRANSFER_INL_H_
#else
#define OMNAR_TONE_TRANSFER_INL_H_
#endif

#include "buffers/value_set-inl.h"
#include "compositing/samples-inl.h"
#include "compositing/truecolour-inl.h"
#include "tone/luminance-inl.h"
#include "tone/transfer.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

template <>
class Covering<Tint, TRC> {
public:
    HWY_INLINE explicit Covering(const Tint& tint)
        : ink_(tint.ink.row()), cover_(tint.plane.row()), opacity_(hn::Set(D8(), static_cast<L08>(tint.opacity))) {}
    HWY_INLINE PlaneCoverage at(size_t i, auto part, const auto& /*aim*/) const {
        return {scaledSamples(loadCover(ink_ + i, part), scaledAlpha(loadCover(cover_ + i, part), opacity_))};
    }

private:
    const L08* ink_;
    const L08* cover_;
    V8 opacity_;
};

template <>
class Covering<Unprotected, L08> {
public:
    HWY_INLINE explicit Covering(const Unprotected& alphaPlane)
        : row_(alphaPlane.plane.row()),
          source_(alphaPlane.source.row()),
          protectedValues_(alphaPlane.protectedValues) {}
    HWY_INLINE V8 at(size_t i, auto part) const {
        return hn::AndNot(protectedValues_.contains(loadBlock(source_ + i, part)), loadBlock(row_ + i, part));
    }

private:
    const L08* row_;
    const L08* source_;
    VectorSet<D8> protectedValues_;
};

template <>
class Aim<InkGrey, TRC> {
public:
    HWY_INLINE explicit Aim(const InkGrey& target) : row_(target.plane.row()) {}
    HWY_INLINE auto at(size_t i, auto part) const {
        return PlaneCoverage{hn::Not(loadCover(row_ + i, part))}.pixels(part);
    }

private:
    const L08* row_;
};

template <>
class Aim<Darkness, L08> {
public:
    HWY_INLINE explicit Aim(const Darkness& target) : row_(target.plane.row()) {}
    HWY_INLINE V8 at(size_t i, auto part) const {
        return hn::Not(byteOfEach(row_ + i, part, [](V32 pixels) HWY_ATTR { return luminance(pixels); }));
    }

private:
    const TRC* row_;
};

template <class Target, unsigned limit>
class Aim<FullAbove<Target, limit>, L08> {
public:
    HWY_INLINE explicit Aim(const FullAbove<Target, limit>& target) : target_(target.target) {}
    HWY_INLINE V8 at(size_t i, auto part) const {
        const V8 above = hn::SaturatedSub(target_.at(i, part), hn::Set(D8(), limit));
        return hn::IfThenZeroElse(isZero(above), hn::Set(D8(), 255));
    }

private:
    Aim<Target, L08> target_;
};

template <>
struct Into<SaturatedSum> {
    static constexpr bool clearStays = true;

    HWY_INLINE static V8 step(V8 old, V8 target, auto weights) {
        return hn::SaturatedAdd(old, scaledSamples(target, weights));
    }
};

template <class Base>
struct Into<ErasedWithoutInk<Base>> {
    static constexpr bool clearStays = false;  // a pixel may be erased at weight 0

    HWY_INLINE static V8 stepByCoverage(V8 old, V8 target, const auto& weights) {
        const V8 cleared = hn::IfThenElseZero(isZero(weights.coverage), old);
        return hn::IfThenElse(isZero(target), cleared, Into<Base>::step(old, target, weights.values));
    }
};

/// For p = distance * weight, a step up is p / 255 and a step down is (p + 253) / 255 - 1, or 0 if p is 0.
template <>
struct Into<UnsignedSample> {
    static constexpr bool clearStays = true;

    HWY_INLINE static V8 step(V8 old, V8 target, auto weights) {
        const D16 d;
        const V16 lowByte = hn::Set(d, 0x00FF);
        const auto half = [&](auto halfOf) HWY_ATTR {
            const V16 from = halfOf(old), to = halfOf(target), weight = halfOf(valuesOf(weights));
            const V16 up = hn::Mul(hn::SaturatedSub(to, from), weight);
            const V16 down = hn::Mul(hn::SaturatedSub(from, to), weight);
            const V16 downBy = hn::Sub(dividedBy255(hn::Add(down, hn::Set(d, 253))), hn::Set(d, 1));
            return hn::Sub(hn::Add(from, dividedBy255(up)), hn::IfThenZeroElse(isZero(down), downBy));
        };
        const V16 even = half([&](V8 v) HWY_ATTR { return hn::And(words(v), lowByte); });
        const V16 odd = half([&](V8 v) HWY_ATTR { return hn::ShiftRight<8>(words(v)); });
        return bytes(hn::OrAnd(hn::ShiftLeft<8>(odd), even, lowByte));
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
