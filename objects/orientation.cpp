// SPDX-License-Identifier: MIT
#include "objects/orientation.h"

#include <algorithm>
#include <cstddef>

namespace omnar {
namespace {

/// So many arcs are summed up side by side, each by itself from its first bin to its last.
constexpr int together = 16;

/// To whole groups of arcs, with at least one to spare.
constexpr std::size_t roundedUp(int count) { return (static_cast<std::size_t>(count) / together + 1) * together; }

/// The way from the middle of a pixel to the centre. A negative one is shortened by a whole pixel.
double wayTo(double centre, int pixel) {
    const double way = centre - (pixel + 0.5);
    return way < 0.0 ? way + 1.0 : way;
}

}  // namespace

Directions::Directions(const AngleTables& tables)
    : tables_(tables),
      halfArc_(tables.bins() / 10),
      weights_(roundedUp(tables.bins()) + 2 * static_cast<std::size_t>(halfArc_)) {}

void Directions::clear() { std::fill(weights_.begin(), weights_.end(), 0.0); }

void Directions::add(const Run& run, double centerX, double centerY) {
    double* const weights = weights_.data() + halfArc_;
    const double dy = wayTo(centerY, run.row);
    for (int column = run.begin; column < run.end; ++column) {
        const double dx = wayTo(centerX, column);
        weights[tables_.binOf(dx, dy)] += dx * dx + dy * dy;
    }
}

int Directions::heaviest() {
    // The turn is continued at both ends by half an arc. That covers the bin behind the last one, which is never read.
    double* const weights = weights_.data() + halfArc_;
    const int bins = tables_.bins();
    std::copy_n(weights + bins - halfArc_, halfArc_, weights_.data());
    std::copy_n(weights, halfArc_, weights + bins);

    double most = 0.0;
    int heaviest = 0;
    for (int first = 0; first < bins; first += together) {
        double sums[together] = {};
        for (int i = 0; i < 2 * halfArc_; ++i) {
            const double* const bin = weights_.data() + first + i;
            for (int arc = 0; arc < together; ++arc) sums[arc] += bin[arc];
        }
        for (int arc = 0; arc < std::min(together, bins - first); ++arc) {
            if (sums[arc] > most) {
                most = sums[arc];
                heaviest = first + arc;
            }
        }
    }
    return heaviest;
}

}  // namespace omnar
