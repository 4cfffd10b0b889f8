// SPDX-License-Identifier: MIT
/// @file
/// The one way in which the example programs give up.
#pragma once

#include <stdexcept>

namespace example {

/// What went wrong, in one line for the user.
class Failure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace example
