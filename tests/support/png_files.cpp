// SPDX-License-Identifier: MIT
#include "tests/support/png_files.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstdio>

namespace support {

Picture decode(const std::filesystem::path& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, file.string().c_str()) == 0) {
        ADD_FAILURE() << file << ": " << image.message;
        return {};
    }
    image.format = PNG_FORMAT_RGB;
    std::vector<png_byte> bytes(PNG_IMAGE_SIZE(image));
    EXPECT_NE(png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr), 0) << file << ": " << image.message;
    Picture picture{image.width, image.height, {}};
    for (std::size_t i = 0; i < bytes.size(); i += 3) picture.pixels.push_back({bytes[i], bytes[i + 1], bytes[i + 2]});
    return picture;
}

void writePng(const std::filesystem::path& file, const PngKind& kind, unsigned int width,
              const std::vector<unsigned int>& samples, const Palette& palette) {
    std::FILE* const stream = std::fopen(file.string().c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, stream);
    const auto height = static_cast<png_uint_32>(samples.size() / (width * kind.channels()));
    const int type = (kind.palette ? PNG_COLOR_TYPE_PALETTE
                      : kind.color ? PNG_COLOR_TYPE_RGB
                                   : PNG_COLOR_TYPE_GRAY) |
                     (kind.alpha ? PNG_COLOR_MASK_ALPHA : 0);
    png_set_IHDR(png, info, width, height, kind.depth, type, kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 0, 0);

    std::vector<png_color> colors;
    std::vector<png_byte> alphas;
    for (const auto& entry : palette) {
        colors.push_back({entry[0], entry[1], entry[2]});
        alphas.push_back(entry[3]);
    }
    const auto first = [&](std::size_t channel) { return static_cast<png_uint_16>(samples[channel % samples.size()]); };
    const png_color_16 keyColor{0, first(0), first(1), first(2), first(0)};
    if (kind.palette) png_set_PLTE(png, info, colors.data(), static_cast<int>(colors.size()));
    if (kind.key) png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), &keyColor);
    png_write_info(png, info);
    png_set_packing(png);

    std::vector<png_byte> bytes;
    for (const unsigned int sample : samples) {
        if (kind.depth == 16) bytes.push_back(static_cast<png_byte>(sample >> 8));
        bytes.push_back(static_cast<png_byte>(sample & 255));
    }
    std::vector<png_bytep> rows;
    for (png_uint_32 y = 0; y < height; ++y) rows.push_back(bytes.data() + bytes.size() / height * y);
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(stream);
}

int inkOf(const PngKind& kind, const unsigned int* sample, const unsigned int* first, const Palette& palette) {
    const auto ink = [](int red, int green, int blue, int alpha) {
        return alpha * (255 - (59 * green + 30 * red + 11 * blue) / 100) / 255;
    };
    if (kind.palette) {
        const auto& entry = palette[*sample];
        return ink(entry[0], entry[1], entry[2], kind.key ? entry[3] : 255);
    }
    const auto byte = [&](std::size_t channel) {
        const unsigned int value = sample[channel];
        return static_cast<int>(kind.depth == 16 ? (value + 128) / 257 : value * 255 / ((1U << kind.depth) - 1));
    };
    const bool keyed = kind.key && std::equal(sample, sample + kind.channels(), first);
    const int alpha = kind.alpha ? byte(kind.channels() - 1) : keyed ? 0 : 255;
    return kind.color ? ink(byte(0), byte(1), byte(2), alpha) : ink(byte(0), byte(0), byte(0), alpha);
}

}  // namespace support
