// SPDX-License-Identifier: MIT
/// @file
/// Being told to stop, and stopping tidily.
#pragma once

namespace example {

/// Thrown where the program notices that it was told to stop.
struct Interrupted {
    int signal;
};

/// From now on a signal to stop is remembered for checkInterrupt() and ends the program no more, and a file that grows
/// past its limit is a write error instead of the end.
void watchInterrupts();

/// Throws Interrupted if there was such a signal.
void checkInterrupt();

/// Ends the program the way the signal would have done.
[[noreturn]] void dieOf(Interrupted interrupted);

}  // namespace example
