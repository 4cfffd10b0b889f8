// SPDX-License-Identifier: MIT
/// @file
/// Finding, measuring and cutting out the objects of an ink.
#pragma once

#include <OmnarRaster.h>

#include <cstddef>
#include <vector>

#include "png_file.h"
#include "point.h"

namespace example {

/// An object in a square of its own, with transparent pixels on all sides.
struct CutOut {
    int left, top;  ///< of the square, in positions of Objects
    int side;
    std::vector<L08> mask;      ///< 255 inside the object
    std::vector<L08> coverage;  ///< the ink of the object and of the pixels next to it

    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x);
    }

    /// A closed line around the object at `distance` pixels, which bridges gaps of up to twice that distance.
    std::vector<Point> envelope(int distance) const;

private:
    std::vector<CPoint> contour() const;
};

/// An object along its orientation and across it.
struct Extent {
    double length, width;
    Point start, end;  ///< of the object, on the line through its centre along its orientation
};

/// The objects of an ink: connected pixels, by their sides, of at least half ink. Positions are in pixels of the ink
/// with `margin` transparent pixels around it; the centre of a pixel is at half.
class Objects {
public:
    static constexpr int margin = 12;

    explicit Objects(const InkPlane& ink);

    int width() const { return width_; }
    int height() const { return height_; }
    const std::vector<SFeature>& features() const { return features_; }

    Extent extent(std::size_t object) const;
    CutOut cutOut(std::size_t object) const;

private:
    struct Box {
        int left, top, right, bottom;  ///< inclusive
    };
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }
    bool contains(std::size_t object, int x, int y) const;
    void measure();
    void findBoxes();

    int width_, height_;
    std::vector<L08> ink_;
    std::vector<int> labels_;
    std::vector<SFeature> features_;
    std::vector<Box> boxes_;
};

}  // namespace example
