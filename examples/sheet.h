// SPDX-License-Identifier: MIT
/// @file
/// Drawing an ink from formulas.
#pragma once

#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace example {

/// A position on a sheet in pixels, or a distance.
struct Point {
    double x;
    double y;
};

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(double s, Point a) { return {s * a.x, s * a.y}; }
inline double length(Point a) { return std::sqrt(a.x * a.x + a.y * a.y); }
inline Point direction(double angle) { return {std::cos(angle), std::sin(angle)}; }

/// Whether a point belongs to what is drawn.
using Shape = std::function<bool(Point)>;

/// One ink of a square tile: 8 x 8 points a pixel, each of them inked or not. The share of inked points is the pixel's
/// ink. What crosses an edge of the tile goes on at the opposite edge.
class Sheet {
public:
    explicit Sheet(int side);

    /// Inks the points of `shape` in the square that reaches `reach` to each side of `centre`.
    void paint(Point centre, double reach, const Shape& shape) { set(centre, reach, shape, true); }
    /// Takes the ink from them.
    void clear(Point centre, double reach, const Shape& shape) { set(centre, reach, shape, false); }

    bool inkedAt(Point p) const;

    /// Writes the sheet as a grey PNG, ink dark.
    void write(const std::string& path) const;

private:
    void set(Point centre, double reach, const Shape& shape, bool inked);
    std::size_t index(int x, int y) const;
    int inkOfPixel(int x, int y) const;

    int side_;
    std::vector<char> points_;
};

}  // namespace example
