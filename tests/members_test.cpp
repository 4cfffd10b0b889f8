// SPDX-License-Identifier: MIT

// Every raster function against its model, at every vector level.
#include <gtest/gtest.h>

#include <numeric>
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
        if (!level_.runs())
            GTEST_SKIP() << "this processor or build lacks the vector level " << name(std::get<0>(GetParam()));
    }
    const Member& member() const { return *std::get<1>(GetParam()); }

private:
    support::ForcedLevel level_{std::get<0>(GetParam())};
};

TEST_P(Members, EqualsItsModel) { support::checkApart(member()); }
TEST_P(Members, KeepsTheOrderWhereBuffersOverlap) {
    const bool hasOneBuffer = member().src == support::Format::none && member().alpha == Member::noAlpha;
    if (hasOneBuffer || member().rowsApart) GTEST_SKIP() << "it has one buffer, or rows that must not overlap";
    support::checkOverlapping(member());
}
TEST_P(Members, HasTheCommittedChecksum) { support::checkChecksum(member()); }

// Within one buffer the right order moves a picture intact, and the opposite order repeats its first row or column. A
// corner outside the buffer is no breach, unlike in other functions: the call copies nothing.
TEST(MotionCopy, MovesWithinOneBufferInTheRightOrderOnly) {
    constexpr unsigned side = 8, copied = side - 1;
    const std::vector<L08> opaque(side * side, 255);
    const auto moved = [&](unsigned x, unsigned y, unsigned dstX, unsigned dstY, _EMotionCopyMode mode) {
        std::vector<L08> picture(side * side);
        std::iota(picture.begin(), picture.end(), L08{0});
        MotionCopyL08ToL08(picture.data(), side, side, x, y, opaque.data(), side, side, 0, 0, picture.data(), side,
                           side, dstX, dstY, 255, false, copied, copied, mode, false);
        return picture;
    };
    const auto down = moved(0, 0, 0, 1, eMotionFromBottomLeft);
    const auto right = moved(0, 0, 1, 0, eMotionFromTopRight);
    const auto smearedDown = moved(0, 0, 0, 1, eMotionFromTopLeft);
    const auto smearedRight = moved(0, 0, 1, 0, eMotionFromTopLeft);
    for (std::size_t y = 0; y < copied; ++y) {
        for (std::size_t x = 0; x < copied; ++x) {
            EXPECT_EQ(down[(y + 1) * side + x], y * side + x);
            EXPECT_EQ(right[y * side + x + 1], y * side + x);
            EXPECT_EQ(smearedDown[(y + 1) * side + x], x);
            EXPECT_EQ(smearedRight[y * side + x + 1], y * side);
        }
    }
    for (const auto mode : {eMotionFromTopLeft, eMotionFromBottomRight}) {
        const auto inPlace = moved(0, 0, 0, 0, mode);
        EXPECT_EQ(moved(side + 1, 0, 0, 0, mode), inPlace);
        EXPECT_EQ(moved(0, 0, 0, side + 1, mode), inPlace);
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
