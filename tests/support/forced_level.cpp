// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/support/family.h"

namespace support {

ForcedLevel::ForcedLevel(omnar::Level level)
    : before_(omnar::currentLevel()), wanted_(level), runs_(omnar::useLevel(level)) {}

ForcedLevel::~ForcedLevel() {
    if (runs_) {
        EXPECT_EQ(omnar::currentLevel(), wanted_) << "another vector level ran";
    }
    omnar::useLevel(before_);
}

}  // namespace support
