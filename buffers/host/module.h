// SPDX-License-Identifier: MIT
/// @file
/// The module object and the path that errors take across the module's boundary.
#pragma once

#include <OmnarRaster.h>

namespace omnar {

/// Turns an exception into the error information that this thread's caller picks up. False if it could not be kept.
bool createComError(const COmnarException& error);

/// Raises a failed status: its code is the status, the rest comes from the error information that was left on this
/// thread, if any.
[[noreturn]] void throwFromLastErrorInfo(int status);

/// Raises a host service's status if it is a failure.
inline void check(int status) {
    if (status < 0) throwFromLastErrorInfo(status);
}

/// The one object that stands for the loaded library.
class Module {
public:
    Module() { initInstance(); }

    /// What happens while the library is loaded: the processor is asked for MMX.
    bool initInstance();

    int mmxAtStart() const { return mmxAtStart_; }

private:
    int mmxAtStart_ = 0;
};

const Module& module();

}  // namespace omnar
