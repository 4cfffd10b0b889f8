// SPDX-License-Identifier: MIT

// measure_objects: finds the objects of an ink, prints a table of their measures, and draws them in colours, each with its
// outline, its orientation and the number that it has in the table.
//
// How the library is asked stands in objects.cpp; here are the table and the picture.

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <numbers>
#include <string>
#include <vector>

#include "new_file.h"
#include "objects.h"
#include "png_file.h"
#include "strokes.h"

namespace example {
namespace {

constexpr TRC paper = 0xFFF7F2E7, pencil = 0xFF8B8374, cream = 0xFFFFFBF0;
constexpr std::array<TRC, 7> colours{0xFFB5533C, 0xFF7C8C4A, 0xFFD9973F, 0xFF4E7268,
                                     0xFFA44A5B, 0xFFC2A13A, 0xFF5F6F94};

/// Three fifths as bright.
constexpr TRC darker(TRC colour) {
    TRC dark = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8) dark |= (colour >> shift & 255) * 3 / 5 << shift;
    return dark;
}

void printTable(const Objects& objects) {
    std::puts(" no     area  length   width  perimeter  compactness  orientation           centre");
    for (std::size_t i = 0; i < objects.features().size(); ++i) {
        const SFeature& feature = objects.features()[i];
        const Extent extent = objects.extent(i);
        std::printf("%3zu %8d %7.1f %7.1f %10.1f %12.2f %8.0f deg  %7.1f, %7.1f\n", i + 1, feature.area, extent.length,
                    extent.width, feature.perimeter, feature.compactness, feature.orientation * 180 / std::numbers::pi,
                    feature.centerX - Objects::frame, feature.centerY - Objects::frame);
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
        for (std::size_t i = 0; i < objects_.features().size(); ++i) drawObject(i, colours[i % colours.size()]);
        strokes_.blendOver(pixels_.data(), pencil, 230);
        for (std::size_t i = 0; i < objects_.features().size(); ++i) drawOrientation(i);
        strokes_.blendOver(pixels_.data(), cream, 255);
    }

    void write(const std::string& path) const {
        NewFile file(path);
        PngWriter writer(file.stream(), path, PngWriter::Kind::colour, width_, height_);
        for (unsigned int y = 0; y < height_; ++y) writer.writeRow(&pixels_[std::size_t{y} * width_]);
        writer.finish();
        file.commit();
    }

private:
    void drawObject(std::size_t object, TRC colour) {
        const CutOut cut = objects_.cutOut(object);
        const auto side = static_cast<unsigned int>(cut.side), left = static_cast<unsigned int>(cut.left),
                   top = static_cast<unsigned int>(cut.top);
        AlphaBlendColorToTRC(colour, cut.coverage.data(), side, side, 0, 0, pixels_.data(), width_, height_, left, top,
                             255, side, side, false);
        DrawContourOfL08toTRC(cut.mask.data(), side, side, 0, 0, pixels_.data(), width_, height_, left + 1, top + 1,
                              side, side, darker(colour));
        const std::vector<Point> envelope = cut.envelope(5);
        if (envelope.empty()) return;
        strokes_.dashes(envelope, 4, 0.9);
        const Point highest =
            *std::min_element(envelope.begin(), envelope.end(), [](Point a, Point b) { return a.y < b.y; });
        strokes_.number(static_cast<unsigned int>(object + 1), highest + Point{0, -4}, 8, 1);
    }

    void drawOrientation(std::size_t object) {
        const SFeature& feature = objects_.features()[object];
        const Extent extent = objects_.extent(object);
        const Point centre{feature.centerX, feature.centerY};
        const Point tip = extent.to - 4.0 * direction(feature.orientation);
        strokes_.line(extent.from, tip, 1.3);
        strokes_.line(centre, centre, 5);
        for (const double aside : {-2.6, 2.6})
            strokes_.line(tip, tip + 7.0 * direction(feature.orientation + aside), 1.3);
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
