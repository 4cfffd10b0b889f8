// SPDX-License-Identifier: MIT

// Operations on a buffer and its alpha plane, in place.

#include "buffers/planes.h"
#include "buffers/walk.h"
#include "compositing/blend.h"
#include "compositing/unpremultiply.h"

using namespace omnar;

namespace {

/// Multiplication uses no target.
constexpr Flat unused{0};

/// Keeps samples whose coverage is 255 and sets the others to 0.
template <class Px>
void keepOpaque(const L08* alpha, Px* data, unsigned int count) {
    if (alpha == nullptr) return;
    const FullyCovered covered{Plane(alpha, count, 1, 0, 0)};
    blend<Multiplied<Px>>({count, 1}, Plane(data, count, 1, 0, 0), unused, Binary{covered, 255});
}

}  // namespace

void ApplyAlphaToL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                     unsigned int y, unsigned char opacity, bool flat, unsigned int w, unsigned int h, bool) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Cover cover{OMNAR_PLANE_HERE(alpha)};
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, alpha);
    if (flat) {
        blend<Multiplied<L08>>(region, destination, unused, Binary{cover, opacity});
    } else {
        blend<Multiplied<L08>>(region, destination, unused, Scaled{cover, opacity});
    }
}

void ApplyAlphaToL12(L12* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                     unsigned int y, unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Cover cover{OMNAR_PLANE_HERE(alpha)};
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, alpha);
    blend<Multiplied<L12>>(region, destination, unused, Scaled{cover, opacity});
}

void PostApplyAlpha(const L08* alpha, L08* data, unsigned int count) {
    OMNAR_EXPECT_NOT_NULL_IF(alpha != nullptr && count != 0, ", unless alpha is null or count is 0", data);
    keepOpaque(alpha, data, count);
}

void PostApplyAlpha(const L08* alpha, L12* data, unsigned int count) {
    OMNAR_EXPECT_NOT_NULL_IF(alpha != nullptr && count != 0, ", unless alpha is null or count is 0", data);
    keepOpaque(alpha, data, count);
}

void InvertAlphaL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                    unsigned int y, bool fillTransparent, unsigned int w, unsigned int h) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Plane cover = OMNAR_PLANE_HERE(alpha);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, alpha);
    if (fillTransparent) return blend<Overwrite<L08>>(region, destination, Flat{255}, Binary{Transparent{cover}, 255});
    process(region, destination, Unpremultiplied{cover}, unpremultiplyRows);
}
