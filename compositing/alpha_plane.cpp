// SPDX-License-Identifier: MIT

// Operations on an image and its alpha plane, in place.

#include <array>

#include "buffers/planes.h"
#include "compositing/blend.h"

using namespace omnar;

namespace {

/// Multiplication has no target.
constexpr Flat nothing{0};

/// Keeps what is opaque, empties the rest.
template <class Px>
void keepOpaque(const L08* alpha, Px* data, unsigned int count) {
    if (alpha == nullptr) return;
    const Full opaque{Plane(alpha, count, 1, 0, 0)};
    blend<Multiplied<Px>>({count, 1}, Plane(data, count, 1, 0, 0), nothing, Binary{opaque, 255});
}

/// A level that was multiplied by its alpha, divided by it again. The arithmetic is that of doubles: a quotient that is
/// a whole number may come out just below it. What it raises by less than one is raised by one.
constexpr L08 restored(unsigned level, unsigned alpha) {
    if (alpha == 0 || alpha == 255) return static_cast<L08>(level);
    double value = 255.0 / alpha * level;
    if (value - level < 1.0) value += 1.0;
    return static_cast<L08>(value < 255.0 ? value : 255.0);
}

using Levels256 = std::array<L08, 256>;

/// All levels under one alpha; a table for each, since there is no exact shortcut.
template <unsigned alpha>
constexpr Levels256 restoredUnder = [] {
    Levels256 levels{};
    for (unsigned level = 0; level < 256; ++level) levels[level] = restored(level, alpha);
    return levels;
}();

template <unsigned... alphas>
constexpr std::array<Levels256, 256> tableOf(std::integer_sequence<unsigned, alphas...>) {
    return {restoredUnder<alphas>...};
}

constexpr std::array<Levels256, 256> restoredLevels = tableOf(std::make_integer_sequence<unsigned, 256>());

}  // namespace

void ApplyAlphaToL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                     unsigned int y, unsigned char opacity, bool flat, unsigned int w, unsigned int h, bool) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Cover cover{OMNAR_PLANE_HERE(alpha)};
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, alpha);
    if (flat) {
        blend<Multiplied<L08>>(region, destination, nothing, Binary{cover, opacity});
    } else {
        blend<Multiplied<L08>>(region, destination, nothing, Scaled{cover, opacity});
    }
}

void ApplyAlphaToL12(L12* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                     unsigned int y, unsigned char opacity, unsigned int w, unsigned int h, bool) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Cover cover{OMNAR_PLANE_HERE(alpha)};
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, alpha);
    blend<Multiplied<L12>>(region, destination, nothing, Scaled{cover, opacity});
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
    Plane destination = OMNAR_ONLY_PLANE(data);
    Plane cover = OMNAR_PLANE_HERE(alpha);
    Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, alpha);
    if (fillTransparent) return blend<Whole<L08>>(region, destination, Flat{255}, Binary{Clear{cover}, 255});
    if (region.empty()) return;
    for (;;) {
        L08* const levels = destination.row();
        for (std::size_t i = 0; i < region.cols; ++i) levels[i] = restoredLevels[cover[i]][levels[i]];
        if (--region.rows == 0) return;
        destination.advance();
        cover.advance();
    }
}
