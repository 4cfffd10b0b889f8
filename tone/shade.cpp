// SPDX-License-Identifier: MIT

// Lighter and darker by the coverage of each pixel, in single channels and in true colour.

#include "tone/shade.h"
#include "buffers/planes.h"
#include "buffers/walk.h"

using namespace omnar;

namespace {

/// The caller's flags, which may be null for an empty region.
Bands bandsOf(const bool* flags) { return flags == nullptr ? Bands{} : Bands{flags[0], flags[1], flags[2]}; }

template <class Operation>
void shade(Region region, const Plane<typename Operation::Pixel>& dst, const Plane<const L08>& alpha,
           unsigned char opacity, Bands bands) {
    process(region, dst, Operation{{alpha, opacity, bands}}, shadeRows);
}

}  // namespace

void DarkerL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, L08* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        const bool* toneBands) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst, toneBands);
    shade<Darker<L08>>(region, destination, alphaPlane, opacity, bandsOf(toneBands));
}

void LighterL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                         unsigned int alphaY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                         const bool* toneBands) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst, toneBands);
    shade<Lighter<L08>>(region, destination, alphaPlane, opacity, bandsOf(toneBands));
}

void DarkerL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, L12* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        const bool* toneBands) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst, toneBands);
    shade<Darker<L12>>(region, destination, alphaPlane, opacity, bandsOf(toneBands));
}

// The bands have no effect, and their flags may be null.
void LighterL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                         unsigned int alphaY, L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                         const bool*) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst);
    shade<Lighter<L12>>(region, destination, alphaPlane, opacity, Bands{});
}

void DarkerTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                        unsigned int alphaY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                        const bool* toneBands) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst, toneBands);
    shade<Darker<TRC>>(region, destination, alphaPlane, opacity, bandsOf(toneBands));
}

void LighterTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                         unsigned int alphaY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                         const bool* toneBands) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, dst, toneBands);
    shade<Lighter<TRC>>(region, destination, alphaPlane, opacity, bandsOf(toneBands));
}
