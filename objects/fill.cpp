// SPDX-License-Identifier: MIT

// Filling one region of equal pixels.

#include <OmnarRaster.h>

#include "buffers/host/contract.h"
#include "objects/area.h"
#include "objects/region_fill.h"

using namespace omnar;

template <class T>
int Fill(T* buffer, int width, int height, int seedX, int seedY, int areaX, int areaY, int areaW, int areaH,
         T fillValue, int* changedCount) {
    OMNAR_EXPECT_NOT_NULL(buffer);
    OMNAR_EXPECT_AS(width, width > 0, "1 or more");
    OMNAR_EXPECT_AS(height, height > 0, "1 or more");
    const Image<T> image{buffer, width, height};
    RegionFill<T> region(image, Area::within(width, height, areaX, areaY, areaW, areaH));
    const std::int64_t changed = region.fill(clampTo(width - 1, seedX), clampTo(height - 1, seedY), fillValue);
    if (changedCount != nullptr) *changedCount = static_cast<int>(static_cast<std::uint32_t>(changed + 1));
    return 0;
}

template int Fill(unsigned char*, int, int, int, int, int, int, int, int, unsigned char, int*);
template int Fill(int*, int, int, int, int, int, int, int, int, int, int*);
