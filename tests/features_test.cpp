// SPDX-License-Identifier: MIT

// Measured objects against a model that scans all pixels for each object.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

#include "objects/coordinate_sum.h"
#include "tests/support/calls.h"
#include "tests/support/fenced.h"
#include "tests/support/scarce_allocator.h"

namespace {

using support::Input;
using support::ScarceAllocator;

constexpr double pi = std::numbers::pi;
constexpr int centred = FeatureArea | FeatureCentroid, oriented = centred | FeatureOrientation;
constexpr int perimeter = FeatureArea | FeaturePerimeter, histogram = FeatureArea | FeatureHistogram;
constexpr int everything = oriented | perimeter | histogram;

/// A host that counts the cancel queries and cancels from one of them on. Below 0, it throws.
struct CancelHost {
    static inline std::int64_t queries, cancelling;

    explicit CancelHost(std::int64_t query = INT64_MAX) {
        queries = 0;
        cancelling = query;
        SHostServices services;
        services.cancelRequested = [] { return cancelling < 0 ? throw 5 : ++queries >= cancelling; };
        SetHostServices(&services);
    }
    ~CancelHost() { SetHostServices(nullptr); }
};

/// One record more than there are objects. All bytes are set, so that any write shows.
struct Records : std::vector<SFeature> {
    explicit Records(int count) : std::vector<SFeature>(static_cast<std::size_t>(count + 1)) {
        std::ranges::fill(std::as_writable_bytes(std::span(*this)), std::byte{0x3F});
    }
    std::span<const std::byte> bytes() const { return std::as_bytes(std::span(*this)); }
    bool operator==(const Records& other) const { return std::ranges::equal(bytes(), other.bytes()); }
};

template <class T>
struct Scene {
    std::span<T> labels, values;
    int width, height, x, y, w, h;
    int left, top, cols, rows;  // of the cut area
    T first;
    int count, needed;
    double angleSteps;

    bool needs(int features) const { return (needed & features) == features; }
    int pixels() const { return cols * rows; }

    std::pair<int, int> measure(Records& records) const {
        unsigned char cancelled = 7;
        const int status = MultiObjectFeatureExtract<T>(labels.data(), width, height, x, y, w, h, values.data(), first,
                                                        count, records.data(), EFeaturesNeeded(needed), &cancelled);
        return {status, cancelled};
    }

    /// Calls visit(column, row, index) for the pixels of an object among the first `pixels` of the area.
    template <class Visit>
    void forEachPixel(int object, std::int64_t pixels, Visit visit) const {
        for (int i = 0; i < std::min<std::int64_t>(pixels, this->pixels()); ++i) {
            const auto index = static_cast<std::size_t>((top + i / cols) * width + left + i % cols);
            if (std::int64_t{labels[index]} - first == object) visit(i % cols, i / cols, index);
        }
    }

    /// The records after the first `pixels` of the area.
    void model(Records& records, std::int64_t pixels) const {
        for (int k = 0; k < count; ++k) {
            SFeature& record = records[static_cast<std::size_t>(k)];
            if (needs(FeatureArea)) modelPixels(k, record, pixels);
            if (pixels >= this->pixels()) record.orientation = needs(oriented) ? modelOrientation(k, record) : 0.0;
        }
    }

    void modelPixels(int k, SFeature& record, std::int64_t pixels) const {
        if (needs(histogram)) std::fill_n(record.histogram, 256, 0);
        int area = 0;
        double sumX = 0.0, sumY = 0.0;
        forEachPixel(k, pixels, [&](int column, int row, std::size_t index) {
            if (area++ == 0 && needs(perimeter)) {
                record.perimeter = FollowContour<T>(labels.data(), &labels[index], width, height, left, top, cols, rows,
                                                    labels[index], nullptr, nullptr);
            }
            sumX += column + 0.5;
            sumY += row + 0.5;
            if (needs(histogram)) ++record.histogram[values[index]];
        });
        if (pixels < this->pixels()) return;
        record.area = area;
        record.compactness = record.perimeter / (2 * std::sqrt(area / pi) * pi);
        record.centerX = needs(centred) && area > 0 ? sumX / area + left : 0.0;
        record.centerY = needs(centred) && area > 0 ? sumY / area + top : 0.0;
    }

    double modelOrientation(int k, const SFeature& record) const {
        const int n = static_cast<int>(angleSteps + 0.5);
        std::vector<double> bins(static_cast<std::size_t>(n) + 1);
        forEachPixel(k, INT64_MAX, [&](int column, int row, std::size_t) {
            double dx = record.centerX - (column + 0.5), dy = record.centerY - (row + 0.5);
            dx += dx < 0;
            dy += dy < 0;
            bins[static_cast<std::size_t>(bin(dx, dy, n / 8))] += dx * dx + dy * dy;
        });
        double best = 0.0;
        int centre = 0;
        for (int i = 0; i <= n; ++i) {
            double sum = 0.0;
            for (int j = -(n / 10); j < n / 10; ++j) sum += bins[static_cast<std::size_t>((i + n + j) % n)];
            if (sum > best) best = sum, centre = i;
        }
        return centre / (angleSteps / (2 * pi)) - pi;
    }

    int bin(double dx, double dy, int o) const {
        const double ax = std::abs(dx), ay = std::abs(dy);
        const int slope = ax == ay ? o : static_cast<int>(o * std::min(ax, ay) / std::max(ax, ay) + 0.5);
        const int t = static_cast<int>(std::atan(double(slope) / o) * (angleSteps / (2 * pi)) + 0.5);
        const bool onLeft = dx > 0, above = dy > 0;
        if (ax > ay) return onLeft ? (above ? t : 8 * o - t) : above ? 4 * o - t : 4 * o + t;
        if (ax < ay) return above ? (onLeft ? 2 * o - t : 2 * o + t) : onLeft ? 6 * o + t : 6 * o - t;
        return t + (onLeft ? (above ? 0 : 7) : above ? 3 : 5) * o;
    }

    /// One query before each pixel of the area, and one before each pixel of an object for the orientation.
    std::int64_t queries() const {
        std::int64_t sum = needs(FeatureArea) && count >= 0 ? pixels() : 0;
        for (int k = 0; k < count && needs(oriented); ++k) {
            forEachPixel(k, INT64_MAX, [&](int, int, std::size_t) { ++sum; });
        }
        return sum;
    }
};

/// Noise and blots, fenced. Areas may be cut or empty, labels may end at the last one of their type.
template <class T>
Scene<T> randomScene(Input& random, const support::Fenced& labels, const support::Fenced& values) {
    Scene<T> scene{};
    scene.width = random.between(1, 40);
    scene.height = random.between(1, 16);
    scene.labels = labels.values<T>(static_cast<std::size_t>(scene.width * scene.height), random.coin());
    scene.values = values.values<T>(scene.labels.size(), random.coin());
    scene.count = random.between(-1, 6);
    scene.first = static_cast<T>(random.coin() ? 3 : (sizeof(T) == 1 ? 255 : INT_MAX) - random.between(0, 3));
    const unsigned change = 1 + random.below(9);
    for (std::size_t i = 0; i < scene.labels.size(); ++i) {
        const std::size_t before = random.coin() ? 1 : static_cast<std::size_t>(scene.width);
        const unsigned label = static_cast<unsigned>(scene.first) + random.below(7) - 1;
        scene.labels[i] = random.oneIn(change) || i < before ? static_cast<T>(label) : scene.labels[i - before];
        scene.values[i] = random.byte();
    }
    const bool everywhere = !random.oneIn(3);
    scene.x = everywhere ? 0 : random.between(-3, 12);
    scene.y = everywhere ? 0 : random.between(-3, 12);
    scene.w = everywhere ? scene.width : random.oneIn(9) ? random.position() : random.between(-1, 30);
    scene.h = everywhere ? scene.height : random.between(-1, 20);
    scene.left = std::clamp(scene.x, 0, scene.width - 1);
    scene.top = std::clamp(scene.y, 0, scene.height - 1);
    scene.cols = std::clamp(scene.w, 0, scene.width - 1 - scene.left);
    scene.rows = std::clamp(scene.h, 0, scene.height - 1 - scene.top);
    scene.needed = random.coin() ? everything : random.between(0, 63);
    constexpr double steps[] = {7.5, 8, 10, 15, 37.4, 100, 360, 361.5};
    scene.angleSteps = steps[random.below(8)];
    return scene;
}

class Features : public testing::Test {
protected:
    void TearDown() override { ReleaseFeatureTables(); }

    /// Cancels at a query: the pixels before are counted. Some orientations may be written before that.
    template <class T>
    void expectCancelled(const Scene<T>& scene, std::int64_t query, const Records& complete) {
        const CancelHost host(query);
        Records records(scene.count), expected(scene.count);
        const double untouched = records[0].orientation;
        EXPECT_EQ(scene.measure(records), std::pair(-1, 1));
        EXPECT_EQ(CancelHost::queries, query);
        scene.model(expected, query - 1);
        for (std::size_t i = 0; i < records.size(); ++i) {
            expected[i].orientation = records[i].orientation == untouched ? untouched : complete[i].orientation;
        }
        EXPECT_TRUE(records == expected);
    }

    template <class T>
    void expectModelAndChecksum() {
        std::uint64_t sum = 0;
        for (std::uint64_t seed = 1; seed <= 3000 && !HasFailure(); ++seed) {
            const ScarceAllocator allocator(ScarceAllocator::unlimited);
            Input random(seed);
            const Scene<T> scene = randomScene<T>(random, labels_, values_);
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            ASSERT_EQ(InitFeatureTables(0, scene.angleSteps), 0);
            const std::pair success(scene.count < 0 ? -1 : 0,
                                    0);  // a negative count gives an empty vector, whose data() is null
            Records expected(scene.count), records(scene.count), uncancelled(scene.count);
            scene.model(expected, INT64_MAX);
            EXPECT_EQ(scene.measure(uncancelled), success);
            EXPECT_TRUE(uncancelled == expected);
            const CancelHost host;
            EXPECT_EQ(scene.measure(records), success);
            EXPECT_TRUE(records == expected);
            EXPECT_EQ(CancelHost::queries, scene.queries());
            const auto last = static_cast<unsigned>(scene.queries());
            if (last > 0) expectCancelled(scene, 1 + random.below(last), expected);
            EXPECT_EQ(allocator.blocks(), 0);
            for (const std::byte byte : records.bytes()) sum = (sum ^ std::to_integer<unsigned>(byte)) * 0x100000001B3U;
        }
        EXPECT_EQ(sum, 15461185782231839103U);
    }

    support::Fenced labels_{65536}, values_{65536};
};

TEST_F(Features, EqualTheirModelAndTheCommittedChecksum) {
    expectModelAndChecksum<unsigned char>();
    expectModelAndChecksum<int>();
}

TEST_F(Features, GiveTheirMemoryBackIfAServiceFails) {
    Input random(5);
    Scene<int> scene = randomScene<int>(random, labels_, values_);
    scene.needed = everything;
    InitFeatureTables(1, 360);
    Records records(scene.count);
    for (int blocks = 0; blocks < 3; ++blocks) {
        const ScarceAllocator allocator(blocks);
        EXPECT_THROW(scene.measure(records), COmnarException);
        EXPECT_EQ(allocator.blocks(), 0);
    }
    const ScarceAllocator allocator(ScarceAllocator::unlimited);
    const CancelHost throwing(-1);
    EXPECT_THROW(scene.measure(records), int);
    EXPECT_EQ(allocator.blocks(), 0);
}

TEST_F(Features, BuildTheirTablesOnceUnlessTheMarkIsZero) {
    EXPECT_EQ(InitFeatureTables(0, 360), 0);
    EXPECT_EQ(InitFeatureTables(5, 360), 0);
    EXPECT_EQ(InitFeatureTables(0, 360), -1);
    for (const double none : {-3.0, 1e300, HUGE_VAL}) {
        EXPECT_EQ(ReleaseFeatureTables(), 0);
        EXPECT_EQ(InitFeatureTables(5, none), -1) << none;
        EXPECT_EQ(InitFeatureTables(5, 360), -1) << "the mark is kept without tables";
    }
}

TEST(CoordinateSum, EqualsAddingEachCentre) {
    Input random(9);
    omnar::CoordinateSum sum;
    for (double model = 0.0; model < 0x1p53;) {
        const double first = random.between(0, INT_MAX) + 0.5, step = random.coin() ? 1.0 : 0.0;
        const int count = random.between(1, 5000);
        sum.add(first, step, count);
        for (int i = 0; i < count; ++i) model += first + i * step;
        ASSERT_EQ(sum.value(), model);
    }
}

}  // namespace
