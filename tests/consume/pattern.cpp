// SPDX-License-Identifier: MIT

// Draws a view of a pattern of two tiles, as a host of the second library does, and catches its errors by type.
#include <OmnarPattern.h>

#include <cstdio>
#include <stdexcept>

int main() {
    using namespace omnar::pattern;
    const L08 ink[4] = {255, 0, 0, 0};
    Pattern pattern;
    pattern.repeat = {2, 2, 1, Layout::halfDrop};
    pattern.layers = {Ink{ink, 0xCC2233}};
    Painter painter(pattern, 1.0);
    TRC view[8];
    painter.draw({0, 0, 4, 2}, view, 4, 2);
    for (const TRC pixel : view) std::printf("%08X ", pixel);

    bool isRefused = false;
    try {
        painter.draw({0, 0, 5, 2}, view, 4, 2);
    } catch (const std::invalid_argument& error) {
        std::printf("\n%s\n", error.what());
        isRefused = true;
    }
    return isRefused && view[0] == 0xFFCC2233 && view[2] == 0xFFFFFFFF && view[6] == 0xFFCC2233 ? 0 : 1;
}
