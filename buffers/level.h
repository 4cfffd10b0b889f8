// SPDX-License-Identifier: MIT
/// @file
/// The vector levels: which exist, which one runs, and how a family of rows looks up its own.
#pragma once

#include <array>
#include <cstddef>

namespace omnar {

/// From plain C++ to the widest vectors. Every level gives the same bits; the scalar one is the law.
#if defined(__aarch64__) || defined(_M_ARM64)
enum class Level { scalar, neon };
inline constexpr std::array allLevels{Level::scalar, Level::neon};
#else
enum class Level { scalar, sse4, avx2, avx512 };
inline constexpr std::array allLevels{Level::scalar, Level::sse4, Level::avx2, Level::avx512};
#endif

const char* name(Level level);

/// True if this build has the level and this processor can run it.
bool available(Level level);

/// The level that runs. It is fixed while the module loads, before the first call can arrive.
Level currentLevel();

/// Makes another level run, if it is available. For tests and benchmarks only: no other thread may be at work.
bool useLevel(Level level);

/// True if the level avx512 may permute the bytes of whole vectors (AVX-512 VBMI), which its other instructions do not
/// imply and few functions gain from.
bool permutesBytes();

/// Allows it, if the processor can, or forbids it; false if that failed. For tests only, as useLevel().
bool usePermutedBytes(bool wanted);

/// One table of functions for each level, null where a level is not built.
template <class Table>
class Levels {
public:
    template <class... Tables>
    explicit constexpr Levels(const Tables*... tables) : tables_{tables...} {}

    const Table& current() const { return *tables_[static_cast<std::size_t>(currentLevel())]; }

private:
    std::array<const Table*, allLevels.size()> tables_;
};

}  // namespace omnar
