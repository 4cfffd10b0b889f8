// SPDX-License-Identifier: MIT

// Views of a pattern against a naive rendering, which computes the file position of each pixel.

#include <OmnarPattern.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/family.h"
#include "tests/support/random.h"

namespace {

using namespace omnar::pattern;
using support::forSeeds;
using support::Random;

constexpr TRC untouched = 0x12345678;

/// A pattern that owns the memory of its layers.
struct Design {
    Design(const Repeat& repeat, unsigned inks, bool hasPicture, std::uint64_t seed) {
        Random random(seed);
        pattern.repeat = repeat;
        pattern.paper = static_cast<TRC>(random.next());
        const std::size_t pixels = std::size_t{repeat.width} * repeat.height;
        for (unsigned i = 0; i < inks; ++i) {
            auto& plane = coverage.emplace_back(pixels);
            random.fill(std::as_writable_bytes(std::span(plane)));
            pattern.layers.push_back(Ink{plane.data(), static_cast<TRC>(random.next()), random.byte()});
        }
        if (!hasPicture) return;
        picture.resize(pixels);
        random.fill(std::as_writable_bytes(std::span(picture)));
        pattern.layers.push_back(Picture{picture.data(), random.byte()});
    }
    Design(Design&&) = default;  // moved vectors keep their memory

    Pattern pattern;
    std::vector<std::vector<L08>> coverage;
    std::vector<TRC> picture;
};

_EDropKind kindOf(const Repeat& repeat) { return repeat.layout == Layout::brick ? eDropHorizontal : eDropVertical; }
unsigned dropOf(const Repeat& repeat) { return repeat.layout == Layout::straight ? 0 : repeat.drop; }

CPoint filePositionOf(const Repeat& repeat, double zoom, int x, int y) {
    CPoint file;
    VPToFP(x, y, &file.x, &file.y, repeat.width, repeat.height, dropOf(repeat), kindOf(repeat), zoom, zoom, true);
    return file;
}

std::int64_t floorMod(std::int64_t a, std::int64_t b) { return (a % b + b) % b; }

/// One axis of a smooth view pixel: the file pixels under it and the length covered of each, in units of 1 / viewSide.
struct Interval {
    Interval(unsigned fileSide, double zoom, std::int64_t position)
        : side(fileSide), viewSide(std::max<std::int64_t>(static_cast<std::int64_t>(fileSide * zoom), 1)) {
        const std::int64_t offset = floorMod(position, viewSide);
        tile = (position - offset) / viewSide;
        begin = offset * side;
    }

    /// Calls visit(pixel, length). The lengths add up to `side`.
    void each(auto visit) const {
        for (std::int64_t pixel = begin / viewSide; pixel * viewSide < begin + side; ++pixel) {
            visit(pixel, std::min((pixel + 1) * viewSide, begin + side) - std::max(pixel * viewSide, begin));
        }
    }

    std::int64_t side, viewSide, tile, begin;
};

/// Calls visit(index of the pixel, area) for each file pixel under a view pixel.
void eachPixelUnder(const Repeat& repeat, double zoom, int x, int y, auto visit) {
    const Interval columns(repeat.width, zoom, x), rows(repeat.height, zoom, y);
    const std::int64_t drop = dropOf(repeat);
    const std::int64_t left = repeat.layout == Layout::brick ? drop * rows.tile : 0;
    const std::int64_t up = repeat.layout == Layout::halfDrop ? drop * columns.tile : 0;
    rows.each([&](std::int64_t row, std::int64_t height) {
        columns.each([&](std::int64_t column, std::int64_t width) {
            const auto index = floorMod(row - up, repeat.height) * repeat.width + floorMod(column - left, repeat.width);
            visit(static_cast<std::size_t>(index), static_cast<std::uint64_t>(width * height));
        });
    });
}

std::uint64_t nearest(std::uint64_t sum, std::uint64_t total) { return (2 * sum + total) / (2 * total); }

L08 meanUnder(const Repeat& repeat, double zoom, const L08* plane, int x, int y) {
    std::uint64_t sum = 0;
    eachPixelUnder(repeat, zoom, x, y, [&](std::size_t i, std::uint64_t area) { sum += plane[i] * area; });
    return static_cast<L08>(nearest(sum, std::uint64_t{repeat.width} * repeat.height));
}

TRC meanUnder(const Repeat& repeat, double zoom, const TRC* pixels, int x, int y) {
    std::uint64_t alpha = 0, channels[3] = {};
    eachPixelUnder(repeat, zoom, x, y, [&](std::size_t i, std::uint64_t area) {
        const std::uint64_t weight = (pixels[i] >> 24) * area;
        alpha += weight;
        for (int k = 0; k < 3; ++k) channels[k] += (pixels[i] >> 8 * k & 255U) * weight;
    });
    if (alpha == 0) return 0;
    TRC mean = static_cast<TRC>(nearest(alpha, std::uint64_t{repeat.width} * repeat.height)) << 24;
    for (int k = 0; k < 3; ++k) mean |= static_cast<TRC>(nearest(channels[k], alpha)) << 8 * k;
    return mean;
}

TRC naivePixel(const Pattern& pattern, double zoom, Quality quality, int x, int y) {
    const Repeat& repeat = pattern.repeat;
    const CPoint file = filePositionOf(repeat, zoom, x, y);
    const std::size_t index = static_cast<std::size_t>(file.y) * repeat.width + static_cast<std::size_t>(file.x);
    const bool isMean = quality == Quality::smooth && zoom < 1;
    TRC pixel = pattern.paper;
    for (const auto& layer : pattern.layers) {
        if (const Ink* const ink = std::get_if<Ink>(&layer)) {
            const L08 coverage = isMean ? meanUnder(repeat, zoom, ink->coverage, x, y) : ink->coverage[index];
            AlphaBlendColorToTRC(ink->color, &coverage, 1, 1, 0, 0, &pixel, 1, 1, 0, 0, ink->opacity, 1, 1, false);
        } else {
            const Picture& picture = std::get<Picture>(layer);
            const TRC source = isMean ? meanUnder(repeat, zoom, picture.pixels, x, y) : picture.pixels[index];
            AlphaBlendTRCToTRC(&source, 1, 1, 0, 0, &pixel, 1, 1, 0, 0, picture.opacity, 1, 1, false);
        }
    }
    return pixel;
}

/// A view inside a buffer that has a margin of one pixel on each side.
struct Canvas {
    explicit Canvas(const Rectangle& rectangle)
        : view(rectangle),
          width(view.width + 2),
          height(view.height + 2),
          pixels(std::size_t{width} * height, untouched) {}

    void drawWith(Painter& painter) { painter.draw(view, pixels.data(), width, height, 1, 1); }
    TRC pixel(unsigned column, unsigned row) const { return pixels[std::size_t{row + 1} * width + column + 1]; }
    bool marginIsUntouched() const {
        for (unsigned row = 0; row < height; ++row) {
            for (unsigned column = 0; column < width; ++column) {
                const bool isInside = row >= 1 && row <= view.height && column >= 1 && column <= view.width;
                if (!isInside && pixels[std::size_t{row} * width + column] != untouched) return false;
            }
        }
        return true;
    }

    Rectangle view;
    unsigned width, height;
    std::vector<TRC> pixels;
};

void expectNaive(const Canvas& canvas, const Pattern& pattern, double zoom, Quality quality) {
    ASSERT_TRUE(canvas.marginIsUntouched());
    for (unsigned row = 0; row < canvas.view.height; ++row) {
        for (unsigned column = 0; column < canvas.view.width; ++column) {
            const int x = canvas.view.x + static_cast<int>(column), y = canvas.view.y + static_cast<int>(row);
            ASSERT_EQ(canvas.pixel(column, row), naivePixel(pattern, zoom, quality, x, y))
                << "pixel " << x << ", " << y;
        }
    }
}

Repeat randomRepeat(Random& random) {
    const unsigned longest = random.oneIn(3) ? 4 : 60;
    Repeat repeat{1 + random.below(longest), 1 + random.below(longest), 0, static_cast<Layout>(random.below(3))};
    repeat.drop = random.oneIn(4) ? random.below(300) : random.below(std::max(repeat.width, repeat.height) + 1);
    return repeat;
}

double randomZoom(Random& random) {
    switch (random.below(6)) {
        case 0:
            return 1.0;
        case 1:
            return 1e-6;
        case 2:
            return 2.0 + random.below(1000) / 103.0;
        case 3:
            return 1.0 + random.below(1000) / 1009.0;
        default:
            return 0.03 + random.below(970) / 1000.0;
    }
}

TEST(Pattern, IsTheNaiveRendering) {
    forSeeds(600, [](Random& random, std::uint64_t seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Repeat repeat = randomRepeat(random);
        const double zoom = randomZoom(random);
        const Quality quality = random.oneIn(2) ? Quality::smooth : Quality::exact;
        const Design design(repeat, random.below(3), random.oneIn(3), random.next());
        Painter painter(design.pattern, zoom, quality);
        for (int visit = 0; visit < 3; ++visit) {  // the painter keeps scaled rows from one view to the next
            const auto corner = [&] { return static_cast<int>(random.below(400)) - 200; };
            Canvas canvas({corner(), corner(), 1 + random.below(90), 1 + random.below(40)});
            canvas.drawWith(painter);
            ASSERT_NO_FATAL_FAILURE(expectNaive(canvas, design.pattern, zoom, quality));
        }
    });
}

TEST(Pattern, IsTheNaiveRenderingAtTheEndsOfThePlane) {
    for (const Layout layout : {Layout::straight, Layout::halfDrop, Layout::brick}) {
        const Design design({7, 5, 3, layout}, 1, false, 1);
        for (const int corner : {INT32_MIN, INT32_MAX - 11}) {
            Canvas canvas({corner, 1, 12, 3});
            for (const double zoom : {1.0, 1.5, 1e6}) {
                Painter painter(design.pattern, zoom);
                canvas.drawWith(painter);
                ASSERT_NO_FATAL_FAILURE(expectNaive(canvas, design.pattern, zoom, Quality::exact));
            }
            Painter halved(design.pattern, 0.5);  // file positions are twice as far away
            EXPECT_THROW(canvas.drawWith(halved), std::out_of_range);
        }
    }
}

TEST(Pattern, IsSeamlessWhenDrawnInParts) {
    const Design design({61, 47, 20, Layout::halfDrop}, 2, true, 5);
    for (const double zoom : {0.3, 1.0, 1.7, 3.0}) {
        for (const Quality quality : {Quality::exact, Quality::smooth}) {
            Canvas single({-100, -70, 301, 200});
            Painter painter(design.pattern, zoom, quality);
            single.drawWith(painter);

            Canvas parts(single.view);
            constexpr unsigned bands = 4, bandHeight = 50, tileWidth = 37;
            std::vector<std::thread> threads;
            for (unsigned band = 0; band < bands; ++band) {
                threads.emplace_back([&, band] {
                    Painter own(design.pattern, zoom, quality);
                    for (unsigned left = 0; left < parts.view.width; left += tileWidth) {
                        own.draw(
                            {parts.view.x + static_cast<int>(left), parts.view.y + static_cast<int>(band * bandHeight),
                             std::min(tileWidth, parts.view.width - left), bandHeight},
                            parts.pixels.data(), parts.width, parts.height, left + 1, band * bandHeight + 1);
                    }
                });
            }
            for (std::thread& thread : threads) thread.join();
            EXPECT_EQ(single.pixels, parts.pixels) << "zoom " << zoom;
        }
    }
}

TEST(Pattern, ShowsChangesOnlyInTheRectanglesItReturns) {
    forSeeds(400, [](Random& random, std::uint64_t seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Repeat repeat = randomRepeat(random);
        const double zoom = randomZoom(random);
        const Quality quality = random.oneIn(2) ? Quality::smooth : Quality::exact;
        Design design(repeat, 1, false, random.next());
        Painter painter(design.pattern, zoom, quality);
        Canvas canvas({static_cast<int>(random.below(200)) - 100, static_cast<int>(random.below(200)) - 100, 80, 60});
        canvas.drawWith(painter);
        const std::vector<TRC> before = canvas.pixels;

        Rectangle changed{static_cast<int>(random.below(repeat.width)), static_cast<int>(random.below(repeat.height)),
                          0, 0};
        changed.width = 1 + random.below(repeat.width - static_cast<unsigned>(changed.x));
        changed.height = 1 + random.below(repeat.height - static_cast<unsigned>(changed.y));
        for (unsigned row = 0; row < changed.height; ++row) {
            for (unsigned column = 0; column < changed.width; ++column) {
                design.coverage[0][(static_cast<std::size_t>(changed.y) + row) * repeat.width +
                                   static_cast<std::size_t>(changed.x) + column] ^= random.byte();
            }
        }
        painter.update(0, changed);
        canvas.drawWith(painter);
        ASSERT_NO_FATAL_FAILURE(expectNaive(canvas, design.pattern, zoom, quality));

        std::vector<int> timesShown(canvas.pixels.size(), 0);
        for (const Rectangle& shown : painter.shownIn(changed, canvas.view)) {
            for (unsigned row = 0; row < shown.height; ++row) {
                for (unsigned column = 0; column < shown.width; ++column) {
                    const auto x = static_cast<unsigned>(shown.x - canvas.view.x) + column;
                    const auto y = static_cast<unsigned>(shown.y - canvas.view.y) + row;
                    ASSERT_LT(x, canvas.view.width);
                    ASSERT_LT(y, canvas.view.height);
                    ++timesShown[std::size_t{y + 1} * canvas.width + x + 1];
                }
            }
        }
        for (std::size_t i = 0; i < timesShown.size(); ++i) {
            ASSERT_LE(timesShown[i], 1) << "rectangles overlap";
            ASSERT_TRUE(timesShown[i] == 1 || before[i] == canvas.pixels[i]);
        }
    });
}

TEST(Pattern, ConvertsPositionsBothWays) {
    forSeeds(2000, [](Random& random, std::uint64_t seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Repeat repeat = randomRepeat(random);
        const double zoom = random.oneIn(2) ? randomZoom(random) : 1 + random.below(5);
        const Design design(repeat, 0, false, 1);
        const Painter painter(design.pattern, zoom);
        const int x = static_cast<int>(random.below(2000)) - 1000, y = static_cast<int>(random.below(2000)) - 1000;
        const CPoint file = painter.filePosition(x, y), expected = filePositionOf(repeat, zoom, x, y);
        EXPECT_EQ(file.x, expected.x);
        EXPECT_EQ(file.y, expected.y);
        if (zoom != std::trunc(zoom)) return;  // tile sizes are truncated, so that some file pixels have no view pixel

        const CPoint tile{static_cast<int>(random.below(9)) - 4, static_cast<int>(random.below(9)) - 4};
        const CPoint view = painter.viewPosition(file, tile.x, tile.y);
        EXPECT_EQ(std::floor(view.x / (repeat.width * zoom)), tile.x);
        EXPECT_EQ(std::floor(view.y / (repeat.height * zoom)), tile.y);
        const CPoint back = painter.filePosition(view.x, view.y);
        EXPECT_EQ(back.x, file.x);
        EXPECT_EQ(back.y, file.y);
        EXPECT_EQ(std::fmod(view.x, zoom), 0);  // the first view pixel of the file pixel
        EXPECT_EQ(std::fmod(view.y, zoom), 0);
    });
}

/// The message of the error that the call throws.
template <class Error>
std::string messageOf(auto call) {
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

TEST(Pattern, RejectsInvalidArgumentsBeforeItDraws) {
    const Design design({10, 20, 5, Layout::brick}, 1, false, 1);
    const auto messageFor = [&](auto change, double zoom = 1.0) {
        Pattern pattern = design.pattern;
        change(pattern);
        return messageOf<std::invalid_argument>([&] { Painter(pattern, zoom); });
    };
    const auto unchanged = [](Pattern&) {};
    EXPECT_EQ(messageFor(unchanged), "no error");
    EXPECT_EQ(messageFor([](Pattern& p) { p.repeat.width = 0; }), "repeat.width: not 1..1073741824");
    EXPECT_EQ(messageFor([](Pattern& p) { p.repeat.height = (1U << 30) + 1; }), "repeat.height: not 1..1073741824");
    EXPECT_EQ(messageFor([](Pattern& p) { p.repeat.layout = static_cast<Layout>(3); }), "repeat.layout: not a layout");
    EXPECT_EQ(messageFor([](Pattern& p) { p.layers.push_back(Ink{}); }), "layers: a layer without pixels");
    EXPECT_EQ(messageFor([](Pattern& p) { p.layers.push_back(Picture{}); }), "layers: a layer without pixels");
    for (const double zoom :
         {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 107374183.0}) {
        EXPECT_EQ(messageFor(unchanged, zoom),
                  "zoom: not above 0, or a tile has more than 2147483647 view pixels a side");
    }
    EXPECT_EQ(messageFor(unchanged, 107374182.0), "no error");

    Painter painter(design.pattern, 1.0);
    std::vector<TRC> pixels(100, untouched);
    const auto messageOfDraw = [&](const Rectangle& view, TRC* dst, unsigned width, unsigned height, unsigned x,
                                   unsigned y) {
        return messageOf<std::exception>([&] { painter.draw(view, dst, width, height, x, y); });
    };
    EXPECT_EQ(messageOfDraw({0, 0, 10, 10}, nullptr, 10, 10, 0, 0), "dst: null");
    EXPECT_EQ(messageOfDraw({0, 0, 9, 10}, pixels.data(), 10, 10, 2, 0), "dstX: dstX + view.width is above dstWidth");
    EXPECT_EQ(messageOfDraw({0, 0, 10, 9}, pixels.data(), 10, 10, 0, 2), "dstY: dstY + view.height is above dstHeight");
    EXPECT_EQ(messageOfDraw({INT32_MAX, 0, 2, 1}, pixels.data(), 10, 10, 0, 0),
              "view: its right or bottom edge is beyond 32 bits");
    Painter small(design.pattern, 0.25);
    EXPECT_EQ(messageOf<std::out_of_range>([&] {
                  small.draw({0, 1000000000, 1, 1}, pixels.data(), 10, 10);
              }),
              "view: the file position of its corner (0, 1000000000) is beyond 32 bits");
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { painter.update(1, {0, 0, 1, 1}); }), "layer: no such layer");
    EXPECT_EQ(messageOf<std::invalid_argument>([&] {
                  painter.update(0, {0, 0, 11, 1});
              }),
              "changed: not within the tile");
    EXPECT_EQ(messageOfDraw({0, 0, 0, 10}, nullptr, 0, 0, 0, 0), "no error");
    EXPECT_TRUE(std::all_of(pixels.begin(), pixels.end(), [](TRC pixel) { return pixel == untouched; }));
}

}  // namespace
