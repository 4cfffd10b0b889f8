// SPDX-License-Identifier: MIT

// gradation_curve: draws gradation curves, and what each of them does to a step wedge of its ink.
//
// A curve is given by a handful of control points and becomes a table of all 4096 levels of a 12-bit ink. Above, the tables are drawn as
// curves, input to the right and output upwards, in per cent; below, the upper half of each wedge is the ink as it comes,
// the lower half the ink after the table.

#include <OmnarRaster.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "new_file.h"
#include "png_file.h"

namespace example {
namespace {

constexpr TRC paper = 0xF4ECDC;
constexpr TRC grid = 0xD9CDB4;
constexpr TRC text = 0x6B6150;
constexpr int full = 4095;

struct Gradation {
    TRC ink;
    std::vector<L12> points;  // input and output of each control point

    /// Pairs of every input and its output.
    std::vector<L12> table() const {
        std::vector<L12> pairs(2 * (std::size_t{full} + 1));
        CurveInterpolation(static_cast<int>(points.size()), points.data(), full + 1, full, pairs.data());
        return pairs;
    }
};

struct Point {
    double x;
    double y;
};

/// A picture that strokes are drawn on: lines with round ends, and dots, which are lines without length.
class Canvas {
public:
    Canvas(unsigned int width, unsigned int height)
        : width_(width), height_(height), pixels_(std::size_t{width} * height, paper), coverage_(pixels_.size()) {}

    /// Adds a stroke to the drawing, `radius` being half its thickness. A pixel on its rim is covered by the share of the
    /// pixel that the stroke takes.
    void stroke(Point from, Point to, double radius) {
        const auto [left, right] = std::minmax({from.x, to.x});
        const auto [top, bottom] = std::minmax({from.y, to.y});
        for (int y = static_cast<int>(top - radius); y <= static_cast<int>(bottom + radius); ++y) {
            for (int x = static_cast<int>(left - radius); x <= static_cast<int>(right + radius); ++x) {
                const double beyond = distance({x + 0.5, y + 0.5}, from, to) - radius;
                const auto covered = static_cast<L08>(std::lround(255 * std::clamp(0.5 - beyond, 0.0, 1.0)));
                L08& pixel = coverage_[static_cast<std::size_t>(y) * width_ + static_cast<std::size_t>(x)];
                pixel = std::max(pixel, covered);
            }
        }
    }
    void dot(Point centre, double radius) { stroke(centre, centre, radius); }

    /// Prints the drawing, and begins a new one.
    void print(TRC color, unsigned char opacity = 255) {
        AlphaBlendColorToTRC(color, coverage_.data(), width_, height_, 0, 0, pixels_.data(), width_, height_, 0, 0,
                             opacity, width_, height_, false);
        std::fill(coverage_.begin(), coverage_.end(), L08{0});
    }

    /// Prints so much of an ink on a rectangle.
    void tint(TRC ink, L12 amount, unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
        const TRC weight = amount * 255U / full;
        AlphaBlendColorWithConstAlphaToTRC(ink | weight << 24, pixels_.data(), width_, height_, x, y, w, h, false);
    }

    void write(const std::string& path) const {
        NewFile file(path);
        PngWriter writer(file.stream(), path, PngWriter::Kind::colour, width_, height_);
        for (std::size_t y = 0; y < height_; ++y) writer.writeRow(&pixels_[y * width_]);
        writer.finish();
        file.commit();
    }

private:
    static double distance(Point p, Point from, Point to) {
        const Point way{to.x - from.x, to.y - from.y};
        const double along = (p.x - from.x) * way.x + (p.y - from.y) * way.y;
        const double share = along <= 0 ? 0 : std::min(along / (way.x * way.x + way.y * way.y), 1.0);
        return GetLength(p.x, p.y, from.x + share * way.x, from.y + share * way.y);
    }

    unsigned int width_;
    unsigned int height_;
    std::vector<TRC> pixels_;
    std::vector<L08> coverage_;
};

// ---- The chart -------------------------------------------------------------------------------------------------------

constexpr unsigned int left = 64;  // of the chart and the wedges
constexpr unsigned int top = 32;
constexpr unsigned int side = 512;
constexpr unsigned int wedgeHeight = 44;
constexpr unsigned int wedgePitch = 60;

/// Where an input and an output, 0 to 1 each, lie in the chart.
Point at(double input, double output) { return {left + side * input, top + side * (1 - output)}; }

/// The same for the pair that stands at `i`.
Point atPair(const std::vector<L12>& pairs, std::size_t i) {
    return at(pairs[i] / double{full}, pairs[i + 1] / double{full});
}

/// The width of a number, and a number in seven strokes a digit, `right` being the right end of its middle.
double widthOf(const std::string& number) { return 11.0 * static_cast<double>(number.size()) - 5.0; }
void drawNumber(Canvas& canvas, const std::string& number, Point right) {
    constexpr Point ends[7][2] = {{{0, -6}, {6, -6}}, {{6, -6}, {6, 0}}, {{6, 0}, {6, 6}}, {{0, 6}, {6, 6}},
                                  {{0, 0}, {0, 6}},   {{0, -6}, {0, 0}}, {{0, 0}, {6, 0}}};
    constexpr unsigned int strokesOf[10] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    double x = right.x - widthOf(number);
    for (const char digit : number) {
        for (unsigned int i = 0; i < 7; ++i) {
            if ((strokesOf[digit - '0'] >> i & 1) == 0) continue;
            const auto [from, to] = ends[i];
            canvas.stroke({x + from.x, right.y + from.y}, {x + to.x, right.y + to.y}, 0.8);
        }
        x += 11;
    }
}

void drawGrid(Canvas& canvas) {
    const double step = GetNiceGreaterValue(100.0 / 6);  // about six lines
    std::vector<double> marks;
    for (int i = 0; i * step <= 100; ++i) marks.push_back(i * step);
    for (const double mark : marks) {
        canvas.stroke(at(mark / 100, 0), at(mark / 100, 1), 0.5);
        canvas.stroke(at(0, mark / 100), at(1, mark / 100), 0.5);
    }
    canvas.print(grid);
    for (const double mark : marks) {
        const std::string number = std::to_string(std::lround(mark));
        const Point below = at(mark / 100, 0), beside = at(0, mark / 100);
        drawNumber(canvas, number, {below.x + widthOf(number) / 2, below.y + 20});
        drawNumber(canvas, number, {beside.x - 14, beside.y});
    }
    canvas.print(text);
}

/// The curve that changes nothing, in dots at equal distances.
void drawIdentity(Canvas& canvas) {
    const Point from = at(0, 0), to = at(1, 1);
    const double angle = GetAngle(from.x, from.y, to.x, to.y);
    const double length = GetLength(from.x, from.y, to.x, to.y);
    for (int way = 0; way <= length; way += 8) {
        Point off{};
        GetPosition(way, angle, &off.x, &off.y);
        canvas.dot({from.x + off.x, from.y + off.y}, 1.1);
    }
    canvas.print(text, 150);
}

void drawCurve(Canvas& canvas, const Gradation& gradation) {
    const std::vector<L12> table = gradation.table();
    constexpr std::size_t stride = 30;  // every 15th pair; 4095 is a multiple of 15
    for (std::size_t i = stride; i < table.size(); i += stride) {
        canvas.stroke(atPair(table, i - stride), atPair(table, i), 1.6);
    }
    canvas.print(gradation.ink);
    const auto dots = [&](double radius, TRC color) {
        for (std::size_t i = 0; i < gradation.points.size(); i += 2) canvas.dot(atPair(gradation.points, i), radius);
        canvas.print(color);
    };
    dots(6, gradation.ink);
    dots(3.6, paper);
}

void drawWedge(Canvas& canvas, const Gradation& gradation, unsigned int y) {
    const std::vector<L12> table = gradation.table();
    constexpr unsigned int steps = 16;
    constexpr unsigned int width = side / steps, height = wedgeHeight / 2;
    for (unsigned int step = 0; step < steps; ++step) {
        const std::size_t i = std::size_t{2} * step * full / (steps - 1);
        canvas.tint(gradation.ink, table[i], left + step * width, y, width, height);
        canvas.tint(gradation.ink, table[i + 1], left + step * width, y + height, width, height);
    }
    const Point a{left, static_cast<double>(y)}, b{a.x + side, a.y}, c{a.x, a.y + wedgeHeight}, d{b.x, c.y};
    for (const auto& [from, to] : {std::pair(a, b), {a, c}, {b, d}, {c, d}}) canvas.stroke(from, to, 0.5);
    canvas.print(grid);
}

void drawPicture(const std::string& target) {
    const Gradation gradations[] = {
        {0xC89B3C, {0, 0, 512, 1190, 1536, 2530, 2820, 3560, 4095, 4095}},    // fuller light tones
        {0xC0564B, {0, 0, 1024, 480, 2048, 2048, 3072, 3616, 4095, 4095}},    // more contrast
        {0x3F5D4A, {0, 320, 1280, 545, 2560, 1250, 3600, 2570, 4095, 3690}},  // thinner, and never bare nor full
    };
    Canvas canvas(left + side + 40, top + side + 44 + 3 * wedgePitch);
    drawGrid(canvas);
    drawIdentity(canvas);
    unsigned int y = top + side + 44;
    for (const Gradation& gradation : gradations) {
        drawCurve(canvas, gradation);
        drawWedge(canvas, gradation, y);
        y += wedgePitch;
    }
    canvas.write(target);
}

}  // namespace
}  // namespace example

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: gradation_curve PICTURE.png\n", stderr);
        return 2;
    }
    try {
        example::drawPicture(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gradation_curve: %s\n", error.what());
        return 2;
    }
}
