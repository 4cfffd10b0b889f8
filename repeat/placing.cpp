// SPDX-License-Identifier: MIT

// Placing positions into the repeat, and finding the tile that holds a position.

#include "repeat/placing.h"

#include "buffers/host/contract.h"

using namespace omnar;

namespace {

template <class Drop>
void placePixel(Wrapping x, Wrapping y, Wrapping width, Wrapping height, const DropLayout<Drop>& layout, int* outX,
                int* outY) {
    place(x, y, width, height, layout);
    *outX = x.value();
    *outY = y.value();
}

/// The distance of a position from the origin in whole pixels. Below 0 it is counted from pixel -1. A tolerance below 1
/// is subtracted before the distance is truncated, any other has the position truncated.
int pixelDistance(double position, double tolerance) {
    if (!(position < 0.0)) return toInt(position);
    return tolerance < 1.0 ? toInt(-position - tolerance) : -1 - toInt(position);
}

/// The number of whole tiles in that distance.
int tileDistance(double position, double repeatSize, double tolerance) {
    return pixelDistance(position, tolerance) / toInt(repeatSize);
}

int tileIndex(double position, int tiles) { return position < 0.0 ? -1 - tiles : tiles; }

}  // namespace

void SetInRapp(int x, int y, unsigned int width, unsigned int height, unsigned int drop, _EDropKind kind, int* outX,
               int* outY) {
    const DropLayout layout(kind, WholeDrop{drop});
    OMNAR_EXPECT_NOT_NULL(outX, outY);
    OMNAR_EXPECT_PLACEABLE(x, y, width, height, layout);
    placePixel(x, y, width, height, layout, outX, outY);
}

void SetInRappDb(int x, int y, unsigned int width, unsigned int height, double drop, double scaleX, double scaleY,
                 _EDropKind kind, int* outX, int* outY) {
    const double dropPixels = drop * Layout(kind).shifted(scaleX, scaleY);
    const DropLayout layout(kind, [dropPixels](Wrapping tiles) { return Wrapping(toInt(tiles.bits() * dropPixels)); });
    OMNAR_EXPECT_NOT_NULL(outX, outY);
    OMNAR_EXPECT_PLACEABLE(x, y, width, height, layout);
    placePixel(x, y, width, height, layout, outX, outY);
}

void SetInRappMM(double x, double y, double width, double height, double drop, _EDropKind kind, double* outX,
                 double* outY) {
    OMNAR_EXPECT_NOT_NULL(outX, outY);
    place(x, y, width, height, DropLayout(kind, [drop](double tiles) { return tiles * drop; }));
    *outX = x;
    *outY = y;
}

/// Checks that the truncated size can divide the distance of the position.
#define OMNAR_EXPECT_REPEAT_SIZE()                                                                \
    OMNAR_EXPECT_AS(repeatSize, canDivide(pixelDistance(position, tolerance), toInt(repeatSize)), \
                    "cut to a whole number it is not 0, nor -1 for a position that is cut to -2147483648")

int GetRapport(double position, double repeatSize, double tolerance) {
    OMNAR_EXPECT_REPEAT_SIZE();
    return tileIndex(position, tileDistance(position, repeatSize, tolerance));
}

int SetInRappAndCalcRapp(double position, double repeatSize, double tolerance, int* repeatIndex) {
    OMNAR_EXPECT_REPEAT_SIZE();
    OMNAR_EXPECT_NOT_NULL(repeatIndex);
    const int tiles = tileDistance(position, repeatSize, tolerance);
    *repeatIndex = tileIndex(position, tiles);
    // The size keeps its fraction here: only the count of tiles truncates it.
    const double offset =
        position < 0.0 ? repeatSize - (-position - tiles * repeatSize) : position - tiles * repeatSize;
    return offset == repeatSize ? 0 : toInt(offset);
}

int CalcNrOfHDropRepeats(unsigned int repeatHeight, unsigned int drop) {
    if (drop == 0) return 1;
    // n drops of more than half the height are compared with n - 1 heights, smaller ones with one height.
    const bool isLarge = drop > repeatHeight / 2;
    const Wrapping step = isLarge ? repeatHeight - drop : drop;
    Wrapping difference = isLarge ? repeatHeight - 2 * drop : 2 * drop - repeatHeight;  // for two columns
    for (unsigned int columns = 2; columns <= 20; ++columns, difference += step) {
        const Wrapping magnitude = difference < 0 ? 0 - difference : difference;
        if (magnitude.bits() <= columns) return static_cast<int>(columns);
    }
    return -1;
}
