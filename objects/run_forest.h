// SPDX-License-Identifier: MIT
/// @file
/// Which runs of an area make up one object.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/host/large_block.h"
#include "objects/bit_rows.h"
#include "objects/run_joining.h"

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

    std::size_t runsOf(std::size_t row) const {
        return static_cast<std::size_t>(firstRuns_[row + 1] - firstRuns_[row]);
    }

    /// Called for each row in order, from the first one on. Returns what the row's runs are part of: ~object, or at least 0
    /// for none as far as the rows up to this one show. The last `unscanned` runs of the row begin no object.
    const std::int32_t* number(std::size_t row, std::size_t unscanned);

    /// How many objects the rows had that were numbered.
    std::int32_t objects() const { return objects_; }

    /// The same for the last run of a row, once all rows were numbered.
    std::int32_t lastOf(std::size_t row) { return resolve(firstRuns_[row + 1] - 1); }

private:
    std::size_t countRows(const BitRows& bits);

    /// Gives a run the object of its tree, if there is one.
    std::int32_t resolve(std::int32_t run) {
        const std::int32_t object = nodes_[static_cast<std::size_t>(rootAbove(nodes_.data(), run))];
        if (object < 0) nodes_[static_cast<std::size_t>(run)] = object;
        return object;
    }

    LargeArray<std::int32_t> firstRuns_;  ///< of each row, and one past the last run
    LargeArray<std::int32_t> nodes_;      ///< of each run: a run nearer to the root, itself at the root; then ~object
    std::int32_t objects_ = 0;
};

}  // namespace omnar
