// SPDX-License-Identifier: MIT
/// @file
/// Benchmarks of functions without pixels, in nanoseconds per call.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <string>

#include "benchmarks/contest.h"
#include "tests/support/random.h"

namespace bench {

struct Position {
    int x, y;
};

/// Positions up to 100 tiles from the origin in every direction.
inline const std::array<Position, 1024>& positions() {
    static const auto all = [] {
        std::array<Position, 1024> made{};
        support::Random random(11);
        for (auto& [x, y] : made) {
            x = static_cast<int>(random.below(80000)) - 40000;
            y = static_cast<int>(random.below(60000)) - 30000;
        }
        return made;
    }();
    return all;
}

/// A contender that calls `call(position)` for every position and keeps the result alive.
template <class Call>
Contender called(const char* name, Call call) {
    return {.name = name, .work = [call] {
                for (const Position& position : positions()) benchmark::DoNotOptimize(call(position));
            }};
}

template <class Call>
void measure(Bench& bench, const char* name, Call call) {
    bench.addRow(name, "one call", Runs::full, [call] {
        return Contest{positions().size(), {called(plainCode, call)}};
    });
}

/// Measures a function and its peer from the standard library, which must return the same for every position.
template <class Call, class Peer>
void measureWithPeer(Bench& bench, const char* name, Call call, Peer peer) {
    bench.addRow(name, "one call", Runs::every, [call, peer] {
        Contender standard = called("std", peer);
        standard.isRight = [call, peer] {
            return std::all_of(positions().begin(), positions().end(),
                               [&](const Position& position) { return call(position) == peer(position); });
        };
        return Contest{positions().size(), {called(plainCode, call), standard}};
    });
}

}  // namespace bench
