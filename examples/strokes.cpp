// SPDX-License-Identifier: MIT
#include "strokes.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace example {
namespace {

/// The digits as polylines on a grid of 2 x 4: column and row of each vertex.
constexpr const char* digits[] = {"0020240400",   "011014",       "002022020424", "00202202222404", "0002222024",
                                  "200002222404", "200004242202", "002014",       "00202404000222", "220200202404"};

double distanceToSegment(Point p, Point start, Point end) {
    const Point segment = end - start, offset = p - start;
    const double squaredLength = dot(segment, segment);
    const double t = squaredLength == 0 ? 0 : std::clamp(dot(offset, segment) / squaredLength, 0.0, 1.0);
    return length(offset - t * segment);
}

}  // namespace

Strokes::Strokes(unsigned int width, unsigned int height)
    : width_(width), height_(height), coverage_(std::size_t{width} * height) {}

void Strokes::drawLine(Point start, Point end, double thickness) {
    const double radius = thickness / 2, margin = radius + 1;
    const auto pixel = [](double position, unsigned int extent) {
        return static_cast<unsigned int>(std::clamp(position, 0.0, static_cast<double>(extent)));
    };
    const unsigned int left = pixel(std::min(start.x, end.x) - margin, width_),
                       right = pixel(std::max(start.x, end.x) + margin, width_);
    const unsigned int top = pixel(std::min(start.y, end.y) - margin, height_),
                       bottom = pixel(std::max(start.y, end.y) + margin, height_);
    for (unsigned int y = top; y < bottom; ++y) {
        for (unsigned int x = left; x < right; ++x) {
            const double inside = radius + 0.5 - distanceToSegment({x + 0.5, y + 0.5}, start, end);
            L08& coverage = coverage_[std::size_t{y} * width_ + x];
            coverage = std::max(coverage, static_cast<L08>(std::lround(255 * std::clamp(inside, 0.0, 1.0))));
        }
    }
}

void Strokes::drawDashes(const std::vector<Point>& closed, std::size_t dash, double thickness) {
    for (std::size_t i = 0; i + 1 < closed.size(); ++i) {
        if (i / dash % 2 == 0) drawLine(closed[i], closed[i + 1], thickness);
    }
}

void Strokes::drawNumber(unsigned int value, Point bottom, double height, double thickness) {
    const std::string text = std::to_string(value);
    const double advance = 0.75 * height;
    // The corner of the first digit is the centre of a pixel: vertical lines are sharp.
    Point corner{std::floor(bottom.x - advance * static_cast<double>(text.size()) / 2) + 0.5,
                 std::floor(bottom.y - height) + 0.5};
    for (const char digit : text) {
        const std::string vertices = digits[digit - '0'];
        const auto vertex = [&](std::size_t i) {
            return corner + (height / 4) * Point{vertices[i] - double{'0'}, vertices[i + 1] - double{'0'}};
        };
        for (std::size_t i = 0; i + 3 < vertices.size(); i += 2) drawLine(vertex(i), vertex(i + 2), thickness);
        corner.x += advance;
    }
}

void Strokes::blendOver(TRC* pixels, TRC color, unsigned char opacity) {
    AlphaBlendColorToTRC(color, coverage_.data(), width_, height_, 0, 0, pixels, width_, height_, 0, 0, opacity, width_,
                         height_, false);
    std::fill(coverage_.begin(), coverage_.end(), L08{0});
}

}  // namespace example
