// SPDX-License-Identifier: MIT

// The kernels of division by alpha, compiled once for every vector level.
#include "compositing/unpremultiply.h"

#include <bit>
#include <numeric>
#include <utility>

#include "buffers/value_set.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/unpremultiply_rows.cpp"
#include "buffers/foreach_level.h"

#ifndef OMNAR_COMPOSITING_UNPREMULTIPLY_ONCE
#define OMNAR_COMPOSITING_UNPREMULTIPLY_ONCE
namespace omnar {

// Floats give the truncated quotients of the doubles for every value and alpha; buffers_test.cpp tests all of them.
//
// Only integer quotients k = value * 255 / alpha are critical; all others are at least 1 / 254 away from an integer.
// Let k = m * 2^n with m in [1, 2), and let e be the relative error by which 255.0 / alpha is too small. The product of
// the doubles is below k if e exceeds the rounding to 53 bits, that is if m > 2^-53 / e. Floats too small by 160 *
// 2^-24, whose product is raised by u units of 2^(n - 23), are below k if m > u / 80. Each alpha therefore needs a u
// whose u / 80 splits its m as 2^-53 / e does. For u = 160 no m is above the bound; three more values of u cover every
// alpha.
constexpr float kNearly255 = static_cast<float>(255.0 * (1.0 - 160.0 / (1 << 24)));
constexpr unsigned kRaises[] = {160, 128, 112, 96};

/// The arithmetic of the vector kernel.
constexpr L08 unpremultipliedByFloats(unsigned value, unsigned alpha, unsigned raise) {
    const float product = static_cast<float>(value) * (kNearly255 / static_cast<float>(alpha));
    const float raised = std::bit_cast<float>(std::bit_cast<std::uint32_t>(product) + raise);
    return static_cast<L08>(std::min(std::max(static_cast<unsigned>(raised), value + 1), 255U));
}

/// The first of kRaises that is right for every value under `alpha`; 0 if none is.
constexpr unsigned raiseUnder(unsigned alpha) {
    for (const unsigned raise : kRaises) {
        const unsigned step = alpha / std::gcd(alpha, 255U);  // between values with integer quotients
        unsigned value = step;
        while (value < 256 && unpremultipliedByFloats(value, alpha, raise) == unpremultiplied(value, alpha))
            value += step;
        if (value >= 256) return raise;
    }
    return 0;
}

/// The alphas whose products are raised by `raise`.
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
class Twin<Unpremultiplied> {
public:
    HWY_INLINE explicit Twin(const Unpremultiplied& operation)
        : row_(operation.cover.row()), raised128_(alphasOf<128>), raised112_(alphasOf<112>), raised96_(alphasOf<96>) {}
    HWY_INLINE V8 at(const L08* dst, size_t i, auto part) const {
        const D8 d;
        const V8 old = loadBlock(dst + i, part);
        const V8 alpha = loadBlock(row_ + i, part);
        const V8 one = hn::Set(d, 1);
        const V8 next = hn::Add(alpha, one);
        const auto stays = hn::Eq(hn::Min(next, one), next);  // alpha 0 or 255
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

/// Divides in vectors of 32 bytes or more and in rows of at least 48 pixels; elsewhere the scalar kernel's look-up is
/// faster.
template <>
struct Walk<Unpremultiplied> {
    HWY_INLINE static void rows(RowCursor<Unpremultiplied> at, size_t n) {
        constexpr size_t shortestDivided = 48;
        if (kBlock<L08> <= 16 || n < shortestDivided) return ScalarKernel::rows({n, at.rowsLeft}, at.dst, at.operation);
        do walkRow(at.dst.row(), EveryBlock<Unpremultiplied>{Twin<Unpremultiplied>(at.operation)}, n);
        while (at.next());
    }
};

extern constexpr UnpremultiplyRows unpremultiplyTable = filledBy<VectorKernel>(UnpremultiplyRows{});

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

/// One constant for each alpha: compilers limit the evaluation steps of a single constant.
template <unsigned alpha>
constexpr std::array<L08, 256> unpremultipliedUnder = [] {
    std::array<L08, 256> values{};
    for (unsigned value = 0; value < 256; ++value) values[value] = unpremultiplied(value, alpha);
    return values;
}();

template <unsigned... alphas>
constexpr std::array<std::array<L08, 256>, 256> unpremultipliedUnderEach(std::integer_sequence<unsigned, alphas...>) {
    return {unpremultipliedUnder<alphas>...};
}

}  // namespace

constinit const std::array<std::array<L08, 256>, 256> unpremultipliedValues =
    unpremultipliedUnderEach(std::make_integer_sequence<unsigned, 256>());

constexpr UnpremultiplyRows unpremultiplyTable = filledBy<ScalarKernel>(UnpremultiplyRows{});
constinit const Levels<UnpremultiplyRows> unpremultiplyRows{
    &unpremultiplyTable OMNAR_VECTOR_TABLES(unpremultiplyTable)};

}  // namespace omnar
#endif
