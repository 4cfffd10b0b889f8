// SPDX-License-Identifier: MIT

// Lighter and darker by the alpha of each pixel, in single channels and in true colour.

#include "buffers/contract.h"
#include "buffers/walk.h"
#include "tone/shades.h"

using namespace omnar;

namespace {

/// The caller's flags, which an empty region may lack.
Bands bandsOf(const bool* flags) { return flags == nullptr ? Bands{} : Bands{flags[0], flags[1], flags[2]}; }

/// Shades what both buffers leave of w x h pixels.
template <class Operation>
void shade(const Plane<const L08>& alpha, const Plane<typename Operation::Pixel>& dst, std::uint32_t w, std::uint32_t h,
           unsigned char opacity, Bands bands) {
    process(clip(w, h, alpha, dst), dst, Operation{{alpha, opacity, bands}}, shadeRows);
}

}  // namespace

void DarkerL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, L08* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        const bool* toneBands) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(toneBands);
    shade<Darker<L08>>(Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY),
                       Plane(dst, dstWidth, dstHeight, dstX, dstY), w, h, opacity, bandsOf(toneBands));
}

void LighterL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                         unsigned int alphaY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                         const bool* toneBands) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(toneBands);
    shade<Lighter<L08>>(Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY),
                        Plane(dst, dstWidth, dstHeight, dstX, dstY), w, h, opacity, bandsOf(toneBands));
}

void DarkerL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, L12* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        const bool* toneBands) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(toneBands);
    shade<Darker<L12>>(Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY),
                       Plane(dst, dstWidth, dstHeight, dstX, dstY), w, h, opacity, bandsOf(toneBands));
}

// The bands do not count, so that the flags may be missing.
void LighterL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                         unsigned int alphaY, L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                         const bool*) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    shade<Lighter<L12>>(Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY),
                        Plane(dst, dstWidth, dstHeight, dstX, dstY), w, h, opacity, Bands{});
}

void DarkerTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        const bool* toneBands) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(toneBands);
    shade<Darker<TRC>>(Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY),
                       Plane(dst, dstWidth, dstHeight, dstX, dstY), w, h, opacity, bandsOf(toneBands));
}

void LighterTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                         unsigned int alphaY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                         const bool* toneBands) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(toneBands);
    shade<Lighter<TRC>>(Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY),
                        Plane(dst, dstWidth, dstHeight, dstX, dstY), w, h, opacity, bandsOf(toneBands));
}
