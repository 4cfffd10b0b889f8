// SPDX-License-Identifier: MIT
/// @file
/// The connected components of an area's runs.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/host/large_block.h"
#include "objects/bit_rows.h"
#include "objects/union_find.h"

namespace omnar {

/// The runs of set bits, numbered row by row from the left, and the objects that they form. Objects are numbered in the
/// order in which a scan without the last row and the last column meets them. Runs that only lie there form no object.
class RunComponents {
public:
    /// True if 32 bits can number the runs, whatever the rows hold.
    static constexpr bool canHold(std::size_t cols, std::size_t rows) {
        return (cols + 1) / 2 <= static_cast<std::size_t>(INT32_MAX) / rows;
    }

    explicit RunComponents(const BitRows& bits);

    std::size_t runCount(std::size_t row) const {
        return static_cast<std::size_t>(firstRuns_[row + 1] - firstRuns_[row]);
    }

    /// Numbers the objects of a row; called once for each row, from the top. Returns for each run of the row ~object,
    /// or a value from 0 on if the rows so far give it none. The last `unscanned` runs of the row begin no object.
    const std::int32_t* number(std::size_t row, std::size_t unscanned);

    /// Objects in the rows numbered so far.
    std::int32_t objects() const { return objects_; }

    /// The value of number() for the last run of a row, after all rows are numbered.
    std::int32_t lastOfRow(std::size_t row) { return resolve(firstRuns_[row + 1] - 1); }

private:
    std::size_t countRows(const BitRows& bits);

    /// Gives a run the number of its object, if that has one.
    std::int32_t resolve(std::int32_t run) {
        const std::int32_t object = nodes_[static_cast<std::size_t>(findNumbered(nodes_.data(), run))];
        if (object < 0) nodes_[static_cast<std::size_t>(run)] = object;
        return object;
    }

    LargeArray<std::int32_t> firstRuns_;  ///< the first run of each row, and the number of all runs
    LargeArray<std::int32_t> nodes_;      ///< of each run: its parent, itself if it is a root; later ~object
    std::int32_t objects_ = 0;
};

}  // namespace omnar
