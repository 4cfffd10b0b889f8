// SPDX-License-Identifier: MIT
#include "sheet.h"

#include <OmnarRaster.h>

#include <cmath>

#include "new_file.h"
#include "png_file.h"

namespace example {
namespace {

constexpr int pointsPerPixel = 8;  // along each axis

int pointIndex(double pixels) { return static_cast<int>(std::floor(pixels * pointsPerPixel)); }

}  // namespace

Sheet::Sheet(int side) : side_(side) {
    const std::size_t points = static_cast<std::size_t>(side) * pointsPerPixel;
    points_.resize(points * points);
}

void Sheet::set(Point centre, double halfSide, const Shape& shape, bool inked) {
    for (int y = pointIndex(centre.y - halfSide); y <= pointIndex(centre.y + halfSide); ++y) {
        for (int x = pointIndex(centre.x - halfSide); x <= pointIndex(centre.x + halfSide); ++x) {
            if (shape({(x + 0.5) / pointsPerPixel, (y + 0.5) / pointsPerPixel})) points_[index(x, y)] = inked;
        }
    }
}

bool Sheet::isInked(Point p) const { return points_[index(pointIndex(p.x), pointIndex(p.y))] != 0; }

void Sheet::write(const std::string& path) const {
    NewFile file(path);
    const auto size = static_cast<unsigned int>(side_);
    PngWriter writer(file.stream(), path, PngWriter::Kind::grey, size, size);
    std::vector<L08> row(size);
    for (int y = 0; y < side_; ++y) {
        for (int x = 0; x < side_; ++x) row[static_cast<std::size_t>(x)] = static_cast<L08>(255 - pixelInk(x, y));
        writer.writeRow(row.data());
    }
    writer.finish();
    file.commit();
}

std::size_t Sheet::index(int x, int y) const {
    const int points = side_ * pointsPerPixel;
    const auto wrapped = [points](int i) { return static_cast<std::size_t>((i % points + points) % points); };
    return wrapped(y) * static_cast<std::size_t>(points) + wrapped(x);
}

int Sheet::pixelInk(int x, int y) const {
    constexpr int points = pointsPerPixel * pointsPerPixel;
    int inked = 0;
    for (int i = 0; i < points; ++i) {
        inked += points_[index(x * pointsPerPixel + i % pointsPerPixel, y * pointsPerPixel + i / pointsPerPixel)];
    }
    return inked * 255 / points;
}

}  // namespace example
