// SPDX-License-Identifier: MIT
/// @file
/// The module object, and errors that cross the module's boundary.
#pragma once

#include <OmnarRaster.h>

namespace omnar {

/// Makes an exception the error information of this thread. Returns false if the system cannot keep it.
bool setErrorInfo(const COmnarException& error);

/// Throws a COmnarException with the status as its code. Its other fields come from this thread's error information, if
/// there is any.
[[noreturn]] void throwStatus(int status);

/// Throws if the status of a host service is a failure.
inline void throwIfFailed(int status) {
    if (status < 0) throwStatus(status);
}

/// The loaded library.
class Module {
public:
    Module() : mmxAtStart_(IsMMX()) {}

    /// What IsMMX() returned while the library was loaded. Kept for debuggers and tests; no function depends on it.
    int mmxAtStart() const { return mmxAtStart_; }

private:
    int mmxAtStart_;
};

/// The only object of its class.
const Module& module();

}  // namespace omnar
