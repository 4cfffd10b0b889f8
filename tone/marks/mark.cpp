// SPDX-License-Identifier: MIT

// Markers in true colour: each function is one blend.

#include "tone/marks/mark.h"

#include "buffers/planes.h"

using namespace omnar;

/// Checks the layers for a region that is not empty.
#define OMNAR_EXPECT_LAYERS()                                                                                       \
    OMNAR_EXPECT_NOT_NULL_IF(layerCount > 0, ", unless layerCount is 0 or less or the cut region is empty", layers, \
                             layerIndices);                                                                         \
    for (int k = 0; k < layerCount; ++k) {                                                                          \
        OMNAR_EXPECT_ELEMENT(layerIndices, k, layerIndices[k] >= 0, "not negative");                                \
        OMNAR_EXPECT_ELEMENT(layers, layerIndices[k], layers[layerIndices[k]] != nullptr,                           \
                             "not null, unless the cut region is empty");                                           \
    }                                                                                                               \
    static_assert(true)

void MarkBG(const L08* const* layers, const int* layerIndices, int layerCount, unsigned int width, unsigned int height,
            unsigned int x, unsigned int y, unsigned int color, unsigned char opacity, TRC* dst, unsigned int dstWidth,
            unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    const L08* first = nullptr;  // the layers are read only if the region is not empty
    const Plane geometry = OMNAR_ONLY_PLANE(first);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, geometry, destination);
    OMNAR_EXPECT_MEMORY(region, dst);
    if (region.empty()) return;
    OMNAR_EXPECT_LAYERS();
    if (layerCount > 0) first = layers[layerIndices[0]];
    const Plane inFirst = OMNAR_PLANE_HERE(first);
    mark<Colour>(region, destination, Flat{color},
                 Binary{Background{layers, layerIndices, layerCount, inFirst}, opacity});
}

void MarkL08LimitsToTRCHighBit(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, unsigned char lowLimit, unsigned char highLimit, TRC* dst,
                               unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                               unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const OutsideLimits limits{source, lowLimit, highLimit};
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    mark<AlphaByte>(region, destination, limits, Binary{limits, 255});
}

void MarkL08ToTRC(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX, unsigned int srcY,
                  const bool* levels, unsigned int color, unsigned char opacity, TRC* dst, unsigned int dstWidth,
                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, levels, dst);
    OMNAR_EXPECT_NOT_WRITTEN(levels, 256, destination, region);
    if (region.empty()) return;
    mark<Colour>(region, destination, Flat{color}, Binary{ChosenValues{source, ValueSet(levels)}, opacity});
}

void ApplyQuickMaskToTRC(const L08* mask, unsigned int maskWidth, unsigned int maskHeight, unsigned int maskX,
                         unsigned int maskY, unsigned int color, TRC* dst, unsigned int dstWidth,
                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                         unsigned int w, unsigned int h) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(mask);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, mask, dst);
    mark<ColourOrOverwrite>(region, destination, Flat{color}, Scaled{Complement{alphaPlane}, opacity});
}

void ChangeColorOfTRCWithAlpha(unsigned int color, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                               unsigned int alphaX, unsigned int alphaY, const TRC* src, TRC* dst,
                               unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                               unsigned char opacity, unsigned int w, unsigned int h, int brightness, int contrast) {
    const Plane alphaPlane = OMNAR_PLANE(alpha);
    const Plane source = OMNAR_PLANE_LIKE(src, dst);
    const Plane destination = OMNAR_FIRST_PLANE(dst);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, src, dst);
    OMNAR_EXPECT_HOLDS(alpha, region);
    mark<Colour>(region, destination, Shaded{source, color, contrast / 100.0, brightness * 1.275},
                 Scaled{Cover{alphaPlane}, opacity});
}
