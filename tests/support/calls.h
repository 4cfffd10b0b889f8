// SPDX-License-Identifier: MIT
/// @file
/// Shared by the tests of functions without pixels: random arguments rich in edge cases, and checksums of the results.
#pragma once

#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <ostream>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/support/random.h"

namespace support {

struct Point {
    double x, y;
    bool operator==(const Point&) const = default;
    friend std::ostream& operator<<(std::ostream& out, Point p) { return out << "(" << p.x << ", " << p.y << ")"; }
};

/// The elements that an output parameter addresses.
inline constexpr int outputSize = 6;

class Input : public Random {
public:
    using Random::Random;

    int between(int low, int high) { return low + static_cast<int>(below(static_cast<unsigned>(high - low) + 1)); }
    bool coin() { return oneIn(2); }
    _EDropKind layout() { return coin() ? eDropVertical : eDropHorizontal; }

    /// Any int: near the origin, anywhere, or an edge value.
    int position() {
        constexpr int edges[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
        return oneIn(4) ? edges[below(std::size(edges))] : coin() ? between(-500, 500) : static_cast<int>(next() >> 32);
    }
    /// 1 to 2^31 - 1, mostly small.
    unsigned size() { return oneIn(8) ? 1 + below(INT_MAX) : oneIn(8) ? INT_MAX : 1 + below(100); }
    /// 1 to 2^32 - 1.
    unsigned anySize() { return oneIn(4) ? 0x80000000U + below(0x80000000U) : size(); }
    /// A multiple of 1/8 in [-500, 500], so that sums and small multiples are exact.
    double eighth() { return between(-4000, 4000) / 8.0; }
    /// Any double except the infinities; NaN is included.
    double fraction() {
        constexpr double edges[] = {NAN, -0.0, 0.0, 1e-300, -1.0, 1e300, 2147483647.5, 2147483648.0};
        return oneIn(4) ? edges[below(std::size(edges))] : coin() ? eighth() : position() * 0x1p-11;
    }

    /// Draws an argument by its type. An output pointer addresses `outputSize` elements.
    void draw(int& argument) { argument = position(); }
    void draw(unsigned& argument) { argument = anySize(); }
    void draw(double& argument) { argument = fraction(); }
    void draw(unsigned char& argument) { argument = static_cast<unsigned char>(below(3)); }
    void draw(bool& argument) { argument = coin(); }
    void draw(_EDropKind& argument) { argument = layout(); }
    template <class T>
    void draw(T*& argument) {
        static T outputs[8][outputSize];
        argument = outputs[slot_++ % std::size(outputs)];
    }

private:
    unsigned slot_ = 0;
};

/// The return value and the output elements of a call. Outputs hold 7 before the call.
template <class R, class... A>
std::vector<double> resultsOf(R (*function)(A...), std::tuple<std::decay_t<A>...>& arguments) {
    std::vector<double> results;
    const auto eachOutput = [&](const auto& act) {
        const auto one = [&](auto& argument) {
            if constexpr (std::is_pointer_v<std::decay_t<decltype(argument)>>) act(argument);
        };
        std::apply([&](auto&... each) { (one(each), ...); }, arguments);
    };
    eachOutput([](auto* out) { std::fill_n(out, outputSize, std::decay_t<decltype(*out)>{7}); });
    if constexpr (std::is_void_v<R>) {
        std::apply(function, arguments);
    } else {
        results.push_back(std::apply(function, arguments));
    }
    eachOutput([&](auto* out) { results.insert(results.end(), out, out + outputSize); });
    return results;
}

/// Whether results are equal bit for bit on every platform, or only after rounding to float, as those of sines.
enum class Bits { exact, platform };

/// Calls the function 4000 times with random arguments. Expects the results to have the checksum `expected`, and to equal
/// those of the model if there is one.
template <class R, class... A>
void expectChecksum(const char* name, R (*function)(A...), std::uint64_t expected,
                    std::type_identity_t<R (*)(A...)> model = nullptr, Bits bits = Bits::exact) {
    Input random(7);
    std::uint64_t sum = 0;
    for (int i = 0; i < 4000; ++i) {
        std::tuple<std::decay_t<A>...> arguments;
        std::apply([&](auto&... each) { (random.draw(each), ...); }, arguments);
        const std::vector<double> values = resultsOf(function, arguments);
        if (model != nullptr) {
            const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
            const std::vector<double> modelled = resultsOf(model, arguments);
            ASSERT_TRUE(std::equal(values.begin(), values.end(), modelled.begin(), same))
                << name << testing::PrintToString(arguments) << " gives " << testing::PrintToString(values)
                << ", the model " << testing::PrintToString(modelled);
        }
        for (const double exact : values) {
            const double value = bits == Bits::exact ? exact : static_cast<float>(exact);
            const std::uint64_t mixed = std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value);
            sum = (std::rotl(sum, 23) ^ mixed) * 0x9E3779B97F4A7C15U;  // the bits of a NaN differ between platforms
        }
    }
    EXPECT_EQ(sum, expected) << name;
}

/// Folds any number of values into the six elements that expectChecksum() reads.
template <class Values, class T>
void fold(const Values& values, T* six) {
    std::uint64_t sum = 0;
    for (const auto value : values) sum = (sum ^ static_cast<std::uint64_t>(value)) * 0x9E3779B97F4A7C15U >> 8;
    for (int i = 0; i < outputSize; ++i) six[i] = static_cast<T>(sum >> 9 * i & 511);
}

}  // namespace support
