// SPDX-License-Identifier: MIT
/// @file
/// The pixels of an area as bits.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/host/large_block.h"

namespace omnar {

/// One bit per pixel, row by row in words of 64 bits. Each row has at least one padding bit; padding bits are 0.
class BitRows {
public:
    BitRows(std::size_t cols, std::size_t rows)
        : cols_(cols), rows_(rows), words_(cols / 64 + 1), bits_(words_ * rows) {}

    std::size_t rows() const { return rows_; }
    std::size_t words() const { return words_; }  ///< of one row
    std::uint64_t* row(std::size_t y) const { return bits_.data() + y * words_; }

    /// True if the last pixel of row y is a run by itself. Requires more than one pixel per row.
    bool lastIsAlone(std::size_t y) const { return isSet(cols_ - 1, y) && !isSet(cols_ - 2, y); }

private:
    bool isSet(std::size_t x, std::size_t y) const { return (row(y)[x / 64] >> x % 64 & 1) != 0; }

    std::size_t cols_, rows_, words_;
    LargeArray<std::uint64_t> bits_;
};

}  // namespace omnar
