// SPDX-License-Identifier: MIT

// Measures every function at every vector level, its peers, and a plain pass.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "benchmarks/bitmap_bench.h"
#include "benchmarks/contest.h"
#include "benchmarks/features_bench.h"
#include "benchmarks/frames_bench.h"
#include "benchmarks/numeric_bench.h"
#include "benchmarks/objects_bench.h"
#include "benchmarks/outline_bench.h"
#include "benchmarks/pattern_bench.h"
#include "benchmarks/peers/peer.h"
#include "benchmarks/repeat_bench.h"
#include "benchmarks/scenes.h"
#include "tests/support/member.h"

namespace {

using bench::Bench;
using bench::Contest;
using bench::Scene;
using bench::Stage;
using support::Member;

constexpr const char* usage = R"(omnar_bench [--quick] [--rows=REGEX] [--out=FILE]
  --quick       only the widest vector level, the peers and the plain pass, fewer sizes; prints only rows
                that are slower than a peer or below 0.6 of the pass
  --rows=REGEX  only rows whose "function|scene" contains a match
  --out=FILE    writes the results as JSON, for compare.py and chart.py
The status is 0 if every exported function has a row and every result is right.
)";

Contest contestOf(const Bench& bench, const Member& member, const Scene& scene) {
    const std::shared_ptr<Stage> stage = stageOf(member, scene);
    Contest contest{stage->pixels, {}};
    contest.add(bench.atLevels({.name = "",
                                .work = [&member, stage] { member.call(stage->call); },
                                .isRight = [&] { return verify(member, scene, nullptr); }}));
    for (const auto library : {bench::pixmanPeers(), bench::openCvPeers(), bench::sdlPeers()}) {
        for (const bench::Peer& peer : library) {
            if (peer.member != std::string_view(member.name) || scene.throughLut) continue;
            const std::shared_ptr<bench::Prepared> prepared = peer.prepare(stage->call);
            if (prepared == nullptr) continue;
            contest.add({{.name = peer.name,
                          .work = [stage, prepared] { prepared->run(); },
                          .isRight = [&] { return verify(member, scene, &peer); }}});
        }
    }
    contest.add({{.name = bench::plainPass,
                  .work = [stage, pass = passOver(member, *stage)] { pass.run(); },
                  .level = bench::widestLevel()}});
    return contest;
}

void measureMembers(Bench& bench) {
    for (const auto family : support::families()) {
        for (const Member& member : family) {
            for (const Scene& scene : bench::scenes()) {
                if (scene.throughLut && !member.takesLut) continue;
                bench.addRow(member.name, scene.name, scene.runs, [&] { return contestOf(bench, member, scene); });
            }
        }
    }
}

/// Many short runs, those of all contenders of a row in random order.
void initialize(char* program) {
    static char interleaved[] = "--benchmark_enable_random_interleaving=true";
    static char repetitions[] = "--benchmark_repetitions=7";
    static char minTime[] = "--benchmark_min_time=0.004";
    char* arguments[] = {program, interleaved, repetitions, minTime};
    int count = static_cast<int>(std::size(arguments));
    benchmark::Initialize(&count, arguments);
}

}  // namespace

int main(int argc, char** argv) {
    bench::Options options;
    for (const std::string_view argument : std::span(argv + 1, argv + argc)) {
        const auto value = [&] { return std::string(argument.substr(argument.find('=') + 1)); };
        if (argument == "--quick") {
            options.quick = true;
        } else if (argument.starts_with("--rows=")) {
            options.rows = value();
        } else if (argument.starts_with("--out=")) {
            options.out = value();
        } else {
            std::fputs(usage, stderr);
            return 2;
        }
    }
    initialize(argv[0]);
    Bench bench(options);
    measureMembers(bench);
    bench::measureBitmaps(bench);
    bench::measureObjects(bench);
    bench::measureFeatures(bench);
    bench::measureFrames(bench);
    bench::measureRepeatGeometry(bench);
    bench::measureNumbers(bench);
    bench::measureOutlines(bench);
    bench::measurePatterns(bench);
    return bench.run();
}
