// SPDX-License-Identifier: MIT

// Every exported function on a thread with a stack of 64 KiB, at every vector level: plug-in hosts, fibres and some C
// libraries give threads no more. The C library keeps its data of the thread there, too.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#include <climits>
#endif

#include "tests/support/leveled_test.h"

namespace {

constexpr std::size_t stackSize = 65536;

/// Runs `work` on a thread with a small stack. A stack overflow ends the program.
#if defined(_WIN32)
void onSmallStack(void (*work)()) {
    const HANDLE thread = CreateThread(
        nullptr, stackSize, [](void* f) -> DWORD { return reinterpret_cast<void (*)()>(f)(), 0; },
        reinterpret_cast<void*>(work), STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(thread, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}
#else
void onSmallStack(void (*work)()) {
    // Some systems have no threads as small: glibc on 64-bit ARM needs 128 KiB.
    const std::size_t size = std::max(stackSize, static_cast<std::size_t>(PTHREAD_STACK_MIN));
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    const auto run = [](void* f) -> void* { return reinterpret_cast<void (*)()>(f)(), nullptr; };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, reinterpret_cast<void*>(work)), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}
#endif

constexpr unsigned side = 660, maxWidth = 300;  // the mask has centres of frames of every width up to maxWidth
std::vector<L08> mask, framed;
std::unique_ptr<int[]> distances;

/// Single pixels and a square, of one value or many.
void drawMask(bool manyValues) {
    mask.assign(std::size_t{side} * side, 0);
    framed = mask;
    for (unsigned i = 0; i < 9; ++i) {
        const auto value = static_cast<L08>(manyValues ? 255 - 3 * i : 200);
        mask[(312 + 4 * i) * side + 312 + i * 28 % 36] = value;
        for (unsigned y = 0; y < 4; ++y) mask[(330 + y) * side + 330 + i] = value;
    }
}

/// Widths that reach every way of drawing a frame, and a table of other distances, which only the reference draws.
void callFrames() {
    for (const unsigned width : {0U, 1U, 2U, 8U, 9U, 40U, 192U, 193U, 254U, 255U, maxWidth}) {
        const int* const table = distances.get();
        HardFrameL08toL08(mask.data(), framed.data(), side, side, table, maxWidth, width, true);
        HardFrameL08toL08(mask.data(), framed.data(), side, side, table, maxWidth, width, false);
        HardFrameDownL08toL08(mask.data(), framed.data(), side, side, table, maxWidth, width);
        HardFrameL08toL08DifferentXYFlat(mask.data(), framed.data(), side, 0, side, side, table, maxWidth, width, 0);
        HardFrameL08toL08DifferentSize(mask.data(), side, side, 310, 310, framed.data(), side, side, 40, 40, table,
                                       maxWidth, width, width % 2 == 0);
        std::fill(framed.begin(), framed.end(), L08{0});
        SoftFrameL08toL08(mask.data(), framed.data(), side, side, table, maxWidth, width);
    }
    const std::vector<int> other(25, 1);
    SoftFrameL08toL08(mask.data(), framed.data(), side, side, other.data(), 2, 2);
    delete[] CreateDistTableForSoftFrame(3);
}

template <class T>
void callObjects() {
    constexpr int n = 64, cell = 4, objects = 16;
    constexpr T object = 1, firstLabel = 2;
    std::vector<T> buffer(n * n);
    for (int y = 0; y < n; ++y) {
        for (int x = 0; x < n; ++x) {
            if (x / cell % 2 != 0 && y / cell % 2 != 0) buffer[static_cast<std::size_t>(y * n + x)] = object;
        }
    }
    int count = 0;
    std::vector<T> filled = buffer;
    Fill(filled.data(), n, n, 0, 0, 0, 0, n, n, T{3}, &count);
    ColorBinaryObjects(buffer.data(), n, n, 0, 0, n, n, T{0}, object, firstLabel, true, 250);
    std::array<CPoint, 300> points;
    const auto start = std::find(buffer.begin(), buffer.end(), firstLabel) - buffer.begin();
    FollowContour(buffer.data(), buffer.data() + start, n, n, 0, 0, n, n, firstLabel, points.data(), &count);
    std::vector<SFeature> features(objects);
    constexpr auto all = FeatureArea | FeatureCentroid | FeatureOrientation | FeaturePerimeter | FeatureHistogram;
    unsigned char cancelled = 0;
    InitFeatureTables(0, 360);
    MultiObjectFeatureExtract(buffer.data(), n, n, 0, 0, n, n, buffer.data(), firstLabel, objects, features.data(), all,
                              &cancelled);
    ReleaseFeatureTables();
}

class IgnoringPolygon final : public ICoordPolygon {
public:
    int GetResX(double* res) override { return *res = 1, 0; }
    int GetResY(double* res) override { return *res = 1, 0; }
    int Append(ICoordPair*) override { return 0; }
};

class RefusingPair final : public ICoordPair {
public:
    int SetCoords(double, double) override { return -9; }
    int GetCoords(double*, double*) override { return -1; }
    void Release() override {}
};

/// Of all that the language runtime does, throwing needs the most stack.
void callThrowing() {
    RefusingPair pair;
    try {
        GetPosition(1.0, 90.0, &pair);
        ADD_FAILURE() << "a failed status must throw";
    } catch (const COmnarException&) {
    }
}

void callPlacing() {
    int x[6] = {}, y[6] = {}, w[6] = {}, h[6] = {}, count = 0;
    double mm[2] = {};
    SetInRapp(70, 80, 30, 20, 5, eDropVertical, x, y);
    SetInRappDb(70, 80, 30, 20, 5, 1, 1, eDropVertical, x, y);
    SetInRappMM(70, 80, 30, 20, 5, eDropHorizontal, mm, mm + 1);
    GetRapport(70, 30, 0);
    SetInRappAndCalcRapp(70, 30, 0, x);
    CalcNrOfHDropRepeats(30, 7);
    CalcPosAndSizeInRepBuffer(5, 6, 20, 15, 30, 20, eDropVertical, 5, &count, x, w, y, h, false);
    CalcPosAndSizeInRepBufferInv(5, 6, 20, 15, 30, 20, eDropVertical, 5, &count, x, w, y, h);
    int* const xs[] = {x, x + 1};
    int* const ys[] = {y, y + 1};
    const int fx[] = {3, 400}, fy[] = {5, 600};
    const double mmX[] = {3, 400}, mmY[] = {5, 600};
    FPToVP(70, 80, x, y, 30, 20, 5, eDropVertical, 1, 2, true);
    VPToFP(70, 80, x, y, 30, 20, 5, eDropVertical, 1, 2, true);
    VPToFPDb(70, 80, x, y, 30, 20, 5, 1, 1, eDropVertical, 1, 2, true);
    FPToSnappedSP(70, 80, x, y, 0, 0, 900, 30, 20, 5, eDropVertical, 1, 2, 1, true);
    FPToSnappedSP(fx, fy, 2, xs, ys, 0, 0, 900, 30, 20, 5, eDropVertical, 1, 2, 1, true);
    MMToSnappedSP(70, 80, x, y, 0, 0, 900, 30, 20, 5, eDropVertical, 10, 10, 1, 2, 1, true);
    MMToSnappedSP(mmX, mmY, 2, xs, ys, 0, 0, 900, 30, 20, 5, eDropVertical, 10, 10, 1, 2, 1, true);
    unsigned width = 0, height = 0;
    AdaptFileSizeToFileSizeForViewSize(300, 200, 100, 100, 1, 1, &width, &height);
    AdaptFileSizeToViewSizeForViewSize(300, 200, 100, 100, 1, 1, &width, &height);
    int parts[64];
    CalcParts2(7, 3, 30, &count, parts);
    CalcParts(7, 3, 5, 2, 30, &count, parts);
    unsigned rows = 0, pixels = 0, bytes = 0;
    unsigned char* buffer = nullptr;
    CalcAndGetFixedBufferForThreads(64, 8, 3, 2, &rows, &pixels, &bytes, &buffer, eRotateStraight);
    g_pLargeAllocator->Free(buffer);
}

void callNumbers() {
    double a = 0, b = 0;
    ggT(12, 18);
    kgV(4, 6);
    Fakultaet(5);
    NUeberK(5, 2);
    GetAngle(0, 0, 1, 1);
    GetAngleRad(0, 0, 1, 1);
    GetLength(0, 0, 1, 1);
    GetPosition(1, 90, &a, &b);
    GetNormalDistanceToLine(0, 0, 5, 5, 3, 1);
    GetIntersectionDistanceDb(3, 1, 0, 0, 5, 5, &a);
    GetSystemAngleFromUserAngle(10, eAngleUser);
    GetUserAngleFromSystemAngle(10, eAngleUser);
    GetFlexoAngleFromSize(100, 1, 50);
    GetFlexoSizeFromAngle(100, 1, 30);
    const double xs[] = {0, 1, 2}, ys[] = {0, 5, 7};
    GetLinearInterpoliertenWert(xs, ys, 3, 1.5);
    GetInterpolatedOverlayFactor(40, xs, 3);
    GetNiceGreaterValue(12.34);
    GetNiceSmallerValue(12.34);
    const unsigned short points[] = {0, 0, 100, 50, 255, 255};
    unsigned short table[2 * 255];
    CurveInterpolation(6, points, 255, 255, table);
}

void callBitmaps() {
    std::vector<unsigned char> from(4 * 64 * 64, 130), to(4 * 64 * 64, 20);
    AlphaBlendBGR24AlphaToBGR24(from.data(), 40, 40, 0, to.data(), 60, 60, 40 / 60.0, 40 / 60.0);
    AlphaBlendBGR32AlphaToBGR32(from.data(), 40, 40, 0, to.data(), 60, 60, 40 / 60.0, 40 / 60.0);
}

void callOutlines() {
    constexpr unsigned n = 40;
    std::vector<L08> shape(n * n);
    std::vector<TRC> drawn(n * n);
    for (unsigned y = 10; y < 30; ++y) std::fill_n(shape.begin() + y * n + 10, y, L08{200});
    IgnoringPolygon polygon;
    GetContourPolygonFromBuffer2(shape.data(), n, n, 0, &polygon);
    DrawContourOfL08toTRC(shape.data(), n, n, 0, 0, drawn.data(), n, n, 0, 0, n, n, 0xFF0000);
}

void callModule() {
    IsMMX();
    SetHostServices(nullptr);
    SetContractHandler(nullptr);
    ReportEscapedException(COmnarException(5, "host.cpp", 6, 7), 8);
}

/// The functions that are in no table of members.
struct Group {
    void (*call)();
    std::vector<const char*> names;
};
const Group groups[] = {
    {callFrames,
     {"HardFrameL08toL08", "HardFrameDownL08toL08", "HardFrameL08toL08DifferentXYFlat",
      "HardFrameL08toL08DifferentSize", "SoftFrameL08toL08", "CreateDistTableForSoftFrame"}},
    {callObjects<L08>,
     {"Fill", "ColorBinaryObjects", "FollowContour", "MultiObjectFeatureExtract", "InitFeatureTables",
      "ReleaseFeatureTables"}},
    {callObjects<int>, {"Fill", "ColorBinaryObjects", "FollowContour", "MultiObjectFeatureExtract"}},
    {callThrowing, {"GetPosition"}},
    {callPlacing,
     {"SetInRapp",
      "SetInRappDb",
      "SetInRappMM",
      "GetRapport",
      "SetInRappAndCalcRapp",
      "CalcNrOfHDropRepeats",
      "CalcPosAndSizeInRepBuffer",
      "CalcPosAndSizeInRepBufferInv",
      "FPToVP",
      "VPToFP",
      "VPToFPDb",
      "FPToSnappedSP",
      "FPToSnappedSP",
      "MMToSnappedSP",
      "MMToSnappedSP",
      "AdaptFileSizeToFileSizeForViewSize",
      "AdaptFileSizeToViewSizeForViewSize",
      "CalcParts2",
      "CalcParts",
      "CalcAndGetFixedBufferForThreads"}},
    {callNumbers,
     {"ggT", "kgV", "Fakultaet", "NUeberK", "GetAngle", "GetAngleRad", "GetLength", "GetPosition",
      "GetNormalDistanceToLine", "GetIntersectionDistanceDb", "GetSystemAngleFromUserAngle",
      "GetUserAngleFromSystemAngle", "GetFlexoAngleFromSize", "GetFlexoSizeFromAngle", "GetLinearInterpoliertenWert",
      "GetInterpolatedOverlayFactor", "GetNiceGreaterValue", "GetNiceSmallerValue", "CurveInterpolation"}},
    {callBitmaps, {"AlphaBlendBGR24AlphaToBGR24", "AlphaBlendBGR32AlphaToBGR32"}},
    {callOutlines, {"GetContourPolygonFromBuffer2", "DrawContourOfL08toTRC"}},
    {callModule, {"IsMMX", "SetHostServices", "SetContractHandler", "ReportEscapedException"}},
};

void callMembers() {
    for (const auto family : support::families()) {
        for (const support::Member& member : family) support::checksum(member);
    }
}

class SmallStack : public support::LeveledTest {};

TEST_P(SmallStack, IsEnoughForEveryFunction) {
    distances.reset(CreateDistTableForSoftFrame(maxWidth));
    onSmallStack(callMembers);
    for (const bool manyValues : {false, true}) {
        drawMask(manyValues);
        for (const Group& group : groups) onSmallStack(group.call);
    }
}

INSTANTIATE_AT_EVERY_LEVEL(SmallStack);

// The functions in cmake/exports.def: one line per overload or instantiation.
constexpr const char* exportedSymbols[] = {
#include "exported_symbols.inc"
};

TEST(SmallStack, IsTestedWithEveryExportedFunction) {
    std::map<std::string, int> missing;
    for (const std::string symbol : exportedSymbols) {
        // _Z, the length of the name, the name, and its parameters.
        std::size_t digits = 0;
        if (symbol.substr(0, 2) != "_Z" || symbol[2] == 'N' || symbol[2] == 'T') continue;  // members of the exception
        const std::size_t length = std::stoul(symbol.substr(2), &digits);
        ++missing[symbol.substr(2 + digits, length)];
    }
    ASSERT_GT(missing.size(), 100U);
    for (const auto family : support::families()) {
        for (const support::Member& member : family) {
            // A suffix after "_" distinguishes several members of one function.
            --missing[std::string(member.name).substr(0, std::string(member.name).find('_'))];
        }
    }
    for (const Group& group : groups) {
        for (const char* const called : group.names) --missing[called];
    }
    for (const auto& [function, calls] : missing) {
        EXPECT_LE(calls, 0) << function << " is exported, but not tested on a small stack";
    }
}

}  // namespace
