// SPDX-License-Identifier: MIT
/// @file
/// The vector levels: which exist, which one runs, and how a family of rows looks up its own.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace omnar {

/// From plain C++ to the widest vectors. Every level gives the same bits; the scalar one is the law.
#if defined(__aarch64__) || defined(_M_ARM64)
enum class Level { scalar, neon };
inline constexpr std::array allLevels{Level::scalar, Level::neon};
inline constexpr auto maskedLevel = static_cast<Level>(-1);  ///< none
#else
enum class Level { scalar, sse4, avx2, avx512 };
inline constexpr std::array allLevels{Level::scalar, Level::sse4, Level::avx2, Level::avx512};
inline constexpr auto maskedLevel = Level::avx512;  ///< which loads and stores any number of lanes by masks
#endif

const char* name(Level level);

/// True if this build has the level and this processor can run it.
bool available(Level level);

/// The level that runs. It is fixed while the module loads, before the first call can arrive.
extern Level runningLevel;
inline Level currentLevel() { return runningLevel; }

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

    const Table& scalar() const { return *tables_[0]; }
    const Table& current() const { return *tables_[static_cast<std::size_t>(currentLevel())]; }

    /// The table of the level that runs, or of the widest one below it whose vectors have no more than `bytes` bytes; but
    /// vectors of 16 bytes are always allowed.
    const Table& noWiderThan(std::size_t bytes) const {
        const std::size_t widest = bytes < 32 ? 1 : bytes < 64 ? 2 : 3;
        return *tables_[std::min(static_cast<std::size_t>(currentLevel()), widest)];
    }

private:
    std::array<const Table*, allLevels.size()> tables_;
};

}  // namespace omnar
