// SPDX-License-Identifier: MIT

// Which level runs.
#include "buffers/level.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "compositing/blend_rows.h"

namespace omnar {
namespace {

TEST(Level, TheWidestThatIsAvailableRuns) {
    Level widest = Level::scalar;
    for (const Level level : allLevels) {
        if (available(level)) widest = level;
    }
    EXPECT_EQ(currentLevel(), widest);
    // Who runs the tests on a certain processor knows what it has.
    const char* const expected = std::getenv("OMNAR_EXPECTED_LEVEL");
    EXPECT_TRUE(expected == nullptr || name(widest) == std::string(expected)) << name(widest);
}

TEST(Level, AForcedLevelRunsItsOwnRows) {
    const Level before = currentLevel();
    const TrueColorRows* former = nullptr;
    for (const Level level : allLevels) {
        const bool can = available(level);
        EXPECT_EQ(useLevel(level), can) << name(level);
        if (!can) continue;
        EXPECT_EQ(currentLevel(), level);
        EXPECT_NE(&trueColorRows.current(), former) << name(level);
        former = &trueColorRows.current();
    }
    useLevel(before);
}

TEST(Level, NamesAreThoseOfTheBuildOption) {
    EXPECT_EQ(std::string(name(Level::scalar)), "scalar");
    EXPECT_EQ(std::string(name(allLevels[1])), allLevels.size() == 2 ? "neon" : "sse4");
}

}  // namespace
}  // namespace omnar
