// SPDX-License-Identifier: MIT
/// @file
/// The plain pass: what the memory asks of any code that does the same work.
#pragma once

#include <cstddef>

namespace bench {

/// The bytes of a region in each of its rows; none if `bytes` is 0.
struct Rows {
    std::byte* first = nullptr;
    std::size_t bytes = 0, pitch = 0;
};

/// Reads `src` and `alpha`, reads `dst` if asked to, and writes `dst`.
struct Pass {
    Rows src = {}, alpha = {}, dst = {};
    std::size_t rows = 0;
    bool readsDst = false;  ///< and leaves its values as they are

    /// Runs by vectors of the current level.
    void run() const;
};

}  // namespace bench
