// SPDX-License-Identifier: MIT
/// @file
/// A raster function as tests and benchmarks use it: its buffers, its call, and a second, independent definition of its
/// effect on a pixel. Each family has one table of members.
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

/// All arguments of a call. A member uses those that it has parameters for.
struct Call {
    Buffer src, alpha, dst;
    std::uint32_t w = 0, h = 0;
    std::uint8_t opacity = 0;
    std::uint32_t color = 0, ground = 0;
    std::uint8_t zeros = 0;              ///< includeZeros, or another small number
    bool first = false, second = false;  ///< the flags, in the order of the parameters
    const std::uint8_t* lut = nullptr;
    const std::uint8_t* table = nullptr;  ///< 256 bytes: flags of bands, flags of protected values, or a look-up table
};

/// The inputs of a pixel's new value: destination, source, and coverage after the look-up table.
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
    bool mayLackAlpha = false;                  ///< the alpha plane may be null
    bool alphaFollowsSource = false;            ///< the alpha plane has the source's geometry while zeros are skipped
    void (*model)(const Call& call) = nullptr;  ///< replaces `pixel` where a call changes more than one pixel at a time
    bool sourceFollowsDst = false;              ///< the source has the destination's geometry, so it does not cut
    bool overwrites = false;                    ///< the destination is not read
    bool rowsApart = false;                     ///< a row of the source must not overlap its row of the destination
    bool isRun = false;                         ///< works on consecutive pixels in memory and has no region
    bool columnsUncut = false;                  ///< only rows are cut
    bool mapsByTable = false;                   ///< the table holds new values, not flags
    bool cornersAnywhere = false;               ///< a corner may be outside its buffer: the region is then empty
    // The names of the buffer parameters. Those of their geometry are derived: srcWidth, srcX; a function with a single
    // geometry has width, height, x and y.
    const char* srcName = "src";
    const char* alphaName = "alpha";
    const char* dstName = "dst";
};

/// The name of a member in GoogleTest's messages.
inline void PrintTo(const Member* member, std::ostream* stream) { *stream << member->name; }

/// The columns and rows of a call's region after it is cut.
struct Extent {
    std::size_t cols, rows;
};
Extent extentOf(const Member& member, const Call& call);

/// Applies the member's model to every pixel in row order.
void runModel(const Member& member, const Call& call);

std::uint32_t load(const Buffer& buffer, std::size_t column, std::size_t row);
void store(const Buffer& buffer, std::size_t column, std::size_t row, std::uint32_t value);

/// The alpha plane with the geometry that addresses it: its own or another buffer's.
Buffer addressedAlpha(const Member& member, const Call& call);

// The families of raster functions.
std::span<const Member> trueColourMembers();
std::span<const Member> sampleMembers();
std::span<const Member> conversionMembers();
std::span<const Member> markingMembers();
std::span<const Member> shadeMembers();
std::span<const Member> transferMembers();

/// All families.
std::vector<std::span<const Member>> families();

}  // namespace support
