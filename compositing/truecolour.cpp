// SPDX-License-Identifier: MIT

// Blending into true-colour buffers. Each member names the planes that cut its region, the target and the weight.

#include "buffers/planes.h"
#include "compositing/blend.h"
#include "compositing/remap.h"

using namespace omnar;

/// Checks that w alpha values of each row exist for the table to remap, and that the blend does not write the table.
#define OMNAR_EXPECT_LUT(region, destination)                                                   \
    OMNAR_EXPECT_AS(w, lut == nullptr || (region).empty() || w <= alphaWidth - alphaX,          \
                    "alphaX + w <= alphaWidth, unless lut is null or the cut region is empty"); \
    OMNAR_EXPECT_NOT_WRITTEN(lut, 256, destination, region)

void AlphaBlendTRCToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    blend<Color>(region, destination, SourcePixels{source}, Scaled{OwnAlpha{}, opacity});
}

void AlphaBlendTRCNoAlphaToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                               unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                               unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    blend<Color>(region, destination, SourcePixels{source}, Constant{opacity});
}

// The same as AlphaBlendTRCNoAlphaToTRC(): neither changes the alpha of the destination.
void AlphaBlendTRCToTRCNoAlpha(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                               unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                               unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    blend<Color>(region, destination, SourcePixels{source}, Constant{opacity});
}

void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                       unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                       unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                       unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                       unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, alpha, dst);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Color>(region, destination, SourcePixels{source}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                       unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                       unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                       unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, alpha, dst);
    blend<Color>(region, destination, SourcePixels{source}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendL08ToTRC(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, unsigned int color, TRC* dst, unsigned int dstWidth,
                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                        unsigned int w, unsigned int h, bool, const unsigned char* lut) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    OMNAR_EXPECT_LUT(region, destination);
    blendRemapped<Color>(region, destination, Flat{color}, cover, opacity, lut);
}

void AlphaBlendL08ToTRCAndEraseA(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                 unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                 unsigned char opacity, unsigned int w, unsigned int h, const unsigned char* lut) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    OMNAR_EXPECT_LUT(region, destination);
    blendRemapped<ColorErasingAlpha>(region, destination, Flat{color}, cover, opacity, lut);
}

void AlphaBlendL08ToTRCInverted(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Color>(region, destination, Flat{color}, Scaled{Complement{cover}, opacity});
}

void AlphaBlendL08WithAlphaBufferToTRC(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                       unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                       unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                       unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, alpha, dst);
    blend<Color>(region, destination, Grey{source}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendL12ToTRC(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, unsigned int color, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                        unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    blend<Color>(region, destination, Flat{color}, InkWeight{source, opacity});
}

void AlphaBlendColorToTRC(unsigned int color, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                          unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                          unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                          unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_PLANE(alpha);
    const Plane destination = OMNAR_FIRST_PLANE(dst);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Color>(region, destination, Flat{color}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendColorToTRCFlat(unsigned int color, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                              unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                              unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                              unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_PLANE(alpha);
    const Plane destination = OMNAR_FIRST_PLANE(dst);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Color>(region, destination, Flat{color}, Binary{Cover{cover}, opacity});
}

// The same as AlphaBlendColorToTRC(): in spite of its name it uses the alpha plane, not the complement. Hosts rely on
// it.
void AlphaBlendColorToTRCInverted(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_PLANE(alpha);
    const Plane destination = OMNAR_FIRST_PLANE(dst);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Color>(region, destination, Flat{color}, Scaled{Cover{cover}, opacity});
}

// Binary, so that pixels of coverage 0 are unchanged instead of moving toward the background.
void AlphaBlendColorOnBGToTRC(unsigned int color, unsigned int bgColor, const L08* alpha, unsigned int alphaWidth,
                              unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                              unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                              unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Cover cover{OMNAR_PLANE(alpha)};
    const Plane destination = OMNAR_FIRST_PLANE(dst);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Color>(region, destination, ColorOnBackground{bgColor, color, cover}, Binary{cover, opacity});
}

void AlphaBlendColorWithConstAlphaToTRC(unsigned int color, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                        unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h, bool) {
    const Plane destination = OMNAR_FIRST_PLANE(dst);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, dst);
    blend<Color>(region, destination, Flat{color}, Constant{color >> 24});
}

void AlphaBlendColorWithAlphaBlueOfTrcToTrc(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                            unsigned int srcX, unsigned int srcY, unsigned int color, TRC* dst,
                                            unsigned char opacity, unsigned int dstWidth, unsigned int dstHeight,
                                            unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h,
                                            bool setColor, bool onWhite) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    const Blue blue{source};
    constexpr TRC white = 0xFFFFFFU;
    if (setColor) {
        blend<Overwrite<TRC>>(region, destination, Flat{color}, Binary{blue, 255});
    } else if (onWhite && opacity == 255) {
        blend<Color>(region, destination, ColorOnBackground{white, color, blue}, Binary{blue, 255});
    } else {
        blend<Color>(region, destination, Flat{color}, Scaled{blue, opacity});
    }
}

void AlphaBlendAlphaToTRC(unsigned char alphaValue, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                          unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                          unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                          unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<AlphaByte>(region, destination, Flat{TRC{alphaValue} << 24}, Scaled{Cover{cover}, opacity});
}
