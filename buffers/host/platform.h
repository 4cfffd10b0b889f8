// SPDX-License-Identifier: MIT
/// @file
/// The one seam to the operating system. platform_windows.cpp and platform_portable.cpp stand behind it.
#pragma once

namespace omnar::platform {

/// Non-zero if the processor has MMX, asked now.
int hasMmx();

/// False if the system has no key that cancels long work.
bool hasCancelKey();

/// True while the user holds down the key that cancels long work, and once after each time that it was pressed.
bool cancelKeyDown();

/// Memory that the system reports as available, in units of 2^20 bytes.
unsigned availableMegabytes();

/// What is told of an error when it crosses the module's boundary.
struct ErrorInfo {
    long kind;
    long line;
    long further;
    char source[120];
};

/// Leaves the error for whoever called this module on this thread. False if the system cannot keep it.
bool setErrorInfo(const ErrorInfo& info);

/// Picks up the error that was left on this thread last; it is gone then. False if there is none.
bool takeErrorInfo(ErrorInfo* info);

}  // namespace omnar::platform
