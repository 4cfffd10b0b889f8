// SPDX-License-Identifier: MIT
#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace example {
namespace {

std::atomic<int> lastSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "signal handlers must not lock");

void storeSignal(int signal) { lastSignal = signal; }

}  // namespace

void watchInterrupts() {
    std::signal(SIGINT, storeSignal);
    std::signal(SIGTERM, storeSignal);
#ifdef SIGHUP
    // A process started with SIGHUP ignored, as by nohup, keeps ignoring it.
    if (std::signal(SIGHUP, storeSignal) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
#endif
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

void checkInterrupt() {
    if (const int signal = lastSignal; signal != 0) throw Interrupted{signal};
}

void terminateBy(Interrupted interrupted) {
    std::signal(interrupted.signal, SIG_DFL);
    std::raise(interrupted.signal);
    std::abort();
}

}  // namespace example
