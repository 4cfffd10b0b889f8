// SPDX-License-Identifier: MIT

// Blending a colour into bitmaps of 24 and 32 bits through coverage that is scaled to their size, nearest neighbour.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "buffers/host/contract.h"
#include "compositing/blend.h"

using namespace omnar;

namespace {

/// A bitmap in the layout of windowing systems. Rows are padded to a multiple of 4 bytes; the padding of the last row
/// need not exist.
template <class Byte, std::size_t pixelBytes>
struct Bitmap {
    Byte* bytes;
    std::size_t width, height;

    std::size_t pitch() const { return (width * pixelBytes + 3) / 4 * 4; }
    Byte* row(std::size_t y) const { return bytes + y * pitch(); }
    std::size_t end() const { return height == 0 ? 0 : (height - 1) * pitch() + width * pixelBytes; }
};

/// The row or column of the coverage for a position in the destination: position * scale, truncated, at most the last.
std::size_t nearest(std::size_t position, double scale, std::size_t extent) {
    const double scaled = static_cast<double>(position) * scale;
    const auto last = static_cast<double>(extent - 1);
    if (!(scaled > 0.0)) return 0;
    return static_cast<std::size_t>(std::min(scaled, last));
}

constexpr unsigned char byteOf(TRC color, std::size_t channel) {
    return static_cast<unsigned char>(color >> 8 * channel);
}

/// Blends pixel by pixel, for bitmaps that overlap.
template <std::size_t pixelBytes>
void blendInOrder(Bitmap<const unsigned char, pixelBytes> src, TRC color, Bitmap<unsigned char, pixelBytes> dst,
                  double scaleX, double scaleY) {
    for (std::size_t y = 0; y < dst.height; ++y) {
        const unsigned char* const coverage = src.row(nearest(y, scaleY, src.height));
        for (std::size_t x = 0; x < dst.width; ++x) {
            const int weight = coverage[nearest(x, scaleX, src.width) * pixelBytes];
            unsigned char* const pixel = dst.row(y) + x * pixelBytes;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                pixel[channel] = static_cast<unsigned char>(toward(pixel[channel], byteOf(color, channel), weight));
            }
        }
    }
}

/// Writes the coverage of each pixel three times, then 0: the fourth byte of a 4-byte pixel. The next 3-byte pixel
/// overwrites that 0.
template <std::size_t pixelBytes>
void gather(const unsigned char* coverage, const std::size_t* offsets, std::size_t count, L08* weights) {
    for (std::size_t x = 0; x < count; ++x) {
        const TRC weight = coverage[offsets[x]] * 0x010101U;
        std::memcpy(weights + x * pixelBytes, &weight, sizeof weight);
    }
}

/// Blends each row as bytes, which move toward their channel of the colour by the coverage of their pixel. Targets and
/// weights are laid out for up to 512 columns at a time; the offsets of the coverage are computed once for all rows.
template <std::size_t pixelBytes>
void blendBitmap(Bitmap<const unsigned char, pixelBytes> src, TRC color, Bitmap<unsigned char, pixelBytes> dst,
                 double scaleX, double scaleY) {
    if (dst.width == 0 || dst.height == 0) return;
    if (!apart(src.bytes, src.end(), dst.bytes, dst.end())) return blendInOrder(src, color, dst, scaleX, scaleY);

    constexpr std::size_t maxCols = 512;
    std::array<L08, maxCols * pixelBytes> target;
    const std::size_t targetCols = std::min(maxCols, dst.width);
    for (std::size_t x = 0; x < targetCols; ++x) {
        for (std::size_t channel = 0; channel < pixelBytes; ++channel) {
            target[x * pixelBytes + channel] = byteOf(color, channel);
        }
    }

    std::array<std::size_t, maxCols> offsets;
    std::array<L08, maxCols * pixelBytes + 1> weights;  // gather() writes one byte past the last 3-byte pixel
    for (std::size_t left = 0; left < dst.width; left += maxCols) {
        const std::size_t cols = std::min(maxCols, dst.width - left);
        for (std::size_t x = 0; x < cols; ++x) offsets[x] = nearest(left + x, scaleX, src.width) * pixelBytes;
        std::size_t gathered = src.height;  // the row of the coverage in `weights`; none yet
        for (std::size_t y = 0; y < dst.height; ++y) {
            if (const std::size_t row = nearest(y, scaleY, src.height); row != gathered) {
                gather<pixelBytes>(src.row(row), offsets.data(), cols, weights.data());
                gathered = row;
            }
            const std::size_t count = cols * pixelBytes;
            blend<Sample<L08>>({count, 1}, Plane<L08>(dst.row(y) + left * pixelBytes, count),
                               SourcePixels{Plane<const L08>(target.data(), count)},
                               Scaled{Cover{Plane<const L08>(weights.data(), count)}, 255});
        }
    }
}

}  // namespace

/// Checks all arguments if the destination has pixels; without pixels none is used.
#define OMNAR_EXPECT_BITMAPS()                                                                  \
    if (dstWidth != 0 && dstHeight != 0) {                                                      \
        OMNAR_EXPECT_NOT_NULL_IF(true, ", unless dstWidth or dstHeight is 0", src, dst);        \
        OMNAR_EXPECT_AS(srcWidth, srcWidth != 0, "not 0, unless dstWidth or dstHeight is 0");   \
        OMNAR_EXPECT_AS(srcHeight, srcHeight != 0, "not 0, unless dstWidth or dstHeight is 0"); \
        OMNAR_EXPECT_AS(scaleX, scaleX >= 0.0 && std::isfinite(scaleX),                         \
                        "finite and not negative, unless dstWidth or dstHeight is 0");          \
        OMNAR_EXPECT_AS(scaleY, scaleY >= 0.0 && std::isfinite(scaleY),                         \
                        "finite and not negative, unless dstWidth or dstHeight is 0");          \
    }                                                                                           \
    static_assert(true)

void AlphaBlendBGR24AlphaToBGR24(const unsigned char* src, unsigned int srcWidth, unsigned int srcHeight,
                                 unsigned int color, unsigned char* dst, unsigned int dstWidth, unsigned int dstHeight,
                                 double scaleX, double scaleY) {
    OMNAR_EXPECT_BITMAPS();
    blendBitmap<3>({src, srcWidth, srcHeight}, color, {dst, dstWidth, dstHeight}, scaleX, scaleY);
}

void AlphaBlendBGR32AlphaToBGR32(const unsigned char* src, unsigned int srcWidth, unsigned int srcHeight,
                                 unsigned int color, unsigned char* dst, unsigned int dstWidth, unsigned int dstHeight,
                                 double scaleX, double scaleY) {
    OMNAR_EXPECT_BITMAPS();
    blendBitmap<4>({src, srcWidth, srcHeight}, color, {dst, dstWidth, dstHeight}, scaleX, scaleY);
}
