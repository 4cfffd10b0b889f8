// SPDX-License-Identifier: MIT
/// @file
/// The vector levels, the one that runs, and tables of kernels by vector level.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace omnar {

/// From plain C++ to the widest vectors. Every vector level gives the same bits; scalar is the reference.
#if defined(__aarch64__) || defined(_M_ARM64)
enum class Level { scalar, neon };
inline constexpr std::array allLevels{Level::scalar, Level::neon};
inline constexpr auto maskedLevel = static_cast<Level>(-1);  ///< none
#else
enum class Level { scalar, sse4, avx2, avx512 };
inline constexpr std::array allLevels{Level::scalar, Level::sse4, Level::avx2, Level::avx512};
inline constexpr auto maskedLevel = Level::avx512;  ///< loads and stores any number of lanes by masks
#endif

const char* name(Level level);

/// True if this build has the level and this processor can run it.
bool available(Level level);

/// The vector level that runs. It is chosen while the module loads, before the first call.
extern Level runningLevel;
inline Level currentLevel() { return runningLevel; }

/// Switches to a vector level; false if it is not available. For tests and benchmarks only, while no other thread runs
/// kernels.
bool useLevel(Level level);

/// True if avx512 may permute the bytes of 512-bit vectors (AVX-512 VBMI), which not every processor with that vector
/// level has.
bool permutesBytes();

/// Allows or forbids these permutations; false if the processor lacks them. For tests only, like useLevel().
bool usePermutedBytes(bool wanted);

/// One table of functions for each vector level, null for those that are not built.
template <class Table>
class Levels {
public:
    template <class... Tables>
    explicit constexpr Levels(const Tables*... tables) : tables_{tables...} {}

    const Table& scalar() const { return *tables_[0]; }
    const Table& current() const { return *tables_[static_cast<std::size_t>(currentLevel())]; }

    /// The table of the widest vector level, up to the one that runs, whose vectors have at most max(bytes, 16) bytes.
    const Table& noWiderThan(std::size_t bytes) const {
        const std::size_t widest = bytes < 32 ? 1 : bytes < 64 ? 2 : 3;
        return *tables_[std::min(static_cast<std::size_t>(currentLevel()), widest)];
    }

private:
    std::array<const Table*, allLevels.size()> tables_;
};

}  // namespace omnar
