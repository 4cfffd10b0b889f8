// SPDX-License-Identifier: MIT

// Motion copies: blends of a region over another place, often in the same buffer, in an order that the caller chooses.

#include <algorithm>
#include <array>

#include "buffers/planes.h"
#include "compositing/blend.h"

using namespace omnar;

namespace {

/// A blend of the source through the alpha plane.
template <class Destination, class Px = typename Destination::Pixel>
using Move = Blend<Destination, From<Px>, Scaled<Cover>>;

/// Processes pixels n - 1 to 0 of a row, in this order if overlap makes the result depend on it.
template <class Destination, class Kernel, class Px = typename Destination::Pixel>
void processRowLeftwards(Px* dst, const Move<Destination>& move, std::size_t n, const Kernel& vectorRows) {
    const Px* const src = move.target.plane.row();
    const bool coverApart = apart(move.weight.coverage.plane.row(), n, dst, n);
    if (coverApart && apart(src, n, dst, n)) return vectorRows({n, 1}, {dst, n}, move);

    // A stretch whose source is to the left is copied before it is overwritten. A source to the right is overwritten
    // already, so that no stretch may be longer than the overlap distance.
    std::array<Px, 1024> kept;
    const bool exact = src <= dst;
    const std::size_t stretch = exact ? kept.size() : freeStretch(dst, src, n);
    if (!coverApart || stretch < worthwhile<Px>) {
        while (n-- > 0) dst[n] = move.at(dst[n], n);
        return;
    }
    while (n > 0) {
        const std::size_t count = std::min(n, stretch);
        n -= count;
        Move<Destination> part = move;
        part.eachPlane([n](auto& plane) { plane = plane.from(n); });
        if (exact) {
            std::copy_n(src + n, count, kept.begin());
            part.target.plane = Plane<const Px>(kept.data(), count);
        }
        vectorRows({count, 1}, {dst + n, count}, part);
    }
}

bool isOrder(_EMotionCopyMode mode) { return mode >= eMotionFromTopLeft && mode <= eMotionFromBottomRight; }

/// Processes a region in the order of the mode.
template <class Destination, class Px = typename Destination::Pixel>
void moveRegion(Region region, Plane<Px> dst, Plane<const Px> src, Plane<const L08> alphaPlane, unsigned opacity,
                _EMotionCopyMode mode) {
    if (region.empty()) return;
    Move<Destination> move{{src}, {{alphaPlane}, opacity}};
    const auto vectorRows = runningKernel<Move<Destination>>(levelsInto(dst));
    const auto written = extentOf(dst, region);
    if (apart(extentOf(src, region), written) && apart(extentOf(alphaPlane, region), written)) {
        return process(region, dst, move, vectorRows);  // the order has no effect
    }
    if (mode == eMotionFromBottomLeft || mode == eMotionFromBottomRight) {
        dst = dst.upwards(region.rows);
        move.eachPlane([&](auto& plane) { plane = plane.upwards(region.rows); });
    }
    const bool leftwards = mode == eMotionFromTopRight || mode == eMotionFromBottomRight;
    if (!leftwards) return process(region, dst, move, vectorRows);
    RowCursor<Move<Destination>> at{dst, move, region.rows};
    do processRowLeftwards<Destination>(at.dst.row(), at.operation, region.cols, vectorRows);
    while (at.next());
}

}  // namespace

/// Checks the cut region. Corners may lie outside their buffers, which leaves an empty region.
#define OMNAR_EXPECT_MOTION(region)                       \
    if (!(region).empty()) OMNAR_EXPECT_SUMS(srcX, srcY); \
    OMNAR_EXPECT_MEMORY(region, src, alpha, dst);         \
    OMNAR_EXPECT_HOLDS(alpha, region)

void MotionCopyL08ToL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                        unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity, bool hard,
                        unsigned int w, unsigned int h, _EMotionCopyMode mode, bool) {
    const Plane source = OMNAR_PLANE_LIKE(src, src);
    const Plane alphaPlane = OMNAR_PLANE_LIKE(alpha, alpha);
    const Plane destination = OMNAR_PLANE_LIKE(dst, dst);
    const Region region = isOrder(mode) ? clip(w, h, source, destination) : Region{};
    OMNAR_EXPECT_MOTION(region);
    hard ? moveRegion<TwoLevel<L08>>(region, destination, source, alphaPlane, opacity, mode)
         : moveRegion<Sample<L08>>(region, destination, source, alphaPlane, opacity, mode);
}

void MotionCopyL12ToL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                        unsigned int srcY, const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                        unsigned int alphaX, unsigned int alphaY, L12* dst, unsigned int dstWidth,
                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity, bool hard,
                        unsigned int w, unsigned int h, _EMotionCopyMode mode, bool) {
    const Plane source = OMNAR_PLANE_LIKE(src, src);
    const Plane alphaPlane = OMNAR_PLANE_LIKE(alpha, alpha);
    const Plane destination = OMNAR_PLANE_LIKE(dst, dst);
    const Region region = isOrder(mode) ? clip(w, h, source, destination) : Region{};
    OMNAR_EXPECT_MOTION(region);
    hard ? moveRegion<TwoLevel<L12>>(region, destination, source, alphaPlane, opacity, mode)
         : moveRegion<Sample<L12>>(region, destination, source, alphaPlane, opacity, mode);
}

void MotionCopyTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                       unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                       unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                       unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                       unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                       _EMotionCopyMode mode, bool) {
    const Plane source = OMNAR_PLANE_LIKE(src, src);
    const Plane alphaPlane = OMNAR_PLANE_LIKE(alpha, alpha);
    const Plane destination = OMNAR_PLANE_LIKE(dst, dst);
    const Region region = isOrder(mode) ? clip(w, h, source, destination) : Region{};
    OMNAR_EXPECT_MOTION(region);
    moveRegion<Colour>(region, destination, source, alphaPlane, opacity, mode);
}
