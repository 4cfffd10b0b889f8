// SPDX-License-Identifier: MIT
#include "benchmarks/bitmap_bench.h"

#include <OmnarRaster.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "buffers/level.h"
#include "tests/support/random.h"

namespace bench {
namespace {

using Blend = decltype(AlphaBlendBGR24AlphaToBGR24);

constexpr unsigned width = 512, height = 128;

/// A coverage image of half the size, and a bitmap.
struct Bitmaps {
    explicit Bitmaps(std::size_t pixelBytes)
        : src(width / 2 * height / 2 * pixelBytes), dst(width * height * pixelBytes) {
        support::Random random(5);
        random.fill(std::as_writable_bytes(std::span(src)));
    }
    void run(Blend* blend) { blend(src.data(), width / 2, height / 2, 0x3060C0, dst.data(), width, height, 0.5, 0.5); }

    std::vector<unsigned char> src, dst;
};

void measure(const char* name, Blend* blend, std::size_t pixelBytes) {
    omnar::useLevel(omnar::Level::scalar);
    Bitmaps law(pixelBytes);
    law.run(blend);
    for (const omnar::Level level : omnar::allLevels) {
        if (!omnar::useLevel(level)) continue;
        Bitmaps twin(pixelBytes);
        twin.run(blend);
        if (twin.dst != law.dst) {
            std::fprintf(stderr, "not timed: %s at %s differs from the scalar rule\n", name, omnar::name(level));
            continue;
        }
        const std::string row = std::string(name) + "|scaled by 2|" + omnar::name(level);
        benchmark::RegisterBenchmark(row.c_str(), [=](benchmark::State& state) {
            Bitmaps bitmaps(pixelBytes);
            omnar::useLevel(level);
            for (auto _ : state) bitmaps.run(blend);
            state.SetItemsProcessed(state.iterations() * width * height);
        });
    }
}

}  // namespace

void measureBitmaps() {
    measure("AlphaBlendBGR24AlphaToBGR24", AlphaBlendBGR24AlphaToBGR24, 3);
    measure("AlphaBlendBGR32AlphaToBGR32", AlphaBlendBGR32AlphaToBGR32, 4);
}

}  // namespace bench
