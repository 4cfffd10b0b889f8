// SPDX-License-Identifier: MIT
/// @file
/// The exception of the example programs.
#pragma once

#include <stdexcept>

namespace example {

/// An error. Its message is one line for the user.
class Failure : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace example
