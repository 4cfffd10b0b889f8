// The library as hosts load it, at the level that it chooses by itself: it gives the committed bits, and Windows is told its version.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <string>

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
