// SPDX-License-Identifier: MIT

// Measures every function at every level beside its peers and memcpy. `./dev bench --benchmark_filter=REGEX` chooses,
// `--benchmark_out=FILE` writes JSON, which compare.py sets beside another run's.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "benchmarks/bitmap_bench.h"
#include "benchmarks/features_bench.h"
#include "benchmarks/frames_bench.h"
#include "benchmarks/numeric_bench.h"
#include "benchmarks/objects_bench.h"
#include "benchmarks/outline_bench.h"
#include "benchmarks/peers/peer.h"
#include "benchmarks/repeat_bench.h"
#include "benchmarks/report.h"
#include "benchmarks/scenes.h"
#include "buffers/level.h"
#include "tests/support/member.h"

namespace {

using bench::Peer;
using bench::Scene;
using bench::Stage;
using support::Member;

/// Stages are large and the order of the runs is mixed, so only the one in use is kept.
Stage& staged(const Member& member, const Scene& scene) {
    static std::unique_ptr<Stage> stage;
    static const Member* ofMember = nullptr;
    static const Scene* ofScene = nullptr;
    if (ofMember != &member || ofScene != &scene) {
        stage.reset();
        stage = stageOf(member, scene);
        ofMember = &member;
        ofScene = &scene;
    }
    return *stage;
}

template <class Work>
void measure(const std::string& name, const Member& member, const Scene& scene, Work work) {
    benchmark::RegisterBenchmark(name.c_str(), [&member, &scene, work](benchmark::State& state) {
        work(state, staged(member, scene));
        const auto& call = staged(member, scene).call;
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(call.w) * call.h);
    });
}

void measureLevels(const Member& member, const Scene& scene, const std::string& row) {
    for (const omnar::Level level : omnar::allLevels) {
        if (!omnar::useLevel(level)) continue;
        if (const std::string fault = verify(member, scene, nullptr); !fault.empty()) {
            std::fprintf(stderr, "not timed: %s at %s %s\n", member.name, name(level), fault.c_str());
            continue;
        }
        measure(row + name(level), member, scene, [level, &member](benchmark::State& state, Stage& stage) {
            omnar::useLevel(level);
            for (auto _ : state) member.call(stage.call);
        });
    }
}

void measurePeers(const Member& member, const Scene& scene, const std::string& row) {
    for (const auto library : {bench::pixmanPeers(), bench::openCvPeers()}) {
        for (const Peer& peer : library) {
            if (std::string(peer.member) != member.name || !peer.prepare(stageOf(member, smallest(scene))->call))
                continue;
            if (const std::string fault = verify(member, scene, &peer); !fault.empty()) {
                std::fprintf(stderr, "not timed: %s as %s (%s) %s\n", peer.name, member.name, scene.name,
                             fault.c_str());
                continue;
            }
            measure(row + peer.name, member, scene, [&peer](benchmark::State& state, Stage& stage) {
                const auto prepared = peer.prepare(stage.call);
                for (auto _ : state) prepared->run();
            });
        }
    }
}

void measureMemcpy(const Member& member, const Scene& scene, const std::string& row) {
    measure(row + "memcpy", member, scene, [&member](benchmark::State& state, Stage& stage) {
        const std::size_t bytes = std::size_t{stage.call.w} * stage.call.h * bench::trafficOf(member) / 2;
        std::vector<char> from(bytes, 'a'), to(bytes);
        for (auto _ : state) {
            std::memcpy(to.data(), from.data(), bytes);
            benchmark::ClobberMemory();
        }
    });
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    // Defaults that the command line may override: short runs, many of them, contenders side by side.
    static char repetitions[] = "--benchmark_repetitions=5";
    static char minTime[] = "--benchmark_min_time=0.01";
    arguments.insert(arguments.begin() + 1, {repetitions, minTime});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    for (const auto family : support::families()) {
        for (const Member& member : family) {
            for (const Scene& scene : bench::scenes()) {
                const std::string row = std::string(member.name) + "|" + scene.name + "|";
                measureLevels(member, scene, row);
                measurePeers(member, scene, row);
                measureMemcpy(member, scene, row);
            }
        }
    }
    bench::measureBitmaps();
    bench::measureObjects();
    bench::measureFeatures();
    bench::measureFrames();
    bench::measureRepeatGeometry();
    bench::measureNumbers();
    bench::measureOutlines();
    bench::Report report;
    benchmark::RunSpecifiedBenchmarks(&report);
}
