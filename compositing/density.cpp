// SPDX-License-Identifier: MIT

// Painting a density, one constant level, through the coverage of an alpha plane.

#include "buffers/planes.h"
#include "compositing/blend.h"

using namespace omnar;

void AlphaBlendDensityToL08(unsigned char density, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                            unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                            unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                            unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Sample<L08>>(region, destination, Flat{density}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendDensityToL08Inverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                    unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Sample<L08>>(region, destination, Flat{density}, Scaled{Complement{cover}, opacity});
}

void AlphaBlendDensityToL08Flat(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                unsigned int w, unsigned int h) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Whole<L08>>(region, destination, Flat{density}, Binary{Cover{cover}, 255});
}

void AlphaBlendDensityToL08FlatInverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                        unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                        unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                        unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Whole<L08>>(region, destination, Flat{density}, Binary{Clear{cover}, 255});
}

// The 12-bit pair is the other way round than the 8-bit pair: the plain name takes the complement ...
void AlphaBlendDensityToL12(unsigned short density, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                            unsigned int alphaX, unsigned int alphaY, L12* dst, unsigned int dstWidth,
                            unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                            unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Sample<L12>>(region, destination, Flat{density}, Scaled{Complement{cover}, opacity});
}

// ... and this one the plain coverage.
void AlphaBlendDensityToL12Inverted(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                    unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Sample<L12>>(region, destination, Flat{density}, Scaled{Cover{cover}, opacity});
}

void AlphaBlendDensityToL12Flat(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                unsigned int w, unsigned int h) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Whole<L12>>(region, destination, Flat{density}, Binary{Cover{cover}, 255});
}

void AlphaBlendDensityWithAlphaBlueOfTrcToL08(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                              unsigned int srcX, unsigned int srcY, unsigned char density, L08* dst,
                                              unsigned char opacity, unsigned int dstWidth, unsigned int dstHeight,
                                              unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h,
                                              bool setDensity, bool onBlack) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    const Blue blue{source};
    if (setDensity) {
        blend<Whole<L08>>(region, destination, Flat{density}, Binary{blue, 255});
    } else if (onBlack && opacity == 255) {
        blend<Whole<L08>>(region, destination, LaidOnNothing{density, blue}, Binary{blue, 255});
    } else {
        blend<Sample<L08>>(region, destination, Flat{density}, Scaled{blue, opacity});
    }
}
