// SPDX-License-Identifier: MIT

// Frames against a model that paints centre by centre, at every vector level. Buffers and distance tables start or end at
// fences.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tests/support/checksums.h"
#include "tests/support/family.h"
#include "tests/support/fenced.h"
#include "tests/support/leveled_test.h"
#include "tests/support/random.h"

namespace {

using support::Random;
using Table = std::unique_ptr<int[]>;

enum Kind { solid, values, down, flat, sizedSolid, sizedValues, soft };
constexpr Kind allKinds[] = {solid, values, down, flat, sizedSolid, sizedValues, soft};

/// Kinds with different rules for the painted value.
constexpr Kind differentKinds[] = {solid, values, down, soft};

constexpr const char* names[] = {"HardFrameL08toL08, solid",
                                 "HardFrameL08toL08",
                                 "HardFrameDownL08toL08",
                                 "HardFrameL08toL08DifferentXYFlat",
                                 "HardFrameL08toL08DifferentSize, solid",
                                 "HardFrameL08toL08DifferentSize",
                                 "SoftFrameL08toL08"};

struct Mask {
    L08* pixels;
    unsigned width, height;

    std::size_t size() const { return std::size_t{width} * height; }
    L08& pixel(int x, int y) const { return pixels[std::size_t{width} * unsigned(y) + unsigned(x)]; }
    bool isShape(int x, int y) const {
        return x >= 0 && y >= 0 && x < int(width) && y < int(height) && pixel(x, y) != 0;
    }
};

struct Framing {
    Kind kind;
    Mask src, dst;
    unsigned x = 0, y = 0, w, h;
    unsigned width;              ///< of the frame
    unsigned radius;             ///< of the table
    const int* table = nullptr;  ///< (2 * radius + 1)^2 distances
    bool isRounded = true;       ///< the table holds rounded distances

    bool isSized() const { return kind == sizedSolid || kind == sizedValues; }

    void call() const {
        switch (kind) {
            case solid:
            case values:
                return HardFrameL08toL08(src.pixels, dst.pixels, w, h, table, radius, width, kind == solid);
            case down:
                return HardFrameDownL08toL08(src.pixels, dst.pixels, w, h, table, radius, width);
            case flat:
                return HardFrameL08toL08DifferentXYFlat(src.pixels, dst.pixels, src.width, 5, w, h, table, radius,
                                                        width, 7);
            case sizedSolid:
            case sizedValues:
                return HardFrameL08toL08DifferentSize(src.pixels, src.width, src.height, x, y, dst.pixels, dst.width,
                                                      dst.height, w, h, table, radius, width, kind == sizedSolid);
            case soft:
                return SoftFrameL08toL08(src.pixels, dst.pixels, w, h, table, radius, width);
        }
    }

    std::int64_t distance(int dx, int dy) const {
        if (width == 1 && kind != soft) return 0;
        return isRounded ? std::lround(std::hypot(dx, dy))
                         : table[(int(radius) + dy) * (2 * int(radius) + 1) + int(radius) + dx];
    }

    L08 painted(L08 old, L08 value, std::int64_t distance) const {
        const auto product = static_cast<int>(std::uint32_t((width + 1 - distance) * value));
        switch (kind) {
            case down:
                return 0;
            case values:
            case sizedValues:
                return std::max(old, value);
            case soft:
                return std::max(old, static_cast<L08>(product / int(width)));
            default:
                return 255;
        }
    }

    void paint(int centreX, int centreY, L08 value) const {
        const int discRadius = isSized() ? std::max(1, int(width)) : int(width);
        for (int dy = -discRadius; dy <= discRadius; ++dy) {
            for (int dx = -discRadius; dx <= discRadius; ++dx) {
                L08& pixel = dst.pixel(centreX + dx, centreY + dy);
                const std::int64_t away = distance(dx, dy);
                if (away <= discRadius) pixel = painted(pixel, value, away);
            }
        }
    }

    void model() const {
        const int border = isSized() ? 1 : int(width);
        const int cols = isSized() ? int(std::min({w, src.width - x, dst.width})) : int(w);
        const int rows = isSized() ? int(std::min({h, src.height - y, dst.height})) : int(h);
        if (kind == soft && width == 0) return;
        for (int j = int(y) + border; j < int(y) + rows - border; ++j) {
            for (int i = int(x) + border; i < int(x) + cols - border; ++i) {
                const int neighbours =
                    src.isShape(i - 1, j) + src.isShape(i + 1, j) + src.isShape(i, j - 1) + src.isShape(i, j + 1);
                if (src.isShape(i, j) ? kind == down || neighbours == 4 : kind != down || neighbours == 0) continue;
                if (!isSized()) {
                    paint(i, j, src.pixel(i, j));
                } else {
                    const int slip = width == 1 ? 0 : int(x);
                    paint(i - int(x) + int(width), j - int(y) + int(width), src.pixel(i - slip, j));
                }
            }
        }
    }
};

/// Blobs, noise, or single pixels; of one value or many.
void drawMask(Random& random, const Mask& mask) {
    const L08 singleValue = random.oneIn(2) ? static_cast<L08>(1 + random.below(255)) : 0;
    const auto value = [&] { return singleValue != 0 ? singleValue : std::max<L08>(1, random.byte()); };
    std::fill_n(mask.pixels, mask.size(), L08{0});
    if (random.oneIn(4)) {
        const unsigned rarity = 1 + random.below(random.oneIn(2) ? 4 : 200);
        for (std::size_t i = 0; i < mask.size(); ++i) {
            if (random.oneIn(rarity)) mask.pixels[i] = value();
        }
        return;
    }
    const unsigned blobs = random.below(12);
    for (unsigned blob = 0; blob < blobs; ++blob) {
        const int centreX = int(random.below(mask.width)), centreY = int(random.below(mask.height));
        const int size = int(random.below(20));
        const bool mixed = random.oneIn(3);
        const L08 blobValue = value();
        for (int y = std::max(0, centreY - size); y < std::min(int(mask.height), centreY + size); ++y) {
            for (int x = std::max(0, centreX - size); x < std::min(int(mask.width), centreX + size); ++x) {
                const int dx = x - centreX, dy = y - centreY;
                if (dx * dx + dy * dy <= size * size) mask.pixel(x, y) = mixed ? value() : blobValue;
            }
        }
    }
}

/// Replaces the table's entries by another distance or by random ones, or a single entry by an extreme value.
void deform(Random& random, int* table, unsigned radius) {
    const unsigned side = 2 * radius + 1;
    enum Deformation { otherDistance, randomEntries, extremeEntry };
    const auto deformation = static_cast<Deformation>(random.below(3));
    for (unsigned i = 0; i < side * side; ++i) {
        const int dx = int(i % side) - int(radius), dy = int(i / side) - int(radius);
        if (deformation == otherDistance) table[i] = std::max(2 * dx, -dx) + std::abs(dy);
        if (deformation == randomEntries) table[i] = int(random.below(9)) - 1;
    }
    constexpr int extremes[] = {INT_MIN, -1, 0, 1, INT_MAX};
    if (deformation == extremeEntry) table[random.below(side * side)] = extremes[random.below(5)];
}

std::size_t entriesOf(unsigned radius) { return (2 * std::size_t{radius} + 1) * (2 * std::size_t{radius} + 1); }

class Frames : public support::LeveledTest {
protected:
    /// Arenas for masks of up to `bytes` and tables of up to `maxRadius`.
    explicit Frames(std::size_t bytes = 1 << 19, unsigned maxRadius = 64)
        : first_(bytes), second_(bytes), tables_(entriesOf(maxRadius) * sizeof(int)) {}

    Framing randomFraming(Random& random, Kind kind) const {
        Framing framing{};
        framing.kind = kind;
        framing.width = random.below(random.oneIn(4) ? 41 : 7);
        framing.radius = std::max(framing.width, framing.isSized() ? 1U : 0U) + random.below(3);
        const Table table(CreateDistTableForSoftFrame(framing.radius));
        framing.isRounded = !random.oneIn(5);
        if (!framing.isRounded) deform(random, table.get(), framing.radius);

        const bool isWide = random.oneIn(20);
        framing.w = random.below(isWide ? 1700 : 200) + (isWide && framing.width < 7 ? 3000 : 0);
        framing.h = random.below(isWide ? 20 + 2 * framing.width : 110);
        const unsigned right = kind == flat || framing.isSized() ? random.below(70) : 0;
        framing.src = {nullptr, framing.w + right, framing.h};
        framing.dst = framing.src;
        if (framing.isSized()) {
            framing.x = random.below(framing.src.width + 1);
            framing.y = random.below(framing.src.height + 1);
            framing.dst.width = framing.w + 2 * framing.width + random.below(3);
            framing.dst.height = framing.h + 2 * framing.width + random.below(3);
        }
        place(framing, table, random.oneIn(2));
        if (framing.src.size() != 0) drawMask(random, framing.src);
        random.fill(second_.bytes().first(framing.dst.size()));
        random.fill(second_.bytes().last(framing.dst.size()));
        return framing;
    }

    /// A framing of masks of one size that end at fences.
    Framing uniformFraming(Kind kind, unsigned maskWidth, unsigned maskHeight, unsigned width) const {
        const Mask mask{nullptr, maskWidth, maskHeight};
        Framing framing{
            .kind = kind, .src = mask, .dst = mask, .w = maskWidth, .h = maskHeight, .width = width, .radius = width};
        place(framing, Table(CreateDistTableForSoftFrame(width)), true);
        return framing;
    }

    /// Puts the buffers and a copy of the table next to fences.
    void place(Framing& framing, const Table& table, bool atEnd) const {
        framing.src.pixels = first_.values<L08>(framing.src.size(), atEnd).data();
        framing.dst.pixels = second_.values<L08>(framing.dst.size(), atEnd).data();
        const std::span<int> fenced = tables_.values<int>(entriesOf(framing.radius), atEnd);
        std::copy_n(table.get(), fenced.size(), fenced.begin());
        framing.table = fenced.data();
    }

    /// Expects a call to leave all memory as the model leaves it.
    void expectModel(const Framing& framing, const std::string& what) {
        const std::vector<std::byte> before(second_.bytes().begin(), second_.bytes().end());
        framing.model();
        const std::vector<std::byte> expected(second_.bytes().begin(), second_.bytes().end());
        std::copy(before.begin(), before.end(), second_.bytes().begin());
        framing.call();
        ASSERT_EQ(std::memcmp(second_.bytes().data(), expected.data(), expected.size()), 0)
            << what << ": " << names[framing.kind] << " of " << framing.width << ", table " << framing.radius
            << (framing.isRounded ? "" : " deformed") << ", " << framing.w << " x " << framing.h << " at " << framing.x
            << ", " << framing.y;
    }

    support::Fenced first_, second_, tables_;
};

class HugeFrames : public Frames {
protected:
    HugeFrames() : Frames(1 << 22, 1000) {}

    /// A frame of huge width around a few pixels.
    Framing sparse(Kind kind, unsigned width, unsigned w, unsigned h) const {
        const Framing framing = uniformFraming(kind, 2 * width + w, 2 * width + h, width);
        std::fill_n(framing.src.pixels, framing.src.size(), L08{kind == down});
        std::fill_n(framing.dst.pixels, framing.dst.size(), L08{kind == down});
        return framing;
    }
};

TEST_P(Frames, EqualTheirModel) {
    support::forSeeds(700, [&](Random& random, std::uint64_t seed) {
        const Framing framing = randomFraming(random, allKinds[seed % std::size(allKinds)]);
        expectModel(framing, "seed " + std::to_string(seed));
    });
}

// Rows are processed in tiles. The last tile ends at any position in a vector.
TEST_P(Frames, EqualTheirModelAtTheEndOfAnyTile) {
    support::forSeeds(132, [&](Random& random, std::uint64_t seed) {
        const unsigned width = 1 + seed % 2;
        const unsigned maskWidth = (width == 1 ? 4158U : 3060U) + static_cast<unsigned>(seed / 2);
        for (const Kind kind : differentKinds) {
            const Framing framing = uniformFraming(kind, maskWidth, 7, width);
            for (std::size_t i = 0; i < framing.src.size(); ++i) {
                const auto value = static_cast<L08>(kind == soft ? 200 : random.next());
                framing.src.pixels[i] = random.oneIn(2) ? value : L08{0};
            }
            expectModel(framing, "seed " + std::to_string(seed));
        }
    });
}

// The widths next to which another algorithm takes over, and those whose quotients are hard to round.
TEST_P(HugeFrames, EqualTheirModel) {
    constexpr unsigned widths[] = {32, 33, 83, 160, 192, 193, 254, 255, 256, 1000};
    support::forSeeds(8 * std::size(widths), [&](Random&, std::uint64_t seed) {
        const unsigned width = widths[(seed - 1) / 8];
        const Kind kind = differentKinds[seed % 4];
        const int singleValue = seed % 8 < 4 ? 0 : width == 255 ? 255 : 205;
        const Framing framing = sparse(kind, width, 48, 7);
        const auto border = static_cast<int>(width);
        for (const int x : {0, 47, 2, 40, 41}) {
            const int value = singleValue != 0 ? singleValue : 250 + x % 6;
            framing.src.pixel(border + x, border + x % 7) = static_cast<L08>(kind == down ? 0 : value);
            if (width > 300 && x == 47) break;  // two centres: the model takes long
        }
        expectModel(framing, "width " + std::to_string(width));
    });
}

TEST_P(HugeFrames, OfManyCentresEqualTheirModel) {
    support::forSeeds(32, [&](Random& random, std::uint64_t seed) {
        const bool isVast = random.oneIn(4);
        const unsigned width = isVast ? 640 + random.below(128) : 20 + random.below(310);
        const Kind kind = differentKinds[seed % 4];
        const unsigned w = 1 + random.below(500) + (isVast || random.oneIn(3) ? 0 : 1000);
        const Framing framing = sparse(kind, width, w, 1 + random.below(50));
        const bool hasOneValue = random.oneIn(2);
        for (unsigned chains = 1 + random.below(6); chains > 0; --chains) {
            auto x = static_cast<int>(width + random.below(w));
            auto y = static_cast<int>(width + random.below(framing.h - 2 * width));
            auto value = static_cast<L08>(hasOneValue ? 77 : 1 + random.below(255));
            // A chain of one centre or of four neighbours, whose discs overlap.
            for (unsigned links = random.oneIn(2) ? 1 : 4; links > 0; --links) {
                framing.src.pixel(x, y) = kind == down ? L08{0} : value;
                x = std::clamp(x + static_cast<int>(random.below(3)) - 1, 0, static_cast<int>(framing.w) - 1);
                y = std::clamp(y + static_cast<int>(random.below(3)) - 1, 0, static_cast<int>(framing.h) - 1);
                if (!hasOneValue && random.oneIn(3)) value = std::max<L08>(1, random.byte());
            }
        }
        expectModel(framing, "seed " + std::to_string(seed));
    });
}

TEST_P(Frames, GrowOnTheirOwnOutputWhereBuffersAreOne) {
    constexpr unsigned side = 40;
    for (const Kind kind : differentKinds) {
        std::vector<L08> mask(side * side, kind == down ? 90 : 0);
        mask[12 * side + 15] = kind == down ? 0 : 200;
        Framing framing = uniformFraming(kind, side, side, 2);
        framing.src.pixels = framing.dst.pixels = mask.data();
        auto expected = mask;
        Framing model = framing;
        model.src.pixels = model.dst.pixels = expected.data();
        model.model();
        framing.call();
        EXPECT_EQ(mask, expected) << names[kind];
        EXPECT_NE(mask[12 * side + 30], mask[5 * side + 30]) << "it spreads to the right edge, but only 2 rows upwards";
    }
}

TEST_P(Frames, HaveTheCommittedChecksums) {
    for (const Kind kind : allKinds) {
        support::Fnv1a sum;
        for (std::uint64_t seed = 1; seed <= 60; ++seed) {
            Random random(seed);
            const Framing framing = randomFraming(random, kind);
            framing.call();
            sum.add({framing.dst.pixels, framing.dst.size()});
        }
        support::expectCommitted(names[kind], sum.value());
    }
}

INSTANTIATE_AT_EVERY_LEVEL(Frames);
INSTANTIATE_AT_EVERY_LEVEL(HugeFrames);

TEST(DistTable, HoldsRoundedDistances) {
    EXPECT_EQ(Table(CreateDistTableForSoftFrame(0))[0], 0);
    for (const int radius : {1, 2, 300}) {
        const Table table(CreateDistTableForSoftFrame(unsigned(radius)));
        const int* entry = table.get();
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                // Twice the distance is between 2 * entry - 1 and 2 * entry + 1.
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
    constexpr unsigned side = 11, centre = 5 * side + 5;
    for (const auto& [value, middle] :
         {std::pair{100, 125}, std::pair{204, 255}, std::pair{205, 0}, std::pair{255, 62}}) {
        std::vector<L08> mask(side * side), frame(side * side);
        mask[centre] = static_cast<L08>(value);
        SoftFrameL08toL08(mask.data(), frame.data(), side, side, table.get(), 4, 4);
        EXPECT_EQ(frame[centre], middle);
        EXPECT_EQ(frame[centre + 1], value);
        EXPECT_EQ(frame[centre + 4], value / 4);
        EXPECT_EQ(frame[centre + 5], 0);
    }
}

}  // namespace
