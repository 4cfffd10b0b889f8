// SPDX-License-Identifier: MIT
#include <pixman.h>

#include <memory>
#include <vector>

#include "benchmarks/peers/pattern_peer.h"

namespace bench {
namespace {

using namespace omnar::pattern;

using Image = std::unique_ptr<pixman_image_t, decltype(&pixman_image_unref)>;

Image owned(pixman_image_t* image) { return {image, pixman_image_unref}; }

/// One period of the pattern: the tile and the next ones beside or below it until the shift is 0 again.
struct Period {
    Period(const Repeat& repeat, const L08* coverage) {
        const bool isBrick = repeat.layout == Layout::brick;
        const unsigned side = isBrick ? repeat.width : repeat.height;
        const unsigned drop = repeat.layout == Layout::straight ? 0 : repeat.drop % side;
        unsigned tiles = 1;
        while (std::uint64_t{drop} * tiles % side != 0) ++tiles;
        width = isBrick ? repeat.width : repeat.width * tiles;
        height = isBrick ? repeat.height * tiles : repeat.height;
        stride = (width + 3) / 4 * 4;
        samples.resize(std::size_t{stride} * height);
        for (unsigned y = 0; y < height; ++y) {
            for (unsigned x = 0; x < width; ++x) {
                const unsigned shift = drop * (isBrick ? y / repeat.height : x / repeat.width) % side;
                const unsigned fileX = isBrick ? (x + side - shift) % side : x % repeat.width;
                const unsigned fileY = isBrick ? y % repeat.height : (y + side - shift) % side;
                samples[std::size_t{y} * stride + x] = coverage[std::size_t{fileY} * repeat.width + fileX];
            }
        }
    }

    unsigned width, height, stride;
    std::vector<L08> samples;
};

struct PrintedInk {
    PrintedInk(const Repeat& repeat, const Ink& ink, int zoom)
        : period(repeat, ink.coverage),
          color(owned(nullptr)),
          mask(owned(pixman_image_create_bits(
              PIXMAN_a8, static_cast<int>(period.width), static_cast<int>(period.height),
              reinterpret_cast<std::uint32_t*>(period.samples.data()), static_cast<int>(period.stride)))) {
        const auto word = [&](unsigned channel) {
            return static_cast<std::uint16_t>(channel * 257U * ink.opacity / 255U);
        };
        const pixman_color_t solid{word(ink.color >> 16 & 255U), word(ink.color >> 8 & 255U), word(ink.color & 255U),
                                   static_cast<std::uint16_t>(ink.opacity * 257U)};
        color = owned(pixman_image_create_solid_fill(&solid));
        pixman_image_set_repeat(mask.get(), PIXMAN_REPEAT_NORMAL);
        if (zoom == 1) return;
        pixman_transform_t scale;
        pixman_transform_init_scale(&scale, pixman_fixed_1 / zoom, pixman_fixed_1 / zoom);
        pixman_image_set_transform(mask.get(), &scale);
        pixman_image_set_filter(mask.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
    }

    Period period;
    Image color, mask;
};

}  // namespace

DrawView pixmanView(const Pattern& pattern, int zoom) {
    auto inks = std::make_shared<std::vector<std::unique_ptr<PrintedInk>>>();
    for (const auto& layer : pattern.layers) {
        inks->push_back(std::make_unique<PrintedInk>(pattern.repeat, std::get<Ink>(layer), zoom));
    }
    return [inks, paper = pattern.paper](const Rectangle& view, TRC* pixels) {
        const int width = static_cast<int>(view.width), height = static_cast<int>(view.height);
        const Image page = owned(pixman_image_create_bits(PIXMAN_x8r8g8b8, width, height, pixels, width * 4));
        pixman_fill(pixels, width, 32, 0, 0, width, height, paper);
        for (const auto& ink : *inks) {
            pixman_image_composite32(PIXMAN_OP_OVER, ink->color.get(), ink->mask.get(), page.get(), 0, 0, view.x,
                                     view.y, 0, 0, width, height);
        }
    };
}

}  // namespace bench
