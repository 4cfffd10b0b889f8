// SPDX-License-Identifier: MIT
/// @file
/// Searches in unsorted tables: the reference, and the kernels of every vector level.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstddef>

#include "buffers/level.h"

namespace omnar {

constexpr bool isBetween(double end1, double x, double end2) {
    return (end1 <= x && x <= end2) || (end1 >= x && x >= end2);
}

/// The first i, from `start` on, with x between xs[i] and xs[i + 1]; count - 1 if there is none.
inline std::size_t findSegment(const double* xs, std::size_t count, double x, std::size_t start = 0) {
    std::size_t i = start;
    while (i + 1 < count && !isBetween(xs[i], x, xs[i + 1])) ++i;
    return i;
}

/// The first of the entries nearest to x; 0 if all are infinitely far from x.
inline std::size_t findNearest(const double* xs, std::size_t count, double x) {
    std::size_t nearest = 0;
    double least = DBL_MAX;
    for (std::size_t i = 0; i < count; ++i) {
        const double distance = std::fabs(x - xs[i]);
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

/// findSegment() and findNearest(), for tables of one entry or more.
struct TableSearch {
    std::size_t (*findSegment)(const double* xs, std::size_t count, double x);
    std::size_t (*findNearest)(const double* xs, std::size_t count, double x);
};
extern const Levels<TableSearch> tableSearch;

}  // namespace omnar
