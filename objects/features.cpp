// SPDX-License-Identifier: MIT

// Measuring the objects of a labelled picture.

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
#include "objects/coordinate_sum.h"
#include "objects/orientation.h"
#include "objects/runs.h"

using namespace omnar;

namespace {

/// The host's question whether to give up, asked before every pixel; not asked where it could only say no.
class CancelQuery {
public:
    /// Asks before each pixel until the answer is yes. How many come before that.
    int pixelsBefore(int pixels) const {
        const auto ask = ask_;  // the host's function might change the member, for all the compiler knows
        if (ask == nullptr) return pixels;
        int before = 0;
        while (before < pixels && !ask()) ++before;
        return before;
    }

private:
    bool (*ask_)() = cancellable() ? cancelService() : nullptr;
};

/// Its right and bottom edges do not belong to it.
struct ScanArea {
    int x, y, w, h;

    bool empty() const { return w == 0 || h == 0; }
};

/// The last column and row of an area are its edges here. A buffer without pixels leaves nothing to scan.
ScanArea cutArea(int width, int height, int x, int y, int w, int h) {
    const Area area = Area::within(std::max(width, 1), std::max(height, 1), x, y, w, h);
    return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

/// A labelled picture, the part of it that is scanned, and the objects in it.
template <class T>
struct Picture {
    const T* buffer;
    int width, height;
    ScanArea area;
    T firstLabel;
    std::size_t objects;

    /// Which object has a label, or a number beyond the objects if none has. Labels are whole numbers: those past the
    /// greatest one of a pixel do not begin anew.
    std::size_t objectOf(T label) const { return static_cast<std::size_t>(std::int64_t{label} - firstLabel); }

    template <class Visit>
    bool forEachRun(Visit visit) const {
        if (area.empty()) return true;
        const auto whole = [](int n) { return static_cast<std::uint32_t>(n); };
        const Plane<const T> scanned(buffer, whole(width), whole(height), whole(area.x), whole(area.y));
        return omnar::forEachRun(scanned, area.w, area.h, visit);
    }

    double followContour(const T* from) const {
        return FollowContour<T>(buffer, from, width, height, area.x, area.y, area.w, area.h, *from, nullptr, nullptr);
    }
};

/// What is gathered of one object.
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

constexpr bool asked(EFeaturesNeeded needed, EFeaturesNeeded features) { return (needed & features) == features; }

/// One pass over all pixels; perimeters and histograms are written on the way. False if it was cancelled.
template <class T>
bool gather(const Picture<T>& picture, const T* values, EFeaturesNeeded needed, const CancelQuery& cancel,
            const LargeArray<Tally>& tallies, SFeature* features) {
    const bool perimeter = asked(needed, FeaturePerimeter);
    const bool histogram = asked(needed, FeatureHistogram);
    return picture.forEachRun([&](const Run& run, const T* pixels) {
        const int granted = cancel.pixelsBefore(run.length());
        const std::size_t object = picture.objectOf(*pixels);
        if (object < picture.objects && granted > 0) {
            SFeature& feature = features[object];
            if (perimeter && tallies[object].runs == 0) feature.perimeter = picture.followContour(pixels);
            if (histogram) {
                for (const T value : std::span(values + (pixels - picture.buffer), static_cast<std::size_t>(granted))) {
                    ++feature.histogram[value];
                }
            }
            tallies[object].add(run);
        }
        return granted == run.length();
    });
}

void conclude(const Tally& tally, const ScanArea& area, bool centroid, SFeature& feature) {
    constexpr double pi = std::numbers::pi;
    feature.area = static_cast<int>(tally.pixels);
    feature.compactness = feature.perimeter / (2.0 * std::sqrt(feature.area / pi) * pi);
    const bool placed = centroid && feature.area != 0;
    feature.centerX = placed ? tally.columns.value() / feature.area + area.x : 0.0;
    feature.centerY = placed ? tally.rows.value() / feature.area + area.y : 0.0;
}

/// One pass over all pixels to sort them by object, then one object after the other, each written when it is done. False
/// if it was cancelled.
template <class T>
bool orient(const Picture<T>& picture, const CancelQuery& cancel, const LargeArray<Tally>& tallies,
            SFeature* features) {
    RunsByObject runs(picture.objects, [&](std::size_t object) { return tallies[object].runs; });
    picture.forEachRun([&](const Run& run, const T* pixels) {
        const std::size_t object = picture.objectOf(*pixels);
        if (object < picture.objects) runs.add(object, run);
        return true;
    });
    const AngleTables& tables = angleTables();
    Directions directions(tables);
    for (std::size_t object = 0; object < picture.objects; ++object) {
        const std::span<const Run> own = runs[object];
        SFeature& feature = features[object];
        directions.begin(tallies[object].pixels);
        for (const Run& run : own) {
            if (cancel.pixelsBefore(run.length()) < run.length()) return false;
            directions.add(run, feature.centerX, feature.centerY);
        }
        feature.orientation = tables.radiansOf(own.empty() ? 0 : directions.heaviest());
    }
    return true;
}

/// What MultiObjectFeatureExtract() does. False if it was cancelled.
template <class T>
bool extract(const Picture<T>& picture, const T* values, EFeaturesNeeded needed, SFeature* features) {
    const std::span<SFeature> all(features, picture.objects);
    const LargeArray<Tally> tallies(picture.objects);
    const CancelQuery cancel;
    std::fill(tallies.begin(), tallies.end(), Tally{});
    if (asked(needed, FeatureArea)) {
        if (asked(needed, FeatureHistogram)) {
            for (SFeature& feature : all) std::fill(std::begin(feature.histogram), std::end(feature.histogram), 0);
        }
        if (!gather(picture, values, needed, cancel, tallies, features)) return false;
        for (std::size_t i = 0; i < all.size(); ++i) {
            conclude(tallies[i], picture.area, asked(needed, FeatureCentroid), all[i]);
        }
    }
    if (asked(needed, orientation)) return orient(picture, cancel, tallies, features);
    for (SFeature& feature : all) feature.orientation = 0.0;
    return true;
}

/// True if every value beneath an object has its place in the histogram.
template <class T>
[[maybe_unused]] bool fitHistogram(const Picture<T>& picture, const T* values) {
    return picture.forEachRun([&](const Run& run, const T* pixels) {
        const T* const beneath = values + (pixels - picture.buffer);
        return picture.objectOf(*pixels) >= picture.objects ||
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
    const Picture<T> picture{buffer,     width,
                             height,     cutArea(width, height, areaX, areaY, areaW, areaH),
                             firstLabel, static_cast<std::size_t>(std::max(objectCount, 0))};
    OMNAR_EXPECT_NOT_NULL_IF(asked(needed, FeatureArea) && !picture.area.empty(), ", unless no pixel is looked at",
                             buffer);
    OMNAR_EXPECT_NOT_NULL_IF(asked(needed, FeatureArea | FeatureHistogram) && !picture.area.empty(),
                             ", unless no histogram is counted", valueBuffer);
    OMNAR_EXPECT_AS(valueBuffer, !asked(needed, FeatureArea | FeatureHistogram) || fitHistogram(picture, valueBuffer),
                    "0..255 beneath every object");
    OMNAR_EXPECT_AS(needed, !asked(needed, orientation) || picture.objects == 0 || angleTables().usable(),
                    "without the orientation, unless there are tables of at least 8 steps or no objects");
    *cancelled = 0;  // stays where a service of the host throws
    *cancelled = extract(picture, valueBuffer, needed, features) ? 0 : 1;
    return *cancelled == 0 ? 0 : -1;
}

template int MultiObjectFeatureExtract(const unsigned char*, int, int, int, int, int, int, const unsigned char*,
                                       unsigned char, int, SFeature*, EFeaturesNeeded, unsigned char*);
template int MultiObjectFeatureExtract(const int*, int, int, int, int, int, int, const int*, int, int, SFeature*,
                                       EFeaturesNeeded, unsigned char*);
