// SPDX-License-Identifier: MIT

// measure_objects: finds the objects of an ink, prints a table of their measures, and draws them in colours, each with
// its outline, its orientation and its number in the table.
//
// objects.cpp calls the library to find and measure. This file prints the table and draws the picture.

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <numbers>
#include <string>
#include <vector>

#include "objects.h"
#include "png_file.h"
#include "strokes.h"

namespace example {
namespace {

constexpr TRC paper = 0xFFF7F2E7, pencil = 0xFF8B8374, cream = 0xFFFFFBF0;
constexpr std::array<TRC, 7> colors{0xFFB5533C, 0xFF7C8C4A, 0xFFD9973F, 0xFF4E7268, 0xFFA44A5B, 0xFFC2A13A, 0xFF5F6F94};

/// Three fifths of each channel.
constexpr TRC darker(TRC color) {
    TRC dark = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8) dark |= (color >> shift & 255) * 3 / 5 << shift;
    return dark;
}

void printTable(const Objects& objects) {
    std::puts(" no     area  length   width  perimeter  compactness  orientation           centre");
    for (std::size_t i = 0; i < objects.features().size(); ++i) {
        const SFeature& feature = objects.features()[i];
        const Extent extent = objects.extent(i);
        std::printf("%3zu %8d %7.1f %7.1f %10.1f %12.2f %8.0f deg  %7.1f, %7.1f\n", i + 1, feature.area, extent.length,
                    extent.width, feature.perimeter, feature.compactness, feature.orientation * 180 / std::numbers::pi,
                    feature.centerX - Objects::margin, feature.centerY - Objects::margin);
    }
}

/// The objects of a picture, drawn on paper.
class Plate {
public:
    explicit Plate(const Objects& objects)
        : objects_(objects),
          width_(static_cast<unsigned int>(objects.width())),
          height_(static_cast<unsigned int>(objects.height())),
          pixels_(std::size_t{width_} * height_, paper),
          strokes_(width_, height_) {}

    void draw() {
        for (std::size_t i = 0; i < objects_.features().size(); ++i) drawObject(i, colors[i % colors.size()]);
        strokes_.blendOver(pixels_.data(), pencil, 230);
        for (std::size_t i = 0; i < objects_.features().size(); ++i) drawOrientation(i);
        strokes_.blendOver(pixels_.data(), cream, 255);
    }

    void write(const std::string& path) const { writePicture(path, pixels_.data(), width_, height_); }

private:
    void drawObject(std::size_t object, TRC color) {
        const CutOut cut = objects_.cutOut(object);
        const auto side = static_cast<unsigned int>(cut.side), left = static_cast<unsigned int>(cut.left),
                   top = static_cast<unsigned int>(cut.top);
        AlphaBlendColorToTRC(color, cut.coverage.data(), side, side, 0, 0, pixels_.data(), width_, height_, left, top,
                             255, side, side, false);
        DrawContourOfL08toTRC(cut.mask.data(), side, side, 0, 0, pixels_.data(), width_, height_, left + 1, top + 1,
                              side, side, darker(color));
        const std::vector<Point> envelope = cut.envelope(5);
        if (envelope.empty()) return;
        strokes_.drawDashes(envelope, 4, 0.9);
        const Point highest =
            *std::min_element(envelope.begin(), envelope.end(), [](Point a, Point b) { return a.y < b.y; });
        strokes_.drawNumber(static_cast<unsigned int>(object + 1), highest + Point{0, -4}, 8, 1);
    }

    void drawOrientation(std::size_t object) {
        const SFeature& feature = objects_.features()[object];
        const Extent extent = objects_.extent(object);
        const Point centre{feature.centerX, feature.centerY};
        const Point tip = extent.end - 4.0 * direction(feature.orientation);
        strokes_.drawLine(extent.start, tip, 1.3);
        strokes_.drawDisc(centre, 5);
        for (const double barb : {-2.6, 2.6}) {
            strokes_.drawLine(tip, tip + 7.0 * direction(feature.orientation + barb), 1.3);
        }
    }

    const Objects& objects_;
    unsigned int width_, height_;
    std::vector<TRC> pixels_;
    Strokes strokes_;
};

}  // namespace
}  // namespace example

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: measure_objects INK.png OBJECTS.png\n", stderr);
        return 2;
    }
    try {
        const example::Objects objects(example::readInk(argv[1]));
        example::Plate plate(objects);
        plate.draw();
        plate.write(argv[2]);
        example::printTable(objects);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "measure_objects: %s\n", error.what());
        return 2;
    }
}
