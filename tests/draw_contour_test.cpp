// SPDX-License-Identifier: MIT

// Drawing a mask's boundary against models, at every vector level.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "tests/support/fenced.h"
#include "tests/support/leveled_test.h"
#include "tests/support/member.h"
#include "tests/support/random.h"

namespace {

using support::Buffer;
using support::Format;
using support::Random;

struct Drawing {
    Buffer mask, destination;
    unsigned w, h, color;

    void call() const {
        DrawContourOfL08toTRC(mask.as<L08>(), mask.width, mask.height, mask.x, mask.y, destination.as<TRC>(),
                              destination.width, destination.height, destination.x, destination.y, w, h, color);
    }
    unsigned cols() const { return drawn(w, mask.width - mask.x, destination.width - destination.x); }
    unsigned rows() const { return drawn(h, mask.height - mask.y, destination.height - destination.y); }
    bool isSet(unsigned column, unsigned row) const { return *mask.at(column, row) != std::byte{0}; }

private:
    static unsigned drawn(unsigned extent, unsigned maskLeft, unsigned destinationLeft) {
        const unsigned bordered = std::min(extent, maskLeft);
        return bordered < 3 ? 0 : std::min(bordered - 2, destinationLeft);
    }
};

/// Pixel by pixel, for buffers without overlap.
void drawByPixels(const Drawing& drawing) {
    for (unsigned y = 1; y <= drawing.rows(); ++y) {
        for (unsigned x = 1; x <= drawing.cols(); ++x) {
            const bool right = x == drawing.cols() || drawing.isSet(x + 1, y);
            const bool interior =
                drawing.isSet(x - 1, y) && right && drawing.isSet(x, y - 1) && drawing.isSet(x, y + 1);
            if (drawing.isSet(x, y) && !interior) support::store(drawing.destination, x - 1, y - 1, drawing.color);
        }
    }
}

/// Run by run, in the documented order, which overlap makes visible.
void drawByRuns(const Drawing& drawing) {
    const auto mark = [&](unsigned x, unsigned y) { support::store(drawing.destination, x - 1, y - 1, drawing.color); };
    for (unsigned y = 1, end = drawing.cols() + 1; end > 1 && y <= drawing.rows(); ++y) {
        unsigned x = 1;
        bool inside = drawing.isSet(0, y);
        while (x < end) {
            if (!inside) {
                while (x < end && !drawing.isSet(x, y)) ++x;
                if (x == end) break;
                mark(x, y);
            }
            for (; x < end && drawing.isSet(x, y); ++x) {
                if (!drawing.isSet(x, y - 1) || !drawing.isSet(x, y + 1)) mark(x, y);
            }
            if (x < end && x > 1) mark(x - 1, y);
            if (x < end) ++x;
            inside = false;
        }
    }
}

/// A buffer of about w x h pixels with a corner on or near its edges.
Buffer randomBuffer(Random& random, Format format, unsigned w, unsigned h) {
    const unsigned x = random.below(4), y = random.below(3);
    const unsigned right = random.below(4), below = random.below(4);
    return {format, nullptr, std::max(x + w + right, 1U) - 1, std::max(y + h + below, 1U) - 1, x, y};
}

class DrawContour : public support::LeveledTest {
protected:
    Drawing randomDrawing(Random& random, unsigned maxWidth) const {
        const unsigned w = random.below(maxWidth), h = random.below(7);
        Drawing drawing{randomBuffer(random, Format::l08, w, h),
                        randomBuffer(random, Format::trc, w > 2 ? w - 2 : 0, h), random.oneIn(6) ? 5000 : w, h,
                        static_cast<unsigned>(random.next())};
        for (Buffer* buffer : {&drawing.mask, &drawing.destination}) {
            buffer->x = std::min(buffer->x, buffer->width);
            buffer->y = std::min(buffer->y, buffer->height);
        }
        return drawing;
    }

    /// Noise, or mostly zero or non-zero, so that entire vectors are.
    void paintMask(Random& random) const {
        random.fill(mask());
        const unsigned holes = random.below(3);
        if (holes == 0) return;
        for (std::byte& pixel : mask()) {
            if (!random.oneIn(30)) pixel = std::byte(holes == 1 ? 0 : 1 + random.below(255));
        }
    }

    /// Both buffers end at fenced memory.
    void placeApart(Drawing& drawing) const {
        const auto mask = mask_.bytes(), destination = destination_.bytes();
        drawing.mask.pixels = mask.data() + mask.size() - std::size_t{drawing.mask.width} * drawing.mask.height;
        drawing.destination.pixels = destination.data() + destination.size() -
                                     std::size_t{drawing.destination.width} * drawing.destination.height * 4;
    }

    /// Compares a call with a model. Both write into `memory` alone.
    void compare(const Drawing& drawing, std::span<std::byte> memory, void (*model)(const Drawing&)) const {
        const std::vector<std::byte> before(memory.begin(), memory.end());
        model(drawing);
        const std::vector<std::byte> expected(memory.begin(), memory.end());
        std::copy(before.begin(), before.end(), memory.begin());
        drawing.call();
        EXPECT_TRUE(std::equal(memory.begin(), memory.end(), expected.begin()))
            << drawing.cols() << " x " << drawing.rows() << " pixels";
    }

    std::span<std::byte> mask() const { return mask_.bytes().last(8192); }
    std::span<std::byte> destination() const { return destination_.bytes().last(16384); }

private:
    support::Fenced mask_{65536}, destination_{65536};
};

TEST_P(DrawContour, EqualsItsModel) {
    support::forSeeds(3000, [this](Random& random, std::uint64_t seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        paintMask(random);
        random.fill(destination());
        Drawing drawing = randomDrawing(random, 200);
        placeApart(drawing);
        compare(drawing, destination(), drawByPixels);
    });
}

TEST_P(DrawContour, KeepsItsOrderWhereBuffersOverlap) {
    support::forSeeds(2000, [this](Random& random, std::uint64_t seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        paintMask(random);
        Drawing drawing = randomDrawing(random, 100);
        if (random.oneIn(3)) drawing.color &= 0xFF00FF00;
        drawing.mask.pixels = mask().data() + random.below(2000);
        drawing.destination.pixels = mask().data() + 4 * random.below(500);
        compare(drawing, mask(), drawByRuns);
    });
}

TEST_P(DrawContour, HasTheCommittedChecksum) {
    std::uint64_t sum = 0xCBF29CE484222325U;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        paintMask(random);
        random.fill(destination());
        Drawing drawing = randomDrawing(random, 200);
        placeApart(drawing);
        drawing.call();
        for (const std::byte byte : destination()) {
            sum = (sum ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3U;
        }
    }
    EXPECT_EQ(sum, 4101875642036523356U);
}

INSTANTIATE_AT_EVERY_LEVEL(DrawContour);

}  // namespace
