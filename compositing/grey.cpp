// SPDX-License-Identifier: MIT

// Blending grey levels into grey levels, and 12-bit ink into 12-bit ink.

#include <type_traits>

#include "buffers/planes.h"
#include "compositing/blend.h"

using namespace omnar;

namespace {

/// The two switches choose what becomes of a sample. Inlined, as blend() is.
template <class Weight>
OMNAR_ALWAYS_INLINE void blendGrey(Region region, const Plane<L08>& dst, const Plane<const L08>& src,
                                   const Weight& weight, bool includeZeros, bool twoLevel) {
    if (includeZeros) {
        twoLevel ? blend<TwoLevel<L08>>(region, dst, From{src}, weight)
                 : blend<Sample<L08>>(region, dst, From{src}, weight);
    } else {
        twoLevel ? blend<WhereInk<TwoLevel<L08>>>(region, dst, From{src}, weight)
                 : blend<WhereInk<Sample<L08>>>(region, dst, From{src}, weight);
    }
}

/// The operand from the next pixel of its row on.
template <class Operand>
Operand next(Operand operand) {
    operand.eachPlane([](auto& plane) { plane = plane.from(1); });
    return operand;
}

/// Two levels of ink, one pixel late: after a pixel was blended, the next one in memory is made full unless it is empty,
/// and blended only then. So the first pixel of a row moves from its old value, and the one behind the row's last is
/// made full although it does not belong to the region. Behind the buffer's last pixel there is none.
template <class Weight>
void blendTwoLevelInk(Region region, Plane<L12> dst, const L12* end, Divided target, Weight weight) {
    if (region.empty()) return;
    const auto eachPlane = [&](auto&& visit) {
        target.eachPlane(visit);
        weight.eachPlane(visit);
    };
    for (;;) {
        L12* const row = dst.row();
        const bool hasNext = row + region.cols != end;
        bool free = true;
        eachPlane([&](const auto& plane) { free = free && apart(plane.row(), region.cols, row, region.cols); });
        if (free) {
            blend<Sample<L12>>({1, 1}, dst, target, weight);
            blend<Raised>({region.cols - 1, 1}, dst.from(1), next(target), next(weight));
            if (hasNext) row[region.cols] = Raised::raised(row[region.cols]);
        } else {
            for (std::size_t i = 0; i < region.cols; ++i) {
                row[i] = Sample<L12>::step(row[i], target.at(i), weight, i);
                if (i + 1 < region.cols || hasNext) row[i + 1] = Raised::raised(row[i + 1]);
            }
        }
        if (--region.rows == 0) return;
        dst.advance();
        eachPlane([](auto& plane) { plane.advance(); });
    }
}

/// The target is the sample divided by 255, with one exception: where zeros are skipped and there is an alpha plane, it
/// is the sample itself. Where zeros are skipped, two levels have no effect. `end` is the end of the destination buffer.
/// Inlined, as blend() is.
template <class Weight>
OMNAR_ALWAYS_INLINE void blendInk(Region region, const Plane<L12>& dst, const L12* end, const Plane<const L12>& src,
                                  const Weight& weight, bool includeZeros, bool twoLevel) {
    if (includeZeros && twoLevel) {
        blendTwoLevelInk(region, dst, end, Divided{src}, weight);
    } else if (includeZeros) {
        blend<Sample<L12>>(region, dst, Divided{src}, weight);
    } else if constexpr (std::is_same_v<Weight, Constant>) {
        blend<Sample<L12>>(region, dst, Divided{src}, Binary{Inked{src}, weight.opacity});
    } else {
        blend<WhereInk<Sample<L12>>>(region, dst, From{src}, weight);
    }
}

const L12* endOf(const L12* pixels, unsigned int width, unsigned int height) {
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
    const auto by = [&](auto weight) { blendGrey(region, destination, source, weight, includeZeros != 0, twoLevel); };
    alpha == nullptr ? by(Constant{opacity}) : by(Scaled{Cover{cover}, opacity});
}

// Where zeros are skipped the alpha plane is read at the source's position by the source's geometry; hosts rely on it.
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
    const auto by = [&](auto weight) { blendGrey(region, destination, source, weight, includeZeros != 0, twoLevel); };
    alpha == nullptr ? by(Constant{opacity}) : by(Scaled{Cover{cover}, opacity});
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
    const auto by = [&](auto weight) { blendGrey(region, destination, source, weight, includeZeros != 0, twoLevel); };
    alpha == nullptr ? by(Constant{opacity}) : by(Binary{Cover{cover}, opacity});
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
    blendGrey(region, destination, source, Scaled{Cover{cover}, opacity}, true, twoLevel);
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
    const auto by = [&](auto weight) {
        blendInk(region, destination, endOf(dst, dstWidth, dstHeight), source, weight, includeZeros != 0, twoLevel);
    };
    alpha == nullptr ? by(Constant{opacity}) : by(Scaled{Cover{cover}, opacity});
}

// Where zeros are skipped the alpha plane is read at the source's position by the source's geometry; hosts rely on it.
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
    const auto by = [&](auto weight) {
        blendInk(region, destination, endOf(dst, dstWidth, dstHeight), source, weight, includeZeros != 0, twoLevel);
    };
    alpha == nullptr ? by(Constant{opacity}) : by(Scaled{Cover{cover}, opacity});
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
    const auto by = [&](auto weight) {
        blendInk(region, destination, endOf(dst, dstWidth, dstHeight), source, weight, includeZeros != 0, twoLevel);
    };
    alpha == nullptr ? by(Constant{opacity}) : by(Binary{Cover{cover}, opacity});
}
