// SPDX-License-Identifier: MIT

// Marking information into true colour: each member is one blend.

#include "tone/mark.h"

#include "buffers/contract.h"

using namespace omnar;

void MarkBG(const L08* const* layers, const int* layerIndices, int layerCount, unsigned int width, unsigned int height,
            unsigned int x, unsigned int y, unsigned int color, unsigned char opacity, TRC* dst, unsigned int dstWidth,
            unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    OMNAR_EXPECT(layers, layers != nullptr || layerCount <= 0);
    OMNAR_EXPECT(layerIndices, layerIndices != nullptr || layerCount <= 0);
    OMNAR_EXPECT_SHARED_GEOMETRY();
    OMNAR_EXPECT_CORNER(dst);
    const Plane inFirst(layerCount > 0 ? layers[layerIndices[0]] : nullptr, width, height, x, y);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    mark<Colour>(clip(w, h, inFirst, destination), destination, Flat{color},
                 Binary{Bare{layers, layerIndices, layerCount, inFirst}, opacity});
}

void MarkL08LimitsToTRCHighBit(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, unsigned char lowLimit, unsigned char highLimit, TRC* dst,
                               unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                               unsigned int w, unsigned int h) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Beyond beyond{source, lowLimit, highLimit};
    mark<AlphaByte>(clip(w, h, source, destination), destination, beyond, Binary{beyond, 255});
}

void MarkL08ToTRC(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX, unsigned int srcY,
                  const bool* levels, unsigned int color, unsigned char opacity, TRC* dst, unsigned int dstWidth,
                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT(levels, levels != nullptr || w == 0 || h == 0);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, source, destination);
    if (region.empty()) return;
    mark<Colour>(region, destination, Flat{color}, Binary{Chosen{source, levels, columnsOf(levels)}, opacity});
}

void ApplyQuickMaskToTRC(const L08* mask, unsigned int maskWidth, unsigned int maskHeight, unsigned int maskX,
                         unsigned int maskY, unsigned int color, TRC* dst, unsigned int dstWidth,
                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                         unsigned int w, unsigned int h) {
    OMNAR_EXPECT_CORNER(mask);
    OMNAR_EXPECT_CORNER(dst);
    const Plane cover(mask, maskWidth, maskHeight, maskX, maskY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    mark<ColourOrWhole>(clip(w, h, cover, destination), destination, Flat{color}, Scaled{Complement{cover}, opacity});
}

void ChangeColorOfTRCWithAlpha(unsigned int color, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                               unsigned int alphaX, unsigned int alphaY, const TRC* src, TRC* dst,
                               unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                               unsigned char opacity, unsigned int w, unsigned int h, int brightness, int contrast) {
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(src);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane source(src, dstWidth, dstHeight, dstX, dstY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_HOLDS(alpha, region);
    mark<Colour>(region, destination, Shaded{source, color, contrast / 100.0, brightness * 1.275},
                 Scaled{Cover{cover}, opacity});
}
