// SPDX-License-Identifier: MIT

// The host's services, and errors that cross the module's boundary.
#include "buffers/host/services.h"

#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "buffers/host/available_memory.h"
#include "buffers/host/module.h"
#include "buffers/host/platform.h"

namespace {

constexpr unsigned messageCreate = 1, messagePaint = 15, messageCommand = 273;

class Reporter final : public ITextMgr {
public:
    void ReportError(long kind, const char* source, long line) override { reports.emplace_back(kind, source, line); }
    std::vector<std::tuple<long, std::string, long>> reports;
};
Reporter reporter;

class Host : public testing::Test {
protected:
    void SetUp() override { reporter.reports.clear(); }
    void TearDown() override { SetHostServices(nullptr); }
};

TEST_F(Host, DefaultsWork) {
    ICoordPair* const pair = omnar::createCoordPair("file", 1, 1.0);
    double x = 0, y = 0;
    EXPECT_EQ(pair->SetCoords(2.5, -3), 0);
    EXPECT_EQ(pair->GetCoords(&x, &y), 0);
    EXPECT_EQ(std::tuple(x, y), std::tuple(2.5, -3.0));
    pair->Release();

    ASSERT_NE(g_pLargeAllocator, nullptr);
    void* const block = g_pLargeAllocator->Alloc(0);
    EXPECT_NE(block, nullptr);
    g_pLargeAllocator->Free(block);
    EXPECT_EQ(omnar::textMgr(), nullptr);
    EXPECT_FALSE(omnar::cancelService()());
    EXPECT_EQ(omnar::cancellable(), omnar::platform::hasCancelKey());
}

/// The memory of the system in units of 2^20 bytes.
struct Memory {
    std::uint64_t total = 0, available = 0;
};

Memory systemMemory() {
    Memory memory;
#if defined(_WIN32)
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    EXPECT_TRUE(GlobalMemoryStatusEx(&status));
    memory = {status.ullTotalPhys >> 20, status.ullAvailPhys >> 20};
#else
    std::ifstream lines("/proc/meminfo");
    std::string name, unit;
    for (std::uint64_t amount = 0; lines >> name >> amount; std::getline(lines, unit)) {
        if (name == "MemTotal:") memory.total = amount >> 10;
        if (name == "MemAvailable:") memory.available = amount >> 10;
    }
#endif
    return memory;
}

TEST_F(Host, TheDefaultMemoryManagerReportsWhatIsAvailable) {
    const Memory before = systemMemory();
    unsigned megabytes = 0;
    IMemMgr* const manager = omnar::memMgr();
    ASSERT_EQ(manager->GetAvailableMegabytes(&megabytes), 0);
    manager->Release();
    const Memory after = systemMemory();

    ASSERT_GT(before.total, 0U);
    EXPECT_LE(megabytes, before.total);
    // Other programs allocate and free memory between the three queries.
    EXPECT_GE(megabytes, std::min(before.available, after.available) / 16 * 15);
    EXPECT_LE(megabytes, std::max(before.available, after.available) / 15 * 16 + 16);
}

TEST_F(Host, MemoryReportsAreParsed) {
    using omnar::availableBytes, omnar::bytesOfPages, omnar::wholeMegabytes;
    EXPECT_EQ(availableBytes("MemTotal:   16384 kB\nMemFree:   100 kB\nMemAvailable:    2049 kB\nCached:  7 kB\n"),
              2049U << 10);
    EXPECT_EQ(availableBytes("MemTotal: 9 kB\nMemAvailable: 18014398509481983 kB"), UINT64_MAX >> 10 << 10);
    for (const std::string line : {"Cached: 3 kB\n", "MemAvailable:", "MemAvailable: kB\n", "MemAvailable: -1 kB\n",
                                   "MemAvailable: 18014398509481984 kB\n", "MemAvailable: 99999999999999999999 kB\n"}) {
        EXPECT_EQ(availableBytes("MemTotal: 9 kB\n" + line), std::nullopt) << line;
    }
    EXPECT_EQ(availableBytes(""), std::nullopt);

    EXPECT_EQ(bytesOfPages(3, 4096), 12288U);
    EXPECT_EQ(bytesOfPages(-1, 4096), std::nullopt);
    EXPECT_EQ(bytesOfPages(3, -1), std::nullopt);

    EXPECT_EQ(wholeMegabytes((5U << 20) - 1), 4U);
    EXPECT_EQ(wholeMegabytes(0U), 0U) << "no memory left is no failure";
    EXPECT_EQ(wholeMegabytes(UINT64_MAX), UINT_MAX);
    const unsigned unreported = wholeMegabytes(std::nullopt);
    EXPECT_TRUE(unreported >= 64 && unreported <= 1024) << "enough for bands, and limited";
}

/// An allocator that returns null for 0 bytes.
class NullForNothing final : public LargeAllocatorItf {
public:
    NullForNothing() { g_pLargeAllocator = this; }
    ~NullForNothing() { g_pLargeAllocator = usual_; }
    void* Alloc(std::size_t bytes) override { return bytes == 0 ? ++nulls, nullptr : usual_->Alloc(bytes); }
    void Free(void* block) override { usual_->Free(block); }
    int nulls = 0;

private:
    LargeAllocatorItf* const usual_ = g_pLargeAllocator;
};

TEST_F(Host, NoBlockForNoBytesIsNoFailure) {
    NullForNothing allocator;
    unsigned char byte = 0, *buffer = &byte;
    unsigned rows = 9, pixels = 9, rowBytes = 9;
    CalcAndGetFixedBufferForThreads(4, 0, 3, 2, &rows, &pixels, &rowBytes, &buffer, eRotateTurned);
    EXPECT_TRUE(rows == 2 && pixels == 0 && rowBytes == 0 && buffer == nullptr);
    EXPECT_EQ(allocator.nulls, 1);

    SFeature feature;
    EXPECT_EQ(MultiObjectFeatureExtract(&byte, 1, 1, 0, 0, 1, 1, &byte, byte, 0, &feature, FeatureArea, &byte), 0);
    EXPECT_EQ(allocator.nulls, 2);
}

TEST_F(Host, ServicesOfAnOlderHostLeaveTheNewerOnesAtTheirDefaults) {
    SHostServices services;
    services.getTextMgr = []() -> ITextMgr* { return &reporter; };
    services.cancelRequested = [] { return true; };
    SetHostServices(&services);
    EXPECT_EQ(omnar::textMgr(), &reporter);
    EXPECT_TRUE(omnar::cancelService()());
    EXPECT_TRUE(omnar::cancellable());
    EXPECT_NE(omnar::memMgr(), nullptr);  // null means the default

    services.size = offsetof(SHostServices, cancelRequested);
    SetHostServices(&services);
    EXPECT_EQ(omnar::textMgr(), &reporter);
    EXPECT_FALSE(omnar::cancelService()());

    SetHostServices(nullptr);
    EXPECT_EQ(omnar::textMgr(), nullptr);
}

TEST_F(Host, AFailedStatusBecomesAnExceptionWithItsErrorInformation) {
    EXPECT_NO_THROW(omnar::throwIfFailed(0));
    EXPECT_TRUE(omnar::setErrorInfo(COmnarException(7, "service.cpp", 42, -5)));
    try {
        omnar::throwIfFailed(-9);
        FAIL() << "a failed status must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), -9);
        EXPECT_EQ(std::string(error.file()), "service.cpp");
        EXPECT_EQ(error.line(), 42);
        EXPECT_EQ(error.further(), -5);
        EXPECT_EQ(std::string(error.what()), "OmnarRaster: error -9 at service.cpp:42");
    }
    try {  // error information is taken once
        omnar::throwIfFailed(-1);
        FAIL() << "a failed status must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(std::string(error.file()), "");
        EXPECT_EQ(error.line(), 0);
        EXPECT_EQ(std::string(error.what()), "OmnarRaster: error -1") << "without error information";
    }
}

TEST_F(Host, EscapedExceptionsReachTheTextManager) {
    // Without a text manager nothing is reported, and the creation of a window fails.
    EXPECT_EQ(ReportEscapedException(std::runtime_error(""), messageCommand), 1);
    EXPECT_EQ(ReportEscapedException(std::runtime_error(""), messageCreate), -1);
    EXPECT_EQ(ReportEscapedException(std::runtime_error(""), messagePaint), 0);

    SHostServices services;
    services.getTextMgr = []() -> ITextMgr* { return &reporter; };
    SetHostServices(&services);
    EXPECT_EQ(ReportEscapedException(COmnarException(12, "tone.cpp", 34, 56), messageCommand), 1);
    EXPECT_EQ(ReportEscapedException(std::bad_alloc(), messageCreate), 0);
    EXPECT_EQ(ReportEscapedException(std::runtime_error(""), messagePaint), 0);
    const decltype(reporter.reports) expected{
        {12, "tone.cpp", 34}, {1, "MfcUtilities", 2722}, {3, "MfcUtilities", 2727}};
    EXPECT_EQ(reporter.reports, expected);
    omnar::platform::ErrorInfo left;
    EXPECT_FALSE(omnar::platform::takeErrorInfo(&left)) << "a reported error must not be taken again";
}

TEST_F(Host, ExceptionsKeepTheirTextsWhenCopied) {
    constexpr std::size_t maxFileLength = 119;
    const std::string longName(300, 'x');
    COmnarException copy(0, nullptr, 0, 0);
    {
        const COmnarException error(3, longName.c_str(), 5, 8);
        copy = error;
    }
    EXPECT_EQ(copy.code(), 3);
    EXPECT_EQ(std::string(copy.file()), longName.substr(0, maxFileLength));
    EXPECT_EQ(copy.further(), 8);
}

TEST_F(Host, TheModuleQueriesTheProcessor) {
    EXPECT_EQ(omnar::module().mmxAtStart(), IsMMX());
#if defined(__x86_64__)
    EXPECT_NE(IsMMX(), 0);
#endif
}

}  // namespace
