// SPDX-License-Identifier: MIT

// Blending into true-colour buffers: the members of one family. Each says which planes cut its region, what the pixels
// move toward, and by which weight; blend() does the rest.

#include "buffers/contract.h"
#include "buffers/region.h"
#include "compositing/blend.h"
#include "compositing/remap.h"

using namespace omnar;

void AlphaBlendTRCToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, source, destination), destination, From{source}, Scaled{OwnAlpha{}, opacity});
}

void AlphaBlendTRCNoAlphaToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                               unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                               unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, source, destination), destination, From{source}, Constant{opacity});
}

// A second name, not a second behaviour: neither of the two touches the destination's alpha.
void AlphaBlendTRCToTRCNoAlpha(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                               unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                               unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                               unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, source, destination), destination, From{source}, Constant{opacity});
}

void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                       unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                       unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                       unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                       unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Colour>(region, destination, From{source}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                       unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                       unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                       unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(alpha);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane cover(alpha, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, source, destination), destination, From{source}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendL08ToTRC(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, unsigned int color, TRC* dst, unsigned int dstWidth,
                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                        unsigned int w, unsigned int h, bool, const unsigned char* lut) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT(w, lut == nullptr || w <= alphaWidth - alphaX);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blendRemapped<Colour>(clip(w, h, cover, destination), destination, Flat{color}, cover, opacity, lut);
}

void AlphaBlendL08ToTRCAndEraseA(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                 unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                 unsigned char opacity, unsigned int w, unsigned int h, const unsigned char* lut) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT(w, lut == nullptr || w <= alphaWidth - alphaX);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blendRemapped<ColourClearingAlpha>(clip(w, h, cover, destination), destination, Flat{color}, cover, opacity, lut);
}

void AlphaBlendL08ToTRCInverted(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, cover, destination), destination, Flat{color}, Scaled{Complement{cover}, opacity});
}

void AlphaBlendL08WithAlphaBufferToTRC(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                       unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                       unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                       unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    OMNAR_EXPECT_POINTER(alpha);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane cover(alpha, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, source, destination), destination, Grey{source}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendL12ToTRC(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, unsigned int color, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                        unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        bool) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, source, destination), destination, Flat{color}, Coverage16{source, opacity});
}

void AlphaBlendColorToTRC(unsigned int color, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                          unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                          unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                          unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(dst);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Colour>(region, destination, Flat{color}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendColorToTRCFlat(unsigned int color, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                              unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                              unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                              unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(dst);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Colour>(region, destination, Flat{color}, Binary{Cover{cover}, opacity});
}

// The name promises the complement, but hosts rely on the plain alpha: the same as AlphaBlendColorToTRC().
void AlphaBlendColorToTRCInverted(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(dst);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Colour>(region, destination, Flat{color}, Scaled{Cover{cover}, opacity});
}

// Binary: pixels without coverage keep their colour, although the target there, the bare ground, would move them.
void AlphaBlendColorOnBGToTRC(unsigned int color, unsigned int bgColor, const L08* alpha, unsigned int alphaWidth,
                              unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                              unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                              unsigned char opacity, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(dst);
    const Cover cover{Plane(alpha, alphaWidth, alphaHeight, alphaX, alphaY)};
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_HOLDS(alpha, region);
    blend<Colour>(region, destination, LaidOn{bgColor, color, cover}, Binary{cover, opacity});
}

void AlphaBlendColorWithConstAlphaToTRC(unsigned int color, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                        unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(dst);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<Colour>(clip(w, h, destination), destination, Flat{color}, Constant{color >> 24});
}

void AlphaBlendColorWithAlphaBlueOfTrcToTrc(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                            unsigned int srcX, unsigned int srcY, unsigned int color, TRC* dst,
                                            unsigned char opacity, unsigned int dstWidth, unsigned int dstHeight,
                                            unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h,
                                            bool setColor, bool onWhite) {
    OMNAR_EXPECT_CORNER(src);
    OMNAR_EXPECT_CORNER(dst);
    const Plane source(src, srcWidth, srcHeight, srcX, srcY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    const Region region = clip(w, h, source, destination);
    const Blue blue{source};
    constexpr TRC white = 0xFFFFFFU;
    if (setColor) {
        blend<Whole<TRC>>(region, destination, Flat{color}, Binary{blue, 255});
    } else if (onWhite && opacity == 255) {
        blend<Colour>(region, destination, LaidOn{white, color, blue}, Binary{blue, 255});
    } else {
        blend<Colour>(region, destination, Flat{color}, Scaled{blue, opacity});
    }
}

void AlphaBlendAlphaToTRC(unsigned char alphaValue, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                          unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                          unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                          unsigned int w, unsigned int h, bool) {
    OMNAR_EXPECT_CORNER(alpha);
    OMNAR_EXPECT_CORNER(dst);
    const Plane cover(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const Plane destination(dst, dstWidth, dstHeight, dstX, dstY);
    blend<AlphaByte>(clip(w, h, cover, destination), destination, Flat{TRC{alphaValue} << 24},
                     Scaled{Cover{cover}, opacity});
}
