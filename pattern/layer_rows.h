// SPDX-License-Identifier: MIT
/// @file
/// The rows of one layer, as a view at one zoom shows them.
#pragma once

#include <OmnarPattern.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "pattern/grid.h"
#include "pattern/mean.h"

namespace omnar::pattern {

/// View pixels side by side in one tile.
struct Run {
    Tile tile;
    unsigned row;     ///< view row in the tile
    unsigned offset;  ///< view column in the tile, where it begins
    unsigned count;   ///< view pixels
};

/// The rows of a layer of L08 or TRC. Rows that take longer to scale than to copy are kept.
///
/// In straight and half-drop layouts a tile's row is one row of the layer, whichever the drop says, so that one plane of
/// rows that are scaled horizontally serves all tiles. In brick layout the drop moves pixels within the row before they
/// are scaled, and a smooth row has pieces of several rows of the layer: there is a plane for each shift that tiles have.
template <class Px>
class LayerRows {
public:
    LayerRows(const Px* pixels, const Grid& grid, Quality quality);

    /// Copies a run. `columns` has the file column of each of its pixels, before any drop, if wantsColumns().
    void copy(const Run& run, const unsigned* columns, Px* to);
    bool wantsColumns() const { return way_ == Way::scaledEachTime; }

    /// The run where it is in memory without a copy, or null. It stays there until the next call.
    const Px* find(const Run& run);

    /// Lets as many planes be kept as there are shifts in a view.
    void keepPlanes(std::size_t count) { mostPlanes_ = count; }

    /// Forgets the rows that show changed pixels.
    void forget(const Rectangle& changed);

private:
    enum class Way { unscaled, keptExact, keptSmooth, scaledEachTime };

    struct Plane {
        unsigned shift;
        std::unique_ptr<Px[]> pixels;
        std::vector<bool> isMade;  ///< for each row
        std::uint64_t lastUse;
    };

    const Px* line(unsigned row) const { return pixels_ + std::size_t{row} * grid_.x.side; }
    /// The row of the layer that a view row of a tile shows.
    unsigned fileRow(const Run& run) const {
        return modulo(std::int64_t{grid_.y.fileOf(run.row)} - grid_.shiftY(run.tile), grid_.y.side);
    }

    const Px* keptRow(const Run& run);
    Plane* planeOf(unsigned shift);
    void scale(unsigned shift, unsigned row, Px* to) const;
    void scaleSmoothly(unsigned shift, unsigned row, Px* to);

    const Px* pixels_;
    Grid grid_;
    Way way_;
    std::vector<unsigned> columns_;  ///< the file column of each view column, for rows that are kept
    std::vector<Plane> planes_;
    std::vector<Sum<Px>> cells_;  ///< of a smooth row
    std::vector<Px> row_;         ///< a row, where there is no memory for a plane
    std::size_t mostPlanes_ = 1;
    std::uint64_t uses_ = 0;
};

extern template class LayerRows<L08>;
extern template class LayerRows<TRC>;

}  // namespace omnar::pattern
