// SPDX-License-Identifier: MIT
/// @file
/// Progress of the work on a terminal.
#pragma once

#include <cstdint>

namespace example {

/// A progress bar on standard error, if that is a terminal.
class Progress {
public:
    explicit Progress(std::uint64_t steps);
    ~Progress();  ///< erases the bar
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::uint64_t done);

private:
    std::uint64_t steps_;
    std::uint64_t shown_ = UINT64_MAX;  ///< per cent; UINT64_MAX before the first
    bool terminal_;
};

}  // namespace example
