// SPDX-License-Identifier: MIT

// The vector level that is current.
#include "buffers/level.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "compositing/blend_rows.h"

namespace omnar {
namespace {

TEST(Level, TheWidestAvailableOneIsCurrent) {
    Level widest = Level::scalar;
    for (const Level level : allLevels) {
        if (available(level)) widest = level;
    }
    EXPECT_EQ(currentLevel(), widest);
    // Set where the processor is known.
    const char* const expected = std::getenv("OMNAR_EXPECTED_LEVEL");
    EXPECT_TRUE(expected == nullptr || name(widest) == std::string(expected)) << name(widest);
}

TEST(Level, AForcedLevelRunsItsOwnRows) {
    const Level before = currentLevel();
    const TrueColorRows* previous = nullptr;
    for (const Level level : allLevels) {
        EXPECT_EQ(useLevel(level), available(level)) << name(level);
        if (!available(level)) continue;
        EXPECT_EQ(currentLevel(), level);
        EXPECT_NE(&trueColorRows.current(), previous) << name(level);
        previous = &trueColorRows.current();
    }
    useLevel(before);
}

TEST(Level, NamesAreThoseOfTheBuildOption) {
    EXPECT_EQ(std::string(name(Level::scalar)), "scalar");
    EXPECT_EQ(std::string(name(allLevels[1])), allLevels.size() == 2 ? "neon" : "sse4");
}

}  // namespace
}  // namespace omnar
