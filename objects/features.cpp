// SPDX-License-Identifier: MIT

// Measuring the objects of a labelled buffer.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <span>

#include "buffers/host/contract.h"
#include "buffers/host/large_block.h"
#include "buffers/host/services.h"
#include "objects/angle_tables.h"
#include "objects/area.h"
#include "objects/buffer.h"
#include "objects/coordinate_sum.h"
#include "objects/orientation.h"
#include "objects/runs.h"

using namespace omnar;

namespace {

/// Asks the host before every pixel whether to cancel, if anything can cancel.
class CancelQuery {
public:
    /// Asks before each of the pixels until the answer is yes. Returns how many pixels precede that.
    int pixelsBefore(int pixels) const {
        const auto requested = requested_;  // a copy: compilers must assume that the host changes the member
        if (requested == nullptr) return pixels;
        int before = 0;
        while (before < pixels && !requested()) ++before;
        return before;
    }

private:
    bool (*requested_)() = cancellable() ? cancelService() : nullptr;
};

/// A rectangle of w columns and h rows.
struct ScanArea {
    int x, y, w, h;

    bool empty() const { return w == 0 || h == 0; }
};

/// An area without its last column and row. Empty in a buffer without pixels.
ScanArea scanArea(int width, int height, int x, int y, int w, int h) {
    const Area area = Area::within(std::max(width, 1), std::max(height, 1), x, y, w, h);
    return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

/// A labelled buffer, the part of it that is scanned, and the objects in it.
template <class T>
struct LabelledArea {
    Buffer<const T> labels;
    ScanArea area;
    T firstLabel;
    std::size_t objects;

    /// The object that has a label, or a number >= objects. The difference does not wrap at the range of T.
    std::size_t objectOf(T label) const { return static_cast<std::size_t>(std::int64_t{label} - firstLabel); }

    template <class Visit>
    bool forEachRun(Visit visit) const {
        return area.empty() || omnar::forEachRun(labels.plane(area.x, area.y), area.w, area.h, visit);
    }

    /// The pixels of another buffer of this geometry, beneath pixels of this one.
    const T* beneath(const T* pixels, const T* other) const { return other + (pixels - labels.pixels); }

    double followContour(const T* start) const {
        return FollowContour<T>(labels.pixels, start, labels.width, labels.height, area.x, area.y, area.w, area.h,
                                *start, nullptr, nullptr);
    }
};

/// The sums over the pixels of one object.
struct Tally {
    unsigned int pixels;
    std::size_t runs;
    CoordinateSum columns, rows;

    void add(const Run& run) {
        pixels += static_cast<unsigned int>(run.length());
        ++runs;
        columns.add(run.begin + 0.5, 1.0, run.length());
        rows.add(run.row + 0.5, 0.0, run.length());
    }
};

constexpr EFeaturesNeeded orientation = FeatureArea | FeatureCentroid | FeatureOrientation;

constexpr bool hasAll(EFeaturesNeeded needed, EFeaturesNeeded features) { return (needed & features) == features; }

/// Tallies all pixels in one pass, which also writes perimeters and histograms. Returns false if it was cancelled.
template <class T>
bool tally(const LabelledArea<T>& scanned, const T* values, EFeaturesNeeded needed, const CancelQuery& cancel,
           const LargeArray<Tally>& tallies, SFeature* features) {
    const bool perimeter = hasAll(needed, FeaturePerimeter);
    const bool histogram = hasAll(needed, FeatureHistogram);
    return scanned.forEachRun([&](const Run& run, const T* pixels) {
        const int granted = cancel.pixelsBefore(run.length());
        const std::size_t object = scanned.objectOf(*pixels);
        if (object < scanned.objects && granted > 0) {
            SFeature& feature = features[object];
            if (perimeter && tallies[object].runs == 0) feature.perimeter = scanned.followContour(pixels);
            if (histogram) {
                for (const T value : std::span(scanned.beneath(pixels, values), static_cast<std::size_t>(granted))) {
                    ++feature.histogram[value];
                }
            }
            tallies[object].add(run);
        }
        return granted == run.length();
    });
}

/// Writes what follows from an object's tally. feature.perimeter is final.
void conclude(const Tally& tally, const ScanArea& area, bool centroid, SFeature& feature) {
    constexpr double pi = std::numbers::pi;
    feature.area = static_cast<int>(tally.pixels);
    feature.compactness = feature.perimeter / (2.0 * std::sqrt(feature.area / pi) * pi);
    const bool hasCenter = centroid && feature.area != 0;
    feature.centerX = hasCenter ? tally.columns.value() / feature.area + area.x : 0.0;
    feature.centerY = hasCenter ? tally.rows.value() / feature.area + area.y : 0.0;
}

/// Sorts all runs by object in one pass, then writes one orientation after the other. Returns false if it was
/// cancelled.
template <class T>
bool orient(const LabelledArea<T>& scanned, const CancelQuery& cancel, const LargeArray<Tally>& tallies,
            SFeature* features) {
    RunsByObject runs(scanned.objects, [&](std::size_t object) { return tallies[object].runs; });
    scanned.forEachRun([&](const Run& run, const T* pixels) {
        const std::size_t object = scanned.objectOf(*pixels);
        if (object < scanned.objects) runs.add(object, run);
        return true;
    });
    const AngleTables& tables = angleTables();
    DirectionHistogram directions(tables);
    for (std::size_t object = 0; object < scanned.objects; ++object) {
        const std::span<const Run> objectRuns = runs[object];
        SFeature& feature = features[object];
        directions.reset(tallies[object].pixels);
        for (const Run& run : objectRuns) {
            if (cancel.pixelsBefore(run.length()) < run.length()) return false;
            directions.add(run, feature.centerX, feature.centerY);
        }
        feature.orientation = tables.radiansOf(objectRuns.empty() ? 0 : directions.heaviestArc());
    }
    return true;
}

/// Returns false if it was cancelled.
template <class T>
bool measure(const LabelledArea<T>& scanned, const T* values, EFeaturesNeeded needed, SFeature* features) {
    const std::span<SFeature> records(features, scanned.objects);
    const LargeArray<Tally> tallies(scanned.objects);
    const CancelQuery cancel;
    std::fill(tallies.begin(), tallies.end(), Tally{});
    if (hasAll(needed, FeatureArea)) {
        if (hasAll(needed, FeatureHistogram)) {
            for (SFeature& record : records) std::fill(std::begin(record.histogram), std::end(record.histogram), 0);
        }
        if (!tally(scanned, values, needed, cancel, tallies, features)) return false;
        for (std::size_t i = 0; i < records.size(); ++i) {
            conclude(tallies[i], scanned.area, hasAll(needed, FeatureCentroid), records[i]);
        }
    }
    if (hasAll(needed, orientation)) return orient(scanned, cancel, tallies, features);
    for (SFeature& record : records) record.orientation = 0.0;
    return true;
}

/// True if every value beneath an object is an index of the histogram.
template <class T>
[[maybe_unused]] bool fitHistogram(const LabelledArea<T>& scanned, const T* values) {
    return scanned.forEachRun([&](const Run& run, const T* pixels) {
        const T* const beneath = scanned.beneath(pixels, values);
        return scanned.objectOf(*pixels) >= scanned.objects ||
               std::all_of(beneath, beneath + run.length(), [](T value) { return value >= 0 && value <= 255; });
    });
}

}  // namespace

template <class T>
int MultiObjectFeatureExtract(const T* buffer, int width, int height, int areaX, int areaY, int areaW, int areaH,
                              const T* valueBuffer, T firstLabel, int objectCount, SFeature* features,
                              EFeaturesNeeded needed, unsigned char* cancelled) {
    OMNAR_EXPECT_NOT_NULL(cancelled);
    if (features == nullptr) {
        *cancelled = 0;
        return -1;
    }
    OMNAR_EXPECT_NOT_NULL(g_pLargeAllocator);
    OMNAR_EXPECT_AS(width, width > 0, "1 or more");
    OMNAR_EXPECT_AS(height, height > 0, "1 or more");
    const LabelledArea<T> scanned{{buffer, width, height},
                                  scanArea(width, height, areaX, areaY, areaW, areaH),
                                  firstLabel,
                                  static_cast<std::size_t>(std::max(objectCount, 0))};
    [[maybe_unused]] const bool readsLabels = hasAll(needed, FeatureArea) && !scanned.area.empty();
    [[maybe_unused]] const bool readsValues = readsLabels && hasAll(needed, FeatureHistogram);
    OMNAR_EXPECT_NOT_NULL_IF(readsLabels, ", unless no pixel is looked at", buffer);
    OMNAR_EXPECT_NOT_NULL_IF(readsValues, ", unless no histogram is counted", valueBuffer);
    OMNAR_EXPECT_AS(valueBuffer, !readsValues || fitHistogram(scanned, valueBuffer), "0..255 beneath every object");
    OMNAR_EXPECT_AS(needed, !hasAll(needed, orientation) || scanned.objects == 0 || angleTables().usable(),
                    "without the orientation, unless there are tables of at least 8 steps or no objects");
    *cancelled = 0;  // remains if a service of the host throws
    *cancelled = measure(scanned, valueBuffer, needed, features) ? 0 : 1;
    return *cancelled == 0 ? 0 : -1;
}

template int MultiObjectFeatureExtract(const unsigned char*, int, int, int, int, int, int, const unsigned char*,
                                       unsigned char, int, SFeature*, EFeaturesNeeded, unsigned char*);
template int MultiObjectFeatureExtract(const int*, int, int, int, int, int, int, const int*, int, int, SFeature*,
                                       EFeaturesNeeded, unsigned char*);
