// SPDX-License-Identifier: MIT
/// @file
/// A raster function as tests and benchmarks see it: which buffers it takes, how it is called, and what it does to a
/// pixel, said a second time and in other words. One table of members a family drives both.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <vector>

namespace support {

enum class Format : std::uint8_t { none = 0, l08 = 1, l12 = 2, bgr = 3, trc = 4 };

constexpr std::size_t bytesOf(Format format) { return static_cast<std::size_t>(format); }

/// A buffer with the region's corner in it.
struct Buffer {
    Format format = Format::none;
    std::byte* pixels = nullptr;
    std::uint32_t width = 0, height = 0, x = 0, y = 0;

    template <class Px>
    Px* as() const {
        return reinterpret_cast<Px*>(pixels);
    }
    std::byte* at(std::size_t column, std::size_t row) const {
        return pixels + ((y + row) * width + x + column) * bytesOf(format);
    }
};

/// All arguments of a call. A member takes those that it has.
struct Call {
    Buffer src, alpha, dst;
    std::uint32_t w = 0, h = 0;
    std::uint8_t opacity = 0;
    std::uint32_t color = 0, ground = 0;
    std::uint8_t zeros = 0;              // includeZeros
    bool first = false, second = false;  // the switches, in the order of the parameters
    const std::uint8_t* lut = nullptr;
    const std::uint8_t* table = nullptr;  // 256 bytes: flags, protected levels, a table to map levels through
};

/// What a pixel's new value may depend on. `a` is remapped already.
struct Inputs {
    std::uint32_t d, s, a;
    const Call& call;
};

struct Member {
    const char* name;
    Format src = Format::none, dst = Format::none;
    enum Alpha : std::uint8_t { noAlpha, ownGeometry, sharesSource, sharesDst } alpha = noAlpha;
    enum Cut : std::uint8_t { byDst, bySrcAndDst, byAlphaAndDst } cut = byDst;
    bool takesLut = false;
    void (*call)(const Call& call) = nullptr;
    std::uint32_t (*pixel)(const Inputs& in) = nullptr;
    bool mayLackAlpha = false;
    bool alphaFollowsSource = false;            ///< by its geometry, while zeros are skipped
    void (*model)(const Call& call) = nullptr;  ///< in place of `pixel`, where a pixel is not all that changes
    bool sourceFollowsDst = false;              ///< by its geometry, which is why it does not cut
    bool overwrites = false;                    ///< the destination is not read
    bool rowsApart = false;                     ///< a row of the source must not overlap the one it is written to
    bool isRun = false;                         ///< a run of pixels in memory: it has no region
    bool columnsUncut = false;                  ///< only rows are cut
    bool mapsByTable = false;                   ///< the table holds new values, not flags
    bool cornersAnywhere = false;               ///< a corner outside its buffer leaves nothing of the region
    // The parameters that point at the buffers. Their geometry is named after them: srcWidth, srcX; but that of the only
    // geometry of a function is width, height, x and y.
    const char* srcName = "src";
    const char* alphaName = "alpha";
    const char* dstName = "dst";
};

/// The name by which GoogleTest tells of a member.
inline void PrintTo(const Member* member, std::ostream* stream) { *stream << member->name; }

/// Rows and columns that are left of a call's region.
struct Extent {
    std::size_t cols, rows;
};
Extent extentOf(const Member& member, const Call& call);

/// Does what the member does, pixel after pixel, by its formula.
void runModel(const Member& member, const Call& call);

std::uint32_t load(const Buffer& buffer, std::size_t column, std::size_t row);
void store(const Buffer& buffer, std::size_t column, std::size_t row, std::uint32_t value);

/// The alpha plane as it is addressed: by its own geometry, or by another buffer's.
Buffer addressedAlpha(const Member& member, const Call& call);

// The families.
std::span<const Member> trueColourMembers();
std::span<const Member> sampleMembers();
std::span<const Member> conversionMembers();
std::span<const Member> markingMembers();
std::span<const Member> shadeMembers();
std::span<const Member> transferMembers();

/// All of them.
std::vector<std::span<const Member>> families();

}  // namespace support
