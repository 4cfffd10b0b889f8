// SPDX-License-Identifier: MIT

// The host's services and the way that errors take out of the library.
#include "buffers/host.h"

#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "buffers/module.h"
#include "buffers/platform.h"

namespace {

using omnar::messageCommand;
using omnar::messageCreate;

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
    unsigned megabytes = 0;
    IMemMgr* const memMgr = omnar::memMgr();
    ASSERT_EQ(memMgr->GetAvailableMegabytes(&megabytes), 0);
    EXPECT_GT(megabytes, 0U);
    memMgr->Release();

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

TEST_F(Host, ServicesOfAnOlderHostLeaveTheNewerOnesAtTheirDefaults) {
    SHostServices services;
    services.getTextMgr = []() -> ITextMgr* { return &reporter; };
    services.cancelRequested = [] { return true; };
    SetHostServices(&services);
    EXPECT_EQ(omnar::textMgr(), &reporter);
    EXPECT_TRUE(omnar::cancelService()());
    EXPECT_TRUE(omnar::cancellable());
    EXPECT_NE(omnar::memMgr(), nullptr);  // null stands for the default

    services.size = offsetof(SHostServices, cancelRequested);
    SetHostServices(&services);
    EXPECT_EQ(omnar::textMgr(), &reporter);
    EXPECT_FALSE(omnar::cancelService()());

    SetHostServices(nullptr);
    EXPECT_EQ(omnar::textMgr(), nullptr);
}

TEST_F(Host, AFailedStatusBecomesAnExceptionWithWhatTheServiceLeft) {
    EXPECT_NO_THROW(omnar::check(0));
    EXPECT_TRUE(omnar::createComError(COmnarException(7, "service.cpp", 42, -5)));
    try {
        omnar::check(-9);
        FAIL() << "a failed status must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(error.code(), -9);
        EXPECT_EQ(std::string(error.file()), "service.cpp");
        EXPECT_EQ(error.line(), 42);
        EXPECT_EQ(error.further(), -5);
        EXPECT_EQ(std::string(error.what()), "OmnarRaster: error -9 at service.cpp:42");
    }
    try {  // what was left is picked up once
        omnar::check(-1);
        FAIL() << "a failed status must throw";
    } catch (const COmnarException& error) {
        EXPECT_EQ(std::string(error.file()), "");
        EXPECT_EQ(error.line(), 0);
    }
}

TEST_F(Host, EscapedExceptionsReachTheTextManager) {
    const auto escape = [](const std::exception& escaped, unsigned message) {
        return omnar::module().processWndProcException(escaped, message);
    };
    // Without one, nothing is reported, and a window that was being created is not.
    EXPECT_EQ(escape(std::runtime_error(""), messageCommand), 1);
    EXPECT_EQ(escape(std::runtime_error(""), messageCreate), -1);
    EXPECT_EQ(escape(std::runtime_error(""), 15), 0);

    SHostServices services;
    services.getTextMgr = []() -> ITextMgr* { return &reporter; };
    SetHostServices(&services);
    EXPECT_EQ(escape(COmnarException(12, "tone.cpp", 34, 56), messageCommand), 1);
    EXPECT_EQ(escape(std::bad_alloc(), messageCreate), 0);
    EXPECT_EQ(escape(std::runtime_error(""), 15), 0);
    const decltype(reporter.reports) expected{
        {12, "tone.cpp", 34}, {1, "MfcUtilities", 2722}, {3, "MfcUtilities", 2727}};
    EXPECT_EQ(reporter.reports, expected);
    omnar::platform::ErrorInfo left;
    EXPECT_FALSE(omnar::platform::takeErrorInfo(&left)) << "a reported error must not be picked up again";
}

TEST_F(Host, ExceptionsAreCopiedWhole) {
    const std::string longName(300, 'x');
    COmnarException copy(0, nullptr, 0, 0);
    {
        const COmnarException error(3, longName.c_str(), 5, 8);
        copy = error;
    }
    EXPECT_EQ(copy.code(), 3);
    EXPECT_EQ(std::string(copy.file()), longName.substr(0, 119));
    EXPECT_EQ(copy.further(), 8);
}

TEST_F(Host, TheProcessorIsAskedForMmx) {
    EXPECT_EQ(omnar::module().mmxAtStart(), IsMMX());
#if defined(__x86_64__)
    EXPECT_NE(IsMMX(), 0);
#endif
}

}  // namespace
