// SPDX-License-Identifier: MIT

// The checked build names what is broken; the ordinary one never calls the handler.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

struct Broken {
    std::string function, parameter, value, rule;
};

void throwIt(const SContractViolation& violation) {
    throw Broken{violation.function, violation.parameter, violation.value, violation.rule};
}

class Contract : public testing::Test {
protected:
    void SetUp() override { before_ = SetContractHandler(throwIt); }
    void TearDown() override { EXPECT_EQ(SetContractHandler(before_), throwIt); }

    std::array<TRC, 16> dst_{}, src_{};
    std::array<L08, 16> alpha_{};
    std::array<L12, 16> ink_{};

private:
    ContractHandler before_ = nullptr;
};

/// "function parameter value rule" of the first precondition that `call` breaks, or nothing.
template <class Call>
std::string brokenBy(Call&& call) {
    try {
        call();
    } catch (const Broken& broken) {
        return broken.function + " " + broken.parameter + " " + broken.value + " | " + broken.rule;
    }
    return "";
}

TEST_F(Contract, ValidCallsBreakNothing) {
    EXPECT_EQ(brokenBy([&] {
                  AlphaBlendTRCToTRC(src_.data(), 4, 4, 4, 0, dst_.data(), 4, 4, 0, 4, 255, 9, 9, false);
                  AlphaBlendTRCToTRC(nullptr, 0, 0, 0, 0, nullptr, 0, 0, 0, 0, 255, 0, 0, false);
                  AlphaBlendColorToTRC(1, alpha_.data(), 4, 4, 1, 1, dst_.data(), 4, 4, 1, 1, 255, 9, 9, false);
                  // While zeros are skipped, the alpha plane's own geometry is ignored.
                  AlphaBlendL08ToL08(alpha_.data(), 4, 4, 0, 0, alpha_.data(), 0, 0, 7, 7, alpha_.data(), 4, 4, 0, 0,
                                     255, 0, false, 4, 4, false);
                  PostApplyAlpha(nullptr, alpha_.data(), 16);
                  LighterL12WithAlpha(alpha_.data(), 4, 4, 0, 0, ink_.data(), 4, 4, 0, 0, 255, 4, 4, nullptr);
                  DarkerTRCWithAlpha(nullptr, 0, 0, 0, 0, nullptr, 0, 0, 0, 0, 255, 0, 0, nullptr);
                  // Corners outside the buffers mean that nothing is copied.
                  MotionCopyL08ToL08(nullptr, 4, 4, 5, 0, nullptr, 0, 0, 9, 9, nullptr, 4, 4, 0, 9, 255, false, 2, 2,
                                     eMotionFromBottomLeft, false);
                  AlphaBlendBGR24AlphaToBGR24(nullptr, 0, 0, 1, nullptr, 0, 5, 1.0, 1.0);
              }),
              "");
}

#if defined(OMNAR_CHECKED)

TEST_F(Contract, BrokenOnesAreNamed) {
    EXPECT_EQ(brokenBy([&] { AlphaBlendTRCToTRC(src_.data(), 4, 4, 5, 0, dst_.data(), 4, 4, 0, 0, 255, 1, 1, false); }),
              "AlphaBlendTRCToTRC srcX 5 | srcX <= srcWidth");
    EXPECT_EQ(brokenBy([&] {
                  AlphaBlendTRCNoAlphaToTRC(src_.data(), 4, 4, 0, 0, dst_.data(), 4, 4, 0, 7, 255, 1, 1, false);
              }),
              "AlphaBlendTRCNoAlphaToTRC dstY 7 | dstY <= dstHeight");
    EXPECT_EQ(brokenBy([&] { AlphaBlendColorWithConstAlphaToTRC(1, nullptr, 4, 4, 0, 0, 1, 1, false); }),
              "AlphaBlendColorWithConstAlphaToTRC dst null | not null, unless w or h is 0");
    EXPECT_EQ(brokenBy([&] {
                  AlphaBlendAlphaToTRC(1, alpha_.data(), 4, 4, 1, 0, dst_.data(), 4, 4, 0, 0, 255, 4294967295U, 1,
                                       false);
              }),
              "AlphaBlendAlphaToTRC w 4294967295 | alphaX + w <= 4294967295");
    EXPECT_EQ(brokenBy([&] {
                  AlphaBlendColorToTRC(1, alpha_.data(), 2, 4, 0, 0, dst_.data(), 4, 4, 0, 0, 255, 3, 1, false);
              }),
              "AlphaBlendColorToTRC alphaX 0 | alphaX + columns of the cut region <= alphaWidth");
    EXPECT_EQ(brokenBy([&] { ApplyAlphaToL08(alpha_.data(), alpha_.data(), 4, 4, 5, 0, 255, false, 1, 1, false); }),
              "ApplyAlphaToL08 x 5 | x <= width");
    EXPECT_EQ(brokenBy([&] {
                  AlphaBlendL08ToL08(alpha_.data(), 4, 4, 0, 0, alpha_.data(), 2, 4, 1, 0, alpha_.data(), 4, 4, 0, 0,
                                     255, 1, false, 2, 1, false);
              }),
              "AlphaBlendL08ToL08 alphaX 1 | alphaX + columns of the cut region <= alphaWidth");
    EXPECT_EQ(brokenBy([&] { AlphaBlendBGR32AlphaToBGR32(alpha_.data(), 2, 2, 1, nullptr, 1, 1, 1.0, -0.5); }),
              "AlphaBlendBGR32AlphaToBGR32 dst null | dst != nullptr || dstWidth == 0 || dstHeight == 0");
    EXPECT_EQ(
        brokenBy([&] { DarkerL12WithAlpha(alpha_.data(), 4, 4, 0, 0, ink_.data(), 4, 4, 0, 0, 255, 4, 4, nullptr); }),
        "DarkerL12WithAlpha toneBands null | not null, unless w or h is 0");
    EXPECT_EQ(brokenBy([&] {
                  MoveToneL08ToL08Prot(alpha_.data(), 4, 4, 0, 0, alpha_.data(), alpha_.data(), 4, 4, 0, 0, 255, false,
                                       1, 1, nullptr);
              }),
              "MoveToneL08ToL08Prot protection null | not null, unless w or h is 0");
    EXPECT_EQ(brokenBy([&] {
                  MotionCopyL08ToL08(alpha_.data(), 4, 4, 0, 0, alpha_.data(), 4, 1, 0, 0, alpha_.data(), 4, 4, 0, 1,
                                     255, false, 2, 2, eMotionFromBottomLeft, false);
              }),
              "MotionCopyL08ToL08 alphaY 0 | alphaY + rows of the cut region <= alphaHeight");
    const unsigned char lut[256] = {};
    EXPECT_EQ(brokenBy([&] {
                  AlphaBlendL08ToTRC(alpha_.data(), 4, 4, 1, 0, 1, dst_.data(), 4, 4, 0, 0, 255, 4, 1, false, lut);
              }),
              "AlphaBlendL08ToTRC w 4 | lut == nullptr || w <= alphaWidth - alphaX");
}

TEST(ContractDeathTest, TheDefaultHandlerPrintsAndAborts) {
    EXPECT_DEATH(AlphaBlendColorWithConstAlphaToTRC(1, nullptr, 4, 4, 9, 0, 1, 1, false),
                 "OmnarRaster: AlphaBlendColorWithConstAlphaToTRC: dst is null, but this must hold: not null");
}

#else

TEST_F(Contract, TheOrdinaryBuildDoesNotAsk) {
    EXPECT_EQ(brokenBy([&] { AlphaBlendColorWithConstAlphaToTRC(1, dst_.data(), 4, 4, 9, 0, 1, 1, false); }), "");
    EXPECT_EQ(dst_, decltype(dst_){});
}

#endif

}  // namespace
