// SPDX-License-Identifier: MIT
#include "buffers/level.h"

#include <cstddef>
#include <cstdint>

#if defined(_MSC_VER) && !defined(__clang__) && defined(_M_X64)
#include <intrin.h>
#endif

namespace omnar {

// Scalar until the module's start-up code has run, so that a call from another module's start-up finds a level, too.
constinit Level runningLevel = Level::scalar;

namespace {

#if defined(__aarch64__) || defined(_M_ARM64)

constexpr std::array names{"scalar", "neon"};

bool processorRuns(Level) { return true; }  // every 64-bit ARM has NEON
bool processorPermutesBytes() { return false; }

#else

constexpr std::array names{"scalar", "sse4", "avx2", "avx512"};

#if defined(_MSC_VER) && !defined(__clang__)

/// Counts only where the level that it belongs to runs.
bool processorPermutesBytes() {
    int id[4];
    __cpuidex(id, 7, 0);
    return (id[2] & 1 << 1) != 0;
}

/// Each level counts only with the registers that the system saves, and with all instructions that it is compiled for.
bool processorRuns(Level level) {
    int id[4];
    __cpuid(id, 0);
    const bool extended = id[0] >= 7;
    __cpuid(id, 1);
    const auto has = [](int bits, std::uint32_t wanted) {
        return (static_cast<std::uint32_t>(bits) & wanted) == wanted;
    };
    const bool sse4 = has(id[2], 1U << 9 | 1U << 19 | 1U << 20);          // SSSE3, SSE4.1, SSE4.2
    const bool fmaAndXsave = has(id[2], 1U << 12 | 1U << 27 | 1U << 28);  // FMA, OSXSAVE, AVX
    int ebx = 0;
    if (extended) {
        __cpuidex(id, 7, 0);
        ebx = id[1];
    }
    const std::uint64_t saved = fmaAndXsave ? _xgetbv(0) : 0;
    const bool avx2 = sse4 && (saved & 0x6) == 0x6 && has(ebx, 1U << 3 | 1U << 5 | 1U << 8);  // BMI, AVX2, BMI2
    const bool avx512 =
        avx2 && (saved & 0xE6) == 0xE6 && has(ebx, 1U << 16 | 1U << 17 | 1U << 30 | 1U << 31);  // F, DQ, BW, VL
    const bool runs[] = {true, sse4, avx2, avx512};
    return runs[static_cast<std::size_t>(level)];
}

#else

bool processorPermutesBytes() {
    __builtin_cpu_init();  // the module's start-up may come before the compiler's own
    return __builtin_cpu_supports("avx512vbmi");
}

/// Each level counts only with all instructions that it is compiled for. The compiler's query knows what the system saves.
bool processorRuns(Level level) {
    __builtin_cpu_init();
    const bool sse4 =
        __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("sse4.1") && __builtin_cpu_supports("sse4.2");
    const bool avx2 = sse4 && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma");
    const bool avx512 = avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
                        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw");
    const bool runs[] = {true, sse4, avx2, avx512};
    return runs[static_cast<std::size_t>(level)];
}

#endif
#endif

Level widest() {
    Level best = Level::scalar;
    for (const Level level : allLevels) {
        if (available(level)) best = level;
    }
    return best;
}

constinit bool permuting = false;
[[maybe_unused]] const bool chosen = useLevel(widest()) && usePermutedBytes(true);

}  // namespace

const char* name(Level level) { return names[static_cast<std::size_t>(level)]; }

bool available(Level level) { return static_cast<int>(level) <= OMNAR_MAX_LEVEL && processorRuns(level); }

bool useLevel(Level level) {
    if (!available(level)) return false;
    runningLevel = level;
    return true;
}

bool permutesBytes() { return permuting; }

bool usePermutedBytes(bool wanted) {
    permuting = wanted && processorPermutesBytes();
    return permuting == wanted;
}

}  // namespace omnar
