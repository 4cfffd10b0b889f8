// Measured objects against a model that looks at every pixel for every object.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <span>
#include <vector>

#include "objects/pixel_sums.h"
#include "tests/repeat_support.h"
#include "tests/support/fenced.h"

namespace {

using support::RepeatInput;
constexpr double pi = std::numbers::pi;
constexpr int everything = 55, oriented = 7;

/// The host's side: the question is counted, and answered with yes from a certain one on.
struct Asked {
    static inline std::int64_t questions, refuseAt;

    explicit Asked(std::int64_t refuse = INT64_MAX) {
        questions = 0;
        refuseAt = refuse;
        SHostServices services;
        services.cancelRequested = [] { return ++questions >= refuseAt; };
        SetHostServices(&services);
    }
    ~Asked() { SetHostServices(nullptr); }
};

struct Tables {
    explicit Tables(double steps) { EXPECT_EQ(InitFeatureTables(1, steps), 0); }
    ~Tables() { ReleaseFeatureTables(); }
};

template <class T>
struct Scene {
    std::span<const T> labels, values;
    int width, height, x, y, w, h;
    T first;
    int count, needed;
    double angleSteps;

    bool asks(int features) const { return (needed & features) == features; }
    std::size_t at(int column, int row) const { return static_cast<std::size_t>(row * width + column); }
    int left() const { return std::max(0, std::min(x, width - 1)); }
    int top() const { return std::max(0, std::min(y, height - 1)); }
    int cols() const { return std::max(0, std::min(w, width - 1 - left())); }
    int rows() const { return std::max(0, std::min(h, height - 1 - top())); }

    int measure(std::vector<SFeature>& records, unsigned char& cancelled) const {
        return MultiObjectFeatureExtract<T>(labels.data(), width, height, x, y, w, h, values.data(), first, count,
                                            records.data(), static_cast<EFeaturesNeeded>(needed), &cancelled);
    }

    /// Calls visit(column, row) for the first `pixels` pixels of the area, counted from its corner.
    template <class Visit>
    void forEachPixel(std::int64_t pixels, Visit visit) const {
        for (int row = 0; row < rows(); ++row) {
            for (int column = 0; column < cols() && pixels-- > 0; ++column) visit(column, row);
        }
    }
    bool holds(int object, int column, int row) const {
        return std::int64_t{labels[at(left() + column, top() + row)]} == std::int64_t{first} + object;
    }

    /// Expects the records after a measurement that looked at so many pixels before it was cancelled.
    void model(std::vector<SFeature>& records, std::int64_t pixels) const {
        for (int k = 0; k < count; ++k) {
            SFeature& record = records[static_cast<std::size_t>(k)];
            if (asks(1)) modelPixels(k, record, pixels);
            if (pixels >= std::int64_t{cols()} * rows())
                record.orientation = asks(oriented) ? modelTurn(k, record) : 0.0;
        }
    }

    void modelPixels(int k, SFeature& record, std::int64_t pixels) const {
        if (asks(33)) std::fill_n(record.histogram, 256, 0);
        int area = 0;
        double sumX = 0.0, sumY = 0.0;
        forEachPixel(pixels, [&](int column, int row) {
            if (!holds(k, column, row)) return;
            const std::size_t pixel = at(left() + column, top() + row);
            if (area++ == 0 && asks(17)) {
                record.perimeter = FollowContour<T>(labels.data(), &labels[pixel], width, height, left(), top(), cols(),
                                                    rows(), labels[pixel], nullptr, nullptr);
            }
            sumX += column + 0.5;
            sumY += row + 0.5;
            if (asks(33)) ++record.histogram[values[pixel]];
        });
        if (pixels < std::int64_t{cols()} * rows()) return;
        record.area = area;
        record.compactness = record.perimeter / (2 * std::sqrt(area / pi) * pi);
        record.centerX = asks(3) && area > 0 ? sumX / area + left() : 0.0;
        record.centerY = asks(3) && area > 0 ? sumY / area + top() : 0.0;
    }

    double modelTurn(int k, const SFeature& record) const {
        const int n = static_cast<int>(angleSteps + 0.5), o = n / 8;
        std::vector<double> bins(static_cast<std::size_t>(n) + 1);
        forEachPixel(INT64_MAX, [&](int column, int row) {
            if (!holds(k, column, row)) return;
            double dx = record.centerX - (column + 0.5), dy = record.centerY - (row + 0.5);
            if (dx < 0) dx += 1.0;
            if (dy < 0) dy += 1.0;
            bins[static_cast<std::size_t>(bin(dx, dy, o))] += dx * dx + dy * dy;
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
        const bool left = dx > 0, above = dy > 0;
        if (ax > ay) return left ? (above ? t : 8 * o - t) : above ? 4 * o - t : 4 * o + t;
        if (ax < ay) return above ? (left ? 2 * o - t : 2 * o + t) : left ? 6 * o + t : 6 * o - t;
        return t + (left ? (above ? 0 : 7) : above ? 3 : 5) * o;
    }
};

/// Records whose every byte is set, so that whatever is written shows.
std::vector<SFeature> untouched(int count) {
    std::vector<SFeature> records(static_cast<std::size_t>(std::max(count, 1)));
    std::memset(static_cast<void*>(records.data()), 0x3F, records.size() * sizeof(SFeature));
    return records;
}

bool same(const std::vector<SFeature>& a, const std::vector<SFeature>& b) {
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(SFeature)) == 0;
}

/// Pictures of blots and of noise, between fences; areas that are cut or empty; labels up to the end of their type.
template <class T>
Scene<T> draw(RepeatInput& random, const support::Fenced& labels, const support::Fenced& values) {
    Scene<T> scene{};
    scene.width = random.between(1, 40);
    scene.height = random.between(1, 16);
    const auto size = static_cast<std::size_t>(scene.width * scene.height);
    const std::span<T> picture = labels.values<T>(size, random.coin()), under = values.values<T>(size, random.coin());
    scene.labels = picture;
    scene.values = under;
    scene.count = random.between(-1, 6);
    scene.first = static_cast<T>(random.coin() ? 3 : (sizeof(T) == 1 ? 255 : INT_MAX) - random.between(0, 3));
    const unsigned change = 1 + random.below(9);
    for (std::size_t i = 0; i < size; ++i) {
        const bool as = i > 0 && !random.oneIn(change);
        const auto label = static_cast<T>(static_cast<unsigned>(scene.first) + random.below(7) - 1);
        const std::size_t above = i - std::min(i, static_cast<std::size_t>(scene.width));
        picture[i] = !as ? label : random.coin() ? picture[i - 1] : picture[above];
        under[i] = random.byte();
    }
    scene.w = scene.width;
    scene.h = scene.height;
    if (random.oneIn(3)) {
        scene.x = random.between(-3, 12);
        scene.y = random.between(-3, 12);
        scene.w = random.oneIn(9) ? random.position() : random.between(-1, 30);
        scene.h = random.between(-1, 20);
    }
    scene.needed = random.coin() ? everything : static_cast<int>(random.below(64));
    constexpr double steps[] = {7.5, 8, 10, 15, 37.4, 100, 360, 361.5};
    scene.angleSteps = steps[random.below(8)];
    return scene;
}

/// Cancels before one of the pixels that are looked at. Of the orientations, some may be done by then.
template <class T>
void expectCancelled(const Scene<T>& scene, std::int64_t question, const std::vector<SFeature>& complete) {
    const Asked asked(question);
    std::vector<SFeature> records = untouched(scene.count), expected = records;
    unsigned char cancelled = 7;
    EXPECT_EQ(scene.measure(records, cancelled), -1);
    EXPECT_EQ(cancelled, 1);
    EXPECT_EQ(Asked::questions, question);
    scene.model(expected, question - 1);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const double before = untouched(1)[0].orientation, final = complete[i].orientation;
        EXPECT_TRUE(records[i].orientation == final || records[i].orientation == before);
        expected[i].orientation = records[i].orientation;
    }
    EXPECT_TRUE(same(records, expected));
}

template <class T>
void expectModelAndChecksum() {
    const support::Fenced labels(65536), values(65536);
    std::uint64_t sum = 0;
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        RepeatInput random(seed);
        const Scene<T> scene = draw<T>(random, labels, values);
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Tables tables(scene.angleSteps);
        std::vector<SFeature> expected = untouched(scene.count), records = expected, unasked = expected;
        scene.model(expected, INT64_MAX);
        std::int64_t questions = 0;
        {
            const Asked asked;
            unsigned char cancelled = 7;
            ASSERT_EQ(scene.measure(records, cancelled), 0);
            ASSERT_EQ(cancelled, 0);
            questions = Asked::questions;
        }
        ASSERT_TRUE(same(records, expected));
        unsigned char cancelled = 7;
        ASSERT_EQ(scene.measure(unasked, cancelled), 0);
        ASSERT_TRUE(same(unasked, expected));

        std::int64_t pixels = 0, objectPixels = 0;
        scene.forEachPixel(INT64_MAX, [&](int column, int row) {
            ++pixels;
            for (int k = 0; k < scene.count; ++k) objectPixels += scene.holds(k, column, row);
        });
        ASSERT_EQ(questions, (scene.asks(1) ? pixels : 0) + (scene.asks(oriented) ? objectPixels : 0));
        if (questions > 0) expectCancelled(scene, 1 + random.below(static_cast<unsigned>(questions)), expected);
        if (testing::Test::HasFailure()) return;

        for (const SFeature& record : records) {
            const auto mix = [&](auto bits) {
                sum = (std::rotl(sum, 23) ^ static_cast<std::uint64_t>(bits)) * 0x9E3779B97F4A7C15U;
            };
            mix(record.area);
            for (const double value :
                 {record.centerX, record.centerY, record.orientation, record.perimeter, record.compactness}) {
                mix(std::bit_cast<std::uint64_t>(value));
            }
            for (const int bin : record.histogram) mix(bin);
        }
    }
    EXPECT_EQ(sum, 10210776922067049753U);
}

TEST(MultiObjectFeatureExtract, EqualsItsModelAndTheCommittedChecksum) {
    expectModelAndChecksum<unsigned char>();
    expectModelAndChecksum<int>();
}

TEST(MultiObjectFeatureExtract, NoRecordsAreAFailure) {
    unsigned char cancelled = 7;
    EXPECT_EQ(
        MultiObjectFeatureExtract<int>(nullptr, 9, 9, 0, 0, 9, 9, nullptr, 1, 3, nullptr, FeatureArea, &cancelled), -1);
    EXPECT_EQ(cancelled, 0);
}

/// Gives out so many blocks, and counts those that were not given back.
class Scarce final : public LargeAllocatorItf {
public:
    explicit Scarce(int blocks) : left_(blocks) { g_pLargeAllocator = this; }
    ~Scarce() {
        g_pLargeAllocator = before_;
        EXPECT_EQ(lent_, 0);
    }
    void* Alloc(std::size_t bytes) override {
        if (left_-- == 0) return nullptr;
        ++lent_;
        return before_->Alloc(bytes);
    }
    void Free(void* block) override {
        --lent_;
        before_->Free(block);
    }

private:
    LargeAllocatorItf* const before_ = g_pLargeAllocator;
    int left_, lent_ = 0;
};

TEST(MultiObjectFeatureExtract, GivesItsMemoryBackHoweverItEnds) {
    const support::Fenced labels(65536), values(65536);
    const Tables tables(360);
    RepeatInput random(5);
    Scene<int> scene = draw<int>(random, labels, values);
    scene.needed = everything;
    std::vector<SFeature> records = untouched(scene.count);
    unsigned char cancelled = 7;
    int blocks = 0;
    for (bool enough = false; !enough; ++blocks) {
        const Scarce allocator(blocks);
        try {
            enough = scene.measure(records, cancelled) == 0;
        } catch (const COmnarException& error) {
            EXPECT_LT(error.code(), 0);
        }
        ASSERT_LT(blocks, 99);
    }
    EXPECT_GT(blocks, 1) << "memory comes from the host";
    for (int question = 1; question < 200; question += 7) {
        const Scarce allocator(-1);
        const Asked asked(question);
        scene.measure(records, cancelled);
    }
    const Scarce allocator(-1);
    SHostServices services;
    services.cancelRequested = []() -> bool { throw 5; };
    SetHostServices(&services);
    EXPECT_THROW(scene.measure(records, cancelled), int);
    SetHostServices(nullptr);
}

TEST(FeatureTables, AreBuiltOnceUnlessTheirMarkIsZero) {
    EXPECT_EQ(InitFeatureTables(0, 360), 0);
    EXPECT_EQ(InitFeatureTables(5, 360), 0);
    EXPECT_EQ(InitFeatureTables(0, 360), -1);
    EXPECT_EQ(ReleaseFeatureTables(), 0);
    EXPECT_EQ(ReleaseFeatureTables(), 0);
    for (const double none : {-3.0, -1e300, 1e300, double{NAN}}) {
        EXPECT_EQ(InitFeatureTables(5, none), -1) << none;
        EXPECT_EQ(InitFeatureTables(5, 360), -1) << "the mark stands although there are no tables";
        ReleaseFeatureTables();
    }
}

TEST(CentreSum, EqualsAddingEachCentre) {
    RepeatInput random(9);
    omnar::CentreSum sum;
    double model = 0.0;
    while (model < 0x1p53) {
        const double first = random.between(0, INT_MAX) + 0.5, step = random.coin() ? 1.0 : 0.0;
        const int count = random.between(1, 5000);
        sum.add(first, step, count);
        for (int i = 0; i < count; ++i) model += first + i * step;
        ASSERT_EQ(sum.value(), model);
    }
}

#if defined(OMNAR_CHECKED)
TEST(MultiObjectFeatureExtract, ReportsBrokenPreconditions) {
    static int labels[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1}, values[9] = {0, 255, 0, 0, -1};
    static SFeature record;
    static unsigned char cancelled;
    static constexpr auto call = [](const int* buffer, const int* under, int needed, unsigned char* flag) {
        MultiObjectFeatureExtract<int>(buffer, 3, 3, 0, 0, 3, 3, under, 1, 1, &record,
                                       static_cast<EFeaturesNeeded>(needed), flag);
    };
    support::expectReports({
        {"MultiObjectFeatureExtract", "cancelled", "null", [] { call(labels, values, 1, nullptr); }},
        {"MultiObjectFeatureExtract", "buffer", "null", [] { call(nullptr, values, 1, &cancelled); }},
        {"MultiObjectFeatureExtract", "valueBuffer", "null", [] { call(labels, nullptr, 33, &cancelled); }},
        {"MultiObjectFeatureExtract", "valueBuffer", "not null", [] { call(labels, values, 33, &cancelled); }},
        {"MultiObjectFeatureExtract", "needed", "7", [] { call(labels, nullptr, 7, &cancelled); }},
    });
}
#endif

}  // namespace
