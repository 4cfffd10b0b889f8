// SPDX-License-Identifier: MIT
#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace example {
namespace {

std::atomic<int> lastSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may not wait");

void remember(int signal) { lastSignal = signal; }

}  // namespace

void watchInterrupts() {
    std::signal(SIGINT, remember);
    std::signal(SIGTERM, remember);
#ifdef SIGHUP
    // Whoever started us with hang-ups ignored wants us to outlive the terminal.
    if (std::signal(SIGHUP, remember) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
#endif
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

void checkInterrupt() {
    if (const int signal = lastSignal; signal != 0) throw Interrupted{signal};
}

void dieOf(Interrupted interrupted) {
    std::signal(interrupted.signal, SIG_DFL);
    std::raise(interrupted.signal);
    std::abort();
}

}  // namespace example
