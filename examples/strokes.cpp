// SPDX-License-Identifier: MIT
#include "strokes.h"

#include <algorithm>
#include <cmath>

namespace example {
namespace {

/// The digits as lines over a grid of 2 x 4: a pair of column and row for each point.
constexpr const char* digits[] = {"0020240400",   "011014",       "002022020424", "00202202222404", "0002222024",
                                  "200002222404", "200004242202", "002014",       "00202404000222", "220200202404"};

double distanceToLine(Point p, Point from, Point to) {
    const Point way = to - from, off = p - from;
    const double square = way.x * way.x + way.y * way.y;
    const double along = square == 0 ? 0 : std::clamp((off.x * way.x + off.y * way.y) / square, 0.0, 1.0);
    return length(off - along * way);
}

}  // namespace

Strokes::Strokes(unsigned int width, unsigned int height)
    : width_(width), height_(height), coverage_(std::size_t{width} * height) {}

void Strokes::line(Point from, Point to, double thickness) {
    const double half = thickness / 2, reach = half + 1;
    const auto pixel = [](double position, unsigned int extent) {
        return static_cast<unsigned int>(std::clamp(position, 0.0, static_cast<double>(extent)));
    };
    const unsigned int left = pixel(std::min(from.x, to.x) - reach, width_),
                       right = pixel(std::max(from.x, to.x) + reach, width_);
    const unsigned int top = pixel(std::min(from.y, to.y) - reach, height_),
                       bottom = pixel(std::max(from.y, to.y) + reach, height_);
    for (unsigned int y = top; y < bottom; ++y) {
        for (unsigned int x = left; x < right; ++x) {
            const double inside = half + 0.5 - distanceToLine({x + 0.5, y + 0.5}, from, to);
            L08& covered = coverage_[std::size_t{y} * width_ + x];
            covered = std::max(covered, static_cast<L08>(std::lround(255 * std::clamp(inside, 0.0, 1.0))));
        }
    }
}

void Strokes::dashes(const std::vector<Point>& closed, std::size_t dash, double thickness) {
    for (std::size_t i = 0; i + 1 < closed.size(); ++i) {
        if (i / dash % 2 == 0) line(closed[i], closed[i + 1], thickness);
    }
}

void Strokes::number(unsigned int value, Point foot, double height, double thickness) {
    const std::string text = std::to_string(value);
    const double advance = 0.75 * height;
    // The corner of the first digit, at a pixel's centre, so that upright lines are crisp.
    Point corner{std::floor(foot.x - advance * static_cast<double>(text.size()) / 2) + 0.5,
                 std::floor(foot.y - height) + 0.5};
    for (const char digit : text) {
        const std::string points = digits[digit - '0'];
        const auto point = [&](std::size_t i) {
            return corner + (height / 4) * Point{points[i] - double{'0'}, points[i + 1] - double{'0'}};
        };
        for (std::size_t i = 0; i + 3 < points.size(); i += 2) line(point(i), point(i + 2), thickness);
        corner.x += advance;
    }
}

void Strokes::blendOver(TRC* picture, TRC color, unsigned char opacity) {
    AlphaBlendColorToTRC(color, coverage_.data(), width_, height_, 0, 0, picture, width_, height_, 0, 0, opacity,
                         width_, height_, false);
    std::fill(coverage_.begin(), coverage_.end(), L08{0});
}

}  // namespace example
