// SPDX-License-Identifier: MIT
#include <OmnarRaster.h>

#include "objects/area.h"
#include "objects/buffer.h"
#include "objects/flood_fill.h"

using namespace omnar;

template <class T>
int Fill(T* buffer, int width, int height, int seedX, int seedY, int areaX, int areaY, int areaW, int areaH,
         T fillValue, int* changedCount) {
    FloodFill<T> flood(OMNAR_BUFFER(buffer), Area::within(width, height, areaX, areaY, areaW, areaH));
    const std::int64_t changed = flood.fill(clampTo(width - 1, seedX), clampTo(height - 1, seedY), fillValue);
    if (changedCount != nullptr) *changedCount = static_cast<int>(static_cast<std::uint32_t>(changed + 1));
    return 0;
}

template int Fill(unsigned char*, int, int, int, int, int, int, int, int, unsigned char, int*);
template int Fill(int*, int, int, int, int, int, int, int, int, int, int*);
