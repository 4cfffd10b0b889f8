// SPDX-License-Identifier: MIT
/// @file
/// May a row be processed many pixels at once although its buffers share memory?
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

/// The memory from the first to the last pixel of a region that is not empty, with all that lies between its rows.
template <class Px>
std::span<Px> extentOf(const Plane<Px>& plane, Region region) {
    const auto toLast = static_cast<std::ptrdiff_t>(region.rows) - 1;
    return {std::min(plane.row(), plane.row(toLast)),
            static_cast<std::size_t>(std::abs(toLast * plane.pitch())) + region.cols};
}

/// True if n pixels that are read together before any of them is written give what one pixel after the other gives: no
/// pixel of `read` is written before it is read. So it is for rows that share nothing, and where what is read starts at
/// or ahead of what is written and stays there, its pixels being no smaller.
template <class Read, class Written>
bool orderIsFree(const Read* read, const Written* written, std::size_t n) {
    const bool ahead = reinterpret_cast<std::uintptr_t>(read) >= reinterpret_cast<std::uintptr_t>(written);
    return apart(read, n, written, n) || (sizeof(Read) >= sizeof(Written) && ahead);
}

/// The same for every row of a region. Where the rows of both lie equally far apart, all are alike.
template <class Read, class Written>
OMNAR_ALWAYS_INLINE bool orderIsFree(const Plane<Read>& read, const Plane<Written>& written, Region region) {
    const auto bytes = [](const auto& plane) { return plane.pitch() * static_cast<std::ptrdiff_t>(sizeof plane[0]); };
    if (region.rows == 1 || bytes(read) == bytes(written)) return orderIsFree(read.row(), written.row(), region.cols);
    return apart(extentOf(read, region), extentOf(written, region));
}

/// How many neighbouring pixels, of any n, may be read together before any of them is written.
template <class Read, class Written>
std::size_t freeStretch(const Read* read, const Written* written, std::size_t n) {
    if (orderIsFree(read, written, n)) return n;
    if (sizeof(Read) != sizeof(Written)) return 1;
    return (reinterpret_cast<std::uintptr_t>(written) - reinterpret_cast<std::uintptr_t>(read)) / sizeof(Written);
}

}  // namespace omnar
