// SPDX-License-Identifier: MIT

// pattern_view: draws a view of a repeating pattern from the inks of one repeat.
//
// An example of a host of both libraries. It loads the inks and draws the view band by band, in memory that does not
// depend on its size: while one band is compressed into the file, threads draw the next one, each with its own painter.

#include <OmnarPattern.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <future>
#include <new>
#include <stdexcept>
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

namespace example {
namespace {

using namespace omnar::pattern;

/// A pattern and the memory of its inks.
struct Design {
    std::vector<InkPlane> planes;
    Pattern pattern;
};

std::vector<InkPlane> loadInks(const std::vector<InkOption>& options) {
    std::vector<InkPlane> planes;
    for (const InkOption& option : options) {
        const InkPlane& plane = planes.emplace_back(readInk(option.file));
        const InkPlane& first = planes.front();
        if (plane.width != first.width || plane.height != first.height) {
            throw Failure(option.file + ": " + std::to_string(plane.width) + " x " + std::to_string(plane.height) +
                          " pixels, but " + options.front().file + " has " + std::to_string(first.width) + " x " +
                          std::to_string(first.height));
        }
    }
    return planes;
}

Design makeDesign(const Options& options) {
    Design design{loadInks(options.inks), {}};
    const InkPlane& first = design.planes.front();
    const unsigned int halfSide = (options.layout == Layout::brick ? first.width : first.height) / 2;
    design.pattern.repeat = {first.width, first.height, options.drop.value_or(halfSide), options.layout};
    design.pattern.paper = options.paper;
    for (std::size_t i = 0; i < design.planes.size(); ++i) {
        const InkOption& option = options.inks[i];
        design.pattern.layers.emplace_back(Ink{design.planes[i].pixels.data(), option.color, option.opacity});
    }
    return design;
}

/// A view and a painter for each thread that draws it.
struct View {
    Rectangle visible;
    std::vector<Painter> painters;
};

Rectangle threeTiles(const Rectangle& tile) {
    const auto thrice = [](std::uint64_t side) {
        return static_cast<unsigned int>(std::min<std::uint64_t>(3 * side, INT32_MAX));
    };
    return {0, 0, thrice(tile.width), thrice(tile.height)};
}

View makeView(const Design& design, const Options& options, unsigned int threads) {
    View view;
    for (unsigned int i = 0; i < threads; ++i) view.painters.emplace_back(design.pattern, options.zoom);
    const Painter& painter = view.painters.front();
    view.visible = options.visible.value_or(threeTiles(painter.tile()));
    painter.check(view.visible);
    return view;
}

/// Consecutive rows of a view, in equal shares for the threads.
class Band {
public:
    Band(const Rectangle& visible, unsigned int threads);
    ~Band() { g_pLargeAllocator->Free(buffer_); }
    Band(const Band&) = delete;
    Band& operator=(const Band&) = delete;

    /// Draws the rows from `top` on, one share per thread. The result does not depend on the number of threads.
    void draw(View& view, unsigned int top);

    unsigned int top() const { return top_; }
    unsigned int bottom() const { return top_ + height_; }
    TRC* row(unsigned int y) const { return reinterpret_cast<TRC*>(buffer_) + std::size_t{y - top_} * pixelsPerRow_; }

private:
    unsigned int threads_;
    unsigned int rowsPerThread_ = 0;
    unsigned int pixelsPerRow_ = 0;
    unsigned int bytesPerRow_ = 0;
    unsigned char* buffer_ = nullptr;
    unsigned int top_ = 0;
    unsigned int height_ = 0;
};

// The mode is eRotateTurned because threads share rows. The library allocates up to a quarter of the free memory;
// larger bands than 16 MiB are no faster. Each thread gets at least one row, and the rounded count leaves no row over.
Band::Band(const Rectangle& visible, unsigned int threads) {
    constexpr std::size_t maxPixels = (std::size_t{16} << 20) / sizeof(TRC);
    if (visible.width > UINT32_MAX / sizeof(TRC)) throw Failure("a view cannot be wider than 1073741823 pixels");
    const auto rows = static_cast<unsigned int>(std::clamp<std::size_t>(maxPixels / visible.width, 1, visible.height));
    threads_ = std::min(threads, rows);
    const unsigned int roundedRows = (rows + threads_ - 1) / threads_ * threads_;
    CalcAndGetFixedBufferForThreads(roundedRows, visible.width, sizeof(TRC), threads_, &rowsPerThread_, &pixelsPerRow_,
                                    &bytesPerRow_, &buffer_, eRotateTurned);
}

void Band::draw(View& view, unsigned int top) {
    top_ = top;
    height_ = std::min(rowsPerThread_ * threads_, view.visible.height - top);
    std::vector<std::future<void>> shares;
    for (unsigned int y = top; y < bottom(); y += rowsPerThread_) {
        shares.push_back(std::async(std::launch::async, [this, &view, &painter = view.painters[shares.size()], y] {
            const unsigned int rows = std::min(rowsPerThread_, bottom() - y);
            painter.draw({view.visible.x, static_cast<int>(view.visible.y + std::int64_t{y}), view.visible.width, rows},
                         row(y), view.visible.width, rows);
        }));
    }
    for (std::future<void>& share : shares) share.get();
}

void writeView(View& view, const std::string& path) {
    const Rectangle& visible = view.visible;
    const auto threads = static_cast<unsigned int>(view.painters.size());
    NewFile file(path);
    PngWriter writer(file.stream(), path, PngWriter::Kind::color, visible.width, visible.height);
    Progress progress(visible.height);

    Band bands[] = {Band(visible, threads), Band(visible, threads)};
    const auto startBand = [&view](Band& band, unsigned int top) {
        return std::async(std::launch::async, [&view, &band, top] { band.draw(view, top); });
    };
    std::future<void> drawing = startBand(bands[0], 0);
    for (std::size_t i = 0; drawing.valid(); ++i) {
        drawing.get();
        const Band& band = bands[i % 2];
        if (band.bottom() < visible.height) drawing = startBand(bands[(i + 1) % 2], band.bottom());
        for (unsigned int y = band.top(); y < band.bottom(); ++y) {
            checkInterrupt();
            writer.writeRow(band.row(y));
            progress.show(y + 1);
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
    const unsigned int threads = options.threads != 0 ? options.threads : std::thread::hardware_concurrency();
    const Design design = makeDesign(options);
    View view = makeView(design, options, std::max(threads, 1U));
    watchInterrupts();
    writeView(view, options.output);
}

/// Prints an error in one line, with control characters of file names replaced, and returns the exit status.
int reportError(std::string message) {
    for (char& c : message) {
        if (c >= 0 && c < ' ') c = '?';
    }
    std::fprintf(stderr, "pattern_view: %s\n", message.c_str());
    return 2;
}

}  // namespace
}  // namespace example

int main(int argc, char** argv) {
    try {
        example::run({argv + 1, argv + argc});
        return 0;
    } catch (const example::Interrupted& interrupted) {
        example::terminateBy(interrupted);
    } catch (const std::bad_alloc&) {
        return example::reportError("there is not enough memory");
    } catch (const COmnarException&) {  // from CalcAndGetFixedBufferForThreads()
        return example::reportError("there is not enough memory for a row of the view");
    } catch (const std::exception& error) {
        return example::reportError(error.what());
    }
}
