// pattern_view: draws a view of a repeating pattern from the inks of one repeat.
//
// This is the library as a host uses it. How a view comes about stands in view.cpp; here the inks are loaded, and the
// view is drawn band by band, so that its size does not matter: while one band is compressed into the file, threads draw
// the next one.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <future>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "failure.h"
#include "interrupt.h"
#include "new_file.h"
#include "options.h"
#include "png_file.h"
#include "progress.h"
#include "view.h"

namespace example {
namespace {

std::vector<Ink> loadInks(const std::vector<InkOption>& options) {
    std::vector<Ink> inks;
    for (const InkOption& option : options) {
        inks.push_back({readInk(option.file), option.color, option.opacity});
        const InkPlane& first = inks.front().plane;
        const InkPlane& plane = inks.back().plane;
        if (plane.width != first.width || plane.height != first.height) {
            throw Failure(option.file + ": " + std::to_string(plane.width) + " x " + std::to_string(plane.height) +
                          " pixels, but " + options.front().file + " has " + std::to_string(first.width) + " x " +
                          std::to_string(first.height));
        }
    }
    return inks;
}

Repeat makeRepeat(const Options& options, const InkPlane& plane) {
    Repeat repeat{plane.width, plane.height, 0, eDropVertical, options.zoom};
    if (options.layout == Layout::halfDrop) repeat.drop = options.drop.value_or(plane.height / 2);
    if (options.layout == Layout::brick) {
        repeat.drop = options.drop.value_or(plane.width / 2);
        repeat.kind = eDropHorizontal;
    }
    return repeat;
}

Rectangle threeRepeats(const Repeat& repeat) {
    const auto thrice = [](std::uint64_t side) {
        return static_cast<unsigned int>(std::min<std::uint64_t>(3 * side, INT32_MAX));
    };
    return {0, 0, thrice(repeat.viewWidth()), thrice(repeat.viewHeight())};
}

View makeView(const Options& options) {
    std::vector<Ink> inks = loadInks(options.inks);
    const Repeat repeat = makeRepeat(options, inks.front().plane);
    const Rectangle visible = options.visible.value_or(threeRepeats(repeat));
    return View(repeat, std::move(inks), options.paper, visible);
}

/// Some rows of a view, the whole width of it.
struct Band {
    unsigned int top;
    unsigned int height;
    std::vector<TRC> pixels;
};

/// Rows as wide as the view that come to about 16 MiB.
unsigned int rowsOfBand(const Rectangle& visible) {
    constexpr std::size_t pixels = std::size_t{16} * 1024 * 1024 / sizeof(TRC);
    return static_cast<unsigned int>(std::max<std::size_t>(pixels / visible.width, 1));
}

/// Draws the band that begins at `top`, in stripes, each by a thread of its own. A stripe is drawn the same way wherever
/// it begins and ends, so the number of threads does not show.
Band drawBand(const View& view, unsigned int top, unsigned int threads) {
    const Rectangle& visible = view.visible();
    Band band{top, std::min(rowsOfBand(visible), visible.height - top), {}};
    band.pixels.resize(std::size_t{band.height} * visible.width);

    std::vector<std::future<void>> stripes;
    const unsigned int stripeHeight = (band.height + threads - 1) / threads;
    for (unsigned int row = 0; row < band.height; row += stripeHeight) {
        stripes.push_back(std::async(std::launch::async, [&view, &band, &visible, row, stripeHeight] {
            view.drawRows(band.top + row, std::min(stripeHeight, band.height - row),
                          band.pixels.data() + std::size_t{row} * visible.width);
        }));
    }
    for (std::future<void>& stripe : stripes) stripe.get();
    return band;
}

void writeView(const View& view, unsigned int threads, const std::string& target) {
    const Rectangle& visible = view.visible();
    NewFile file(target);
    PngWriter writer(file.stream(), target, PngWriter::Kind::colour, visible.width, visible.height);
    Progress progress(visible.height);

    const auto startBand = [&](unsigned int top) {
        return std::async(std::launch::async, [&view, top, threads] { return drawBand(view, top, threads); });
    };
    std::future<Band> next = startBand(0);
    while (next.valid()) {
        const Band band = next.get();
        if (const unsigned int bottom = band.top + band.height; bottom < visible.height) next = startBand(bottom);
        for (unsigned int row = 0; row < band.height; ++row) {
            checkInterrupt();
            writer.writeRow(band.pixels.data() + std::size_t{row} * visible.width);
            progress.show(band.top + row + 1);
        }
    }
    writer.finish();
    checkInterrupt();
    file.commit();
}

void run(const std::vector<std::string>& arguments) {
    const Options options = readOptions(arguments);
    if (options.help) {
        std::fputs(usage, stdout);
        return;
    }
    const View view = makeView(options);
    watchInterrupts();
    const unsigned int threads = options.threads != 0 ? options.threads : std::thread::hardware_concurrency();
    writeView(view, std::max(threads, 1U), options.target);
}

/// Says what went wrong, in one line whatever a file's name may hold.
int complain(std::string what) {
    for (char& c : what) {
        if (c >= 0 && c < ' ') c = '?';
    }
    std::fprintf(stderr, "pattern_view: %s\n", what.c_str());
    return 2;
}

}  // namespace
}  // namespace example

int main(int argc, char** argv) {
    try {
        example::run({argv + 1, argv + argc});
        return 0;
    } catch (const example::Interrupted& interrupted) {
        example::dieOf(interrupted);
    } catch (const std::bad_alloc&) {
        return example::complain("there is not enough memory");
    } catch (const std::exception& error) {
        return example::complain(error.what());
    }
}
