// SPDX-License-Identifier: MIT

// Frames against a model that paints centre by centre, at every level, in memory that ends where nothing may be
// touched.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/calls.h"
#include "tests/support/family.h"
#include "tests/support/fenced.h"
#include "tests/support/random.h"

namespace {

using omnar::Level;
using support::Random;
using Table = std::unique_ptr<int[]>;

enum Kind { solid, levels, down, flat, sizedSolid, sizedLevels, soft };
constexpr const char* names[] = {"HardFrameL08toL08, solid",
                                 "HardFrameL08toL08",
                                 "HardFrameDownL08toL08",
                                 "HardFrameL08toL08DifferentXYFlat",
                                 "HardFrameL08toL08DifferentSize, solid",
                                 "HardFrameL08toL08DifferentSize",
                                 "SoftFrameL08toL08"};

struct Image {
    L08* pixels;
    unsigned width, height;

    std::size_t size() const { return std::size_t{width} * height; }
    L08& at(int x, int y) const { return pixels[std::size_t{width} * unsigned(y) + unsigned(x)]; }
    bool shape(int x, int y) const { return x >= 0 && y >= 0 && x < int(width) && y < int(height) && at(x, y) != 0; }
};

struct Framing {
    Kind kind;
    Image src, dst;
    unsigned x, y, w, h;
    unsigned reach, radius;
    const int* table;
    bool rounded;  // the table holds rounded distances

    bool sized() const { return kind == sizedSolid || kind == sizedLevels; }

    void call() const {
        switch (kind) {
            case solid:
            case levels:
                return HardFrameL08toL08(src.pixels, dst.pixels, w, h, table, radius, reach, kind == solid);
            case down:
                return HardFrameDownL08toL08(src.pixels, dst.pixels, w, h, table, radius, reach);
            case flat:
                return HardFrameL08toL08DifferentXYFlat(src.pixels, dst.pixels, src.width, 5, w, h, table, radius,
                                                        reach, 7);
            case sizedSolid:
            case sizedLevels:
                return HardFrameL08toL08DifferentSize(src.pixels, src.width, src.height, x, y, dst.pixels, dst.width,
                                                      dst.height, w, h, table, radius, reach, kind == sizedSolid);
            case soft:
                return SoftFrameL08toL08(src.pixels, dst.pixels, w, h, table, radius, reach);
        }
    }

    std::int64_t distance(int dx, int dy) const {
        if (reach == 1 && kind != soft) return 0;
        return rounded ? std::lround(std::hypot(dx, dy))
                       : table[(int(radius) + dy) * (2 * int(radius) + 1) + int(radius) + dx];
    }

    L08 painted(L08 old, L08 level, std::int64_t distance) const {
        const auto share = static_cast<int>(std::uint32_t((reach + 1 - distance) * level));
        switch (kind) {
            case down:
                return 0;
            case levels:
            case sizedLevels:
                return std::max(old, level);
            case soft:
                return std::max(old, static_cast<L08>(share / int(reach)));
            default:
                return 255;
        }
    }

    void paint(int centreX, int centreY, L08 level) const {
        const int most = sized() ? std::max(1, int(reach)) : int(reach);
        for (int dy = -most; dy <= most; ++dy) {
            for (int dx = -most; dx <= most; ++dx) {
                const std::int64_t away = distance(dx, dy);
                if (away <= most)
                    dst.at(centreX + dx, centreY + dy) = painted(dst.at(centreX + dx, centreY + dy), level, away);
            }
        }
    }

    void model() const {
        const int margin = sized() ? 1 : int(reach);
        const int cols = sized() ? int(std::min({w, src.width - x, dst.width})) : int(w);
        const int rows = sized() ? int(std::min({h, src.height - y, dst.height})) : int(h);
        if (kind == soft && reach == 0) return;
        for (int j = int(y) + margin; j < int(y) + rows - margin; ++j) {
            for (int i = int(x) + margin; i < int(x) + cols - margin; ++i) {
                const int shapes =
                    src.shape(i - 1, j) + src.shape(i + 1, j) + src.shape(i, j - 1) + src.shape(i, j + 1);
                if (src.shape(i, j) ? kind == down || shapes == 4 : kind != down || shapes == 0) continue;
                if (!sized()) {
                    paint(i, j, src.at(i, j));
                } else {
                    const int slip = reach == 1 ? 0 : int(x);
                    paint(i - int(x) + int(reach), j - int(y) + int(reach), src.at(i - slip, j));
                }
            }
        }
    }
};

/// Blobs, noise, or single pixels; of one level or many.
void drawMask(Random& random, const Image& image) {
    const L08 only = random.oneIn(2) ? static_cast<L08>(1 + random.below(255)) : 0;
    const auto level = [&] { return only != 0 ? only : std::max<L08>(1, random.byte()); };
    std::fill_n(image.pixels, image.size(), L08{0});
    if (random.oneIn(4)) {
        const unsigned rarity = 1 + random.below(random.oneIn(2) ? 4 : 200);
        for (std::size_t i = 0; i < image.size(); ++i) {
            if (random.oneIn(rarity)) image.pixels[i] = level();
        }
        return;
    }
    const unsigned blobs = random.below(12);
    for (unsigned blob = 0; blob < blobs; ++blob) {
        const int centreX = int(random.below(image.width)), centreY = int(random.below(image.height));
        const int size = int(random.below(20));
        const bool mixed = random.oneIn(3);
        const L08 one = level();
        for (int y = std::max(0, centreY - size); y < std::min(int(image.height), centreY + size); ++y) {
            for (int x = std::max(0, centreX - size); x < std::min(int(image.width), centreX + size); ++x) {
                const int dx = x - centreX, dy = y - centreY;
                if (dx * dx + dy * dy <= size * size) image.at(x, y) = mixed ? level() : one;
            }
        }
    }
}

/// A few entries of a table become anything, or all of them a distance of some other kind.
void deform(Random& random, int* table, unsigned radius) {
    const unsigned side = 2 * radius + 1;
    const unsigned way = random.below(3);
    for (unsigned i = 0; i < side * side; ++i) {
        const int dx = int(i % side) - int(radius), dy = int(i / side) - int(radius);
        if (way == 0) table[i] = std::max(2 * dx, -dx) + std::abs(dy);
        if (way == 1) table[i] = int(random.below(9)) - 1;
    }
    constexpr int oddities[] = {INT_MIN, -1, 0, 1, INT_MAX};
    if (way == 2) table[random.below(side * side)] = oddities[random.below(5)];
}

class Frames : public testing::TestWithParam<Level> {
protected:
    explicit Frames(std::size_t bytes = 1 << 19) : first_(bytes), second_(bytes) {}

    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(GetParam());
    }

    /// A frame with its buffers at the fences of their memory, before or behind them.
    Framing random(Random& random, Kind kind, Table& table) {
        Framing framing{};
        framing.kind = kind;
        framing.reach = random.below(random.oneIn(4) ? 41 : 7);
        framing.radius = std::max(framing.reach, framing.sized() ? 1U : 0U) + random.below(3);
        table.reset(CreateDistTableForSoftFrame(framing.radius));
        framing.table = table.get();
        framing.rounded = !random.oneIn(5);
        if (!framing.rounded) deform(random, table.get(), framing.radius);

        const bool wide = random.oneIn(20);
        framing.w = random.below(wide ? 1700 : 200) + (wide && framing.reach < 7 ? 3000 : 0);
        framing.h = random.below(wide ? 20 + 2 * framing.reach : 110);
        const unsigned right = kind == flat || framing.sized() ? random.below(70) : 0;
        framing.src = {nullptr, framing.w + right, framing.h};
        framing.dst = framing.src;
        if (framing.sized()) {
            framing.x = random.below(framing.src.width + 1);
            framing.y = random.below(framing.src.height + 1);
            framing.dst.width = framing.w + 2 * framing.reach + random.below(3);
            framing.dst.height = framing.h + 2 * framing.reach + random.below(3);
        }
        place(framing, random.oneIn(2));
        if (framing.src.size() != 0) drawMask(random, framing.src);
        random.fill(second_.bytes().first(framing.dst.size()));
        random.fill(second_.bytes().last(framing.dst.size()));
        return framing;
    }

    void place(Framing& framing, bool atEnd) const {
        const auto put = [=](Image& image, std::span<std::byte> memory) {
            image.pixels = reinterpret_cast<L08*>(memory.data()) + (atEnd ? memory.size() - image.size() : 0);
        };
        put(framing.src, first_.bytes());
        put(framing.dst, second_.bytes());
    }

    /// Expects a call to leave all memory as the model leaves it.
    void expectModel(const Framing& framing, const std::string& what) {
        const std::vector<std::byte> before(second_.bytes().begin(), second_.bytes().end());
        framing.model();
        const std::vector<std::byte> expected(second_.bytes().begin(), second_.bytes().end());
        std::copy(before.begin(), before.end(), second_.bytes().begin());
        framing.call();
        ASSERT_EQ(std::memcmp(second_.bytes().data(), expected.data(), expected.size()), 0)
            << what << ": " << names[framing.kind] << " of " << framing.reach << ", table " << framing.radius
            << (framing.rounded ? "" : " deformed") << ", " << framing.w << " x " << framing.h << " at " << framing.x
            << ", " << framing.y;
    }

    support::Fenced first_, second_;

private:
    support::ForcedLevel level_{GetParam()};
};

class HugeFrames : public Frames {
protected:
    HugeFrames() : Frames(1 << 22) {}

    /// A frame of huge width around a few pixels.
    Framing sparse(Kind kind, unsigned reach, unsigned w, unsigned h, const Table& table) {
        const Image image{nullptr, 2 * reach + w, 2 * reach + h};
        Framing framing{kind, image, image, 0, 0, image.width, image.height, reach, reach, table.get(), true};
        place(framing, true);
        std::fill_n(framing.src.pixels, framing.src.size(), L08{kind == down});
        std::fill_n(framing.dst.pixels, framing.dst.size(), L08{kind == down});
        return framing;
    }
};

TEST_P(Frames, EqualTheirModel) {
    support::forSeeds(700, [&](Random& generator, std::uint64_t seed) {
        Table table;
        const Framing framing = random(generator, static_cast<Kind>(seed % 7), table);
        expectModel(framing, "seed " + std::to_string(seed));
    });
}

constexpr Kind differentKinds[] = {solid, levels, down, soft};

// Rows are walked in tiles; the last one ends at any place in a vector.
TEST_P(Frames, EqualTheirModelAtTheEndOfAnyTile) {
    support::forSeeds(132, [&](Random& random, std::uint64_t seed) {
        const unsigned reach = 1 + seed % 2;
        const Table table(CreateDistTableForSoftFrame(reach));
        const Image image{nullptr, (reach == 1 ? 4158U : 3060U) + static_cast<unsigned>(seed / 2), 7};
        for (const Kind kind : differentKinds) {
            Framing framing{kind, image, image, 0, 0, image.width, 7, reach, reach, table.get(), true};
            place(framing, true);
            for (std::size_t i = 0; i < framing.src.size(); ++i) {
                const auto level = static_cast<L08>(kind == soft ? 200 : random.next());
                framing.src.pixels[i] = random.oneIn(2) ? level : L08{0};
            }
            expectModel(framing, "seed " + std::to_string(seed));
        }
    });
}

// Around the reaches where one way of drawing ends and the next one begins, and where quotients are hard to round.
TEST_P(HugeFrames, EqualTheirModel) {
    constexpr unsigned reaches[] = {32, 33, 83, 160, 192, 193, 254, 255, 256, 1000};
    support::forSeeds(8 * std::size(reaches), [&](Random&, std::uint64_t seed) {
        const unsigned reach = reaches[(seed - 1) / 8];
        const Kind kind = differentKinds[seed % 4];
        const int only = seed % 8 < 4 ? 0 : reach == 255 ? 255 : 205;
        const Table table(CreateDistTableForSoftFrame(reach));
        const Framing framing = sparse(kind, reach, 48, 7, table);
        const auto edge = static_cast<int>(reach);
        for (const int x : {0, 47, 2, 40, 41}) {
            const int level = only != 0 ? only : 250 + x % 6;
            framing.src.at(edge + x, edge + x % 7) = static_cast<L08>(kind == down ? 0 : level);
            if (reach > 300 && x == 47) break;  // these two are enough work
        }
        expectModel(framing, "reach " + std::to_string(reach));
    });
}

TEST_P(HugeFrames, OfManyCentresEqualTheirModel) {
    support::forSeeds(32, [&](Random& random, std::uint64_t seed) {
        const bool vast = random.oneIn(4);
        const unsigned reach = vast ? 640 + random.below(128) : 20 + random.below(310);
        const Table table(CreateDistTableForSoftFrame(reach));
        const Kind kind = differentKinds[seed % 4];
        const unsigned w = 1 + random.below(500) + (vast || random.oneIn(3) ? 0 : 1000);
        const Framing framing = sparse(kind, reach, w, 1 + random.below(50), table);
        const bool oneLevel = random.oneIn(2);
        for (unsigned left = 1 + random.below(6); left > 0; --left) {
            auto x = static_cast<int>(reach + random.below(w));
            auto y = static_cast<int>(reach + random.below(framing.h - 2 * reach));
            auto level = static_cast<L08>(oneLevel ? 77 : 1 + random.below(255));
            // Often a chain of neighbours, which share what they draw.
            for (unsigned links = random.oneIn(2) ? 1 : 4; links > 0; --links) {
                framing.src.at(x, y) = kind == down ? L08{0} : level;
                x = std::clamp(x + static_cast<int>(random.below(3)) - 1, 0, static_cast<int>(framing.w) - 1);
                y = std::clamp(y + static_cast<int>(random.below(3)) - 1, 0, static_cast<int>(framing.h) - 1);
                if (!oneLevel && random.oneIn(3)) level = std::max<L08>(1, random.byte());
            }
        }
        expectModel(framing, "seed " + std::to_string(seed));
    });
}

TEST_P(Frames, GrowOnTheirOwnOutputWhereBuffersAreOne) {
    for (const Kind kind : {solid, levels, down, soft}) {
        const Table table(CreateDistTableForSoftFrame(2));
        std::vector<L08> mask(40 * 40, kind == down ? 90 : 0);
        mask[12 * 40 + 15] = kind == down ? 0 : 200;
        Framing framing{kind, {mask.data(), 40, 40}, {mask.data(), 40, 40}, 0, 0, 40, 40, 2, 2, table.get(), true};
        auto expected = mask;
        Framing model = framing;
        model.src.pixels = model.dst.pixels = expected.data();
        model.model();
        framing.call();
        EXPECT_EQ(mask, expected) << names[kind];
        EXPECT_NE(mask[12 * 40 + 30], mask[5 * 40 + 30]) << "to the right it never ends, upwards it does";
    }
}

TEST_P(Frames, HaveTheCommittedChecksums) {
    constexpr std::uint64_t expected[] = {13084642483072302405U, 2791883241135596515U, 9174518819047014569U,
                                          14619349406872693763U, 603387491877656726U,  4265314135194136578U,
                                          15211084053529393139U};
    for (const Kind kind : {solid, levels, down, flat, sizedSolid, sizedLevels, soft}) {
        std::uint64_t sum = 0xCBF29CE484222325U;
        for (std::uint64_t seed = 1; seed <= 60; ++seed) {
            Random generator(seed);
            Table table;
            const Framing framing = random(generator, kind, table);
            framing.call();
            for (std::size_t i = 0; i < framing.dst.size(); ++i) sum = (sum ^ framing.dst.pixels[i]) * 0x100000001B3U;
        }
        EXPECT_EQ(sum, expected[kind]) << names[kind];
    }
}

const auto nameOfLevel = [](const auto& level) { return std::string(name(level.param)); };
INSTANTIATE_TEST_SUITE_P(Levels, Frames, testing::ValuesIn(omnar::allLevels), nameOfLevel);
INSTANTIATE_TEST_SUITE_P(Levels, HugeFrames, testing::ValuesIn(omnar::allLevels), nameOfLevel);

TEST(DistTable, HoldsRoundedDistances) {
    EXPECT_EQ(Table(CreateDistTableForSoftFrame(0))[0], 0);
    for (const int radius : {1, 2, 300}) {
        const Table table(CreateDistTableForSoftFrame(unsigned(radius)));
        const int* entry = table.get();
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                // Twice the distance lies between the two odd numbers around twice the entry.
                const int twice = 2 * *entry++, square = 4 * (dx * dx + dy * dy);
                ASSERT_TRUE(square < (twice + 1) * (twice + 1) && (twice == 0 || square > (twice - 1) * (twice - 1)))
                    << dx << ", " << dy;
            }
        }
    }
    EXPECT_THROW(CreateDistTableForSoftFrame(UINT_MAX), std::bad_alloc);
}

TEST(SoftFrame, KeepsTheLowBitsInTheMiddle) {
    const Table table(CreateDistTableForSoftFrame(4));
    for (const auto& [level, middle] :
         {std::pair{100, 125}, std::pair{204, 255}, std::pair{205, 0}, std::pair{255, 62}}) {
        std::vector<L08> mask(11 * 11), frame(11 * 11);
        mask[5 * 11 + 5] = static_cast<L08>(level);
        SoftFrameL08toL08(mask.data(), frame.data(), 11, 11, table.get(), 4, 4);
        EXPECT_EQ(frame[5 * 11 + 5], middle);
        EXPECT_EQ(frame[5 * 11 + 6], level);
        EXPECT_EQ(frame[5 * 11 + 9], level / 4);
        EXPECT_EQ(frame[5 * 11 + 10], 0);
    }
}

}  // namespace
