// SPDX-License-Identifier: MIT
#include "objects/orientation.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace omnar {
namespace {

/// Arcs that are summed side by side, each from its first bin to its last, so that compilers vectorise over arcs.
constexpr int arcGroup = 16;

/// The next greater multiple of arcGroup.
constexpr std::size_t paddedBins(int bins) { return (static_cast<std::size_t>(bins) / arcGroup + 1) * arcGroup; }

/// Sums over filled bins alone are used if at most bins / sparseDivisor are filled. They take a third of the time if
/// 100 of 360 bins are filled.
constexpr int sparseDivisor = 2;

constexpr std::size_t wordBits = 64;

/// Calls visit(i) for each set bit, in ascending order.
template <class Visit>
void forEachBit(const LargeArray<std::uint64_t>& words, Visit visit) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        for (std::uint64_t word = words[i]; word != 0; word &= word - 1) {
            visit(static_cast<int>(i * wordBits) + std::countr_zero(word));
        }
    }
}

/// The distance from the middle of a pixel to the centre, along one axis. Negative ones are increased by 1.
double distanceTo(double center, int pixel) {
    const double distance = center - (pixel + 0.5);
    return distance < 0.0 ? distance + 1.0 : distance;
}

}  // namespace

DirectionHistogram::DirectionHistogram(const AngleTables& tables)
    : tables_(tables),
      halfArc_(tables.bins() / 10),
      weights_(paddedBins(tables.bins()) + 2 * static_cast<std::size_t>(halfArc_)),
      filled_(static_cast<std::size_t>(tables.bins()) / wordBits + 1),
      entries_(2 * (static_cast<std::size_t>(tables.bins()) / sparseDivisor + 1)) {
    std::fill(weights_.begin(), weights_.end(), 0.0);
    std::fill(filled_.begin(), filled_.end(), 0);
}

void DirectionHistogram::reset(std::size_t pixels) {
    if (small_) {
        double* const weights = weights_.data() + halfArc_;
        forEachBit(filled_, [&](int bin) { weights[bin] = 0.0; });
        std::fill(filled_.begin(), filled_.end(), 0);
    } else {
        std::fill(weights_.begin(), weights_.end(), 0.0);
    }
    small_ = pixels <= static_cast<std::size_t>(tables_.bins());
}

void DirectionHistogram::add(const Run& run, double centerX, double centerY) {
    small_ ? addRun<true>(run, centerX, centerY) : addRun<false>(run, centerX, centerY);
}

template <bool marked>
void DirectionHistogram::addRun(const Run& run, double centerX, double centerY) {
    double* const weights = weights_.data() + halfArc_;
    const double dy = distanceTo(centerY, run.row);
    for (int column = run.begin; column < run.end; ++column) {
        const double dx = distanceTo(centerX, column);
        const int bin = tables_.binOf(dx, dy);
        weights[bin] += dx * dx + dy * dy;
        if constexpr (marked) {
            const std::uint64_t bit = std::uint64_t{1} << static_cast<unsigned>(bin) % wordBits;
            filled_[static_cast<std::size_t>(bin) / wordBits] |= bit;
        }
    }
}

int DirectionHistogram::heaviestArc() {
    int filled = 0;
    for (const std::uint64_t word : filled_) filled += std::popcount(word);
    return small_ && filled <= tables_.bins() / sparseDivisor ? heaviestOfFilled() : heaviestOfAll();
}

int DirectionHistogram::heaviestOfFilled() {
    if (halfArc_ == 0) return 0;  // arcs of no bins
    // The filled bins in order, the turn extended by half an arc at both ends. An arc is known by its first position,
    // which is also the bin at its centre.
    const double* const weights = weights_.data() + halfArc_;
    const int bins = tables_.bins();
    Entry* end = entries_.begin();
    const auto append = [&](int firstBin, int endBin, int offset) {
        forEachBit(filled_, [&](int bin) {
            if (bin >= firstBin && bin < endBin) *end++ = {bin + offset, weights[bin]};
        });
    };
    append(bins - halfArc_, bins, halfArc_ - bins);
    append(0, bins, halfArc_);  // without bin number `bins`, which no arc holds
    append(0, halfArc_, halfArc_ + bins);

    // An arc is heavier than the one before only if its last bin is filled.
    double heaviest = 0.0;
    int heaviestFirst = 0;
    const Entry* begin = entries_.begin();
    for (const Entry* last = entries_.begin(); last != end; ++last) {
        const int first = std::max(0, last->position + 1 - 2 * halfArc_);
        if (first >= bins) break;
        while (begin->position < first) ++begin;
        double sum = 0.0;
        for (const Entry* entry = begin; entry <= last; ++entry) sum += entry->weight;
        if (sum > heaviest) {
            heaviest = sum;
            heaviestFirst = first;
        }
    }
    return heaviestFirst;
}

int DirectionHistogram::heaviestOfAll() {
    // Extends the turn by half an arc at both ends. That overwrites bin number `bins`, which no arc holds.
    double* const weights = weights_.data() + halfArc_;
    const int bins = tables_.bins();
    std::copy_n(weights + bins - halfArc_, halfArc_, weights_.data());
    std::copy_n(weights, halfArc_, weights + bins);

    double heaviest = 0.0;
    int heaviestFirst = 0;
    for (int first = 0; first < bins; first += arcGroup) {
        double sums[arcGroup] = {};
        for (int i = 0; i < 2 * halfArc_; ++i) {
            const double* const bin = weights_.data() + first + i;
            for (int arc = 0; arc < arcGroup; ++arc) sums[arc] += bin[arc];
        }
        for (int arc = 0; arc < std::min(arcGroup, bins - first); ++arc) {
            if (sums[arc] > heaviest) {
                heaviest = sums[arc];
                heaviestFirst = first + arc;
            }
        }
    }
    return heaviestFirst;
}

}  // namespace omnar
