// SPDX-License-Identifier: MIT
/// @file
/// The objects of an ink: found, measured and cut out.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <vector>

#include "png_file.h"
#include "sheet.h"

namespace example {

/// One object, cut out of its picture: a square with clear pixels on all sides.
struct CutOut {
    int left, top;  ///< of the square in the picture
    int side;
    std::vector<L08> mask;      ///< 255 where the object is
    std::vector<L08> coverage;  ///< its ink, and that of the rim too faint to count

    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x);
    }

    /// A closed line round the object, `distance` pixels away from it and across what is narrow.
    std::vector<Point> envelope(int distance) const;

private:
    std::vector<CPoint> contour() const;
};

/// An object along its orientation and across it.
struct Extent {
    double length, width;
    Point from, to;  ///< where the line through its centre along its orientation enters and leaves the object
};

/// The objects of an ink: pixels that are at least half inked and connected by their sides. Positions are in pixels of the
/// ink with a frame of `frame` clear pixels round it; a pixel's centre lies at half.
class Objects {
public:
    static constexpr int frame = 12;

    explicit Objects(const InkPlane& ink);

    int width() const { return width_; }
    int height() const { return height_; }
    const std::vector<SFeature>& features() const { return features_; }

    Extent extent(std::size_t object) const;
    CutOut cutOut(std::size_t object) const;

private:
    struct Box {
        int left, top, right, bottom;  ///< the last column and row are part of it
    };
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }
    bool holds(std::size_t object, int x, int y) const;
    void measure();
    void findBoxes();

    int width_, height_;
    std::vector<L08> ink_;
    std::vector<int> labels_;
    std::vector<SFeature> features_;
    std::vector<Box> boxes_;
};

}  // namespace example
