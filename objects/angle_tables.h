// SPDX-License-Identifier: MIT
/// @file
/// The bins of a full turn into which directions are sorted, from InitFeatureTables() to ReleaseFeatureTables().
#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace omnar {

class AngleTables {
public:
    /// Divides a full turn into angleSteps bins, rounded. Returns false, and leaves no tables, without memory for them.
    bool build(double angleSteps);

    /// False without tables, and for less than 8 bins: binOf() needs one per octant.
    bool usable() const { return octant_ > 0; }

    int bins() const { return bins_; }

    /// The direction of a bin; -pi for bin 0.
    double radiansOf(int bin) const { return bin / binsPerRadian_ - std::numbers::pi; }

    /// The bin, in 0..bins(), of the vector from a pixel to the centre: dx to the right, dy down. Bins count clockwise,
    /// seen from the centre, from 0 for a pixel on the left.
    int binOf(double dx, double dy) const {
        const double across = std::fabs(dx);
        const double down = std::fabs(dy);
        const int steepness = across > down ? 0 : across < down ? 1 : 2;
        const double slope = steepness == 2 ? octant_ : octant_ * std::min(across, down) / std::max(across, down);
        const double entry = slope + 0.5;
        const Sector sector = sectors[steepness][(dx > 0.0 ? 0 : 2) + (dy > 0.0 ? 0 : 1)];
        return sector.octants * octant_ + sector.sense * arctangents_.get()[static_cast<int>(entry)];
    }

private:
    /// The octant from which the arctangent of the slope counts, and in which sense.
    struct Sector {
        int octants;
        int sense;
    };
    /// For vectors that are flatter than a diagonal, steeper, and diagonal; each toward the lower right, upper right,
    /// lower left and upper left. Three of the diagonals are one octant too large.
    static constexpr Sector sectors[3][4] = {
        {{0, 1}, {8, -1}, {4, -1}, {4, 1}}, {{2, -1}, {6, 1}, {2, 1}, {6, -1}}, {{0, 1}, {7, 1}, {3, 1}, {5, 1}}};

    int bins_ = 0;
    int octant_ = 0;  ///< bins of an eighth of a turn
    double binsPerRadian_ = 0.0;
    std::unique_ptr<int[]> arctangents_;  ///< in bins, of the slopes 0 to 1 in steps of 1 / octant_
};

/// The tables of the process. They are not guarded: nothing may use them while they are built or released.
const AngleTables& angleTables();

}  // namespace omnar
