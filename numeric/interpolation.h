// SPDX-License-Identifier: MIT
/// @file
/// Searches in tables whose entries have no order, and their kernels for every level. The vector kernels are in
/// interpolation_rows.cpp.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstddef>

#include "buffers/level.h"

namespace omnar {

constexpr bool isBetween(double end1, double x, double end2) {
    return (end1 <= x && x <= end2) || (end1 >= x && x >= end2);
}

/// The first entry that x lies between and its successor, counted from `first`; count - 1 if there is none.
inline std::size_t findSegment(const double* xs, std::size_t count, double x, std::size_t first = 0) {
    while (first + 1 < count && !isBetween(xs[first], x, xs[first + 1])) ++first;
    return first;
}

/// The first of the entries nearest to x. One that is infinitely far away is never nearer than entry 0.
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

/// Of tables that are not empty.
struct TableSearch {
    std::size_t (*segment)(const double* xs, std::size_t count, double x);
    std::size_t (*nearest)(const double* xs, std::size_t count, double x);
};
extern const Levels<TableSearch> tableSearch;

}  // namespace omnar
