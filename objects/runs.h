// SPDX-License-Identifier: MIT
/// @file
/// Runs of pixels of one value.
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

/// Pixels of one row side by side. The row and the columns count from the corner of the scanned area.
struct Run {
    int row;
    int begin;
    int end;  ///< one past the last column

    int length() const { return end - begin; }
};

/// One past the last of the pixels from `begin` on that are equal to the one at `begin`; at most `end`. Compares 8
/// bytes at once, which is fast for short runs as well as for long ones.
template <class T>
int endOfRun(const T* row, int begin, int end) {
    static_assert(std::endian::native == std::endian::little, "the lowest bits of a word are its first pixel");
    constexpr int wordPixels = sizeof(std::uint64_t) / sizeof(T);
    constexpr int pixelBits = 8 * sizeof(T);
    std::array<T, sizeof(std::uint64_t) / sizeof(T)> equal;
    equal.fill(row[begin]);

    int column = begin + 1;
    for (; end - column >= wordPixels; column += wordPixels) {
        std::uint64_t word;
        std::memcpy(&word, row + column, sizeof word);
        word ^= std::bit_cast<std::uint64_t>(equal);
        if (word != 0) return column + std::countr_zero(word) / pixelBits;
    }
    while (column < end && row[column] == equal[0]) ++column;
    return column;
}

/// Calls visit(run, its first pixel) for each run, row by row, until it returns false. Returns true if it never did.
template <class T, class Visit>
bool forEachRun(Plane<const T> plane, int cols, int rows, Visit visit) {
    for (int row = 0; row < rows; ++row, plane.advance()) {
        for (int begin = 0, end = 0; begin < cols; begin = end) {
            end = endOfRun(plane.row(), begin, cols);
            if (!visit(Run{row, begin, end}, plane.row() + begin)) return false;
        }
    }
    return true;
}

/// Runs sorted by object. Those of one object keep the order in which they are added.
class RunsByObject {
public:
    /// countOf(object) is the number of runs that will be added for an object.
    template <class CountOf>
    RunsByObject(std::size_t objects, CountOf countOf) : ends_(objects), runs_(partition(countOf)) {}

    void add(std::size_t object, const Run& run) { runs_[ends_[object]++] = run; }

    /// All runs of one object. Valid after all runs of all objects are added.
    std::span<const Run> operator[](std::size_t object) const {
        const std::size_t begin = object == 0 ? 0 : ends_[object - 1];
        return {runs_.data() + begin, ends_[object] - begin};
    }

private:
    /// Sets the beginning of each object's runs. Returns the number of all runs.
    template <class CountOf>
    std::size_t partition(CountOf countOf) {
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
