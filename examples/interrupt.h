// SPDX-License-Identifier: MIT
/// @file
/// Signals that ask the program to stop.
#pragma once

namespace example {

/// Thrown after a signal to stop.
struct Interrupted {
    int signal;
};

/// Makes signals to stop set a flag for checkInterrupt() instead of ending the program, and a file that exceeds its
/// size limit a write error.
void watchInterrupts();

/// Throws Interrupted after a signal to stop.
void checkInterrupt();

/// Ends the program by the default action of the signal.
[[noreturn]] void terminateBy(Interrupted interrupted);

}  // namespace example
