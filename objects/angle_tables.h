// SPDX-License-Identifier: MIT
/// @file
/// Directions in bins of a full turn: the tables that live from InitFeatureTables() to ReleaseFeatureTables().
#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace omnar {

class AngleTables {
public:
    /// Divides a full turn into so many bins. False if there is no memory for them; then there are none.
    bool build(double angleSteps);

    /// False without tables, and for fewer bins than octants, which no direction can be sorted into.
    bool usable() const { return octant_ > 0; }

    int bins() const { return bins_; }

    /// The direction of a bin, from -pi on.
    double radiansOf(int bin) const { return bin / binsPerRadian_ - std::numbers::pi; }

    /// The bin of the way from a pixel to the centre, dx to the right and dy down: from 0 for a pixel on the left,
    /// clockwise, to bins().
    int binOf(double dx, double dy) const {
        const double across = std::fabs(dx);
        const double down = std::fabs(dy);
        const int kind = across > down ? 0 : across < down ? 1 : 2;
        const double slope = kind == 2 ? octant_ : octant_ * std::min(across, down) / std::max(across, down);
        const double entry = slope + 0.5;
        const Sector sector = sectors[kind][(dx > 0.0 ? 0 : 2) + (dy > 0.0 ? 0 : 1)];
        return sector.octants * octant_ + sector.sense * arctangents_.get()[static_cast<int>(entry)];
    }

private:
    /// From where the arctangent of the slope counts, and in which sense.
    struct Sector {
        int octants;
        int sense;
    };
    /// Pixels further across than down, further down than across, and on a diagonal; each for the centre to the lower
    /// right, upper right, lower left and upper left of them. Three of the diagonals count an octant too much.
    static constexpr Sector sectors[3][4] = {
        {{0, 1}, {8, -1}, {4, -1}, {4, 1}}, {{2, -1}, {6, 1}, {2, 1}, {6, -1}}, {{0, 1}, {7, 1}, {3, 1}, {5, 1}}};

    int bins_ = 0;
    int octant_ = 0;
    double binsPerRadian_ = 0.0;
    std::unique_ptr<int[]> arctangents_;  ///< of the slopes 0 to 1 in steps of 1 / octant_, in bins
};

/// The one set of tables. It is not guarded: who builds or releases it must be alone.
const AngleTables& angleTables();

}  // namespace omnar
