// SPDX-License-Identifier: MIT
#include "benchmarks/numeric_bench.h"

#include <OmnarRaster.h>

#include <numeric>
#include <vector>

#include "benchmarks/calls.h"

namespace bench {
namespace {

/// The memory manager of a host; it returns a constant.
class HostMemory : public IMemMgr {
public:
    int GetAvailableMegabytes(unsigned* megabytes) override {
        *megabytes = 1024;
        return 0;
    }
    void Release() override {}
} hostMemory;

void measurePartition(Bench& bench) {
    measure(bench, "CalcParts2", [](Position p) {
        int count, parts[8];
        CalcParts2(400, p.x, 2000, &count, parts);
        return count + parts[0];
    });
    measure(bench, "CalcParts", [](Position p) {
        int count, parts[3];
        CalcParts(400, p.x, 300, p.y, 250, &count, parts);
        return count + parts[0];
    });
    // The peer only zeroes as many bytes: 500 rows of 250 pixels of 3 bytes, rounded up, for 4 threads. The host supplies
    // the amount of memory, since the query to the operating system takes 4 us.
    static SHostServices services;
    services.getMemMgr = [] { return static_cast<IMemMgr*>(&hostMemory); };
    SetHostServices(&services);
    measureWithPeer(
        bench, "CalcAndGetFixedBufferForThreads",
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

void measureIntegers(Bench& bench) {
    const auto repeat = [](int any) { return 1 + (any & 1023); };
    measureWithPeer(
        bench, "ggT", [repeat](Position p) { return ggT(repeat(p.x), repeat(p.y)); },
        [repeat](Position p) { return std::gcd(repeat(p.x), repeat(p.y)); });
    measureWithPeer(
        bench, "kgV", [repeat](Position p) { return kgV(repeat(p.x), repeat(p.y)); },
        [repeat](Position p) { return std::lcm(repeat(p.x), repeat(p.y)); });
    measure(bench, "Fakultaet", [](Position p) { return Fakultaet(static_cast<unsigned>(p.x & 31)); });
    measure(bench, "NUeberK", [](Position p) { return NUeberK(30, static_cast<unsigned>(p.x & 31)); });
}

void measureGeometry(Bench& bench) {
    measure(bench, "GetAngle", [](Position p) { return GetAngle(1, 2, p.x, p.y); });
    measure(bench, "GetAngleRad", [](Position p) { return GetAngleRad(1, 2, p.x, p.y); });
    measure(bench, "GetLength", [](Position p) { return GetLength(0, 0, p.x, p.y); });
    measure(bench, "GetPosition", [](Position p) {
        double x, y;
        GetPosition(p.x, p.y * 0.01, &x, &y);
        return x + y;
    });
    measure(bench, "GetNormalDistanceToLine",
            [](Position p) { return GetNormalDistanceToLine(3, 5, 100, 900, p.x, p.y); });
    measure(bench, "GetIntersectionDistanceDb", [](Position p) {
        double direction;
        return GetIntersectionDistanceDb(p.x, p.y, 3, 5, 100, 900, &direction) + direction;
    });
    measure(bench, "GetSystemAngleFromUserAngle",
            [](Position p) { return GetSystemAngleFromUserAngle(p.x, eAngleUser); });
    measure(bench, "GetUserAngleFromSystemAngle",
            [](Position p) { return GetUserAngleFromSystemAngle(p.x, eAngleUser); });
    measure(bench, "GetFlexoAngleFromSize", [](Position p) { return GetFlexoAngleFromSize(p.x, 0.98, 700); });
    measure(bench, "GetFlexoSizeFromAngle", [](Position p) { return GetFlexoSizeFromAngle(700, 0.98, p.x * 0.001); });
}

void measureInterpolation(Bench& bench) {
    static constexpr double xs[] = {0, 500, 3000, 9000, 20000, 40000}, ys[] = {0, 9, 30, 60, 90, 100};
    measure(bench, "GetLinearInterpoliertenWert",
            [](Position p) { return GetLinearInterpoliertenWert(xs, ys, 6, p.x); });
    measure(bench, "GetInterpolatedOverlayFactor",
            [](Position p) { return GetInterpolatedOverlayFactor(p.x & 511, ys, 6); });
    measure(bench, "GetNiceGreaterValue", [](Position p) { return GetNiceGreaterValue(p.x); });
    measure(bench, "GetNiceSmallerValue", [](Position p) { return GetNiceSmallerValue(p.x); });
    measure(bench, "CurveInterpolation (4096 levels)", [](Position p) {
        const unsigned short points[] = {0, 0, 1024, 300, 2048, static_cast<unsigned short>(p.x & 4095), 4095, 4095};
        static unsigned short table[2 * 4096];
        CurveInterpolation(8, points, 4096, 4095, table);
        return table[4095];
    });
}

}  // namespace

void measureNumbers(Bench& bench) {
    measurePartition(bench);
    measureIntegers(bench);
    measureGeometry(bench);
    measureInterpolation(bench);
}

}  // namespace bench
