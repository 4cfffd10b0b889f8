// SPDX-License-Identifier: MIT
/// @file
/// Blending through an alpha plane whose values are remapped on the way.
#pragma once

#include <array>

#include "buffers/lookup.h"
#include "compositing/blend.h"

namespace omnar {

/// Cuts columns 0..n-1 of a row into stretches of at most 2 * `most` pixels and hands each to `process(first, count)`,
/// which reads all of the stretch's alpha values before it blends over any. Where the alpha row lies in the memory of the
/// destination row, the stretches come in an order in which none destroys the alpha values of one that is still to come,
/// so that every alpha value is read before the row is blended.
///
/// A destination pixel is larger than an alpha value: the first stretch of what remains destroys alpha values behind it,
/// or the last one destroys values before it, but both at once only if less than 2 * `most` pixels remain.
template <class Process>
void eachStretch(const L08* alpha, const TRC* dst, std::size_t n, std::size_t most, Process&& process) {
    const auto destroys = [&](std::size_t first, std::size_t from, std::size_t to) {
        const auto written = reinterpret_cast<std::uintptr_t>(dst + first);
        const auto read = reinterpret_cast<std::uintptr_t>(alpha);
        return written < read + to && read + from < written + most * sizeof(TRC);
    };
    std::size_t begin = 0;
    std::size_t end = n;
    while (end - begin > 2 * most) {
        if (!destroys(begin, begin + most, end)) {
            process(begin, most);
            begin += most;
        } else {
            end -= most;
            process(end, most);
        }
    }
    process(begin, end - begin);
}

/// Blends with `Scaled` cover whose values are remapped before their pixels are blended: for as many rows at a time as fit,
/// unless a row is wider or alpha and destination share memory.
template <class Destination, class Target>
OMNAR_NEVER_INLINE void remapAndBlend(Region region, Plane<TRC> dst, const Target& target, Plane<const L08> cover,
                                      unsigned opacity, const unsigned char* lut) {
    constexpr std::size_t most = 2048;
    std::array<L08, 2 * most> remapped;
    const auto blendPart = [&](Region part, const Plane<const L08>& alpha, const Plane<TRC>& pixels) {
        const Plane<L08> values(remapped.data(), part.cols);
        process(part, values, Mapped<L08>{alpha, lut}, lookupRows);
        blend<Destination>(part, pixels, target, Scaled{Cover{values}, opacity});
    };
    const bool together = region.cols <= remapped.size() && apart(extentOf(cover, region), extentOf(dst, region));
    const std::size_t rowsAtOnce = together ? remapped.size() / region.cols : 1;
    for (;;) {
        const std::size_t rows = std::min(rowsAtOnce, region.rows);
        if (together) {
            blendPart({region.cols, rows}, cover, dst);
        } else {
            eachStretch(cover.row(), dst.row(), region.cols, most, [&](std::size_t first, std::size_t count) {
                blendPart({count, 1}, cover.from(first), dst.from(first));
            });
        }
        region.rows -= rows;
        if (region.rows == 0) return;
        cover.advance(rows);
        dst.advance(rows);
    }
}

/// The same, but without a `lut` the cover is taken as it is. Inlined, as blend() is.
template <class Destination, class Target>
OMNAR_ALWAYS_INLINE void blendRemapped(Region region, const Plane<TRC>& dst, const Target& target,
                                       const Plane<const L08>& cover, unsigned opacity, const unsigned char* lut) {
    if (lut == nullptr) return blend<Destination>(region, dst, target, Scaled{Cover{cover}, opacity});
    if (!region.empty()) remapAndBlend<Destination>(region, dst, target, cover, opacity, lut);
}

}  // namespace omnar
