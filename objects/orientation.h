// SPDX-License-Identifier: MIT
/// @file
/// The direction in which an object reaches furthest.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/host/large_block.h"
#include "objects/angle_tables.h"
#include "objects/runs.h"

namespace omnar {

/// How heavily an object's pixels lie in each direction of its centre, for one object after the other.
class Directions {
public:
    explicit Directions(const AngleTables& tables);

    /// Begins with an object of that many pixels.
    void begin(std::size_t pixels);

    /// Each pixel weighs the square of its distance. The centre is one of the buffer, the run's columns and row count
    /// from the corner of the scanned area: both are compared as they are.
    void add(const Run& run, double centerX, double centerY);

    /// The bin around which an arc of a fifth of a turn weighs most; the first of several, and 0 if none weighs anything.
    int heaviest();

private:
    /// A filled bin in the continued turn.
    struct Place {
        int position;
        double weight;
    };

    template <bool marked>
    void addRun(const Run& run, double centerX, double centerY);

    int heaviestOfAll();
    int heaviestOfFew();

    const AngleTables& tables_;
    int halfArc_;
    bool small_ = true;                 ///< whether the object has no more pixels than there are bins
    LargeArray<double> weights_;        ///< of the bins, with room to continue the turn by half an arc at both ends
    LargeArray<std::uint64_t> filled_;  ///< a bit for each bin that a pixel was added to, while the object is small
    LargeArray<Place> places_;
};

}  // namespace omnar
