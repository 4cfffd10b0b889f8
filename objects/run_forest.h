// SPDX-License-Identifier: MIT
/// @file
/// Which runs of an area make up one object.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/large_block.h"
#include "objects/bit_rows.h"

namespace omnar {

/// The runs of rows of bits, numbered row by row from the left, and the objects that they make up. The objects are
/// numbered as a scan meets them that leaves out the last row and the last column; what lies there alone is no object.
class RunForest {
public:
    /// Whether 32 bits can number the runs, whatever the rows hold.
    static constexpr bool canHold(std::size_t cols, std::size_t rows) {
        return (cols + 1) / 2 <= static_cast<std::size_t>(INT32_MAX) / rows;
    }

    explicit RunForest(const BitRows& bits);

    std::int32_t objects() const { return objects_; }
    std::size_t firstRunOf(std::size_t row) const { return static_cast<std::size_t>(firstRuns_[row]); }

    /// The number of the object that a run is part of, from 0 on; below 0 if it is part of none.
    std::int32_t objectOf(std::size_t run) const { return ~ends(nodes_[run]); }

private:
    std::size_t countRows(const BitRows& bits);
    void numberObjects(const BitRows& bits);

    /// What a node leads to, if no run is more than one step away from its root.
    std::int32_t ends(std::int32_t node) const { return node < 0 ? node : nodes_[static_cast<std::size_t>(node)]; }

    LargeArray<std::int32_t> firstRuns_;  ///< of each row, and one past the last run
    LargeArray<std::int32_t> nodes_;      ///< of each run: a run nearer to the root, itself at the root; then ~object
    std::int32_t objects_ = 0;
};

}  // namespace omnar
