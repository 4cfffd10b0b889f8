// SPDX-License-Identifier: MIT
#include "benchmarks/bitmap_bench.h"

#include <OmnarRaster.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace bench {
namespace {

using Blend = decltype(AlphaBlendBGR24AlphaToBGR24);

/// A square bitmap, and a coverage bitmap of half its width and height.
struct Bitmaps {
    Bitmaps(unsigned side, std::size_t pixelBytes)
        : width(side), half((side + 1) / 2), src(half * half * pixelBytes), dst(side * side * pixelBytes) {
        support::Random random(5);
        random.fill(std::as_writable_bytes(std::span(src)));
    }
    void run(Blend* blend) { blend(src.data(), half, half, 0x3060C0, dst.data(), width, width, 0.5, 0.5); }

    unsigned width, half;
    std::vector<unsigned char> src, dst;
};

Contest contestOf(const Bench& bench, Blend* blend, unsigned side, std::size_t pixelBytes) {
    const auto bitmaps = std::make_shared<Bitmaps>(side, pixelBytes);
    const auto blended = [=] {
        Bitmaps fresh(side, pixelBytes);
        fresh.run(blend);
        return fresh.dst;
    };
    omnar::useLevel(omnar::Level::scalar);
    return {std::size_t{side} * side,
            bench.atLevels({.name = "",
                            .work = [=] { bitmaps->run(blend); },
                            .isRight = [blended, expected = blended()] { return blended() == expected; }})};
}

void measure(Bench& bench, const char* name, Blend* blend, std::size_t pixelBytes) {
    for (const unsigned side : {1U, 8U, 40U, 256U}) {
        const std::string scene = std::to_string(side) + " x " + std::to_string(side);
        bench.addRow(name, scene, Runs::full, [=, &bench] { return contestOf(bench, blend, side, pixelBytes); });
    }
}

}  // namespace

void measureBitmaps(Bench& bench) {
    measure(bench, "AlphaBlendBGR24AlphaToBGR24", AlphaBlendBGR24AlphaToBGR24, 3);
    measure(bench, "AlphaBlendBGR32AlphaToBGR32", AlphaBlendBGR32AlphaToBGR32, 4);
}

}  // namespace bench
