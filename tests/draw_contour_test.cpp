// SPDX-License-Identifier: MIT

// Marking a mask's boundary against a look at each pixel's neighbours, at every level.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/calls.h"
#include "tests/support/family.h"
#include "tests/support/fenced.h"
#include "tests/support/member.h"
#include "tests/support/random.h"

namespace {

using omnar::Level;
using support::Buffer;
using support::Format;
using support::Random;

struct Drawing {
    Buffer mask, target;
    unsigned w, h, colour;

    void call() const {
        DrawContourOfL08toTRC(mask.as<L08>(), mask.width, mask.height, mask.x, mask.y, target.as<TRC>(), target.width,
                              target.height, target.x, target.y, w, h, colour);
    }
    unsigned cols() const { return drawn(w, mask.width - mask.x, target.width - target.x); }
    unsigned rows() const { return drawn(h, mask.height - mask.y, target.height - target.y); }
    bool set(unsigned column, unsigned row) const { return *mask.at(column, row) != std::byte{0}; }

private:
    static unsigned drawn(unsigned wanted, unsigned ofMask, unsigned ofTarget) {
        const unsigned bordered = std::min(wanted, ofMask);
        return bordered < 3 ? 0 : std::min(bordered - 2, ofTarget);
    }
};

/// By pixels, for buffers that share nothing.
void drawByPixels(const Drawing& drawing) {
    for (unsigned y = 1; y <= drawing.rows(); ++y) {
        for (unsigned x = 1; x <= drawing.cols(); ++x) {
            const bool right = x == drawing.cols() || drawing.set(x + 1, y);
            const bool deep = drawing.set(x - 1, y) && right && drawing.set(x, y - 1) && drawing.set(x, y + 1);
            if (drawing.set(x, y) && !deep) support::store(drawing.target, x - 1, y - 1, drawing.colour);
        }
    }
}

/// By runs, in the order that buffers show which share memory.
void drawByRuns(const Drawing& drawing) {
    const auto mark = [&](unsigned x, unsigned y) { support::store(drawing.target, x - 1, y - 1, drawing.colour); };
    for (unsigned y = 1, end = drawing.cols() + 1; end > 1 && y <= drawing.rows(); ++y) {
        unsigned x = 1;
        bool inside = drawing.set(0, y);
        while (x < end) {
            if (!inside) {
                while (x < end && !drawing.set(x, y)) ++x;
                if (x == end) break;
                mark(x, y);
            }
            for (; x < end && drawing.set(x, y); ++x) {
                if (!drawing.set(x, y - 1) || !drawing.set(x, y + 1)) mark(x, y);
            }
            if (x < end && x > 1) mark(x - 1, y);
            if (x < end) ++x;
            inside = false;
        }
    }
}

/// A size around what is asked for, and a corner on or near the edges.
Buffer shape(Random& random, Format format, unsigned w, unsigned h) {
    const unsigned x = random.below(4), y = random.below(3);
    const unsigned right = random.below(4), below = random.below(4);
    return {format, nullptr, std::max(x + w + right, 1U) - 1, std::max(y + h + below, 1U) - 1, x, y};
}

class DrawContour : public testing::TestWithParam<Level> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
    }

    Drawing random(Random& random, unsigned most) const {
        const unsigned w = random.below(most), h = random.below(7);
        Drawing drawing{shape(random, Format::l08, w, h), shape(random, Format::trc, w > 2 ? w - 2 : 0, h),
                        random.oneIn(6) ? 5000 : w, h, static_cast<unsigned>(random.next())};
        for (Buffer* buffer : {&drawing.mask, &drawing.target}) {
            buffer->x = std::min(buffer->x, buffer->width);
            buffer->y = std::min(buffer->y, buffer->height);
        }
        return drawing;
    }

    /// Mostly solid or mostly clear, so that whole vectors are either.
    void paintMask(Random& random) const {
        random.fill(mask_.bytes().last(8192));
        const unsigned holes = random.below(3);
        if (holes == 0) return;
        for (std::byte& pixel : mask_.bytes().last(8192)) {
            if (!random.oneIn(30)) pixel = std::byte(holes == 1 ? 0 : 1 + random.below(255));
        }
    }

    /// Both buffers end where nothing may be touched.
    void placeApart(Drawing& drawing) const {
        const auto mask = mask_.bytes(), target = target_.bytes();
        drawing.mask.pixels = mask.data() + mask.size() - std::size_t{drawing.mask.width} * drawing.mask.height;
        drawing.target.pixels =
            target.data() + target.size() - std::size_t{drawing.target.width} * drawing.target.height * 4;
    }

    support::Fenced mask_{65536}, target_{65536};

private:
    support::ForcedLevel level_{GetParam()};
};

TEST_P(DrawContour, EqualsItsModel) {
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        Random generator(seed);
        paintMask(generator);
        generator.fill(target_.bytes().last(16384));
        Drawing drawing = random(generator, 200);
        placeApart(drawing);
        const auto target = target_.bytes();
        const std::vector<std::byte> before(target.begin(), target.end());
        drawByPixels(drawing);
        const std::vector<std::byte> expected(target.begin(), target.end());
        std::copy(before.begin(), before.end(), target.begin());
        drawing.call();
        ASSERT_EQ(std::memcmp(target.data(), expected.data(), expected.size()), 0)
            << "seed " << seed << ": " << drawing.cols() << "x" << drawing.rows();
    }
}

TEST_P(DrawContour, KeepsItsOrderWhereBuffersShareMemory) {
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        Random generator(seed);
        paintMask(generator);
        Drawing drawing = random(generator, 100);
        if (generator.oneIn(3)) drawing.colour &= 0xFF00FF00;
        const auto memory = mask_.bytes().last(8192);
        drawing.mask.pixels = memory.data() + generator.below(2000);
        drawing.target.pixels = memory.data() + 4 * generator.below(500);
        const std::vector<std::byte> before(memory.begin(), memory.end());
        drawByRuns(drawing);
        const std::vector<std::byte> expected(memory.begin(), memory.end());
        std::copy(before.begin(), before.end(), memory.begin());
        drawing.call();
        ASSERT_EQ(std::memcmp(memory.data(), expected.data(), expected.size()), 0)
            << "seed " << seed << ": " << drawing.cols() << "x" << drawing.rows();
    }
}

TEST_P(DrawContour, HasTheCommittedChecksum) {
    std::uint64_t sum = 0xCBF29CE484222325U;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random generator(seed);
        paintMask(generator);
        generator.fill(target_.bytes().last(16384));
        Drawing drawing = random(generator, 200);
        placeApart(drawing);
        drawing.call();
        for (const std::byte byte : target_.bytes().last(16384)) {
            sum = (sum ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3U;
        }
    }
    EXPECT_EQ(sum, 4101875642036523356U);
}

INSTANTIATE_TEST_SUITE_P(Levels, DrawContour, testing::ValuesIn(omnar::allLevels),
                         [](const auto& level) { return std::string(name(level.param)); });

}  // namespace
