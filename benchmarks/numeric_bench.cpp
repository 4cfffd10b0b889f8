// SPDX-License-Identifier: MIT
#include "benchmarks/numeric_bench.h"

#include <OmnarRaster.h>

#include <numeric>
#include <vector>

#include "benchmarks/calls.h"

namespace bench {
namespace {

void measurePartition() {
    measure("CalcParts2", [](Position p) {
        int count, parts[8];
        CalcParts2(400, p.x, 2000, &count, parts);
        return count + parts[0];
    });
    measure("CalcParts", [](Position p) {
        int count, parts[3];
        CalcParts(400, p.x, 300, p.y, 250, &count, parts);
        return count + parts[0];
    });
    // The peer only makes the zeros: 500 rows of 250 pixels of 3 bytes, rounded up, for 4 threads.
    measureBeside(
        "CalcAndGetFixedBufferForThreads",
        [](Position) {
            unsigned rows, pixels, rowBytes;
            unsigned char* buffer;
            CalcAndGetFixedBufferForThreads(1000, 500, 3, 4, &rows, &pixels, &rowBytes, &buffer, eRotateStraight);
            const std::size_t bytes = std::size_t{rows} * 4 * rowBytes;
            benchmark::DoNotOptimize(buffer);
            g_pLargeAllocator->Free(buffer);
            return bytes;
        },
        [](Position) {
            std::vector<unsigned char> buffer(1504000);
            benchmark::DoNotOptimize(buffer.data());
            return buffer.size();
        });
}

void measureIntegers() {
    const auto repeat = [](int any) { return 1 + (any & 1023); };
    measureBeside(
        "ggT", [repeat](Position p) { return ggT(repeat(p.x), repeat(p.y)); },
        [repeat](Position p) { return std::gcd(repeat(p.x), repeat(p.y)); });
    measureBeside(
        "kgV", [repeat](Position p) { return kgV(repeat(p.x), repeat(p.y)); },
        [repeat](Position p) { return std::lcm(repeat(p.x), repeat(p.y)); });
    measure("Fakultaet", [](Position p) { return Fakultaet(static_cast<unsigned>(p.x & 31)); });
    measure("NUeberK", [](Position p) { return NUeberK(30, static_cast<unsigned>(p.x & 31)); });
}

void measureGeometry() {
    measure("GetAngle", [](Position p) { return GetAngle(1, 2, p.x, p.y); });
    measure("GetAngleRad", [](Position p) { return GetAngleRad(1, 2, p.x, p.y); });
    measure("GetLength", [](Position p) { return GetLength(0, 0, p.x, p.y); });
    measure("GetPosition", [](Position p) {
        double x, y;
        GetPosition(p.x, p.y * 0.01, &x, &y);
        return x + y;
    });
    measure("GetNormalDistanceToLine", [](Position p) { return GetNormalDistanceToLine(3, 5, 100, 900, p.x, p.y); });
    measure("GetIntersectionDistanceDb", [](Position p) {
        double direction;
        return GetIntersectionDistanceDb(p.x, p.y, 3, 5, 100, 900, &direction) + direction;
    });
    measure("GetSystemAngleFromUserAngle", [](Position p) { return GetSystemAngleFromUserAngle(p.x, eAngleUser); });
    measure("GetUserAngleFromSystemAngle", [](Position p) { return GetUserAngleFromSystemAngle(p.x, eAngleUser); });
    measure("GetFlexoAngleFromSize", [](Position p) { return GetFlexoAngleFromSize(p.x, 0.98, 700); });
    measure("GetFlexoSizeFromAngle", [](Position p) { return GetFlexoSizeFromAngle(700, 0.98, p.x * 0.001); });
}

void measureInterpolation() {
    static constexpr double xs[] = {0, 500, 3000, 9000, 20000, 40000}, ys[] = {0, 9, 30, 60, 90, 100};
    measure("GetLinearInterpoliertenWert", [](Position p) { return GetLinearInterpoliertenWert(xs, ys, 6, p.x); });
    measure("GetInterpolatedOverlayFactor", [](Position p) { return GetInterpolatedOverlayFactor(p.x & 511, ys, 6); });
    measure("GetNiceGreaterValue", [](Position p) { return GetNiceGreaterValue(p.x); });
    measure("GetNiceSmallerValue", [](Position p) { return GetNiceSmallerValue(p.x); });
    measure("CurveInterpolation (4096 levels)", [](Position p) {
        const unsigned short points[] = {0, 0, 1024, 300, 2048, static_cast<unsigned short>(p.x & 4095), 4095, 4095};
        static unsigned short table[2 * 4096];
        CurveInterpolation(8, points, 4096, 4095, table);
        return table[4095];
    });
}

}  // namespace

void measureNumbers() {
    measurePartition();
    measureIntegers();
    measureGeometry();
    measureInterpolation();
}

}  // namespace bench
