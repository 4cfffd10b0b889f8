// SPDX-License-Identifier: MIT

// Blending a density, one constant value, through the coverage of an alpha plane.

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
    blend<Overwrite<L08>>(region, destination, Flat{density}, Binary{Cover{cover}, 255});
}

void AlphaBlendDensityToL08FlatInverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                        unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                        unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                        unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane cover = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, cover, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    blend<Overwrite<L08>>(region, destination, Flat{density}, Binary{Transparent{cover}, 255});
}

// The 12-bit names are swapped: AlphaBlendDensityToL12() uses the complement of the alpha plane,
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

// and AlphaBlendDensityToL12Inverted() the alpha plane itself. Hosts rely on both.
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
    blend<Overwrite<L12>>(region, destination, Flat{density}, Binary{Cover{cover}, 255});
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
        blend<Overwrite<L08>>(region, destination, Flat{density}, Binary{blue, 255});
    } else if (onBlack && opacity == 255) {
        blend<Overwrite<L08>>(region, destination, ValueOnZero{density, blue}, Binary{blue, 255});
    } else {
        blend<Sample<L08>>(region, destination, Flat{density}, Scaled{blue, opacity});
    }
}
