// SPDX-License-Identifier: MIT

// Division by alpha at every level. This file is compiled once for each vector level.
#include "compositing/restored.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/restored_rows.cpp"
#include "buffers/foreach_level.h"

#ifndef OMNAR_COMPOSITING_RESTORED_ONCE
#define OMNAR_COMPOSITING_RESTORED_ONCE
namespace omnar {

/// Floats that give the truncated quotients of the doubles for every value and alpha (members_test.cpp walks through all).
///
/// Of a product value * (255 / alpha) only whole quotients are in doubt; all others are 1 / 254 or more away from a whole
/// number. A whole quotient k comes out below k if the relative error e by which the double 255.0 / alpha is too small
/// outweighs the rounding to 53 bits: if m * e > 2^-53, with k = m * 2^n and m in [1, 2). The same holds with other numbers:
/// here the rounding adds 2^(n - 16), half a unit of the 16th bit, so that the float has to be too small by e * 2^37.
constexpr unsigned kHalfUnit = 1U << 7;
constexpr std::array<float, 256> floatQuotients = [] {
    std::array<float, 256> quotients{};
    for (unsigned alpha = 1; alpha < 256; ++alpha) {
        const double quotient = alphaQuotients[alpha];
        const double high = static_cast<float>(quotient);  // both parts have exact products
        const double error = (255.0 - high * alpha - (quotient - high) * alpha) / 255.0;
        const double tooSmall = error > 0.0 ? error * static_cast<double>(std::uint64_t{1} << 37) : 0.0;
        quotients[alpha] = static_cast<float>(quotient - quotient * tooSmall);
    }
    return quotients;
}();

}  // namespace omnar
#endif

#include "buffers/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

template <>
class Twin<Restored> {
public:
    HWY_INLINE explicit Twin(const Restored& operation) : row_(operation.cover.row()) {}
    HWY_INLINE V8 at(const L08* dst, size_t i, auto part) const {
        const D8 d;
        const V8 old = loadBlock(dst + i, part);
        const V8 alpha = loadBlock(row_ + i, part);
        const V8 one = hn::Set(d, 1);
        const V8 next = hn::Add(alpha, one);
        const auto stays = hn::Eq(hn::Min(next, one), next);  // under alpha 0 and 255
        if (hn::AllTrue(d, stays)) return old;

        const V32 values = hn::BitCast(D32(), old), alphas = hn::BitCast(D32(), alpha);
        V32 result = quotient(lowByte(values), lowByte(alphas));
        result = hn::Or(result, hn::ShiftLeft<8>(quotient(byteAt<8>(values), byteAt<8>(alphas))));
        result = hn::Or(result, hn::ShiftLeft<16>(quotient(byteAt<16>(values), byteAt<16>(alphas))));
        result = hn::Or(result, hn::ShiftLeft<24>(quotient(hn::ShiftRight<24>(values), hn::ShiftRight<24>(alphas))));
        return hn::IfThenElse(stays, old, bytes(result));
    }

private:
    using DI = hn::RebindToSigned<D32>;
    using DF = hn::RebindToFloat<D32>;

    HWY_INLINE static V32 lowByte(V32 v) { return hn::And(v, hn::Set(D32(), 255)); }
    template <int bits>
    HWY_INLINE static V32 byteAt(V32 v) {
        return lowByte(hn::ShiftRight<bits>(v));
    }

    HWY_INLINE static V32 quotient(V32 values, V32 alphas) {
        const DF d;
        const auto value = hn::ConvertTo(d, hn::BitCast(DI(), values));
        const auto factor = hn::GatherIndex(d, floatQuotients.data(), hn::BitCast(DI(), alphas));
        // Arithmetic with the tiny number that half a unit alone would be takes processors a hundred cycles.
        const auto product = hn::Max(hn::Mul(value, factor), hn::Set(d, 1e-20F));
        const auto raised = hn::BitCast(d, hn::Add(hn::BitCast(D32(), product), hn::Set(D32(), kHalfUnit)));
        const auto byLessThanOne = hn::Lt(hn::Sub(raised, value), hn::Set(d, 1.0F));
        const auto quotient = hn::IfThenElse(byLessThanOne, hn::Add(raised, hn::Set(d, 1.0F)), raised);
        return hn::BitCast(D32(), hn::ConvertTo(DI(), hn::Min(quotient, hn::Set(d, 255.0F))));
    }

    const L08* row_;
};

extern constexpr RestoredRows restoredTable = filledBy<VectorKernel>(RestoredRows{});

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr RestoredRows restoredTable = filledBy<ScalarKernel>(RestoredRows{});
constinit const Levels<RestoredRows> restoredRows{&restoredTable OMNAR_VECTOR_TABLES(restoredTable)};

}  // namespace omnar
#endif
