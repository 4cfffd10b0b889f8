// SPDX-License-Identifier: MIT
#include "benchmarks/repeat_bench.h"

#include <OmnarRaster.h>

#include "benchmarks/calls.h"

namespace bench {
namespace {

constexpr unsigned repW = 400, repH = 300, drop = 150;

}  // namespace

void measureRepeatGeometry(Bench& bench) {
    measure(bench, "SetInRapp", [](Position p) {
        int x, y;
        SetInRapp(p.x, p.y, repW, repH, drop, eDropVertical, &x, &y);
        return x + y;
    });
    measure(bench, "SetInRappDb", [](Position p) {
        int x, y;
        SetInRappDb(p.x, p.y, repW, repH, 150.0, 1.0, 1.0, eDropVertical, &x, &y);
        return x + y;
    });
    measure(bench, "SetInRappMM", [](Position p) {
        double x, y;
        SetInRappMM(p.x, p.y, repW, repH, drop, eDropVertical, &x, &y);
        return x + y;
    });
    measure(bench, "GetRapport", [](Position p) { return GetRapport(p.x, repW, 0.5); });
    measure(bench, "SetInRappAndCalcRapp", [](Position p) {
        int tile;
        return SetInRappAndCalcRapp(p.x, repW, 0.5, &tile) + tile;
    });
    measure(bench, "CalcNrOfHDropRepeats",
            [](Position p) { return CalcNrOfHDropRepeats(repH, static_cast<unsigned>(p.y)); });
    measure(bench, "CalcPosAndSizeInRepBuffer", [](Position p) {
        int count, x[5], w[5], y[5], h[5];
        CalcPosAndSizeInRepBuffer(p.x, p.y, 200, 200, repW, repH, eDropVertical, drop, &count, x, w, y, h, true);
        return count;
    });
    measure(bench, "CalcPosAndSizeInRepBufferInv", [](Position p) {
        int count, x[5], w[5], y[5], h[5];
        CalcPosAndSizeInRepBufferInv(p.x, p.y, 200, 200, repW, repH, eDropVertical, drop, &count, x, w, y, h);
        return count;
    });
    measure(bench, "FPToVP", [](Position p) {
        int x, y;
        FPToVP(p.x, p.y, &x, &y, repW, repH, drop, eDropVertical, 1.5, 1.5, true);
        return x + y;
    });
    measure(bench, "VPToFP", [](Position p) {
        int x, y;
        VPToFP(p.x, p.y, &x, &y, repW, repH, drop, eDropVertical, 1.5, 1.5, true);
        return x + y;
    });
    measure(bench, "VPToFPDb", [](Position p) {
        int x, y;
        VPToFPDb(p.x, p.y, &x, &y, repW, repH, 150.0, 1.0, 1.0, eDropVertical, 1.5, 1.5, true);
        return x + y;
    });
    measure(bench, "FPToSnappedSP", [](Position p) {
        int x, y;
        FPToSnappedSP(p.x, p.y, &x, &y, 10, 20, 1000, repW, repH, drop, eDropVertical, 1.5, 1.5, 1, true);
        return x + y;
    });
    measure(bench, "MMToSnappedSP", [](Position p) {
        int x, y;
        MMToSnappedSP(p.x * 0.1, p.y * 0.1, &x, &y, 10, 20, 1000, repW, repH, drop, eDropVertical, 10.0, 10.0, 1.5, 1.5,
                      1, true);
        return x + y;
    });
    measure(bench, "AdaptFileSizeToFileSizeForViewSize", [](Position p) {
        unsigned w, h;
        AdaptFileSizeToFileSizeForViewSize(400, 300, 1000U + static_cast<unsigned>(p.x & 255), 700, 1.5, 1.5, &w, &h);
        return w + h;
    });
    measure(bench, "AdaptFileSizeToViewSizeForViewSize", [](Position p) {
        unsigned w, h;
        AdaptFileSizeToViewSizeForViewSize(400, 300, 1000U + static_cast<unsigned>(p.x & 255), 700, 1.5, 1.5, &w, &h);
        return w + h;
    });
}

}  // namespace bench
