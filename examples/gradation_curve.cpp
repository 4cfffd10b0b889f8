// SPDX-License-Identifier: MIT

// gradation_curve: draws gradation curves and their effect on a step wedge of each ink.
//
// A curve is given by a few control points and becomes a table of all 4096 values of a 12-bit ink. The chart shows the
// tables as curves, input to the right and output upwards, in per cent. The upper half of each wedge below is the
// input, the lower half the output.

#include <OmnarRaster.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "png_file.h"
#include "point.h"
#include "strokes.h"

namespace example {
namespace {

constexpr TRC paper = 0xF4ECDC;
constexpr TRC grid = 0xD9CDB4;
constexpr TRC text = 0x6B6150;
constexpr int fullInk = 4095;

struct Gradation {
    TRC ink;
    std::vector<L12> points;  // input and output of each control point

    /// Pairs of every input and its output.
    std::vector<L12> table() const {
        std::vector<L12> pairs(2 * (std::size_t{fullInk} + 1));
        CurveInterpolation(static_cast<int>(points.size()), points.data(), fullInk + 1, fullInk, pairs.data());
        return pairs;
    }
};

/// A picture that strokes are printed on.
class Canvas {
public:
    Canvas(unsigned int width, unsigned int height)
        : width_(width), height_(height), pixels_(std::size_t{width} * height, paper), strokes_(width, height) {}

    void drawLine(Point start, Point end, double thickness) { strokes_.drawLine(start, end, thickness); }
    void drawDisc(Point centre, double diameter) { strokes_.drawDisc(centre, diameter); }

    /// Prints the strokes drawn since the last call.
    void print(TRC color, unsigned char opacity = 255) { strokes_.blendOver(pixels_.data(), color, opacity); }

    /// Prints `value` of an ink on a rectangle.
    void printTint(TRC ink, L12 value, unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
        const TRC alpha = value * 255U / fullInk;
        AlphaBlendColorWithConstAlphaToTRC(ink | alpha << 24, pixels_.data(), width_, height_, x, y, w, h, false);
    }

    void write(const std::string& path) const { writePicture(path, pixels_.data(), width_, height_); }

private:
    unsigned int width_;
    unsigned int height_;
    std::vector<TRC> pixels_;
    Strokes strokes_;
};

// ---- The chart ------------------------------------------------------------------------------------------------------

// The chart and, at the same left edge, the wedges.
constexpr unsigned int left = 64;
constexpr unsigned int top = 32;
constexpr unsigned int side = 512;
constexpr unsigned int wedgeHeight = 44;
constexpr unsigned int wedgePitch = 60;

/// The position of an input and an output, 0 to 1 each, in the chart.
Point chartPosition(double input, double output) { return {left + side * input, top + side * (1 - output)}; }

/// The position of the pair at `i`.
Point pairPosition(const std::vector<L12>& pairs, std::size_t i) {
    return chartPosition(pairs[i] / double{fullInk}, pairs[i + 1] / double{fullInk});
}

double numberWidth(const std::string& number) { return 11.0 * static_cast<double>(number.size()) - 5.0; }

/// Draws a number in seven segments per digit. `right` is the middle of its right edge.
void drawNumber(Canvas& canvas, const std::string& number, Point right) {
    constexpr Point ends[7][2] = {{{0, -6}, {6, -6}}, {{6, -6}, {6, 0}}, {{6, 0}, {6, 6}}, {{0, 6}, {6, 6}},
                                  {{0, 0}, {0, 6}},   {{0, -6}, {0, 0}}, {{0, 0}, {6, 0}}};
    constexpr unsigned int segmentsOfDigit[10] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    double x = right.x - numberWidth(number);
    for (const char digit : number) {
        for (unsigned int i = 0; i < 7; ++i) {
            if ((segmentsOfDigit[digit - '0'] >> i & 1) == 0) continue;
            const auto [start, end] = ends[i];
            canvas.drawLine({x + start.x, right.y + start.y}, {x + end.x, right.y + end.y}, 1.6);
        }
        x += 11;
    }
}

void drawGrid(Canvas& canvas) {
    const double step = GetNiceGreaterValue(100.0 / 6);  // about six lines
    std::vector<double> marks;
    for (int i = 0; i * step <= 100; ++i) marks.push_back(i * step);
    for (const double mark : marks) {
        canvas.drawLine(chartPosition(mark / 100, 0), chartPosition(mark / 100, 1), 1);
        canvas.drawLine(chartPosition(0, mark / 100), chartPosition(1, mark / 100), 1);
    }
    canvas.print(grid);
    for (const double mark : marks) {
        const std::string number = std::to_string(std::lround(mark));
        const Point onInputAxis = chartPosition(mark / 100, 0), onOutputAxis = chartPosition(0, mark / 100);
        drawNumber(canvas, number, {onInputAxis.x + numberWidth(number) / 2, onInputAxis.y + 20});
        drawNumber(canvas, number, {onOutputAxis.x - 14, onOutputAxis.y});
    }
    canvas.print(text);
}

/// Draws the identity curve in equidistant dots.
void drawIdentity(Canvas& canvas) {
    const Point start = chartPosition(0, 0), end = chartPosition(1, 1);
    const double angle = GetAngle(start.x, start.y, end.x, end.y);
    const double length = GetLength(start.x, start.y, end.x, end.y);
    for (int distance = 0; distance <= length; distance += 8) {
        Point offset{};
        GetPosition(distance, angle, &offset.x, &offset.y);
        canvas.drawDisc(start + offset, 2.2);
    }
    canvas.print(text, 150);
}

void drawCurve(Canvas& canvas, const Gradation& gradation) {
    const std::vector<L12> table = gradation.table();
    constexpr std::size_t stride = 30;  // every 15th pair; 4095 is a multiple of 15
    for (std::size_t i = stride; i < table.size(); i += stride) {
        canvas.drawLine(pairPosition(table, i - stride), pairPosition(table, i), 3.2);
    }
    canvas.print(gradation.ink);
    const auto drawDots = [&](double diameter, TRC color) {
        for (std::size_t i = 0; i < gradation.points.size(); i += 2) {
            canvas.drawDisc(pairPosition(gradation.points, i), diameter);
        }
        canvas.print(color);
    };
    drawDots(12, gradation.ink);
    drawDots(7.2, paper);
}

void drawWedge(Canvas& canvas, const Gradation& gradation, unsigned int y) {
    const std::vector<L12> table = gradation.table();
    constexpr unsigned int steps = 16;
    constexpr unsigned int width = side / steps, height = wedgeHeight / 2;
    for (unsigned int step = 0; step < steps; ++step) {
        const std::size_t i = std::size_t{2} * step * fullInk / (steps - 1);
        canvas.printTint(gradation.ink, table[i], left + step * width, y, width, height);
        canvas.printTint(gradation.ink, table[i + 1], left + step * width, y + height, width, height);
    }
    const Point a{left, static_cast<double>(y)}, b{a.x + side, a.y}, c{a.x, a.y + wedgeHeight}, d{b.x, c.y};
    for (const auto& [start, end] : {std::pair(a, b), {a, c}, {b, d}, {c, d}}) canvas.drawLine(start, end, 1);
    canvas.print(grid);
}

void drawPicture(const std::string& path) {
    const Gradation gradations[] = {
        {0xC89B3C, {0, 0, 512, 1190, 1536, 2530, 2820, 3560, 4095, 4095}},    // fuller light tones
        {0xC0564B, {0, 0, 1024, 480, 2048, 2048, 3072, 3616, 4095, 4095}},    // more contrast
        {0x3F5D4A, {0, 320, 1280, 545, 2560, 1250, 3600, 2570, 4095, 3690}},  // thinner, and never bare nor fullInk
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
    canvas.write(path);
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
