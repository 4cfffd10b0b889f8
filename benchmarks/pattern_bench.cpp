// SPDX-License-Identifier: MIT
#include "benchmarks/pattern_bench.h"

#include <OmnarPattern.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>

#include "benchmarks/peers/pattern_peer.h"

namespace bench {
namespace {

using namespace omnar::pattern;

constexpr unsigned viewWidth = 1600, viewHeight = 1000, side = 640;
constexpr Rectangle firstView{-700, -300, viewWidth, viewHeight};

/// Two inks: discs, and stems with narrow soft edges.
struct Design {
    explicit Design(Layout layout) : discs(std::size_t{side} * side), stems(discs.size()) {
        for (unsigned y = 0; y < side; ++y) {
            for (unsigned x = 0; x < side; ++x) {
                const double fromDisc = std::hypot(x % 160 - 80.0, y % 160 - 80.0);
                const double fromStem = std::abs(std::fmod(x + 30 * std::sin(y / 40.0) + side, 107.0) - 53);
                const auto coverage = [](double distance) {
                    return static_cast<L08>(std::clamp(distance * 20, 0.0, 255.0));
                };
                discs[std::size_t{y} * side + x] = coverage(60 - fromDisc);
                stems[std::size_t{y} * side + x] = coverage(6 - fromStem);
            }
        }
        pattern.repeat = {side, side, side / 2, layout};
        pattern.layers = {Ink{stems.data(), 0x3F5D4A}, Ink{discs.data(), 0xC0564B, 200}};
        pattern.paper = 0xFFF4ECDC;
    }
    Design(const Design&) = delete;
    Design& operator=(const Design&) = delete;

    std::vector<L08> discs, stems;
    Pattern pattern;
};

/// The window of a host: each frame shows a view that is 3 pixels further right and 2 further down.
class Window {
public:
    explicit Window(DrawView draw) : draw_(std::move(draw)), pixels_(std::size_t{viewWidth} * viewHeight) {}

    void drawNext() {
        ++frame_;
        Rectangle view = firstView;
        view.x += frame_ % 100 * 3;
        view.y += frame_ % 100 * 2;
        draw_(view, pixels_.data());
    }
    const std::vector<TRC>& first() {
        draw_(firstView, pixels_.data());
        return pixels_;
    }

private:
    DrawView draw_;
    std::vector<TRC> pixels_;
    int frame_ = 0;
};

/// True if blue, green and red differ by at most 4, the rounding of two blends.
bool areAlike(const std::vector<TRC>& a, const std::vector<TRC>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), [](TRC p, TRC q) {
        for (int shift = 0; shift < 24; shift += 8) {
            if (std::abs(static_cast<int>(p >> shift & 255U) - static_cast<int>(q >> shift & 255U)) > 4) return false;
        }
        return true;
    });
}

Contest panningOf(const Bench& bench, Layout layout, double zoom, Quality quality) {
    const auto design = std::make_shared<Design>(layout);
    const auto painter = std::make_shared<Painter>(design->pattern, zoom, quality);
    const auto window = std::make_shared<Window>(
        [design, painter](const Rectangle& view, TRC* pixels) { painter->draw(view, pixels, viewWidth, viewHeight); });
    Contest contest{1, {}};
    contest.add(bench.atLevels({.name = "", .work = [=] { window->drawNext(); }}));
    if (zoom != std::floor(zoom)) return contest;  // peers place pixels differently then
    if (const DrawView draw = pixmanView(design->pattern, static_cast<int>(zoom))) {
        const auto theirs = std::make_shared<Window>([design, draw](const auto&... view) { draw(view...); });
        contest.add({{.name = "pixman",
                      .work = [=] { theirs->drawNext(); },
                      .isRight = [=] { return areAlike(window->first(), theirs->first()); }}});
    }
    return contest;
}

/// The mouse wheel: each frame has another zoom, and so a new painter.
Contest zoomingOf(const Bench& bench, Layout layout, double firstZoom, double lastZoom) {
    const auto design = std::make_shared<Design>(layout);
    const auto frame = std::make_shared<int>(0);
    const auto pixels = std::make_shared<std::vector<TRC>>(std::size_t{viewWidth} * viewHeight);
    Contest contest{1, {}};
    contest.add(
        bench.atLevels({.name = "", .work = [=] {
                            const double zoom = firstZoom * std::pow(lastZoom / firstZoom, ++*frame % 50 / 50.0);
                            Painter(design->pattern, zoom).draw(firstView, pixels->data(), viewWidth, viewHeight);
                        }}));
    return contest;
}

}  // namespace

void measurePatterns(Bench& bench) {
    const auto measure = [&bench](Layout layout, const std::string& name) {
        const auto panning = [&](double zoom, const char* text, Quality quality) {
            bench.addRow("Painter, panning", name + text, Runs::every,
                         [=, &bench] { return panningOf(bench, layout, zoom, quality); });
        };
        panning(0.1, ", 0.1", Quality::exact);
        panning(0.35, ", 0.35 smooth", Quality::smooth);
        panning(1, ", 1", Quality::exact);
        panning(1.35, ", 1.35", Quality::exact);
        panning(2, ", 2", Quality::exact);
        panning(8, ", 8", Quality::exact);
        const auto zooming = [&](double firstZoom, double lastZoom, const char* text) {
            bench.addRow("Painter, zooming", name + text, Runs::every,
                         [=, &bench] { return zoomingOf(bench, layout, firstZoom, lastZoom); });
        };
        zooming(0.5, 1, ", 0.5 to 1");
        zooming(1, 4, ", 1 to 4");
    };
    measure(Layout::straight, "straight");
    measure(Layout::halfDrop, "half-drop");
    measure(Layout::brick, "brick");
}

}  // namespace bench
