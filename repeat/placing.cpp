// SPDX-License-Identifier: MIT

// Placing positions into the repeat, and telling which tile a position lies in.

#include "repeat/placing.h"

#include "buffers/host/contract.h"

using namespace omnar;

void SetInRapp(int x, int y, unsigned int width, unsigned int height, unsigned int drop, _EDropKind kind, int* outX,
               int* outY) {
    OMNAR_EXPECT_NOT_NULL(outX, outY);
    OMNAR_EXPECT_AS(width, width != 0 || placeable(x, y, width, height, kind, wholeDrop(drop)),
                    "not 0, unless placing never divides by it");
    OMNAR_EXPECT_AS(height, height != 0 || placeable(x, y, width, height, kind, wholeDrop(drop)),
                    "not 0, unless placing never divides by it");
    Wrapping placedX = x, placedY = y;
    place<Wrapping>(placedX, placedY, width, height, kind, wholeDrop(drop));
    *outX = placedX.value();
    *outY = placedY.value();
}

void SetInRappDb(int x, int y, unsigned int width, unsigned int height, double drop, double scaleX, double scaleY,
                 _EDropKind kind, int* outX, int* outY) {
    const double dropPixels = drop * (kind == eDropVertical ? scaleY : scaleX);
    const auto cutDrop = [dropPixels](Wrapping tiles) { return Wrapping(toInt(tiles.bits() * dropPixels)); };
    OMNAR_EXPECT_NOT_NULL(outX, outY);
    OMNAR_EXPECT_AS(width, width != 0 || placeable(x, y, width, height, kind, cutDrop),
                    "not 0, unless placing never divides by it");
    OMNAR_EXPECT_AS(height, height != 0 || placeable(x, y, width, height, kind, cutDrop),
                    "not 0, unless placing never divides by it");
    Wrapping placedX = x, placedY = y;
    place<Wrapping>(placedX, placedY, width, height, kind, cutDrop);
    *outX = placedX.value();
    *outY = placedY.value();
}

void SetInRappMM(double x, double y, double width, double height, double drop, _EDropKind kind, double* outX,
                 double* outY) {
    OMNAR_EXPECT_NOT_NULL(outX, outY);
    place(x, y, width, height, kind, [drop](double tiles) { return tiles * drop; });
    *outX = x;
    *outY = y;
}

namespace {

/// How far a position lies from the origin, in whole pixels; before the origin, pixel -1 is the one at distance 0. A
/// tolerance below one pixel cuts the fraction of the position only after the tolerance was taken off.
int distance(double position, double tolerance) {
    if (!(position < 0.0)) return toInt(position);
    return tolerance < 1.0 ? toInt(-position - tolerance) : -1 - toInt(position);
}

/// How many whole tiles lie between a position and the origin.
int tilesBetween(double position, double repeatSize, double tolerance) {
    return distance(position, tolerance) / toInt(repeatSize);
}

/// The index of the tile that lies that many tiles away from the origin.
int tileIndex(double position, int tilesBetween) { return position < 0.0 ? -1 - tilesBetween : tilesBetween; }

}  // namespace

int GetRapport(double position, double repeatSize, double tolerance) {
    OMNAR_EXPECT_AS(repeatSize, divisible(distance(position, tolerance), toInt(repeatSize)),
                    "cut to a whole number it is not 0, nor -1 for a position that is cut to -2147483648");
    return tileIndex(position, tilesBetween(position, repeatSize, tolerance));
}

int SetInRappAndCalcRapp(double position, double repeatSize, double tolerance, int* repeatIndex) {
    OMNAR_EXPECT_AS(repeatSize, divisible(distance(position, tolerance), toInt(repeatSize)),
                    "cut to a whole number it is not 0, nor -1 for a position that is cut to -2147483648");
    OMNAR_EXPECT_NOT_NULL(repeatIndex);
    const int tiles = tilesBetween(position, repeatSize, tolerance);
    *repeatIndex = tileIndex(position, tiles);
    // The size with its fraction: only the tiles are counted in whole pixels.
    const double remainder =
        position < 0.0 ? repeatSize - (-position - tiles * repeatSize) : position - tiles * repeatSize;
    return remainder == repeatSize ? 0 : toInt(remainder);
}

int CalcNrOfHDropRepeats(unsigned int repeatHeight, unsigned int drop) {
    if (drop == 0) return 1;
    // A drop of more than half the height is the rest of the height, upwards.
    const bool upwards = drop > repeatHeight / 2;
    const Wrapping step = upwards ? repeatHeight - drop : drop;
    Wrapping missing = upwards ? repeatHeight - 2 * drop : 2 * drop - repeatHeight;
    for (unsigned int columns = 2; columns <= 20; ++columns, missing += step) {
        const Wrapping off = missing < 0 ? 0 - missing : missing;
        if (off.bits() <= columns) return static_cast<int>(columns);
    }
    return -1;
}
