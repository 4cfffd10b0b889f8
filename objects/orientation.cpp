// SPDX-License-Identifier: MIT
#include "objects/orientation.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace omnar {
namespace {

/// Arcs are summed up this many at a time, each by itself from its first bin to its last.
constexpr int together = 16;

/// To whole groups of arcs, with at least one to spare.
constexpr std::size_t roundedUp(int count) { return (static_cast<std::size_t>(count) / together + 1) * together; }

/// If at most one bin in `sparse` is filled, only filled bins are added up. With 100 of 360 bins filled that takes a third
/// of the time.
constexpr int sparse = 2;

constexpr std::size_t wordBits = 64;

/// Calls visit(i) for each set bit, in ascending order.
template <class Visit>
void forBits(const LargeArray<std::uint64_t>& words, Visit visit) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        for (std::uint64_t word = words[i]; word != 0; word &= word - 1) {
            visit(static_cast<int>(i * wordBits) + std::countr_zero(word));
        }
    }
}

/// The way from the middle of a pixel to the centre. A negative one is shortened by a whole pixel.
double wayTo(double centre, int pixel) {
    const double way = centre - (pixel + 0.5);
    return way < 0.0 ? way + 1.0 : way;
}

}  // namespace

Directions::Directions(const AngleTables& tables)
    : tables_(tables),
      halfArc_(tables.bins() / 10),
      weights_(roundedUp(tables.bins()) + 2 * static_cast<std::size_t>(halfArc_)),
      filled_(static_cast<std::size_t>(tables.bins()) / wordBits + 1),
      places_(2 * (static_cast<std::size_t>(tables.bins()) / sparse + 1)) {
    std::fill(weights_.begin(), weights_.end(), 0.0);
    std::fill(filled_.begin(), filled_.end(), 0);
}

void Directions::begin(std::size_t pixels) {
    if (small_) {
        double* const weights = weights_.data() + halfArc_;
        forBits(filled_, [&](int bin) { weights[bin] = 0.0; });
        std::fill(filled_.begin(), filled_.end(), 0);
    } else {
        std::fill(weights_.begin(), weights_.end(), 0.0);
    }
    small_ = pixels <= static_cast<std::size_t>(tables_.bins());
}

void Directions::add(const Run& run, double centerX, double centerY) {
    small_ ? addRun<true>(run, centerX, centerY) : addRun<false>(run, centerX, centerY);
}

template <bool marked>
void Directions::addRun(const Run& run, double centerX, double centerY) {
    double* const weights = weights_.data() + halfArc_;
    const double dy = wayTo(centerY, run.row);
    for (int column = run.begin; column < run.end; ++column) {
        const double dx = wayTo(centerX, column);
        const int bin = tables_.binOf(dx, dy);
        weights[bin] += dx * dx + dy * dy;
        if constexpr (marked) {
            filled_[static_cast<std::size_t>(bin) / wordBits] |= std::uint64_t{1}
                                                                 << static_cast<unsigned>(bin) % wordBits;
        }
    }
}

int Directions::heaviest() {
    int filled = 0;
    for (const std::uint64_t word : filled_) filled += std::popcount(word);
    return small_ && filled <= tables_.bins() / sparse ? heaviestOfFew() : heaviestOfAll();
}

int Directions::heaviestOfFew() {
    if (halfArc_ == 0) return 0;  // arcs without bins
    // The filled bins of the turn, continued at both ends by half an arc, in order. An arc begins at its first position.
    const double* const weights = weights_.data() + halfArc_;
    const int bins = tables_.bins();
    Place* end = places_.begin();
    const auto add = [&](int from, int to, int offset) {
        forBits(filled_, [&](int bin) {
            if (bin >= from && bin < to) *end++ = {bin + offset, weights[bin]};
        });
    };
    add(bins - halfArc_, bins, halfArc_ - bins);
    add(0, bins, halfArc_);  // the bin after the last one is never read
    add(0, halfArc_, halfArc_ + bins);

    // An arc weighs more than the one before it only if it reaches one more filled bin: its last one.
    double most = 0.0;
    int heaviest = 0;
    const Place* inside = places_.begin();
    for (const Place* last = places_.begin(); last != end; ++last) {
        const int first = std::max(0, last->position + 1 - 2 * halfArc_);
        if (first >= bins) break;
        while (inside->position < first) ++inside;
        double sum = 0.0;
        for (const Place* place = inside; place <= last; ++place) sum += place->weight;
        if (sum > most) {
            most = sum;
            heaviest = first;
        }
    }
    return heaviest;
}

int Directions::heaviestOfAll() {
    // The turn is continued at both ends by half an arc. That covers the bin after the last one, which is never read.
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
