// SPDX-License-Identifier: MIT
/// @file
/// How far the work has come, for somebody who waits at a terminal.
#pragma once

#include <cstdint>

namespace example {

/// A bar on standard error; nothing at all where standard error is not a terminal.
class Progress {
public:
    explicit Progress(std::uint64_t steps);
    ~Progress();  ///< wipes the bar, so that whatever is printed next has the line to itself
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::uint64_t done);

private:
    std::uint64_t steps_;
    std::uint64_t shown_ = UINT64_MAX;  ///< per cent
    bool terminal_;
};

}  // namespace example
