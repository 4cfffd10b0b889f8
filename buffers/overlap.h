// SPDX-License-Identifier: MIT
/// @file
/// Which overlap of buffers allows several pixels to be processed at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "buffers/inline.h"
#include "buffers/region.h"

namespace omnar {

/// True if two runs of pixels share no memory.
template <class A, class B>
bool apart(const A* a, std::size_t countOfA, const B* b, std::size_t countOfB) {
    const auto beginOfA = reinterpret_cast<std::uintptr_t>(a);
    const auto beginOfB = reinterpret_cast<std::uintptr_t>(b);
    return beginOfA + countOfA * sizeof(A) <= beginOfB || beginOfB + countOfB * sizeof(B) <= beginOfA;
}

template <class A, class B>
bool apart(std::span<A> a, std::span<B> b) {
    return apart(a.data(), a.size(), b.data(), b.size());
}

/// The memory from the first to the last pixel of a region that is not empty, including the gaps between its rows.
template <class Px>
std::span<Px> extentOf(const Plane<Px>& plane, Region region) {
    const auto toLast = static_cast<std::ptrdiff_t>(region.rows) - 1;
    return {std::min(plane.row(), plane.row(toLast)),
            static_cast<std::size_t>(std::abs(toLast * plane.pitch())) + region.cols};
}

/// True if reading n pixels together before writing them gives the result of pixel order. This holds if the rows do not
/// overlap, or if `read` starts at or after `written` and its pixels are no smaller.
template <class Read, class Written>
bool orderIsFree(const Read* read, const Written* written, std::size_t n) {
    const bool ahead = reinterpret_cast<std::uintptr_t>(read) >= reinterpret_cast<std::uintptr_t>(written);
    return apart(read, n, written, n) || (sizeof(Read) >= sizeof(Written) && ahead);
}

/// The same for every row of a region. With equal pitches in bytes one row decides for all.
template <class Read, class Written>
OMNAR_ALWAYS_INLINE bool orderIsFree(const Plane<Read>& read, const Plane<Written>& written, Region region) {
    const auto bytes = [](const auto& plane) { return plane.pitch() * static_cast<std::ptrdiff_t>(sizeof plane[0]); };
    if (region.rows == 1 || bytes(read) == bytes(written)) return orderIsFree(read.row(), written.row(), region.cols);
    return apart(extentOf(read, region), extentOf(written, region));
}

/// The number of neighbouring pixels, n at most, that may be read together before any of them is written.
template <class Read, class Written>
std::size_t freeStretch(const Read* read, const Written* written, std::size_t n) {
    if (orderIsFree(read, written, n)) return n;
    if (sizeof(Read) != sizeof(Written)) return 1;
    return (reinterpret_cast<std::uintptr_t>(written) - reinterpret_cast<std::uintptr_t>(read)) / sizeof(Written);
}

}  // namespace omnar
