// SPDX-License-Identifier: MIT

// Division by alpha at every level. This file is compiled once for each vector level.
#include "compositing/restored.h"

#include <bit>
#include <numeric>
#include <utility>

#include "buffers/value_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/restored_rows.cpp"
#include "buffers/foreach_level.h"

#ifndef OMNAR_COMPOSITING_RESTORED_ONCE
#define OMNAR_COMPOSITING_RESTORED_ONCE
namespace omnar {

// Floats give the truncated quotients of the doubles for every value and alpha; buffers_test.cpp walks through all.
//
// Only whole quotients k = value * 255 / alpha are in doubt; others are 1 / 254 or more away from a whole number. With
// k = m * 2^n and m in [1, 2), the product of the doubles comes out below k if the relative error e by which 255.0 / alpha
// is too small outweighs the rounding to 53 bits, that is if m > 2^-53 / e. Floats that are too small by 160 * 2^-24, with
// the product raised by u of its units, 2^(n - 23) each, come out below k if m > u / 80. So each alpha needs a u on the
// same side of all its m; 160 is beyond all, and three others are enough.
constexpr float kNearly255 = static_cast<float>(255.0 * (1.0 - 160.0 / (1 << 24)));
constexpr unsigned kRaises[] = {160, 128, 112, 96};

/// What the vectors compute.
constexpr L08 restoredByFloats(unsigned value, unsigned alpha, unsigned raise) {
    const float product = static_cast<float>(value) * (kNearly255 / static_cast<float>(alpha));
    const float raised = std::bit_cast<float>(std::bit_cast<std::uint32_t>(product) + raise);
    return static_cast<L08>(std::min(std::max(static_cast<unsigned>(raised), value + 1), 255U));
}

/// The first of the raises that fits an alpha; 0 if none does.
constexpr unsigned raiseUnder(unsigned alpha) {
    for (const unsigned raise : kRaises) {
        const unsigned step = alpha / std::gcd(alpha, 255U);  // of values whose quotients are whole
        unsigned value = step;
        while (value < 256 && restoredByFloats(value, alpha, raise) == restored(value, alpha)) value += step;
        if (value >= 256) return raise;
    }
    return 0;
}

/// The alphas under which products are raised by `raise`.
template <unsigned raise>
constexpr std::array<unsigned char, 256> alphaFlags = [] {
    std::array<unsigned char, 256> flags{};
    for (unsigned alpha = 1; alpha < 255; ++alpha) flags[alpha] = raiseUnder(alpha) == raise;
    return flags;
}();
template <unsigned raise>
constexpr ValueSet alphasOf(alphaFlags<raise>.data());

static_assert(alphaFlags<0> == std::array<unsigned char, 256>{});

}  // namespace omnar
#endif

#include "buffers/value_set-inl.h"
#include "buffers/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

template <>
class Twin<Restored> {
public:
    HWY_INLINE explicit Twin(const Restored& operation)
        : row_(operation.cover.row()), raised128_(alphasOf<128>), raised112_(alphasOf<112>), raised96_(alphasOf<96>) {}
    HWY_INLINE V8 at(const L08* dst, size_t i, auto part) const {
        const D8 d;
        const V8 old = loadBlock(dst + i, part);
        const V8 alpha = loadBlock(row_ + i, part);
        const V8 one = hn::Set(d, 1);
        const V8 next = hn::Add(alpha, one);
        const auto stays = hn::Eq(hn::Min(next, one), next);  // under alpha 0 and 255
        if (hn::AllTrue(d, stays)) return old;

        V8 raise = hn::Sub(hn::Set(d, 160), hn::And(raised128_.contains(alpha), hn::Set(d, 160 - 128)));
        raise = hn::Sub(raise, hn::And(raised112_.contains(alpha), hn::Set(d, 160 - 112)));
        raise = hn::Sub(raise, hn::And(raised96_.contains(alpha), hn::Set(d, 160 - 96)));
        const V8 divisor = hn::Max(alpha, one);
        const auto quarter = [&](auto byteOf)
                                 HWY_ATTR { return quotient(byteOf(old), byteOf(divisor), byteOf(raise)); };
        V32 result = quarter([](V8 v) HWY_ATTR { return hn::And(hn::BitCast(D32(), v), hn::Set(D32(), 255)); });
        result = hn::Or(result, hn::ShiftLeft<8>(quarter([](V8 v) HWY_ATTR { return byteAt<8>(v); })));
        result = hn::Or(result, hn::ShiftLeft<16>(quarter([](V8 v) HWY_ATTR { return byteAt<16>(v); })));
        const V32 last = quarter([](V8 v) HWY_ATTR { return hn::ShiftRight<24>(hn::BitCast(D32(), v)); });
        const V8 quotients = bytes(hn::Or(result, hn::ShiftLeft<24>(last)));
        return hn::IfThenElse(stays, old, hn::Max(quotients, hn::SaturatedAdd(old, one)));
    }

private:
    using DI = hn::RebindToSigned<D32>;
    using DF = hn::RebindToFloat<D32>;

    template <int bits>
    HWY_INLINE static V32 byteAt(V8 v) {
        return hn::And(hn::ShiftRight<bits>(hn::BitCast(D32(), v)), hn::Set(D32(), 255));
    }

    HWY_INLINE static V32 quotient(V32 values, V32 alphas, V32 raise) {
        const DF d;
        const auto value = hn::ConvertTo(d, hn::BitCast(DI(), values));
        const auto alpha = hn::ConvertTo(d, hn::BitCast(DI(), alphas));
        const auto product = hn::Mul(value, hn::Div(hn::Set(d, kNearly255), alpha));
        const auto raised = hn::BitCast(d, hn::Add(hn::BitCast(D32(), product), raise));
        return hn::Min(hn::BitCast(D32(), hn::ConvertTo(DI(), raised)), hn::Set(D32(), 255));
    }

    const L08* row_;
    VectorSet<D8> raised128_;
    VectorSet<D8> raised112_;
    VectorSet<D8> raised96_;
};

/// Divisions pay in vectors of 32 bytes or more, and in rows that are not short. Else the scalar kernel's look-up is faster.
template <>
struct Walk<Restored> {
    HWY_INLINE static void rows(RowCursor<Restored> at, size_t n) {
        constexpr size_t worthDividing = 48;
        if (kBlock<L08> <= 16 || n < worthDividing) return ScalarKernel::rows({n, at.rowsLeft}, at.dst, at.operation);
        do walkRow(at.dst.row(), EveryBlock<Restored>{Twin<Restored>(at.operation)}, n);
        while (at.next());
    }
};

extern constexpr RestoredRows restoredTable = filledBy<VectorKernel>(RestoredRows{});

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

/// One constant for each alpha, since compilers limit the steps that they spend on one.
template <unsigned alpha>
constexpr std::array<L08, 256> restoredUnder = [] {
    std::array<L08, 256> values{};
    for (unsigned value = 0; value < 256; ++value) values[value] = restored(value, alpha);
    return values;
}();

template <unsigned... alphas>
constexpr std::array<std::array<L08, 256>, 256> restoredUnderEach(std::integer_sequence<unsigned, alphas...>) {
    return {restoredUnder<alphas>...};
}

}  // namespace

constinit const std::array<std::array<L08, 256>, 256> restoredValues =
    restoredUnderEach(std::make_integer_sequence<unsigned, 256>());

constexpr RestoredRows restoredTable = filledBy<ScalarKernel>(RestoredRows{});
constinit const Levels<RestoredRows> restoredRows{&restoredTable OMNAR_VECTOR_TABLES(restoredTable)};

}  // namespace omnar
#endif
