// SPDX-License-Identifier: MIT
/// @file
/// The direction in which an object extends furthest from its centre.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/host/large_block.h"
#include "objects/angle_tables.h"
#include "objects/runs.h"

namespace omnar {

/// Weights of an object's pixels by direction from its centre. One histogram is used for many objects.
class DirectionHistogram {
public:
    explicit DirectionHistogram(const AngleTables& tables);

    /// Begins an object of that many pixels.
    void reset(std::size_t pixels);

    /// Adds each pixel of a run with its squared distance from the centre as weight. The centre counts from the corner
    /// of the buffer, the run from the corner of the scanned area; they are subtracted as they are.
    void add(const Run& run, double centerX, double centerY);

    /// The bin at the centre of the heaviest arc of a fifth of a turn: the first of several, 0 if all weigh nothing.
    int heaviestArc();

private:
    /// A filled bin at its position in the extended turn.
    struct Entry {
        int position;
        double weight;
    };

    template <bool marked>
    void addRun(const Run& run, double centerX, double centerY);

    int heaviestOfAll();
    int heaviestOfFilled();

    const AngleTables& tables_;
    int halfArc_;                       ///< bins of a tenth of a turn
    bool small_ = true;                 ///< the object has at most as many pixels as there are bins
    LargeArray<double> weights_;        ///< of the bins, with room to extend the turn by half an arc at both ends
    LargeArray<std::uint64_t> filled_;  ///< a bit for each bin that holds a pixel, for small objects
    LargeArray<Entry> entries_;
};

}  // namespace omnar
