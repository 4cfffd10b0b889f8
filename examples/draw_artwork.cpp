// SPDX-License-Identifier: MIT

// draw_artwork: draws the artworks of examples/artwork, one PNG for each ink.
//
// Lengths and positions are in pixels from the top left corner of the tile. examples/README.md describes the artworks.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <numbers>
#include <string>

#include "sheet.h"

namespace example {
namespace {

constexpr double pi = std::numbers::pi;

/// The x axis of a rotated coordinate system.
struct Axis {
    Axis(Point start, double degrees) : origin(start), unit(direction(degrees * pi / 180)) {}

    /// `p` in this coordinate system; y is to the right of the axis.
    Point local(Point p) const {
        const Point q = p - origin;
        return {dot(q, unit), q.y * unit.x - q.x * unit.y};
    }

    Point origin;
    Point unit;
};

// ---- Fans: overlapping fans in the style of the 1920s ---------------------------------------------------------------
//
// Fans of radius 64 are in rows at a distance of 64, with every other row shifted by 64. Each fan covers part of two
// fans of the row above. The lattice continues across the edges of the tile in every layout with a drop of half the
// tile. The four fans inside the tile are also printed with the second ink: the upper and the lower one between the
// petals, the other two on the petals. Only these four show the layout.

constexpr double fanRadius = 64;

/// Whether a fan shows at `q`, counted from its centre, with a distance of `gap` from the two fans that cover it.
bool isVisibleFan(Point q, double radius, double gap) {
    const double coveredRadius = fanRadius + gap;
    return length(q) < radius && length(q - Point{fanRadius, fanRadius}) > coveredRadius &&
           length(q - Point{-fanRadius, fanRadius}) > coveredRadius;
}

/// A petal from the bottom of the fan to the radius `rim`, at `degrees` from the vertical, with a round end. `inset`
/// makes it thinner.
bool isInsidePetal(Point q, double degrees, double rim, double inset) {
    const Point bottom{0, fanRadius};
    const Axis axis(bottom, degrees - 90);
    const double slope = 0.098;  // half the width of the petal divided by the length
    const double side = fanRadius * axis.unit.x;
    const double end = (std::sqrt(rim * rim - side * side) - fanRadius * axis.unit.y) / (1 + slope);
    const Point p = axis.local(q);
    return (p.x > 0 && p.x < end && std::abs(p.y) < slope * p.x - inset) ||
           length(p - Point{end, 0}) < slope * end - inset;
}

/// Whether `q` is inside one of the five petals of a fan.
bool isInsidePetals(Point q, double rim, double inset) {
    for (int petal = -2; petal <= 2; ++petal) {
        if (isInsidePetal(q, 13.2 * petal, rim, inset)) return true;
    }
    return false;
}

void drawFans(const std::string& folder) {
    Sheet gold(256);
    Sheet jewel(256);
    const auto paintFan = [](Sheet& sheet, Point centre, const Shape& shape) {
        sheet.paint(centre, fanRadius, [&](Point p) { return shape(p - centre); });
    };
    const auto rim = [](Point q) {
        const double r = length(q);
        return isVisibleFan(q, fanRadius, 0) && (r > 61.5 || (r > 56.5 && r < 57.5));
    };
    const auto petals = [](Point q, double inset) { return isInsidePetals(q, 53, inset); };
    const auto pearls = [](Point q) { return length({std::abs(q.x) - 47, q.y + 4}) < 3.2; };
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 2; ++column) {
            const Point centre{64.0 + 128 * column + 64 * (row % 2), 64.0 * row};
            const bool hasJewel = row > 0 && centre.x < 256;
            paintFan(gold, centre, rim);
            paintFan(gold, centre, [&](Point q) {
                if (!isVisibleFan(q, 53, 3)) return false;
                return pearls(q) || (petals(q, 0) && !petals(q, hasJewel ? 1.6 : 2.0));
            });
            if (!hasJewel) continue;
            paintFan(jewel, centre, [&](Point q) {
                if (!isVisibleFan(q, 56.5, 0)) return false;
                return row % 2 == 0 ? petals(q, 1.6) : !petals(q, 0) || petals(q, 4.2);
            });
        }
    }
    gold.write(folder + "/fans-gold.png");
    jewel.write(folder + "/fans-jewel.png");
}

// ---- Sprig: a flowering branch --------------------------------------------------------------------------------------
//
// Stems, leaves and calyxes are printed with the leaf ink, petals and berries with the blossom ink. The branch is
// inside the tile. Dots in a quincunx of 20 fill the background, except near the branch. Their lattice continues in
// every layout with a drop of half the tile, since 160 is a multiple of 20.

/// The control points of a cubic Bezier curve.
using Curve = std::array<Point, 4>;

Point pointOn(const Curve& curve, double t) {
    const double s = 1 - t;
    return s * s * s * curve[0] + 3 * s * s * t * curve[1] + 3 * s * t * t * curve[2] + t * t * t * curve[3];
}

/// A stem. Its radius changes linearly.
void drawStem(Sheet& sheet, const Curve& curve, double startRadius, double endRadius) {
    constexpr int steps = 600;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const Point centre = pointOn(curve, t);
        const double radius = startRadius + (endRadius - startRadius) * t;
        sheet.paint(centre, radius, [&](Point p) { return length(p - centre) <= radius; });
    }
}

/// A leaf with a bent midrib. Midrib, veins and a margin around the leaf have no ink, which separates it from what is
/// below.
void drawLeaf(Sheet& sheet, const Axis& axis, double size, double bend) {
    // A part of the leaf. `u` goes from 0 to 1 along the midrib; `v` is the distance from it, and `halfWidth` that of
    // the edge, both divided by the length of the leaf.
    using Part = std::function<bool(double u, double v, double halfWidth)>;
    const auto shape = [&axis, size, bend](const Part& part) {
        return [axis, size, bend, part](Point p) {
            const Point q = axis.local(p);
            const double u = q.x / size;
            if (u <= 0 || u >= 1) return false;
            const double halfWidth = 0.25 * std::pow(std::sin(pi * std::pow(u, 0.8)), 1.25);
            return part(u, std::abs(q.y / size - bend * u * u), halfWidth);
        };
    };
    const Point middle = axis.origin + 0.5 * size * axis.unit;
    const double halfSide = 0.65 * size;
    sheet.erase(middle, halfSide,
                shape([size](double u, double v, double halfWidth) { return u > 0.12 && v < halfWidth + 2.2 / size; }));
    sheet.paint(middle, halfSide,
                shape([](double u, double v, double halfWidth) { return v < halfWidth + 0.02 * (1 - u); }));
    sheet.erase(middle, halfSide, shape([size](double u, double v, double halfWidth) {
                    const double veins = 8 * (u - 0.9 * v);
                    const bool onMidrib = v * size < 1.1 - u;
                    const bool onVein = v < 0.8 * halfWidth && std::abs(veins - std::round(veins)) * size / 8 < 0.5;
                    return u > 0.14 && u < 0.94 && (onMidrib || onVein);
                }));
}

/// A blossom of heart-shaped petals with fine rays, around a ring of stamens.
void drawBlossom(Sheet& sheet, Point centre, double size, int petals, double turn) {
    sheet.paint(centre, size, [&](Point p) {
        const Point q = p - centre;
        const double r = length(q) / size;
        const double sector = (std::atan2(q.y, q.x) - turn) * petals / (2 * pi);
        const double v = std::abs(sector - std::round(sector)) * 2;  // 0 on the axis of a petal, 1 between two petals
        if (r < 0.24) return r < 0.1 || r > 0.17;

        const double edge = 0.93 + 0.07 * std::cos(3 * pi * std::min(v * 1.05, 1.0)) - 0.55 * std::pow(v, 5);
        const double toNextPetal = (1 - v) * r * pi / petals;
        const double rays = 3 * v;
        const bool onRay = r > 0.3 && r < 0.68 - 0.22 * v && v < 0.8 && std::abs(rays - std::round(rays)) * r < 0.028;
        return r < edge && toNextPetal > 0.022 && !onRay;
    });
}

/// A closed blossom in a calyx of three sepals.
void drawBud(Sheet& leaf, Sheet& blossom, const Axis& axis, double size) {
    const Point middle = axis.origin + 0.5 * size * axis.unit;
    blossom.paint(middle, size, [&](Point p) {
        const Point q = (1 / size) * axis.local(p);
        if (q.x < 0.1 || q.x > 1) return false;
        const double halfWidth = 0.3 * std::sin(pi * std::pow(q.x, 1.25));
        return std::abs(q.y) < halfWidth && std::abs(std::abs(q.y) - 0.33 * halfWidth) > 0.022;
    });
    for (const double side : {-0.42, 0.0, 0.42}) {
        leaf.paint(middle, size, [&](Point p) {
            const Point q = (1 / (0.62 * size)) * axis.local(p);
            const double sepal = side * std::sin(0.5 * pi * std::clamp(q.x, 0.0, 1.0));
            return q.x > -0.05 && q.x < 1 && std::abs(q.y - sepal) < 0.17 * (1 - q.x * q.x);
        });
    }
}

/// A berry with a highlight.
void drawBerry(Sheet& sheet, Point centre, double radius) {
    sheet.paint(centre, radius, [&](Point p) {
        return length(p - centre) < radius && length(p - centre - Point{-0.3 * radius, -0.3 * radius}) > 0.26 * radius;
    });
}

/// Erases `lower` where `upper` has ink at a distance of `gap` or less, so that the two inks do not touch.
void separate(Sheet& lower, const Sheet& upper, Point centre, double halfSide, double gap) {
    lower.erase(centre, halfSide, [&](Point p) {
        for (int i = 0; i < 16; ++i) {
            if (upper.isInked(p + gap * direction(i * pi / 8))) return true;
        }
        return upper.isInked(p);
    });
}

/// Dots on the background, more than 10 pixels from either ink.
void drawDots(Sheet& sheet, const Sheet& other, int side) {
    constexpr int pitch = 10;
    const auto drawDot = [&](Point centre) {
        for (int ring = 0; ring <= 10; ++ring) {
            for (int i = 0; i < 24; ++i) {
                const Point neighbour = centre + ring * direction(i * pi / 12);
                if (sheet.isInked(neighbour) || other.isInked(neighbour)) return;
            }
        }
        sheet.paint(centre, 1.3, [&](Point p) { return length(p - centre) < 1.3; });
    };
    for (int row = 0; row < side / pitch; ++row) {
        for (int column = row % 2; column < side / pitch; column += 2)
            drawDot({pitch * (column + 0.5), pitch * (row + 0.5)});
    }
}

void drawSprig(const std::string& folder) {
    constexpr int side = 320;
    Sheet leaf(side);
    Sheet blossom(side);

    const Curve stem{Point{106, 309}, {172, 236}, {84, 176}, {172, 112}};
    const Curve leftTwig{pointOn(stem, 0.64), {96, 178}, {62, 164}, {52, 118}};
    const Curve rightTwig{pointOn(stem, 0.42), {160, 220}, {180, 240}, {228, 222}};
    const Curve lowTwig{pointOn(stem, 0.1), {150, 270}, {186, 306}, {244, 292}};
    const Curve spray{pointOn(stem, 0.82), {132, 142}, {124, 126}, {102, 118}};
    const Point largeBlossom{204, 82};
    const Point smallBlossom{254, 206};

    const auto drawLeafOn = [&](const Curve& curve, double t, double degrees, double size, double bend) {
        drawLeaf(leaf, Axis(pointOn(curve, t), degrees), size, bend);
    };
    const auto drawSeparateBlossom = [&](Point centre, double size, int petals, double turn) {
        drawBlossom(blossom, centre, size, petals, turn);
        separate(leaf, blossom, centre, size + 4, 3);
    };
    drawLeaf(leaf, Axis(largeBlossom, -172), 104, 0.14);
    drawLeaf(leaf, Axis(largeBlossom, 22), 108, -0.16);
    drawLeaf(leaf, Axis(smallBlossom, 46), 76, 0.14);
    drawLeaf(leaf, Axis(smallBlossom, -62), 76, 0.12);
    drawStem(leaf, stem, 3.2, 2.0);
    drawStem(leaf, leftTwig, 1.9, 1.3);
    drawStem(leaf, rightTwig, 2.0, 1.5);
    drawStem(leaf, lowTwig, 1.9, 1.1);
    drawStem(leaf, spray, 1.5, 0.9);
    drawLeafOn(stem, 0.10, 196, 88, -0.16);
    drawLeafOn(stem, 0.36, 203, 92, 0.18);
    drawLeafOn(stem, 0.60, -14, 84, 0.16);
    drawLeafOn(rightTwig, 0.32, 58, 62, -0.14);
    drawLeafOn(leftTwig, 0.66, 214, 44, 0.16);
    drawLeafOn(leftTwig, 0.56, -66, 50, 0.16);
    drawLeafOn(lowTwig, 0.66, -56, 40, 0.14);
    drawLeafOn(lowTwig, 1.0, -2, 56, -0.2);

    drawSeparateBlossom(largeBlossom, 60, 6, 0.3);
    drawSeparateBlossom(smallBlossom, 44, 5, 0.9);
    drawBud(leaf, blossom, Axis(pointOn(leftTwig, 1.0), -100), 60);
    for (const Point berry : {Point{96, 115}, Point{112, 107}, Point{106, 132}}) {
        drawStem(leaf, {pointOn(spray, 0.72), pointOn(spray, 0.8), pointOn(spray, 0.9), berry}, 0.9, 0.9);
        drawBerry(blossom, berry, 6.5);
        separate(leaf, blossom, berry, 9, 1.5);
    }
    drawDots(leaf, blossom, side);
    leaf.write(folder + "/sprig-leaf.png");
    blossom.write(folder + "/sprig-blossom.png");
}

// ---- Leaves: a plate of pressed leaves and seeds --------------------------------------------------------------------
//
// Silhouettes that do not touch, for counting and measuring. Not a repeat. Each silhouette is a function of the
// distance `x` from the end of the stalk along an axis of length 1, and of the distance `y` from the axis.

using Silhouette = bool(double x, double y);

/// A stalk and a blade. `halfWidth` gives half the width of the blade at 0 to 1 of its length.
template <class HalfWidth>
bool isInsideLeaf(double x, double y, double stalkLength, HalfWidth halfWidth) {
    const double u = (x - stalkLength) / (1 - stalkLength);
    if (x > 0 && u < 0.1 && std::abs(y) < 0.016) return true;
    return u > 0 && u < 1 && std::abs(y) < halfWidth(u);
}

bool willow(double x, double y) {
    return isInsideLeaf(x, y, 0.1, [](double u) { return 0.1 * std::pow(std::sin(pi * u), 0.9); });
}

bool beech(double x, double y) {
    return isInsideLeaf(x, y, 0.14, [](double u) {
        return 0.26 * std::pow(std::sin(pi * std::pow(u, 0.8)), 0.8) * (1 + 0.03 * std::cos(22 * pi * u));
    });
}

bool oak(double x, double y) {
    return isInsideLeaf(x, y, 0.08, [](double u) {
        return 0.25 * std::pow(std::sin(pi * std::pow(u, 1.25)), 0.6) *
               (0.78 + 0.22 * std::cos(2 * pi * (4 * u - 0.3)));
    });
}

bool lime(double x, double y) {
    const bool inNotch = x < 0.3 && std::abs(y) < 1.1 * (0.3 - x);
    const bool onStalk = x > 0 && x < 0.3 && std::abs(y) < 0.016;
    return onStalk || (!inNotch && isInsideLeaf(x, y, 0.16, [](double u) {
               return 0.56 * std::pow(u, 0.42) * std::pow(1 - u, 0.95);
           }));
}

bool ginkgo(double x, double y) {
    const double r = std::hypot(x - 0.3, y), angle = std::abs(std::atan2(y, x - 0.3));
    const double rim = 0.62 + 0.015 * std::cos(34 * angle) - 0.28 * std::exp(-angle * 26);
    return (x > 0 && x < 0.36 && std::abs(y) < 0.016) || (angle < 1.15 && r < rim * (1 - 0.16 * angle * angle));
}

bool maple(double x, double y) {
    const double r = std::hypot(x - 0.48, y), angle = std::abs(std::atan2(y, x - 0.48));
    const double lobe = std::abs(std::remainder(angle, 2 * pi / 5.6)) / (pi / 5.6);  // 0 at a tip, 1 between two lobes
    const double tip = angle < 2.75 ? 0.52 - 0.055 * angle : 0;
    const double rim = tip * (1 - 0.62 * std::pow(lobe, 0.72)) + 0.012 * std::cos(5 * pi * lobe);
    return (x > 0 && x < 0.5 && std::abs(y) < 0.014) || r < std::max(rim, 0.12);
}

bool samara(double x, double y) {
    const double u = (x - 0.1) / 0.9;
    const double back = -0.07 + 0.1 * u * u;
    return std::hypot((x - 0.16) / 0.15, y / 0.1) < 1 ||
           (u > 0 && u < 1 && y > back && y < back + 0.27 * std::pow(std::sin(pi * std::pow(u, 1.9)), 0.6));
}

bool berry(double x, double y) { return std::hypot(x - 0.64, y) < 0.36 || (x > 0 && x < 0.4 && std::abs(y) < 0.045); }

struct PressedLeaf {
    Silhouette* silhouette;
    Point middle;
    double degrees, size, bend;
};

constexpr PressedLeaf pressedLeaves[] = {
    {oak, {92, 98}, -62, 150, 0.1},      {willow, {214, 66}, -18, 138, 0.2}, {ginkgo, {352, 92}, -100, 128, 0.0},
    {berry, {452, 50}, -70, 44, 0.0},    {maple, {470, 176}, -58, 146, 0.0}, {beech, {222, 190}, -128, 128, -0.12},
    {samara, {336, 208}, 24, 92, 0.0},   {berry, {120, 212}, -118, 40, 0.0}, {lime, {84, 316}, -84, 136, 0.08},
    {willow, {196, 330}, 74, 142, -0.2}, {oak, {300, 326}, -36, 118, -0.1},  {beech, {448, 322}, 38, 122, 0.14},
    {maple, {164, 466}, -104, 118, 0.0}, {samara, {60, 436}, -52, 84, 0.0},  {ginkgo, {286, 458}, -62, 112, 0.0},
    {lime, {394, 446}, -140, 104, -0.1}, {berry, {484, 432}, -30, 42, 0.0},  {willow, {468, 500}, -4, 84, 0.12},
};

void drawLeaves(const std::string& folder) {
    Sheet leaves(544);
    for (const PressedLeaf& leaf : pressedLeaves) {
        const Axis axis(leaf.middle - 0.5 * leaf.size * direction(leaf.degrees * pi / 180), leaf.degrees);
        leaves.paint(leaf.middle, 0.75 * leaf.size, [&](Point p) {
            const Point q = (1 / leaf.size) * axis.local(p);
            return leaf.silhouette(q.x, q.y - leaf.bend * q.x * (q.x - 1));
        });
    }
    leaves.write(folder + "/leaves.png");
}

}  // namespace
}  // namespace example

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: draw_artwork FOLDER\n", stderr);
        return 2;
    }
    try {
        example::drawSprig(argv[1]);
        example::drawFans(argv[1]);
        example::drawLeaves(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "draw_artwork: %s\n", error.what());
        return 2;
    }
}
