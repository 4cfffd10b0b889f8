// SPDX-License-Identifier: MIT
/// @file
/// Writes and reads PNG files of every kind, independently of the programs under test.
#pragma once

#include <array>
#include <filesystem>
#include <vector>

namespace support {

struct Picture {
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<std::array<int, 3>> pixels;  ///< red, green, blue
    bool operator==(const Picture&) const = default;
};

/// The picture in a PNG file. If it cannot be read, the test fails and the picture is empty.
Picture decode(const std::filesystem::path& file);

/// The format of a PNG file. A sample is the value of one channel, or a palette index.
struct PngKind {
    bool color;
    bool alpha;
    int depth;
    bool palette = false;
    bool interlaced = false;
    bool key = false;  ///< the first pixel's value is transparent; with a palette, its entries have alpha

    std::size_t channels() const { return palette ? 1U : (color ? 3U : 1U) + (alpha ? 1U : 0U); }
};

/// Red, green, blue and alpha.
using Palette = std::vector<std::array<unsigned char, 4>>;

void writePng(const std::filesystem::path& file, const PngKind& kind, unsigned int width,
              const std::vector<unsigned int>& samples, const Palette& palette = {});

/// The ink of the pixel whose samples begin at `sample`. `first` points at the samples of the file's first pixel.
int inkOf(const PngKind& kind, const unsigned int* sample, const unsigned int* first, const Palette& palette);

}  // namespace support
