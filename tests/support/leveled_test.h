// SPDX-License-Identifier: MIT
/// @file
/// Tests that run at each vector level.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/family.h"

namespace support {

/// Forces the vector level that is its parameter. Skips the test if the level is missing.
class LeveledTest : public testing::TestWithParam<omnar::Level> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the vector level " << name(GetParam());
    }

private:
    ForcedLevel level_{GetParam()};
};

/// The suffix of such a test's name.
inline std::string nameOfLevel(const testing::TestParamInfo<omnar::Level>& info) { return name(info.param); }

}  // namespace support

/// Instantiates the tests of a suite derived from LeveledTest.
#define INSTANTIATE_AT_EVERY_LEVEL(suite) \
    INSTANTIATE_TEST_SUITE_P(Levels, suite, testing::ValuesIn(omnar::allLevels), support::nameOfLevel)
