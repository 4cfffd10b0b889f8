// SPDX-License-Identifier: MIT
#include "progress.h"

#include <cstdio>
#include <string>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace example {
namespace {

bool isTerminal(std::FILE* file) {
#ifdef _WIN32
    return _isatty(_fileno(file)) != 0;
#else
    return isatty(fileno(file)) != 0;
#endif
}

}  // namespace

Progress::Progress(std::uint64_t steps) : steps_(steps), terminal_(isTerminal(stderr)) {}

void Progress::show(std::uint64_t done) {
    const std::uint64_t percent = done * 100 / steps_;
    if (!terminal_ || percent == shown_) return;
    shown_ = percent;
    constexpr int barWidth = 50;
    std::string bar(barWidth, '.');
    bar.replace(0, percent * barWidth / 100, percent * barWidth / 100, '#');
    std::fprintf(stderr, "\r[%s] %3u %%", bar.c_str(), static_cast<unsigned int>(percent));
    std::fflush(stderr);
}

Progress::~Progress() {
    if (shown_ != UINT64_MAX) std::fprintf(stderr, "\r%60s\r", "");
}

}  // namespace example
