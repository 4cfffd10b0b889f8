// SPDX-License-Identifier: MIT

// Conversions between formats, thresholds, and look-up tables. A conversion in place has its destination as source.

#include "tone/convert.h"

#include "buffers/lookup.h"
#include "buffers/planes.h"
#include "buffers/walk.h"

using namespace omnar;

namespace {

constexpr L08 full = 255;
constexpr L12 full12 = 4095;

}  // namespace

void ConvertBufferFrom32To24Bits(const TRC* src, unsigned char* dst, unsigned int count) {
    OMNAR_EXPECT_NOT_NULL_IF(count != 0, ", unless count is 0", src, dst);
    const Plane source(src, count);
    process({count, 1}, Plane(reinterpret_cast<Bgr*>(dst), count), Packed{source}, conversionRows);
}

void ConvertL012ToL08(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                      unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                      unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    process(region, destination, Narrowed{source}, conversionRows);
}

void ConvertL08To2LevelL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                           unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                           unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    process(region, destination, TwoLevels<L08, L08>{source, 1, full}, conversionRows);
}

void ConvertL08To2LevelL08(L08* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                           unsigned int w, unsigned int h) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data);
    process(region, destination, TwoLevels<L08, L08>{destination, 1, full}, conversionRows);
}

void ConvertL08To2LevelL08AtValue(L08* data, unsigned char threshold, unsigned int width, unsigned int height,
                                  unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data);
    process(region, destination, TwoLevels<L08, L08>{destination, threshold, full}, conversionRows);
}

void ConvertL12To2LevelL08(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                           unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                           unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    process(region, destination, TwoLevels<L12, L08>{source, 1, full}, conversionRows);
}

void ConvertL12To2LevelL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                           unsigned int srcY, L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                           unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h) {
    const Plane source = OMNAR_FIRST_PLANE(src);
    const Plane destination = OMNAR_PLANE(dst);
    const Region region = clip(w, h, source, destination);
    OMNAR_EXPECT_MEMORY(region, src, dst);
    process(region, destination, TwoLevels<L12, L12>{source, 1, full12}, conversionRows);
}

// In place the full value is 255, not 4095: hosts rely on it.
void ConvertL12To2LevelL12(L12* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                           unsigned int w, unsigned int h) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data);
    process(region, destination, TwoLevels<L12, L12>{destination, 1, full}, conversionRows);
}

void ApplyLUTToL08(L08* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y, unsigned int w,
                   unsigned int h, const unsigned char* lut) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, lut);
    process(region, destination, Mapped<L08>{destination, lut}, lookupRows);
}

void ApplyLUTToL12(L12* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y, unsigned int w,
                   unsigned int h, const unsigned short* lut) {
    const Plane destination = OMNAR_ONLY_PLANE(data);
    const Region region = clip(w, h, destination);
    OMNAR_EXPECT_MEMORY(region, data, lut);
    process(region, destination, Mapped<L12>{destination, lut}, lookupRows);
}
