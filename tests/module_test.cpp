// SPDX-License-Identifier: MIT

// The library as hosts load it, at the level that it chooses by itself: it gives the committed bits, its exceptions are
// caught by their type, its memory goes back the way that is documented, and Windows is told its version.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "tests/support/family.h"

namespace {

TEST(Module, GivesTheCommittedBits) {
    for (const auto family : support::families()) {
        for (const support::Member& member : family) support::checkChecksum(member);
    }
}

/// A host's pair of coordinates that refuses them, by a status or by an
/// exception.
class RefusingPair final : public ICoordPair {
public:
    explicit RefusingPair(bool throws) : throws_(throws) {}
    int SetCoords(double, double) override { return throws_ ? throw COmnarException(5, "host.cpp", 6, 7) : -9; }
    int GetCoords(double*, double*) override { return -1; }
    void Release() override {}

private:
    bool throws_;
};

TEST(Module, ThrowsWhatTheHostCatchesByItsType) {
    RefusingPair pair(false);
    EXPECT_THROW(GetPosition(1.0, 90.0, &pair), std::exception);
    try {
        GetPosition(1.0, 90.0, &pair);
        FAIL() << "a failed status must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), -9);
        EXPECT_NE(dynamic_cast<const COmnarException*>(static_cast<const std::exception*>(&error)), nullptr);
    }
}

TEST(Module, LetsAnExceptionOfTheHostPass) {
    RefusingPair pair(true);
    try {
        GetPosition(1.0, 90.0, &pair);
        FAIL() << "the host threw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), 5);
        EXPECT_EQ(std::string(error.what()), "OmnarRaster: error 5 at host.cpp:6");
    }
}

class Reporter final : public ITextMgr {
public:
    void ReportError(long kind, const char* source, long line) override {
        reports.push_back(std::to_string(kind) + " " + source + ":" + std::to_string(line));
    }
    std::vector<std::string> reports;
};
Reporter reporter;

TEST(Module, ReportsWhatEscapedTheHost) {
    struct OfTheHost : COmnarException {
        OfTheHost() : COmnarException(8, "host.cpp", 9, 10) {}
    };
    SHostServices services;
    services.getTextMgr = []() -> ITextMgr* { return &reporter; };
    SetHostServices(&services);
    EXPECT_EQ(ReportEscapedException(OfTheHost(), 273), 1);
    EXPECT_EQ(ReportEscapedException(std::bad_array_new_length(), 1), 0);
    EXPECT_EQ(ReportEscapedException(std::runtime_error("of the host"), 0), 0);
    EXPECT_EQ(reporter.reports,
              (std::vector<std::string>{"8 host.cpp:9", "1 MfcUtilities:2722", "3 MfcUtilities:2727"}));

    SetHostServices(nullptr);
    EXPECT_EQ(ReportEscapedException(OfTheHost(), 1), -1);
    EXPECT_EQ(reporter.reports.size(), 3U);
}

class CountingAllocator final : public LargeAllocatorItf {
public:
    void* Alloc(std::size_t bytes) override {
        ++blocks;
        return std::malloc(bytes);
    }
    void Free(void* block) override {
        --blocks;
        std::free(block);
    }
    int blocks = 0;
};

unsigned char* workBuffer() {
    unsigned rows = 0, pixels = 0, rowBytes = 0;
    unsigned char* buffer = nullptr;
    CalcAndGetFixedBufferForThreads(64, 8, 3, 2, &rows, &pixels, &rowBytes, &buffer, _ERotateMode{0});
    for (std::size_t i = 0; i < std::size_t{rows} * 2 * rowBytes; ++i) buffer[i] = 1;
    return buffer;
}

TEST(Module, TakesBackWhatItHandedOver) {
    g_pLargeAllocator->Free(workBuffer());

    LargeAllocatorItf* const before = g_pLargeAllocator;
    CountingAllocator own;
    g_pLargeAllocator = &own;
    unsigned char* const buffer = workBuffer();
    EXPECT_EQ(own.blocks, 1) << "the host's allocator was not asked";
    g_pLargeAllocator->Free(buffer);
    EXPECT_EQ(own.blocks, 0);
    g_pLargeAllocator = before;

    const int* const distances = CreateDistTableForSoftFrame(2);
    EXPECT_EQ(distances[0], 3);
    EXPECT_EQ(distances[12], 0);
    delete[] distances;
}

#if defined(__linux__) && defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
int mmxBeforeStart = -1;
void askBeforeStart() { mmxBeforeStart = IsMMX(); }
/// Called before the start-up code of any shared library; not under a sanitizer, which would not be ready, either.
[[gnu::section(".preinit_array"), gnu::used]] void (*beforeStart)() = askBeforeStart;

TEST(Module, AnswersBeforeItsOwnStartUp) { EXPECT_EQ(mmxBeforeStart, IsMMX()); }
#endif

#if defined(_WIN32)
TEST(Module, TellsItsVersion) {
    char information[4096];
    ASSERT_TRUE(GetFileVersionInfoA("OmnarRaster.dll", 0, sizeof information, information));
    void* text = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueA(information, "\\StringFileInfo\\040904B0\\FileVersion", &text, &length));
    EXPECT_EQ(std::string(static_cast<const char*>(text)), OMNAR_VERSION);
    ASSERT_TRUE(VerQueryValueA(information, "\\", &text, &length));
    const auto* const fixed = static_cast<const VS_FIXEDFILEINFO*>(text);
    EXPECT_EQ(std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." + std::to_string(LOWORD(fixed->dwFileVersionMS)) +
                  "." + std::to_string(HIWORD(fixed->dwFileVersionLS)),
              OMNAR_VERSION);
}
#endif

}  // namespace
