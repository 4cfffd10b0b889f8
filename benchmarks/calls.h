// SPDX-License-Identifier: MIT
/// @file
/// Measuring functions without pixels, in nanoseconds a call.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <string>

#include "tests/support/random.h"

namespace bench {

struct Position {
    int x, y;
};

/// Positions up to a hundred tiles away in every direction.
inline std::array<Position, 1024> positions() {
    std::array<Position, 1024> all{};
    support::Random random(11);
    for (auto& [x, y] : all) {
        x = static_cast<int>(random.below(80000)) - 40000;
        y = static_cast<int>(random.below(60000)) - 30000;
    }
    return all;
}

/// `call(position)` gives a number that the compiler must not leave out.
template <class Call>
void measure(const char* name, Call call, const char* contender = "scalar") {
    const std::string row = std::string(name) + "|one call|" + contender;
    benchmark::RegisterBenchmark(row.c_str(), [call](benchmark::State& state) {
        const auto all = positions();
        for (auto _ : state) {
            for (const Position& position : all) benchmark::DoNotOptimize(call(position));
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
    });
}

/// The same beside what the standard library has for it, if that gives the same for every position.
template <class Call, class Peer>
void measureBeside(const char* name, Call call, Peer peer) {
    measure(name, call);
    for (const Position& position : positions()) {
        if (call(position) == peer(position)) continue;
        std::fprintf(stderr, "not timed: std as %s\n", name);
        return;
    }
    measure(name, peer, "std");
}

}  // namespace bench
