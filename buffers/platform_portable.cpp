// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cstdint>
#include <limits>

#include "buffers/platform.h"

namespace omnar::platform {
namespace {

// What the error information of COM is on Windows: one record a thread, gone once it was picked up.
thread_local ErrorInfo lastError;
thread_local bool errorWaits = false;

}  // namespace

int hasMmx() {
#if defined(__x86_64__) || defined(__i386__)
    return __builtin_cpu_supports("mmx") ? 1 : 0;
#else
    return 0;
#endif
}

bool hasCancelKey() { return false; }  // there is no keyboard that every such system knows
bool cancelKeyDown() { return false; }

unsigned availableMegabytes() {
    const auto pages = static_cast<std::uint64_t>(sysconf(_SC_AVPHYS_PAGES));
    const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    const std::uint64_t megabytes = pages * pageSize >> 20;
    constexpr unsigned most = std::numeric_limits<unsigned>::max();
    return megabytes < most ? static_cast<unsigned>(megabytes) : most;
}

bool setErrorInfo(const ErrorInfo& info) {
    lastError = info;
    errorWaits = true;
    return true;
}

bool takeErrorInfo(ErrorInfo* info) {
    if (!errorWaits) {
        return false;
    }
    *info = lastError;
    errorWaits = false;
    return true;
}

}  // namespace omnar::platform
