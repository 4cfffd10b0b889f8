/// @file
/// What the tests of functions without pixels share: input that is rich in edges, checksums, and calls that break a
/// contract.
#pragma once

#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <ostream>
#include <string>
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

class Input : public Random {
public:
    using Random::Random;

    int between(int low, int high) { return low + static_cast<int>(below(static_cast<unsigned>(high - low) + 1)); }
    bool coin() { return oneIn(2); }
    _EDropKind layout() { return coin() ? eDropVertical : eDropHorizontal; }

    /// Any position: near the origin, anywhere, or on the rim of what an int holds.
    int position() {
        constexpr int edges[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
        return oneIn(4) ? edges[below(7)] : coin() ? between(-500, 500) : static_cast<int>(next() >> 32);
    }
    /// 1 to 2^31 - 1, mostly small.
    unsigned size() { return oneIn(8) ? 1 + below(INT_MAX) : oneIn(8) ? INT_MAX : 1 + below(100); }
    /// 1 to 2^32 - 1.
    unsigned anySize() { return oneIn(4) ? 0x80000000U + below(0x80000000U) : size(); }
    /// A multiple of 1/8 that is not far from the origin, so that sums and small multiples of it are exact.
    double eighth() { return between(-4000, 4000) / 8.0; }
    /// Anything but the infinities.
    double fraction() {
        constexpr double edges[] = {NAN, -0.0, 0.0, 1e-300, -1.0, 1e300, 2147483647.5, 2147483648.0};
        return oneIn(4) ? edges[below(8)] : coin() ? eighth() : position() * 0x1p-11;
    }

    /// An argument by its type; a pointer to six elements for outputs.
    void draw(int& argument) { argument = position(); }
    void draw(unsigned& argument) { argument = anySize(); }
    void draw(double& argument) { argument = fraction(); }
    void draw(unsigned char& argument) { argument = static_cast<unsigned char>(below(3)); }
    void draw(bool& argument) { argument = coin(); }
    void draw(_EDropKind& argument) { argument = layout(); }
    template <class T>
    void draw(T*& argument) {
        static T outputs[8][6];
        argument = outputs[slot_++ % 8];
        std::fill_n(argument, 6, T{7});
    }

private:
    unsigned slot_ = 0;
};

/// Expects what thousands of calls of a function write and return to come to one number, on every platform. Where their
/// last bits are the platform's own, as those of sines are, `coarse` rounds them off.
template <class R, class... A>
void expectChecksum(const char* name, R (*function)(A...), std::uint64_t expected, bool coarse = false) {
    Input random(7);
    std::uint64_t sum = 0;
    const auto mix = [&](double exact) {
        const double value = coarse ? static_cast<float>(exact) : exact;  // a NaN's bits are the platform's own, too
        const std::uint64_t bits = std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value);
        sum = (std::rotl(sum, 23) ^ bits) * 0x9E3779B97F4A7C15U;
    };
    const auto mixWritten = [&](const auto& argument) {
        if constexpr (std::is_pointer_v<std::decay_t<decltype(argument)>>) std::for_each_n(argument, 6, mix);
    };
    for (int i = 0; i < 4000; ++i) {
        std::tuple<std::decay_t<A>...> arguments;
        std::apply([&](auto&... each) { (random.draw(each), ...); }, arguments);
        if constexpr (std::is_void_v<R>) {
            std::apply(function, arguments);
        } else {
            mix(std::apply(function, arguments));
        }
        std::apply([&](const auto&... each) { (mixWritten(each), ...); }, arguments);
    }
    EXPECT_EQ(sum, expected) << name;
}

#if defined(OMNAR_CHECKED)
/// A call that breaks a precondition, and what the handler must be told about it.
struct Breach {
    std::string function, parameter, value;
    void (*call)();
};

inline void expectReports(const std::vector<Breach>& breaches) {
    struct Report {
        std::string function, parameter, value, rule;
    };
    const ContractHandler before = SetContractHandler([](const SContractViolation& violation) {
        throw Report{violation.function, violation.parameter, violation.value, violation.rule};
    });
    for (const Breach& breach : breaches) {
        try {
            breach.call();
            ADD_FAILURE() << breach.function << " did not report " << breach.parameter;
        } catch (const Report& report) {
            EXPECT_EQ(report.function, breach.function);
            EXPECT_EQ(report.parameter, breach.parameter);
            EXPECT_EQ(report.value, breach.value) << breach.function << ", " << breach.parameter;
            EXPECT_NE(report.rule.find(breach.parameter), std::string::npos);
        }
    }
    SetContractHandler(before);
}
#endif

}  // namespace support
