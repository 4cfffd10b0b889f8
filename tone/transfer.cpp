// SPDX-License-Identifier: MIT

// Transfers and moves of tone. What the destination gains in a move, the source loses.

#include "tone/transfer.h"

#include <algorithm>
#include <span>

#include "buffers/planes.h"
#include "buffers/walk.h"
#include "tone/brush.h"

using namespace omnar;

namespace {

/// The position of a brush in its alpha plane. It is not set back at the end of a row but advances by one more row of
/// the alpha plane. Coverage past the plane's end is 0.
class RunningAlpha {
public:
    RunningAlpha(const L08* alpha, std::uint32_t width, std::uint32_t height, std::uint32_t x, std::uint32_t y)
        : start_(Plane(alpha, width, height, x, y).row()),
          left_(std::size_t{width} * height - (std::size_t{y} * width + x)),
          width_(width) {}

    const L08* row() const { return start_; }
    std::size_t left() const { return left_; }
    AlphaStretch stretch() const { return {start_, left_}; }
    unsigned value() const { return left_ != 0 ? *start_ : 0; }

    void advance(std::size_t n) {
        n = std::min(n, left_);
        start_ += n;
        left_ -= n;
    }
    void endRow() { advance(width_); }

private:
    const L08* start_;
    std::size_t left_;
    std::size_t width_;
};

/// True if the flags of protected values are null or share no memory with rows that are written. Otherwise they may
/// change while pixels are processed.
bool flagsApart(const unsigned char* protection, const auto&... written) {
    return protection == nullptr || (apart(std::span(protection, 256), written) && ...);
}

/// Moves one row. Each pixel of the destination gains before the source's sample loses, unless it is protected. `gain`
/// and `loss` read only the source, `alphaRow` and the flags. Without overlap the full row gains first.
template <class Gain, class Loss>
void moveRow(typename Gain::Pixel* dst, L08* src, const L08* alphaRow, std::size_t n, const Gain& gain,
             const Loss& loss, const unsigned char* protection) {
    if (apart(dst, n, src, n) && apart(dst, n, alphaRow, n) && apart(src, n, alphaRow, n) &&
        flagsApart(protection, std::span(dst, n), std::span(src, n))) {
        transferRows(gain)({n, 1}, {dst, n}, gain);
        return transferRows(loss)({n, 1}, {src, n}, loss);
    }
    for (std::size_t i = 0; i < n; ++i) {
        const auto gained = gain.at(dst[i], i);
        const bool loses = protection == nullptr || protection[src[i]] == 0;
        const L08 left = loss.at(src[i], i);
        dst[i] = gained;
        if (loses) src[i] = left;  // a protected sample keeps what the destination may have gained in its place
    }
}

/// Moves a region. `gain` and `loss` read only the source, `alphaPlane` and the flags. Without overlap bands of rows
/// gain before they lose, small enough to stay in the first cache.
template <class Gain, class Loss>
void moveRegion(Region region, Plane<typename Gain::Pixel> dst, Plane<L08> src, Plane<const L08> alphaPlane, Gain gain,
                Loss loss, const unsigned char* protection) {
    if (region.empty()) return;
    const auto written = extentOf(dst, region);
    const auto drawn = extentOf(src, region);
    const auto read = extentOf(alphaPlane, region);
    const bool isDisjoint =
        apart(written, drawn) && apart(written, read) && apart(drawn, read) && flagsApart(protection, written, drawn);
    const std::size_t bandRows = isDisjoint ? std::max<std::size_t>(1024 / region.cols, 1) : 1;
    for (;;) {
        const Region band{region.cols, std::min(region.rows, bandRows)};
        if (isDisjoint) {
            transferRows(gain)(band, dst, gain);
            transferRows(loss)(band, src, loss);
        } else {
            moveRow(dst.row(), src.row(), alphaPlane.row(), band.cols, gain, loss, protection);
        }
        if ((region.rows -= band.rows) == 0) return;
        const auto advance = [&](auto& plane) { plane = plane.in(plane.row(static_cast<std::ptrdiff_t>(band.rows))); };
        advance(dst);
        advance(src);
        advance(alphaPlane);
        gain.eachPlane(advance);
        loss.eachPlane(advance);
    }
}

template <class Destination, class Target, class Coverage>
auto blendThrough(Coverage coverage, unsigned opacity, Target target) {
    return Blend<Destination, Target, Scaled<Coverage>>{target, {coverage, opacity}};
}
template <class Destination, class Target>
auto blendThrough(Plane<const L08> alphaPlane, unsigned opacity, Target target) {
    return blendThrough<Destination>(Cover{alphaPlane}, opacity, target);
}

/// What a source loses by the coverage alone.
auto alphaLoss(Plane<const L08> alphaPlane) { return blendThrough<UnsignedSample>(alphaPlane, 255, Flat{0}); }

/// Moves one row under a brush whose position does not advance at protected samples. These give their tone and keep it.
/// Returns the position after the row.
RunningAlpha drawRow(L08* dst, L08* src, RunningAlpha alpha, std::size_t n, unsigned opacity,
                     const ValueSet& protectedValues, bool flagsFixed) {
    for (std::size_t count; n > 0 && alpha.left() > 0; n -= count, dst += count, src += count) {
        count = std::min(n, spreadBlock);
        const std::size_t ahead = std::min(count, alpha.left());
        if (flagsFixed && apart(src, count, dst, count) && apart(alpha.row(), ahead, dst, count) &&
            apart(alpha.row(), ahead, src, count)) {
            L08 reached[spreadBlock];
            L08 taken[spreadBlock];
            alpha.advance(brushKernels.current().spread(src, count, alpha.stretch(), protectedValues, reached, taken));
            const auto gain = blendThrough<UnsignedSample>(Plane<const L08>(reached, count), opacity,
                                                           From{Plane<const L08>(src, count)});
            const auto loss = alphaLoss(Plane<const L08>(taken, count));
            transferRows(gain)({count, 1}, {dst, count}, gain);
            transferRows(loss)({count, 1}, {src, count}, loss);
            continue;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const L08 value = src[i];
            const unsigned weight = alpha.value();
            const bool loses = !protectedValues.contains(value);
            const L08 left = UnsignedSample::step(value, 0, Constant{weight}, 0);
            dst[i] = UnsignedSample::step(dst[i], value, Constant{scaled(weight, opacity)}, 0);
            src[i] = loses ? left : src[i];
            alpha.advance(loses ? 1 : 0);
        }
    }
    return alpha;
}

/// Moves one row by the hard brush. `left` is the number of samples of the buffer from `src` on; samples past its end
/// count as 0.
RunningAlpha drawHardRow(L08* dst, L08* src, std::size_t left, RunningAlpha alpha, std::size_t n, unsigned opacity,
                         const ValueSet& protectedValues, bool flagsFixed) {
    const std::size_t stamped = std::min({n, left / 2, alpha.left()});
    std::size_t i = 0;
    if (flagsFixed && apart(dst, stamped, src, 2 * stamped) && apart(dst, stamped, alpha.row(), stamped) &&
        apart(src, 2 * stamped, alpha.row(), stamped)) {
        brushKernels.current().stamp(dst, src, alpha.row(), stamped, opacity, protectedValues);
        alpha.advance(i = stamped);
    }
    for (; i < n; ++i) {
        const unsigned value = 2 * i < left ? src[2 * i] : 0;
        if (scaled(value, scaled(alpha.value(), opacity)) != 0) dst[i] = 255;
        if (2 * i + 1 < left && !protectedValues.contains(src[2 * i + 1])) src[2 * i + 1] = 0;
        alpha.advance(1);
    }
    return alpha;
}

}  // namespace

void TransferToneL08ToL08(const L08* alpha, int clearEmpty, unsigned int alphaWidth, unsigned int alphaHeight,
                          unsigned int alphaX, unsigned int alphaY, L08* src, L08* dst, unsigned int dstWidth,
                          unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                          bool keepSource, bool additive, bool, bool hard, unsigned int w, unsigned int h,
                          const unsigned char* protection) {
    const Region region = clip(w, h, OMNAR_FIRST_PLANE(alpha), OMNAR_PLANE(dst));
    OMNAR_EXPECT_MEMORY(region, alpha, src, dst);
    if (region.empty()) return;

    const auto transfer = [&](Region part, std::size_t firstRow, Plane<const L08> alphaPlane) {
        const std::uint32_t y = dstY + static_cast<std::uint32_t>(firstRow);
        const Plane source(src, dstWidth, dstHeight, dstX, y);
        const Plane destination(dst, dstWidth, dstHeight, dstX, y);
        const From<L08> ink{Plane<const L08>(src, dstWidth, dstHeight, dstX, y)};
        const auto move = [&]<class Emptied>(Emptied, auto gain, const unsigned char* flags) {
            if (keepSource) return process(part, destination, gain, transferRows(gain));
            const auto moveBy = [&](auto loss) {
                moveRegion(part, destination, source, alphaPlane, gain, loss, flags);
            };
            if (flags == nullptr) return moveBy(blendThrough<Emptied>(alphaPlane, opacity, Flat{0}));
            moveBy(blendThrough<Emptied>(Unprotected{alphaPlane, ink.plane, ValueSet(flags)}, opacity, Flat{0}));
        };
        const auto soften = [&](auto gain) { move(Sample<L08>(), gain, protection); };
        const auto harden = [&](auto gain, const unsigned char* flags) { move(Whole<L08>(), gain, flags); };
        if (hard && clearEmpty != 0) {
            harden(blendThrough<Whole<L08>>(alphaPlane, opacity, FullAbove<From<L08>, 0>{ink}), nullptr);
        } else if (hard) {
            harden(blendThrough<WhereInk<Whole<L08>>>(alphaPlane, opacity, FullAbove<From<L08>, 0>{ink}), protection);
        } else if (additive) {
            clearEmpty != 0 ? soften(blendThrough<ErasedWithoutInk<SaturatedSum>>(alphaPlane, opacity, ink))
                            : soften(blendThrough<SaturatedSum>(alphaPlane, opacity, ink));
        } else {
            clearEmpty != 0 ? soften(blendThrough<ErasedWithoutInk<Sample<L08>>>(alphaPlane, opacity, ink))
                            : soften(blendThrough<WhereInk<Sample<L08>>>(alphaPlane, opacity, ink));
        }
    };
    // The rows that the alpha plane covers in full, and the part of one more row.
    const RunningAlpha brush(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const std::size_t pitch = region.cols + alphaWidth;
    const std::size_t fullRows =
        brush.left() < region.cols ? 0 : std::min(region.rows, (brush.left() - region.cols) / pitch + 1);
    transfer({region.cols, fullRows}, 0, Plane(brush.row(), pitch));
    if (fullRows < region.rows && fullRows * pitch < brush.left()) {
        transfer({brush.left() - fullRows * pitch, 1}, fullRows, Plane(brush.row() + fullRows * pitch, pitch));
    }
}

void TransferToneL08ToTRC(const L08* alpha, int, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                          unsigned int alphaY, L08* src, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                          unsigned int dstX, unsigned int dstY, unsigned char opacity, bool useColor,
                          unsigned int color, unsigned int w, unsigned int h) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Plane source = OMNAR_PLANE_LIKE(src, dst);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, src, dst);
    if (useColor) {
        const Blend<Colour, Flat, Scaled<Tint>> tint{{color}, {{source, alphaPlane, opacity}, 255}};
        return process(region, destination, tint, transferRows(tint));
    }
    const auto gain = blendThrough<Colour>(alphaPlane, opacity, InkGrey{source});
    moveRegion(region, destination, source, alphaPlane, gain, alphaLoss(alphaPlane), nullptr);
}

void TransferToneTRCToL08(const L08* alpha, int, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                          unsigned int alphaY, const TRC* src, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                          unsigned int dstX, unsigned int dstY, unsigned char opacity, bool hard, unsigned int w,
                          unsigned int h) {
    const Plane alphaPlane = OMNAR_FIRST_PLANE(alpha);
    const Darkness darkness{OMNAR_PLANE_LIKE(src, dst)};
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, alphaPlane, destination);
    OMNAR_EXPECT_MEMORY(region, alpha, src, dst);
    const auto transfer = [&](auto operation) { process(region, destination, operation, transferRows(operation)); };
    hard ? transfer(blendThrough<WhereInk<Whole<L08>>>(alphaPlane, opacity, FullAbove<Darkness, 127>{darkness}))
         : transfer(blendThrough<Sample<L08>>(alphaPlane, opacity, darkness));
}

void MoveToneL08ToL08Prot(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                          unsigned int alphaY, L08* src, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                          unsigned int dstX, unsigned int dstY, unsigned char opacity, bool hard, unsigned int w,
                          unsigned int h, const unsigned char* protection) {
    Plane source = OMNAR_PLANE_LIKE(src, dst);
    Plane destination = OMNAR_PLANE(dst);
    Region region = clip(w, h, OMNAR_FIRST_PLANE(alpha), destination);
    OMNAR_EXPECT_MEMORY(region, alpha, src, dst, protection);
    if (region.empty()) return;

    RunningAlpha brush(alpha, alphaWidth, alphaHeight, alphaX, alphaY);
    const ValueSet protectedValues(protection);
    const L08* const end = src + std::size_t{dstWidth} * dstHeight;
    // The hard brush may write past the region's columns, but not past the buffer.
    const std::span<const L08> drawn(source.row(), end);
    const bool fixed = flagsApart(protection, extentOf(destination, region), drawn);
    for (;;) {
        if (hard) {
            const auto left = static_cast<std::size_t>(end - source.row());
            brush =
                drawHardRow(destination.row(), source.row(), left, brush, region.cols, opacity, protectedValues, fixed);
        } else {
            brush = drawRow(destination.row(), source.row(), brush, region.cols, opacity, protectedValues, fixed);
        }
        if (--region.rows == 0) return;
        brush.endRow();
        source.advance();
        destination.advance();
    }
}
