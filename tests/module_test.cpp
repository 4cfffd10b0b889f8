// SPDX-License-Identifier: MIT

// The library as hosts load it, at the vector level that it selects itself: checksums, exceptions caught by their type,
// memory freed as documented, the version resource on Windows.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "tests/support/family.h"
#include "tests/support/scarce_allocator.h"

namespace {

TEST(Module, GivesTheCommittedChecksums) {
    for (const auto family : support::families()) {
        for (const support::Member& member : family) support::checkChecksum(member);
    }
}

constexpr int failure = -9;

/// A coordinate pair that refuses coordinates by a status or by an exception.
class RefusingPair final : public ICoordPair {
public:
    explicit RefusingPair(bool throws) : throws_(throws) {}
    int SetCoords(double, double) override { return throws_ ? throw COmnarException(5, "host.cpp", 6, 7) : failure; }
    int GetCoords(double*, double*) override { return -1; }
    void Release() override {}

private:
    bool throws_;
};

TEST(Module, ThrowsExceptionsThatTheHostCatchesByType) {
    RefusingPair pair(false);
    EXPECT_THROW(GetPosition(1.0, 90.0, &pair), std::exception);
    try {
        GetPosition(1.0, 90.0, &pair);
        FAIL() << "a failed status must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), failure);
        EXPECT_NE(dynamic_cast<const COmnarException*>(static_cast<const std::exception*>(&error)), nullptr);
    }
}

TEST(Module, PassesAnExceptionOfTheHost) {
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

TEST(Module, ReportsEscapedExceptions) {
    constexpr unsigned messageCreate = 1, messageCommand = 273;
    struct HostException : COmnarException {
        HostException() : COmnarException(8, "host.cpp", 9, 10) {}
    };
    SHostServices services;
    services.getTextMgr = []() -> ITextMgr* { return &reporter; };
    SetHostServices(&services);
    EXPECT_EQ(ReportEscapedException(HostException(), messageCommand), 1);
    EXPECT_EQ(ReportEscapedException(std::bad_array_new_length(), messageCreate), 0);
    EXPECT_EQ(ReportEscapedException(std::runtime_error("of the host"), 0), 0);
    EXPECT_EQ(reporter.reports,
              (std::vector<std::string>{"8 host.cpp:9", "1 MfcUtilities:2722", "3 MfcUtilities:2727"}));

    SetHostServices(nullptr);
    EXPECT_EQ(ReportEscapedException(HostException(), messageCreate), -1);
    EXPECT_EQ(reporter.reports.size(), 3U);
}

unsigned char* workBuffer() {
    unsigned rows = 0, pixels = 0, rowBytes = 0;
    unsigned char* buffer = nullptr;
    CalcAndGetFixedBufferForThreads(64, 8, 3, 2, &rows, &pixels, &rowBytes, &buffer, eRotateStraight);
    for (std::size_t i = 0; i < std::size_t{rows} * 2 * rowBytes; ++i) buffer[i] = 1;
    return buffer;
}

TEST(Module, FreesWhatItAllocated) {
    g_pLargeAllocator->Free(workBuffer());

    {
        const support::ScarceAllocator allocator(support::ScarceAllocator::unlimited);
        unsigned char* const buffer = workBuffer();
        EXPECT_EQ(allocator.blocks(), 1) << "the host's allocator was not used";
        g_pLargeAllocator->Free(buffer);
        EXPECT_EQ(allocator.blocks(), 0);
    }

    const int* const distances = CreateDistTableForSoftFrame(2);
    EXPECT_EQ(distances[0], 3);
    EXPECT_EQ(distances[12], 0);
    delete[] distances;
}

#if defined(__linux__) && defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
int mmxBeforeStart = -1;
void queryBeforeStart() { mmxBeforeStart = IsMMX(); }
/// Called before the start-up code of any shared library. Sanitizers are not initialised by then.
[[gnu::section(".preinit_array"), gnu::used]] void (*beforeStart)() = queryBeforeStart;

TEST(Module, WorksBeforeItsOwnStartUp) { EXPECT_EQ(mmxBeforeStart, IsMMX()); }
#endif

#if defined(_WIN32)
TEST(Module, HasAVersionResource) {
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
