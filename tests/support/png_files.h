// SPDX-License-Identifier: MIT
/// @file
/// PNG files of every kind, written and read by other means than those of the programs under test.
#pragma once

#include <array>
#include <filesystem>
#include <vector>

namespace support {

struct Picture {
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<std::array<int, 3>> pixels;  // red, green, blue
    bool operator==(const Picture&) const = default;
};

/// The picture in a PNG file; an empty one, and a failed test, if there is none.
Picture decode(const std::filesystem::path& file);

/// How a PNG file holds its samples, one number a channel or one palette index.
struct PngKind {
    bool color;
    bool alpha;
    int depth;
    bool palette = false;
    bool interlaced = false;
    bool key = false;  ///< the first pixel's value is transparent; with a palette, entries have alphas

    std::size_t channels() const { return palette ? 1U : (color ? 3U : 1U) + (alpha ? 1U : 0U); }
};

/// Red, green, blue and alpha.
using Palette = std::vector<std::array<unsigned char, 4>>;

void writePng(const std::filesystem::path& file, const PngKind& kind, unsigned int width,
              const std::vector<unsigned int>& samples, const Palette& palette = {});

/// The ink of the pixel whose samples start at `sample`; `first` are those of the first pixel.
int inkOf(const PngKind& kind, const unsigned int* sample, const unsigned int* first, const Palette& palette);

}  // namespace support
