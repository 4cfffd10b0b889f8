// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "buffers/host/available_memory.h"
#include "buffers/host/platform.h"

namespace omnar::platform {
namespace {

// What the error information of COM is on Windows: one record a thread, gone once it was picked up.
thread_local ErrorInfo lastError;
thread_local bool errorWaits = false;

/// The page cache counts as available, which sysconf() leaves out.
std::optional<std::uint64_t> reportedByLinux() {
    const int file = open("/proc/meminfo", O_RDONLY | O_CLOEXEC);
    if (file < 0) return std::nullopt;
    char text[1024];  // the line is the third one
    const ssize_t length = read(file, text, sizeof text);
    close(file);
    return availableBytes(std::string_view(text, length < 0 ? 0 : static_cast<std::size_t>(length)));
}

std::optional<std::uint64_t> freePages() {
#if defined(_SC_AVPHYS_PAGES)
    return bytesOfPages(sysconf(_SC_AVPHYS_PAGES), sysconf(_SC_PAGESIZE));
#else
    return std::nullopt;
#endif
}

}  // namespace

int hasMmx() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();  // a call may come before the compiler's own start-up code
    return __builtin_cpu_supports("mmx") ? 1 : 0;
#else
    return 0;
#endif
}

bool hasCancelKey() { return false; }  // there is no keyboard that every such system knows
bool cancelKeyDown() { return false; }

unsigned availableMegabytes() {
    const std::optional<std::uint64_t> reported = reportedByLinux();
    return wholeMegabytes(reported ? reported : freePages());
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
