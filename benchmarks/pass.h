// SPDX-License-Identifier: MIT
/// @file
/// The plain pass: the memory accesses that any code for the same work needs.
#pragma once

#include <cstddef>

namespace bench {

/// The rows of a region in a buffer; none if `bytes` is 0.
struct Rows {
    std::byte* first = nullptr;
    std::size_t bytes = 0, pitch = 0;
};

/// Reads `src` and `alpha`, reads `dst` if `readsDst` is set, and writes `dst`.
struct Pass {
    Rows src = {}, alpha = {}, dst = {};
    std::size_t rows = 0;
    bool readsDst = false;  ///< its values are then unchanged

    /// Runs at the current vector level.
    void run() const;
};

}  // namespace bench
