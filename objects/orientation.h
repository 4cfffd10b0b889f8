// SPDX-License-Identifier: MIT
/// @file
/// The direction in which an object reaches furthest.
#pragma once

#include "buffers/large_block.h"
#include "objects/angle_tables.h"
#include "objects/label_runs.h"

namespace omnar {

/// How heavily an object's pixels lie in each direction of its centre, for one object after the other.
class Directions {
public:
    explicit Directions(const AngleTables& tables);

    /// Begins with an object.
    void clear();

    /// Each pixel weighs the square of its distance. The centre is one of the buffer, the run's columns and row count
    /// from the corner of the scanned area: both are compared as they are.
    void add(const Run& run, double centerX, double centerY);

    /// The bin around which an arc of a fifth of a turn weighs most; the first of several, and 0 if none weighs anything.
    int heaviest();

private:
    const AngleTables& tables_;
    int halfArc_;
    LargeArray<double> weights_;  ///< of the bins, behind as many of the last bins as half an arc has
};

}  // namespace omnar
