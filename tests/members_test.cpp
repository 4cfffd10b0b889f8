// SPDX-License-Identifier: MIT

// Every raster function against its model, at every level.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/family.h"

namespace {

using omnar::Level;
using support::Member;

class Members : public testing::TestWithParam<std::tuple<Level, const Member*>> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(std::get<0>(GetParam()));
    }
    const Member& member() const { return *std::get<1>(GetParam()); }

private:
    support::ForcedLevel level_{std::get<0>(GetParam())};
};

TEST_P(Members, EqualsItsModel) { support::checkApart(member()); }
TEST_P(Members, KeepsTheOrderWhereBuffersOverlap) {
    const bool single = member().src == support::Format::none && member().alpha == Member::noAlpha;
    if (single || member().rowsApart) GTEST_SKIP() << "it has one buffer, or rows that must not overlap";
    support::checkOverlapping(member());
}
TEST_P(Members, HasTheCommittedChecksum) { support::checkChecksum(member()); }

// What an order is good for: within one buffer, one of them moves a picture unharmed, and its opposite smears it. A corner
// outside the buffer, which other functions may not be given, copies nothing.
TEST(MotionCopy, MovesWithinOneBufferInTheRightOrderOnly) {
    const std::vector<L08> full(64, 255);
    const auto moved = [&](unsigned x, unsigned y, unsigned toX, unsigned toY, _EMotionCopyMode mode) {
        std::vector<L08> picture(64);
        for (std::size_t i = 0; i < picture.size(); ++i) picture[i] = static_cast<L08>(i);
        MotionCopyL08ToL08(picture.data(), 8, 8, x, y, full.data(), 8, 8, 0, 0, picture.data(), 8, 8, toX, toY, 255,
                           false, 7, 7, mode, false);
        return picture;
    };
    const auto down = moved(0, 0, 0, 1, eMotionFromBottomLeft);
    const auto right = moved(0, 0, 1, 0, eMotionFromTopRight);
    for (std::size_t y = 0; y < 7; ++y) {
        for (std::size_t x = 0; x < 7; ++x) {
            EXPECT_EQ(down[(y + 1) * 8 + x], y * 8 + x);
            EXPECT_EQ(right[y * 8 + x + 1], y * 8 + x);
            EXPECT_EQ(moved(0, 0, 0, 1, eMotionFromTopLeft)[(y + 1) * 8 + x], x);
            EXPECT_EQ(moved(0, 0, 1, 0, eMotionFromTopLeft)[y * 8 + x + 1], y * 8);
        }
    }
    for (const auto mode : {eMotionFromTopLeft, eMotionFromBottomRight}) {
        EXPECT_EQ(moved(9, 0, 0, 0, mode), moved(0, 0, 0, 0, mode));
        EXPECT_EQ(moved(0, 0, 0, 9, mode), moved(0, 0, 0, 0, mode));
    }
}

std::vector<const Member*> members() {
    std::vector<const Member*> all;
    for (const auto family : support::families()) {
        for (const Member& member : family) all.push_back(&member);
    }
    return all;
}

std::string nameOf(const testing::TestParamInfo<Members::ParamType>& instance) {
    return std::string(name(std::get<0>(instance.param))) + "_" + std::get<1>(instance.param)->name;
}

INSTANTIATE_TEST_SUITE_P(Levels, Members,
                         testing::Combine(testing::ValuesIn(omnar::allLevels), testing::ValuesIn(members())), nameOf);

}  // namespace
