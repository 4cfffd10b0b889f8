// SPDX-License-Identifier: MIT

// draw_artwork: draws the artworks of examples/artwork, a PNG for each ink.
//
// Everything comes from the formulas below, in pixels from the top left of the tile; examples/README.md says how each
// artwork is composed.

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

/// A line that something grows along.
struct Axis {
    Axis(Point base, double degrees) : from(base), unit(direction(degrees * pi / 180)) {}

    /// Where `p` lies as seen along the line: x is the way along it, y the way to its right.
    Point of(Point p) const {
        const Point q = p - from;
        return {q.x * unit.x + q.y * unit.y, q.y * unit.x - q.x * unit.y};
    }

    Point from;
    Point unit;
};

// ---- Fans: scales of fans in the manner of the 1920s -----------------------------------------------------------------
//
// Fans of radius 64 stand in rows 64 apart, every other row moved by 64, each covering the feet of the two behind it. That
// lattice goes on across the tile's edges in every layout whose drop is half the tile. The four fans that lie wholly inside
// the tile are jewelled with the second ink, upper and lower one behind the petals, the two beside them on the petals;
// it is by them that the layouts differ.

constexpr double fanRadius = 64;

/// Whether `q`, seen from a fan's centre, is seen of that fan, `gap` away from the fans that stand before it.
bool seenOfFan(Point q, double radius, double gap) {
    const double front = fanRadius + gap;
    return length(q) < radius && length(q - Point{fanRadius, fanRadius}) > front &&
           length(q - Point{-fanRadius, fanRadius}) > front;
}

/// A petal that grows from the fan's foot, `degrees` from the upright, and rounds off at the rim; `inset` thins it.
bool insidePetal(Point q, double degrees, double rim, double inset) {
    const Point foot{0, fanRadius};
    const Axis axis(foot, degrees - 90);
    const double slope = 0.098;  // half the petal's width, by its length
    const double side = fanRadius * axis.unit.x;
    const double end = (std::sqrt(rim * rim - side * side) - fanRadius * axis.unit.y) / (1 + slope);
    const Point p = axis.of(q);
    return (p.x > 0 && p.x < end && std::abs(p.y) < slope * p.x - inset) ||
           length(p - Point{end, 0}) < slope * end - inset;
}

/// Whether any of a fan's five petals holds `q`.
bool insidePetals(Point q, double rim, double inset) {
    for (int petal = -2; petal <= 2; ++petal) {
        if (insidePetal(q, 13.2 * petal, rim, inset)) return true;
    }
    return false;
}

void drawFans(const std::string& folder) {
    Sheet gold(256);
    Sheet jewel(256);
    const auto fan = [](Sheet& sheet, Point centre, const Shape& shape) {
        sheet.paint(centre, fanRadius, [&](Point p) { return shape(p - centre); });
    };
    const auto rim = [](Point q) {
        const double r = length(q);
        return seenOfFan(q, fanRadius, 0) && (r > 61.5 || (r > 56.5 && r < 57.5));
    };
    const auto petals = [](Point q, double inset) { return insidePetals(q, 53, inset); };
    const auto pearls = [](Point q) { return length({std::abs(q.x) - 47, q.y + 4}) < 3.2; };
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 2; ++column) {
            const Point centre{64.0 + 128 * column + 64 * (row % 2), 64.0 * row};
            const bool jewelled = row > 0 && centre.x < 256;
            fan(gold, centre, rim);
            fan(gold, centre, [&](Point q) {
                if (!seenOfFan(q, 53, 3)) return false;
                return pearls(q) || (petals(q, 0) && !petals(q, jewelled ? 1.6 : 2.0));
            });
            if (!jewelled) continue;
            fan(jewel, centre, [&](Point q) {
                if (!seenOfFan(q, 56.5, 0)) return false;
                return row % 2 == 0 ? petals(q, 1.6) : !petals(q, 0) || petals(q, 4.2);
            });
        }
    }
    gold.write(folder + "/fans-gold.png");
    jewel.write(folder + "/fans-jewel.png");
}

// ---- Sprig: a flowering branch ---------------------------------------------------------------------------------------
//
// Stems, leaves and calyxes are the leaf ink, petals and berries the blossom ink. The branch stays inside the tile. Pin dots
// in a quincunx of 20 fill the ground, left out near the branch: a lattice that goes on in every layout whose drop is half
// the tile, for 160 is a multiple of 20.

/// A cubic curve by its four control points.
using Curve = std::array<Point, 4>;

Point pointOf(const Curve& curve, double t) {
    const double s = 1 - t;
    return s * s * s * curve[0] + 3 * s * s * t * curve[1] + 3 * s * t * t * curve[2] + t * t * t * curve[3];
}

/// A stem whose radius goes from `thick` to `thin`.
void drawStem(Sheet& sheet, const Curve& curve, double thick, double thin) {
    constexpr int steps = 600;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const Point centre = pointOf(curve, t);
        const double radius = thick + (thin - thick) * t;
        sheet.paint(centre, radius, [&](Point p) { return length(p - centre) <= radius; });
    }
}

/// A leaf whose midrib bends to one side. Midrib and side veins stay clear of ink, and so does a margin round it, so that it
/// stands out before what was drawn earlier.
void drawLeaf(Sheet& sheet, const Axis& axis, double size, double bend) {
    // A part of the leaf, as a condition on the way along the leaf (0 to 1), the way from its midrib, and how wide the leaf
    // is there.
    using Part = std::function<bool(double along, double off, double half)>;
    const auto of = [&axis, size, bend](const Part& part) {
        return [axis, size, bend, part](Point p) {
            const Point q = axis.of(p);
            const double along = q.x / size;
            if (along <= 0 || along >= 1) return false;
            const double half = 0.25 * std::pow(std::sin(pi * std::pow(along, 0.8)), 1.25);
            return part(along, std::abs(q.y / size - bend * along * along), half);
        };
    };
    const Point middle = axis.from + 0.5 * size * axis.unit;
    const double reach = 0.65 * size;
    sheet.clear(middle, reach,
                of([size](double along, double off, double half) { return along > 0.12 && off < half + 2.2 / size; }));
    sheet.paint(middle, reach,
                of([](double along, double off, double half) { return off < half + 0.02 * (1 - along); }));
    sheet.clear(middle, reach, of([size](double along, double off, double half) {
                    const double veins = 8 * (along - 0.9 * off);
                    const bool onMidrib = off * size < 1.1 - along;
                    const bool onVein = off < 0.8 * half && std::abs(veins - std::round(veins)) * size / 8 < 0.5;
                    return along > 0.14 && along < 0.94 && (onMidrib || onVein);
                }));
}

/// A blossom of `petals` heart-shaped petals round a ring of stamens, with fine rays from the heart of each petal.
void drawBlossom(Sheet& sheet, Point centre, double size, int petals, double turn) {
    sheet.paint(centre, size, [&](Point p) {
        const Point q = p - centre;
        const double r = length(q) / size;
        const double sector = (std::atan2(q.y, q.x) - turn) * petals / (2 * pi);
        const double off = std::abs(sector - std::round(sector)) * 2;  // 0 on a petal's axis, 1 between two petals
        if (r < 0.24) return r < 0.1 || r > 0.17;

        const double edge = 0.93 + 0.07 * std::cos(3 * pi * std::min(off * 1.05, 1.0)) - 0.55 * std::pow(off, 5);
        const double toNextPetal = (1 - off) * r * pi / petals;
        const double rays = 3 * off;
        const bool onRay =
            r > 0.3 && r < 0.68 - 0.22 * off && off < 0.8 && std::abs(rays - std::round(rays)) * r < 0.028;
        return r < edge && toNextPetal > 0.022 && !onRay;
    });
}

/// A bud: a closed blossom in a calyx of three sepals.
void drawBud(Sheet& leaf, Sheet& blossom, const Axis& axis, double size) {
    const Point middle = axis.from + 0.5 * size * axis.unit;
    blossom.paint(middle, size, [&](Point p) {
        const Point q = (1 / size) * axis.of(p);
        if (q.x < 0.1 || q.x > 1) return false;
        const double half = 0.3 * std::sin(pi * std::pow(q.x, 1.25));
        return std::abs(q.y) < half && std::abs(std::abs(q.y) - 0.33 * half) > 0.022;
    });
    for (const double side : {-0.42, 0.0, 0.42}) {
        leaf.paint(middle, size, [&](Point p) {
            const Point q = (1 / (0.62 * size)) * axis.of(p);
            const double sepal = side * std::sin(0.5 * pi * std::clamp(q.x, 0.0, 1.0));
            return q.x > -0.05 && q.x < 1 && std::abs(q.y - sepal) < 0.17 * (1 - q.x * q.x);
        });
    }
}

/// A berry with a gleam.
void drawBerry(Sheet& sheet, Point centre, double radius) {
    sheet.paint(centre, radius, [&](Point p) {
        return length(p - centre) < radius && length(p - centre - Point{-0.3 * radius, -0.3 * radius}) > 0.26 * radius;
    });
}

/// Clears `under` wherever `over` has ink or is within `halo` of it, so that the two inks do not touch.
void trap(Sheet& under, const Sheet& over, Point centre, double reach, double halo) {
    under.clear(centre, reach, [&](Point p) {
        for (int i = 0; i < 16; ++i) {
            if (over.inkedAt(p + halo * direction(i * pi / 8))) return true;
        }
        return over.inkedAt(p);
    });
}

/// Pin dots on the ground, a reach of 10 away from either ink.
void drawPins(Sheet& sheet, const Sheet& other, int side) {
    constexpr int pitch = 10;
    const auto drawPin = [&](Point pin) {
        for (int ring = 0; ring <= 10; ++ring) {
            for (int i = 0; i < 24; ++i) {
                const Point near = pin + ring * direction(i * pi / 12);
                if (sheet.inkedAt(near) || other.inkedAt(near)) return;
            }
        }
        sheet.paint(pin, 1.3, [&](Point p) { return length(p - pin) < 1.3; });
    };
    for (int row = 0; row < side / pitch; ++row) {
        for (int column = row % 2; column < side / pitch; column += 2)
            drawPin({pitch * (column + 0.5), pitch * (row + 0.5)});
    }
}

void drawSprig(const std::string& folder) {
    constexpr int side = 320;
    Sheet leaf(side);
    Sheet blossom(side);

    const Curve stem{Point{106, 309}, {172, 236}, {84, 176}, {172, 112}};
    const Curve leftTwig{pointOf(stem, 0.64), {96, 178}, {62, 164}, {52, 118}};
    const Curve rightTwig{pointOf(stem, 0.42), {160, 220}, {180, 240}, {228, 222}};
    const Curve lowTwig{pointOf(stem, 0.1), {150, 270}, {186, 306}, {244, 292}};
    const Curve spray{pointOf(stem, 0.82), {132, 142}, {124, 126}, {102, 118}};
    const Point great{204, 82};
    const Point small{254, 206};

    const auto leafOn = [&](const Curve& curve, double t, double degrees, double size, double bend) {
        drawLeaf(leaf, Axis(pointOf(curve, t), degrees), size, bend);
    };
    const auto bloom = [&](Point centre, double size, int petals, double turn) {
        drawBlossom(blossom, centre, size, petals, turn);
        trap(leaf, blossom, centre, size + 4, 3);
    };
    drawLeaf(leaf, Axis(great, -172), 104, 0.14);
    drawLeaf(leaf, Axis(great, 22), 108, -0.16);
    drawLeaf(leaf, Axis(small, 46), 76, 0.14);
    drawLeaf(leaf, Axis(small, -62), 76, 0.12);
    drawStem(leaf, stem, 3.2, 2.0);
    drawStem(leaf, leftTwig, 1.9, 1.3);
    drawStem(leaf, rightTwig, 2.0, 1.5);
    drawStem(leaf, lowTwig, 1.9, 1.1);
    drawStem(leaf, spray, 1.5, 0.9);
    leafOn(stem, 0.10, 196, 88, -0.16);
    leafOn(stem, 0.36, 203, 92, 0.18);
    leafOn(stem, 0.60, -14, 84, 0.16);
    leafOn(rightTwig, 0.32, 58, 62, -0.14);
    leafOn(leftTwig, 0.66, 214, 44, 0.16);
    leafOn(leftTwig, 0.56, -66, 50, 0.16);
    leafOn(lowTwig, 0.66, -56, 40, 0.14);
    leafOn(lowTwig, 1.0, -2, 56, -0.2);

    bloom(great, 60, 6, 0.3);
    bloom(small, 44, 5, 0.9);
    drawBud(leaf, blossom, Axis(pointOf(leftTwig, 1.0), -100), 60);
    for (const Point berry : {Point{96, 115}, Point{112, 107}, Point{106, 132}}) {
        drawStem(leaf, {pointOf(spray, 0.72), pointOf(spray, 0.8), pointOf(spray, 0.9), berry}, 0.9, 0.9);
        drawBerry(blossom, berry, 6.5);
        trap(leaf, blossom, berry, 9, 1.5);
    }
    drawPins(leaf, blossom, side);
    leaf.write(folder + "/sprig-leaf.png");
    blossom.write(folder + "/sprig-blossom.png");
}

// ---- Leaves: a plate of pressed leaves and seeds ---------------------------------------------------------------------
//
// No repeat but silhouettes that do not touch, for counting and measuring. Each lies along an axis of length 1, `along` it
// from the stalk's end and `off` it; the kinds say what is inked.

using Silhouette = bool(double along, double off);

/// The blade begins where the stalk ends; `u` goes from 0 to 1 on it.
template <class Half>
bool insideBlade(double along, double off, double stalk, Half half) {
    const double u = (along - stalk) / (1 - stalk);
    if (along > 0 && u < 0.1 && std::abs(off) < 0.016) return true;
    return u > 0 && u < 1 && std::abs(off) < half(u);
}

bool willow(double along, double off) {
    return insideBlade(along, off, 0.1, [](double u) { return 0.1 * std::pow(std::sin(pi * u), 0.9); });
}

bool beech(double along, double off) {
    return insideBlade(along, off, 0.14, [](double u) {
        return 0.26 * std::pow(std::sin(pi * std::pow(u, 0.8)), 0.8) * (1 + 0.03 * std::cos(22 * pi * u));
    });
}

bool oak(double along, double off) {
    return insideBlade(along, off, 0.08, [](double u) {
        return 0.25 * std::pow(std::sin(pi * std::pow(u, 1.25)), 0.6) *
               (0.78 + 0.22 * std::cos(2 * pi * (4 * u - 0.3)));
    });
}

bool lime(double along, double off) {
    const bool inNotch = along < 0.3 && std::abs(off) < 1.1 * (0.3 - along);
    const bool onStalk = along > 0 && along < 0.3 && std::abs(off) < 0.016;
    return onStalk || (!inNotch && insideBlade(along, off, 0.16, [](double u) {
               return 0.56 * std::pow(u, 0.42) * std::pow(1 - u, 0.95);
           }));
}

bool ginkgo(double along, double off) {
    const double r = std::hypot(along - 0.3, off), angle = std::abs(std::atan2(off, along - 0.3));
    const double rim = 0.62 + 0.015 * std::cos(34 * angle) - 0.28 * std::exp(-angle * 26);
    return (along > 0 && along < 0.36 && std::abs(off) < 0.016) ||
           (angle < 1.15 && r < rim * (1 - 0.16 * angle * angle));
}

bool maple(double along, double off) {
    const double r = std::hypot(along - 0.48, off), angle = std::abs(std::atan2(off, along - 0.48));
    const double lobe = std::abs(std::remainder(angle, 2 * pi / 5.6)) / (pi / 5.6);  // 0 at a tip, 1 between two lobes
    const double tip = angle < 2.75 ? 0.52 - 0.055 * angle : 0;
    const double rim = tip * (1 - 0.62 * std::pow(lobe, 0.72)) + 0.012 * std::cos(5 * pi * lobe);
    return (along > 0 && along < 0.5 && std::abs(off) < 0.014) || r < std::max(rim, 0.12);
}

bool samara(double along, double off) {
    const double u = (along - 0.1) / 0.9;
    const double back = -0.07 + 0.1 * u * u;
    return std::hypot((along - 0.16) / 0.15, off / 0.1) < 1 ||
           (u > 0 && u < 1 && off > back && off < back + 0.27 * std::pow(std::sin(pi * std::pow(u, 1.9)), 0.6));
}

bool berry(double along, double off) {
    return std::hypot(along - 0.64, off) < 0.36 || (along > 0 && along < 0.4 && std::abs(off) < 0.045);
}

struct Pressed {
    Silhouette* kind;
    Point middle;
    double degrees, size, bend;
};

constexpr Pressed pressed[] = {
    {oak, {92, 98}, -62, 150, 0.1},      {willow, {214, 66}, -18, 138, 0.2}, {ginkgo, {352, 92}, -100, 128, 0.0},
    {berry, {452, 50}, -70, 44, 0.0},    {maple, {470, 176}, -58, 146, 0.0}, {beech, {222, 190}, -128, 128, -0.12},
    {samara, {336, 208}, 24, 92, 0.0},   {berry, {120, 212}, -118, 40, 0.0}, {lime, {84, 316}, -84, 136, 0.08},
    {willow, {196, 330}, 74, 142, -0.2}, {oak, {300, 326}, -36, 118, -0.1},  {beech, {448, 322}, 38, 122, 0.14},
    {maple, {164, 466}, -104, 118, 0.0}, {samara, {60, 436}, -52, 84, 0.0},  {ginkgo, {286, 458}, -62, 112, 0.0},
    {lime, {394, 446}, -140, 104, -0.1}, {berry, {484, 432}, -30, 42, 0.0},  {willow, {468, 500}, -4, 84, 0.12},
};

void drawLeaves(const std::string& folder) {
    Sheet leaves(544);
    for (const Pressed& each : pressed) {
        const Axis axis(each.middle - 0.5 * each.size * direction(each.degrees * pi / 180), each.degrees);
        leaves.paint(each.middle, 0.75 * each.size, [&](Point p) {
            const Point q = (1 / each.size) * axis.of(p);
            return each.kind(q.x, q.y - each.bend * q.x * (q.x - 1));
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
