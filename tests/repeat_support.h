/// @file
/// What the tests of repeat geometry share: input that is rich in edges, checksums, and calls that break a contract.
#pragma once

#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace support {

class RepeatInput : public Random {
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
    /// Any double, NaN and the infinities included.
    double fraction() {
        constexpr double huge = std::numeric_limits<double>::infinity();
        constexpr double edges[] = {-huge, huge, NAN,  -0.0, 0.0,           1e-300,       -1e-300,      -0.5,
                                    1e300, 0.5,  1e15, -1.0, -2147483649.0, 2147483647.5, 2147483648.0, 1.0};
        if (oneIn(4)) return edges[below(16)];
        if (coin()) return eighth();
        const int digits = position();  // drawn in an order of its own: that of arguments is the compiler's
        return std::ldexp(digits, between(-40, 8));
    }
};

/// One number for a stream of results.
class Checksum {
public:
    void add(int value) { mix(static_cast<unsigned>(value)); }
    void add(unsigned value) { mix(value); }
    void add(double value) { mix(std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value)); }
    std::uint64_t sum() const { return sum_; }

private:
    void mix(std::uint64_t bits) { sum_ = (std::rotl(sum_, 23) ^ bits) * 0x9E3779B97F4A7C15U; }
    std::uint64_t sum_ = 0;
};

/// A function, a call of it with random arguments, and what a thousand of them come to, on every platform.
struct Summed {
    const char* function;
    void (*call)(RepeatInput& random, Checksum& sum);
    std::uint64_t expected;
};

inline void checkSums(const std::vector<Summed>& all) {
    for (const Summed& summed : all) {
        RepeatInput random(7);
        Checksum sum;
        for (int i = 0; i < 1000; ++i) summed.call(random, sum);
        EXPECT_EQ(sum.sum(), summed.expected) << summed.function;
    }
}

#if defined(OMNAR_CHECKED)
/// A call that breaks a precondition, and what the handler must be told about it.
struct Breach {
    std::string function, parameter, value;
    void (*call)();
};

inline void checkBreaches(const std::vector<Breach>& all) {
    struct Caught {
        std::string function, parameter, value, rule;
    };
    const ContractHandler before = SetContractHandler([](const SContractViolation& violation) {
        throw Caught{violation.function, violation.parameter, violation.value, violation.rule};
    });
    for (const Breach& breach : all) {
        SCOPED_TRACE(breach.function + ": " + breach.parameter);
        try {
            breach.call();
            ADD_FAILURE() << "nothing was reported";
        } catch (const Caught& caught) {
            EXPECT_EQ(caught.function, breach.function);
            EXPECT_EQ(caught.parameter, breach.parameter);
            EXPECT_EQ(caught.value, breach.value);
            EXPECT_NE(caught.rule.find(breach.parameter), std::string::npos) << caught.rule;
        }
    }
    SetContractHandler(before);
}
#endif

}  // namespace support
