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

// One record per thread, like the error information of COM.
thread_local std::optional<ErrorInfo> threadError;

/// Includes the page cache, which sysconf() does not.
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

bool hasCancelKey() { return false; }  // these systems have no common way to read a keyboard
bool cancelKeyDown() { return false; }

unsigned availableMegabytes() {
    const std::optional<std::uint64_t> reported = reportedByLinux();
    return wholeMegabytes(reported ? reported : freePages());
}

bool setErrorInfo(const ErrorInfo& info) {
    threadError = info;
    return true;
}

bool takeErrorInfo(ErrorInfo* info) {
    if (!threadError) return false;
    *info = *threadError;
    threadError.reset();
    return true;
}

}  // namespace omnar::platform
