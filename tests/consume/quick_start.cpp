// SPDX-License-Identifier: MIT

// Lays one ink of a design on white paper, and folds a position on the endless plane into the repeat.
#include <OmnarRaster.h>

#include <cstdio>

int main() {
    const L08 ink[4] = {0, 64, 128, 255};                            // from none to full
    TRC view[4] = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};  // white, opaque
    AlphaBlendColorToTRC(0xCC2233, ink, 4, 1, 0, 0, view, 4, 1, 0, 0, 255, 4, 1, false);

    int x = 0, y = 0;
    SetInRapp(25, 3, 10, 20, 5, eDropVertical, &x, &y);  // tiles of 10 x 20, each column 5 lower than the one before

    std::printf("view: %08X %08X %08X %08X\n", view[0], view[1], view[2], view[3]);
    std::printf("(25, 3) of the plane is (%d, %d) of the repeat\n", x, y);
    return view[1] == 0xFFF3C8CC && view[2] == 0xFFE69199 && view[3] == 0xFFCC2233 && x == 5 && y == 13 ? 0 : 1;
}
