// SPDX-License-Identifier: MIT
#include "sheet.h"

#include <OmnarRaster.h>

#include "new_file.h"
#include "png_file.h"

namespace example {
namespace {

constexpr int fine = 8;  // points a pixel along each axis

int toPoints(double pixels) { return static_cast<int>(std::floor(pixels * fine)); }

}  // namespace

Sheet::Sheet(int side) : side_(side) {
    const std::size_t points = static_cast<std::size_t>(side) * fine;
    points_.resize(points * points);
}

void Sheet::set(Point centre, double reach, const Shape& shape, bool inked) {
    for (int y = toPoints(centre.y - reach); y <= toPoints(centre.y + reach); ++y) {
        for (int x = toPoints(centre.x - reach); x <= toPoints(centre.x + reach); ++x) {
            if (shape({(x + 0.5) / fine, (y + 0.5) / fine})) points_[index(x, y)] = inked;
        }
    }
}

bool Sheet::inkedAt(Point p) const { return points_[index(toPoints(p.x), toPoints(p.y))] != 0; }

void Sheet::write(const std::string& path) const {
    NewFile file(path);
    const auto size = static_cast<unsigned int>(side_);
    PngWriter writer(file.stream(), path, PngWriter::Kind::grey, size, size);
    std::vector<L08> row(size);
    for (int y = 0; y < side_; ++y) {
        for (int x = 0; x < side_; ++x) row[static_cast<std::size_t>(x)] = static_cast<L08>(255 - inkOfPixel(x, y));
        writer.writeRow(row.data());
    }
    writer.finish();
    file.commit();
}

std::size_t Sheet::index(int x, int y) const {
    const int points = side_ * fine;
    const auto wrapped = [points](int i) { return static_cast<std::size_t>((i % points + points) % points); };
    return wrapped(y) * static_cast<std::size_t>(points) + wrapped(x);
}

int Sheet::inkOfPixel(int x, int y) const {
    int inked = 0;
    for (int i = 0; i < fine * fine; ++i) inked += points_[index(x * fine + i % fine, y * fine + i / fine)];
    return inked * 255 / (fine * fine);
}

}  // namespace example
