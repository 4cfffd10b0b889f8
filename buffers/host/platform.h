// SPDX-License-Identifier: MIT
/// @file
/// The operating system, implemented by platform_windows.cpp and platform_portable.cpp.
#pragma once

namespace omnar::platform {

/// Non-zero if the processor has MMX. Queries the processor each time.
int hasMmx();

/// True if the system has a key that cancels long work.
bool hasCancelKey();

/// True while that key is held down, and once after each press.
bool cancelKeyDown();

/// Available memory in units of 2^20 bytes.
unsigned availableMegabytes();

/// The error information that crosses the module's boundary.
struct ErrorInfo {
    long kind;
    long line;
    long further;
    char source[120];
};

/// Sets the error information of this thread. Returns false if the system cannot keep it.
bool setErrorInfo(const ErrorInfo& info);

/// Removes the error information of this thread and writes it to `info`. Returns false if there is none.
bool takeErrorInfo(ErrorInfo* info);

}  // namespace omnar::platform
