// SPDX-License-Identifier: MIT

// Blending grey values into grey values, and 12-bit ink into 12-bit ink.

#include <type_traits>

#include "buffers/planes.h"
#include "compositing/blend.h"

using namespace omnar;

namespace {

/// How a call blends samples.
template <class Px>
struct SampleRule {
    bool includeZeros;
    bool twoLevel;
    const Px* end;  ///< of the destination buffer
};
template <class Px>
SampleRule(bool, bool, const Px*) -> SampleRule<Px>;

/// Blends grey values by `rule`. Inlined like blend().
template <class Weight>
OMNAR_ALWAYS_INLINE void blendSamples(Region region, const Plane<L08>& dst, const Plane<const L08>& src,
                                      const Weight& weight, const SampleRule<L08>& rule) {
    if (rule.includeZeros) {
        rule.twoLevel ? blend<TwoLevel<L08>>(region, dst, SourcePixels{src}, weight)
                      : blend<Sample<L08>>(region, dst, SourcePixels{src}, weight);
    } else {
        rule.twoLevel ? blend<WhereInk<TwoLevel<L08>>>(region, dst, SourcePixels{src}, weight)
                      : blend<WhereInk<Sample<L08>>>(region, dst, SourcePixels{src}, weight);
    }
}

/// The operand without the first pixel of its rows.
template <class Operand>
Operand withoutFirst(Operand operand) {
    operand.eachPlane([](auto& plane) { plane = plane.columnsFrom(1); });
    return operand;
}

/// Blends two-level ink one pixel late: after each pixel the next one in memory becomes full ink unless it is 0, and is
/// then blended. The first pixel of a row moves from its old value. The pixel after the last of a row becomes full ink
/// although it is outside the region, except after the last pixel of the buffer.
template <class Weight>
void blendTwoLevelInk(Region region, Plane<L12> dst, const L12* end, DividedPixels target, Weight weight) {
    if (region.empty()) return;
    const auto eachPlane = [&](auto&& visit) {
        target.eachPlane(visit);
        weight.eachPlane(visit);
    };
    for (;;) {
        L12* const row = dst.row();
        const bool hasNext = row + region.cols != end;
        bool isApart = true;
        eachPlane([&](const auto& plane) { isApart = isApart && apart(plane.row(), region.cols, row, region.cols); });
        if (isApart) {
            blend<Sample<L12>>({1, 1}, dst, target, weight);
            blend<FilledFirst>({region.cols - 1, 1}, dst.columnsFrom(1), withoutFirst(target), withoutFirst(weight));
            if (hasNext) row[region.cols] = FilledFirst::filled(row[region.cols]);
        } else {
            for (std::size_t i = 0; i < region.cols; ++i) {
                row[i] = Sample<L12>::step(row[i], target.at(i), weight, i);
                if (i + 1 < region.cols || hasNext) row[i + 1] = FilledFirst::filled(row[i + 1]);
            }
        }
        if (--region.rows == 0) return;
        dst.advance();
        eachPlane([](auto& plane) { plane.advance(); });
    }
}

/// The target is the sample divided by 255, except with an alpha plane if zeros are skipped: then it is the sample. If
/// zeros are skipped, `twoLevel` has no effect. Inlined like blend().
template <class Weight>
OMNAR_ALWAYS_INLINE void blendSamples(Region region, const Plane<L12>& dst, const Plane<const L12>& src,
                                      const Weight& weight, const SampleRule<L12>& rule) {
    if (rule.includeZeros && rule.twoLevel) {
        blendTwoLevelInk(region, dst, rule.end, DividedPixels{src}, weight);
    } else if (rule.includeZeros) {
        blend<Sample<L12>>(region, dst, DividedPixels{src}, weight);
    } else if constexpr (std::is_same_v<Weight, Constant>) {
        blend<Sample<L12>>(region, dst, DividedPixels{src}, Binary{Inked{src}, weight.opacity});
    } else {
        blend<WhereInk<Sample<L12>>>(region, dst, SourcePixels{src}, weight);
    }
}

/// Weights are the opacity if `alpha` is null, else `Weight` of the coverage. Inlined like blend().
template <template <class> class Weight, class Px>
OMNAR_ALWAYS_INLINE void blendThrough(const L08* alpha, const Plane<const L08>& cover, unsigned opacity, Region region,
                                      const Plane<Px>& dst, const Plane<const Px>& src, const SampleRule<Px>& rule) {
    if (alpha == nullptr) return blendSamples(region, dst, src, Constant{opacity}, rule);
    blendSamples(region, dst, src, Weight<Cover>{Cover{cover}, opacity}, rule);
}

template <class Px>
const Px* endOf(const Px* pixels, unsigned int width, unsigned int height) {
    return Plane(pixels, width, height, 0, height).row();
}

}  // namespace

void AlphaBlendL08ToL08(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                        unsigned int srcX, unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                        unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned char includeZeros,
                        bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    const SampleRule rule{includeZeros != 0, twoLevel, endOf(dst, dstWidth, dstHeight)};
    blendThrough<Scaled>(alpha, cover, opacity, region, destination, source, rule);
}

// If zeros are skipped, the alpha plane has the geometry and corner of the source. Hosts rely on it.
void AlphaBlendL08ToL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                        unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                        unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const bool ownGeometry = alpha != nullptr && includeZeros != 0;
    const Plane cover = ownGeometry ? OMNAR_PLANE(alpha) : OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    if (ownGeometry) OMNAR_EXPECT_HOLDS(alpha, region);
    const SampleRule rule{includeZeros != 0, twoLevel, endOf(dst, dstWidth, dstHeight)};
    blendThrough<Scaled>(alpha, cover, opacity, region, destination, source, rule);
}

void AlphaBlendL08ToL08FlatAlpha(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                 unsigned int srcX, unsigned int srcY, L08* dst, unsigned int dstWidth,
                                 unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                 unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    const SampleRule rule{includeZeros != 0, twoLevel, endOf(dst, dstWidth, dstHeight)};
    blendThrough<Binary>(alpha, cover, opacity, region, destination, source, rule);
}

void AlphaBlendL08WithAlphaBufferToL08(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                       unsigned int srcX, unsigned int srcY, L08* dst, unsigned int dstWidth,
                                       unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                       unsigned char opacity, bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, alpha, dst);
    blendSamples(region, destination, source, Scaled{Cover{cover}, opacity}, {true, twoLevel, nullptr});
}

void AlphaBlendL12ToL12(const L12* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                        unsigned int srcX, unsigned int srcY, L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                        unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned char includeZeros,
                        bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    const SampleRule rule{includeZeros != 0, twoLevel, endOf(dst, dstWidth, dstHeight)};
    blendThrough<Scaled>(alpha, cover, opacity, region, destination, source, rule);
}

// If zeros are skipped, the alpha plane has the geometry and corner of the source. Hosts rely on it.
void AlphaBlendL12ToL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                        unsigned int alphaX, unsigned int alphaY, L12* dst, unsigned int dstWidth,
                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                        unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const bool ownGeometry = alpha != nullptr && includeZeros != 0;
    const Plane cover = ownGeometry ? OMNAR_PLANE(alpha) : OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    if (ownGeometry) OMNAR_EXPECT_HOLDS(alpha, region);
    const SampleRule rule{includeZeros != 0, twoLevel, endOf(dst, dstWidth, dstHeight)};
    blendThrough<Scaled>(alpha, cover, opacity, region, destination, source, rule);
}

void AlphaBlendL12ToL12FlatAlpha(const L12* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                 unsigned int srcX, unsigned int srcY, L12* dst, unsigned int dstWidth,
                                 unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                 unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h, bool) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane cover = OMNAR_PLANE_LIKE(alpha, src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    const SampleRule rule{includeZeros != 0, twoLevel, endOf(dst, dstWidth, dstHeight)};
    blendThrough<Binary>(alpha, cover, opacity, region, destination, source, rule);
}
