// SPDX-License-Identifier: MIT

// pattern_view: draws a view of a repeating pattern from the inks of one repeat.
//
// An example of a host of the library. view.cpp draws rows of a view. This file loads the inks and draws the view band
// by band, in memory that does not depend on its size: while one band is compressed into the file, threads draw the
// next one.

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

/// Consecutive rows of a view, in equal shares for the threads.
class Band {
public:
    Band(const Rectangle& visible, unsigned int threads);
    ~Band() { g_pLargeAllocator->Free(buffer_); }
    Band(const Band&) = delete;
    Band& operator=(const Band&) = delete;

    /// Draws the rows from `top` on, one share per thread. The result does not depend on the number of threads.
    void draw(const View& view, unsigned int top);

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

void Band::draw(const View& view, unsigned int top) {
    top_ = top;
    height_ = std::min(rowsPerThread_ * threads_, view.visible().height - top);
    std::vector<std::future<void>> shares;
    for (unsigned int y = top; y < bottom(); y += rowsPerThread_) {
        shares.push_back(std::async(std::launch::async, [this, &view, y] {
            view.drawRows(y, std::min(rowsPerThread_, bottom() - y), row(y));
        }));
    }
    for (std::future<void>& share : shares) share.get();
}

void writeView(const View& view, unsigned int threads, const std::string& path) {
    const Rectangle& visible = view.visible();
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
    const View view = makeView(options);
    watchInterrupts();
    const unsigned int threads = options.threads != 0 ? options.threads : std::thread::hardware_concurrency();
    writeView(view, std::max(threads, 1U), options.output);
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
