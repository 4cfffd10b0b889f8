// SPDX-License-Identifier: MIT
/// @file
/// Blending through an alpha plane whose values are first remapped by a table.
#pragma once

#include <array>

#include "buffers/lookup.h"
#include "compositing/blend.h"

namespace omnar {

/// Cuts columns 0..n-1 of a row into stretches of at most 2 * `size` pixels and passes each to `process(first, count)`,
/// which reads all alpha values of the stretch before it writes pixels. If the alpha row overlaps the destination row,
/// no stretch overwrites alpha values of a later one, so every alpha value is read before it is overwritten.
///
/// Pixels are larger than alpha values: the first remaining stretch may overwrite alpha values after it, or the last
/// one values before it, but both only if fewer than 2 * `size` pixels remain.
template <class Process>
void eachStretch(const L08* alpha, const TRC* dst, std::size_t n, std::size_t size, Process&& process) {
    const auto overwritesAlpha = [&](std::size_t first, std::size_t alphaBegin, std::size_t alphaEnd) {
        const auto written = reinterpret_cast<std::uintptr_t>(dst + first);
        const auto read = reinterpret_cast<std::uintptr_t>(alpha);
        return written < read + alphaEnd && read + alphaBegin < written + size * sizeof(TRC);
    };
    std::size_t begin = 0;
    std::size_t end = n;
    while (end - begin > 2 * size) {
        if (!overwritesAlpha(begin, begin + size, end)) {
            process(begin, size);
            begin += size;
        } else {
            end -= size;
            process(end, size);
        }
    }
    process(begin, end - begin);
}

/// Remaps the coverage into a local buffer and blends with `Scaled` weights from there: as many rows at a time as fit,
/// or stretches of a row if a row does not fit or alpha plane and destination overlap.
template <class Destination, class Target>
OMNAR_NEVER_INLINE void remapAndBlend(Region region, Plane<TRC> dst, const Target& target, Plane<const L08> cover,
                                      unsigned opacity, const unsigned char* lut) {
    constexpr std::size_t stretch = 2048;
    std::array<L08, 2 * stretch> remapped;
    const auto blendPart = [&](Region part, const Plane<const L08>& alpha, const Plane<TRC>& pixels) {
        const Plane<L08> values(remapped.data(), part.cols);
        process(part, values, Mapped<L08>{alpha, lut}, lookupRows);
        blend<Destination>(part, pixels, target, Scaled{Cover{values}, opacity});
    };
    const bool severalRows = region.cols <= remapped.size() && apart(extentOf(cover, region), extentOf(dst, region));
    const std::size_t rowsAtOnce = severalRows ? remapped.size() / region.cols : 1;
    for (;;) {
        const std::size_t rows = std::min(rowsAtOnce, region.rows);
        if (severalRows) {
            blendPart({region.cols, rows}, cover, dst);
        } else {
            eachStretch(cover.row(), dst.row(), region.cols, stretch, [&](std::size_t first, std::size_t count) {
                blendPart({count, 1}, cover.columnsFrom(first), dst.columnsFrom(first));
            });
        }
        region.rows -= rows;
        if (region.rows == 0) return;
        cover.advance(rows);
        dst.advance(rows);
    }
}

/// The same; a null `lut` leaves the coverage unchanged. Inlined like blend().
template <class Destination, class Target>
OMNAR_ALWAYS_INLINE void blendRemapped(Region region, const Plane<TRC>& dst, const Target& target,
                                       const Plane<const L08>& cover, unsigned opacity, const unsigned char* lut) {
    if (lut == nullptr) return blend<Destination>(region, dst, target, Scaled{Cover{cover}, opacity});
    if (!region.empty()) remapAndBlend<Destination>(region, dst, target, cover, opacity, lut);
}

}  // namespace omnar
