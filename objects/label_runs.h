// SPDX-License-Identifier: MIT
/// @file
/// The rows of a picture as runs of pixels of one value.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "buffers/host/large_block.h"
#include "buffers/region.h"

namespace omnar {

/// Pixels side by side in one row. Columns and row count from the corner of the scanned part of the picture.
struct Run {
    int row;
    int begin;
    int end;  ///< the column behind the last one

    int length() const { return end - begin; }
};

/// Where the pixels that are equal to the one at `begin` end: at `end` at the latest. Eight bytes are compared at once,
/// which serves short runs as well as long ones.
template <class T>
int endOfRun(const T* row, int begin, int end) {
    static_assert(std::endian::native == std::endian::little, "the lowest bits of a word are its first pixel");
    std::array<T, sizeof(std::uint64_t) / sizeof(T)> same;
    same.fill(row[begin]);
    constexpr int pixelsPerWord = sizeof(std::uint64_t) / sizeof(T);
    constexpr int pixelBits = 8 * sizeof(T);

    int at = begin + 1;
    for (; end - at >= pixelsPerWord; at += pixelsPerWord) {
        std::uint64_t word;
        std::memcpy(&word, row + at, sizeof word);
        word ^= std::bit_cast<std::uint64_t>(same);
        if (word != 0) return at + std::countr_zero(word) / pixelBits;
    }
    while (at < end && row[at] == same[0]) ++at;
    return at;
}

/// Calls visit(run, its first pixel) for one run after the other, row by row, until it returns false. True if it never
/// did.
template <class T, class Visit>
bool forEachRun(Plane<const T> picture, int cols, int rows, Visit visit) {
    for (int row = 0; row < rows; ++row, picture.advance()) {
        for (int begin = 0, end = 0; begin < cols; begin = end) {
            end = endOfRun(picture.row(), begin, cols);
            if (!visit(Run{row, begin, end}, picture.row() + begin)) return false;
        }
    }
    return true;
}

/// The runs of many objects, sorted by object; those of one object stay in the order in which they were added.
class RunsByObject {
public:
    /// `countOf(object)` runs will be added for each object.
    template <class CountOf>
    RunsByObject(std::size_t objects, CountOf countOf) : ends_(objects), runs_(allot(countOf)) {}

    void add(std::size_t object, const Run& run) { runs_[ends_[object]++] = run; }

    /// All runs of one object, once all runs of all objects were added.
    std::span<const Run> of(std::size_t object) const {
        const std::size_t begin = object == 0 ? 0 : ends_[object - 1];
        return {runs_.data() + begin, ends_[object] - begin};
    }

private:
    /// Gives each object its place, still empty, and returns how many runs there are.
    template <class CountOf>
    std::size_t allot(CountOf countOf) {
        std::size_t total = 0;
        for (std::size_t object = 0; object < ends_.size(); ++object) {
            ends_[object] = total;
            total += countOf(object);
        }
        return total;
    }

    LargeArray<std::size_t> ends_;
    LargeArray<Run> runs_;
};

}  // namespace omnar
