// SPDX-License-Identifier: MIT

// The example program pattern_view, run by its command line on real files.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/png_files.h"
#include "tests/support/program_test.h"
#include "tests/support/random.h"

namespace {

namespace fs = std::filesystem;
using support::Arguments;
using support::contents;
using support::decode;
using support::filesIn;
using support::Picture;
using support::PngKind;
using support::Random;

const fs::path examples = PATTERN_VIEW_EXAMPLES;

class PatternView : public support::ProgramTest {
protected:
    Outcome run(Arguments arguments) const {
        arguments.insert(arguments.begin(), PATTERN_VIEW_PROGRAM);
        return wait(start(std::move(arguments)));
    }

    /// Runs the program, expects success, and returns the view.
    Picture draw(Arguments arguments) const {
        const fs::path view = *this / "view.png";
        arguments.insert(arguments.end(), {"-o", view.string()});
        const Outcome outcome = run(std::move(arguments));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        return decode(view);
    }

    static void expectError(const Outcome& outcome, const std::string& text) {
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.errors.rfind("pattern_view: ", 0), 0U) << outcome.errors;
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
        EXPECT_NE(outcome.errors.find(text), std::string::npos) << outcome.errors;
    }

    /// Writes a grey PNG of random samples and returns its path. The ink of a pixel is 255 less its value.
    std::string writeGrey(const std::string& name, unsigned int width, unsigned int height, Random& random) const {
        std::vector<unsigned int> samples(std::size_t{width} * height);
        for (unsigned int& sample : samples) sample = random.byte();
        support::writePng(*this / name, {false, false, 8}, width, samples);
        return (*this / name).string();
    }
};

// ---- Drawing --------------------------------------------------------------------------------------------------------

/// The reference: a view drawn pixel by pixel.
struct ReferenceView {
    struct Ink {
        Picture plane;
        std::array<int, 3> color;
        int opacity;
    };
    std::vector<Ink> inks;
    std::array<int, 3> paper{255, 255, 255};
    _EDropKind kind = eDropVertical;
    unsigned int drop = 0;
    double zoom = 1.0;
    int x = 0;
    int y = 0;

    std::array<int, 3> pixel(int viewX, int viewY) const {
        const Picture& first = inks.front().plane;
        int fileX = 0;
        int fileY = 0;
        VPToFP(viewX, viewY, &fileX, &fileY, first.width, first.height, drop, kind, zoom, zoom, true);
        std::array<int, 3> pixel = paper;
        for (const Ink& ink : inks) {
            const int grey =
                ink.plane.pixels.at(static_cast<std::size_t>(fileY) * first.width + static_cast<std::size_t>(fileX))[0];
            const int weight = (255 - grey) * ink.opacity / 255;
            for (std::size_t c = 0; c < 3; ++c) pixel[c] += (ink.color[c] - pixel[c]) * weight / 255;
        }
        return pixel;
    }

    /// One black ink in half-drop layout on white paper.
    static ReferenceView black(const std::string& ink, unsigned int drop, double zoom, int x, int y) {
        return {{{decode(ink), {0, 0, 0}, 255}}, {255, 255, 255}, eDropVertical, drop, zoom, x, y};
    }

    Picture draw(unsigned int width, unsigned int height) const {
        Picture picture{width, height, {}};
        for (unsigned int row = 0; row < height; ++row) {
            for (unsigned int column = 0; column < width; ++column) {
                picture.pixels.push_back(pixel(x + static_cast<int>(column), y + static_cast<int>(row)));
            }
        }
        return picture;
    }
};

std::string hex(const std::array<int, 3>& color) {
    char text[7];
    std::snprintf(text, sizeof text, "%02x%02X%02x", color[0] & 255, color[1] & 255, color[2] & 255);
    return text;
}

TEST_F(PatternView, DrawsEveryPixelByTheInkAtItsFilePosition) {
    Random random(7);
    const auto color = [&] { return std::array<int, 3>{random.byte(), random.byte(), random.byte()}; };
    const auto corner = [&](unsigned int range) {
        return static_cast<int>(random.below(range)) - static_cast<int>(range / 2);
    };
    for (int round = 0; round < 240; ++round) {
        const unsigned int repeatWidth = 1 + random.below(40);
        const unsigned int repeatHeight = 1 + random.below(40);
        const std::string layout = std::array{"straight", "half-drop", "brick"}[random.below(3)];
        const double zooms[] = {1.0, 1.0, 1.0, 0.01, 0.37, 0.5, 1.5, 2.75, 7.0};
        const unsigned int range = random.oneIn(3) ? 2000000 : 200;
        ReferenceView reference{{},
                                color(),
                                layout == "brick" ? eDropHorizontal : eDropVertical,
                                0,
                                zooms[random.below(9)],
                                corner(range),
                                corner(range)};
        Arguments arguments{"--paper", hex(reference.paper), "--layout",
                            layout,    "--threads",          std::to_string(1 + random.below(3))};
        if (reference.zoom != 1.0) arguments.insert(arguments.end(), {"--zoom", std::to_string(reference.zoom)});
        if (layout != "straight") {
            reference.drop = layout == "brick" ? repeatWidth / 2 : repeatHeight / 2;
            if (!random.oneIn(4)) {
                reference.drop = random.below(90);
                arguments.insert(arguments.end(), {"--drop", std::to_string(reference.drop)});
            }
        }
        for (unsigned int i = 0; i < 1 + random.below(3); ++i) {
            const std::string file = writeGrey("ink" + std::to_string(i) + ".png", repeatWidth, repeatHeight, random);
            ReferenceView::Ink ink{decode(file), {0, 0, 0}, 255};
            if (!random.oneIn(3)) {
                ink.color = color();
                ink.opacity = random.oneIn(2) ? 255 : random.byte();
                const std::string opacity = ink.opacity == 255 ? "" : "@" + std::to_string(ink.opacity);
                arguments.insert(arguments.end(), {"--color", hex(ink.color) + opacity});
            }
            arguments.push_back(file);
            reference.inks.push_back(ink);
        }
        const unsigned int width = 1 + random.below(130);
        const unsigned int height = 1 + random.below(130);
        std::ostringstream view;
        view << reference.x << ',' << reference.y << ',' << width << ',' << height;
        arguments.insert(arguments.end(), {"--view", view.str()});

        const Picture drawn = draw(arguments);
        const Picture expected = reference.draw(width, height);
        const auto [wrong, right] =
            std::mismatch(drawn.pixels.begin(), drawn.pixels.end(), expected.pixels.begin(), expected.pixels.end());
        ASSERT_EQ(drawn, expected) << "round " << round << ", first at pixel " << wrong - drawn.pixels.begin() << " of "
                                   << testing::PrintToString(arguments);
    }
}

TEST_F(PatternView, ShowsThreeRepeatsEachWayByDefault) {
    Random random(3);
    const std::string ink = writeGrey("ink.png", 11, 7, random);
    EXPECT_EQ(draw({ink, "--zoom", "2.5"}), ReferenceView::black(ink, 3, 2.5, 0, 0).draw(3 * 27, 3 * 17));
}

// The view has several bands, and rows of one band belong to several threads.
TEST_F(PatternView, DrawsTheSameBytesWithAnyNumberOfThreads) {
    Random random(5);
    const std::string ink = writeGrey("ink.png", 97, 61, random);
    for (const std::string zoom : {"1", "1.7"}) {
        const Arguments arguments{ink, "--zoom", zoom, "--drop", "17", "--view", "-1000,-900,2101,2103", "--threads"};
        const auto drawnBy = [&](const std::string& threads) {
            Arguments all = arguments;
            all.push_back(threads);
            return draw(all);
        };
        EXPECT_TRUE(drawnBy("1") == ReferenceView::black(ink, 17, std::stod(zoom), -1000, -900).draw(2101, 2103));
        const std::string bytes = contents(*this / "view.png");
        for (const std::string threads : {"2", "7"}) {
            drawnBy(threads);
            EXPECT_TRUE(contents(*this / "view.png") == bytes) << threads << " threads, zoom " << zoom;
        }
    }
}

TEST_F(PatternView, DrawsTheCommittedPictures) {
#if defined(_WIN32)
    GTEST_SKIP() << "the script needs a shell";
#endif
    const fs::path script = examples / "draw_pictures.sh";
    ASSERT_EQ(wait(start({script.string(), PATTERN_VIEW_PROGRAM, folder().string(), "-100,-60,480,360"})).status, 0);
    EXPECT_EQ(filesIn(folder()), filesIn(examples / "expected"));
    for (const auto& entry : fs::directory_iterator(folder())) {
        EXPECT_TRUE(decode(entry.path()) == decode(examples / "expected" / entry.path().filename()))
            << entry.path().filename();
    }
}

// ---- Reading --------------------------------------------------------------------------------------------------------

TEST_F(PatternView, ReadsEveryKindOfPng) {
#if defined(_WIN32)
    const std::vector<unsigned int> widths{29};  // programs start slowly under Wine
#else
    const std::vector<unsigned int> widths{1, 3, 29};
#endif
    Random random(11);
    std::vector<PngKind> kinds;
    for (const bool interlaced : {false, true}) {
        for (const bool key : {false, true}) {
            for (const int depth : {1, 2, 4, 8, 16}) kinds.push_back({false, false, depth, false, interlaced, key});
            for (const int depth : {1, 2, 4, 8}) kinds.push_back({false, false, depth, true, interlaced, key});
            for (const int depth : {8, 16}) kinds.push_back({true, false, depth, false, interlaced, key});
        }
        for (const int depth : {8, 16}) {
            for (const bool color : {false, true}) kinds.push_back({color, true, depth, false, interlaced});
        }
    }
    for (const PngKind& kind : kinds) {
        for (const unsigned int width : widths) {
            SCOPED_TRACE(testing::Message()
                         << "color " << kind.color << " alpha " << kind.alpha << " depth " << kind.depth << " palette "
                         << kind.palette << " interlaced " << kind.interlaced << " key " << kind.key);
            const unsigned int height = 1 + random.below(20);
            const unsigned int values = 1U << kind.depth;
            support::Palette palette(kind.palette ? values : 0);
            for (std::size_t i = 0; i < palette.size(); ++i) {
                palette[i] = {random.byte(), random.byte(), random.byte(),
                              i % 3 == 0 ? random.byte() : std::uint8_t{255}};
            }
            std::vector<unsigned int> samples(std::size_t{width} * height * kind.channels());
            for (unsigned int& sample : samples) sample = random.below(values);
            support::writePng(*this / "ink.png", kind, width, samples, palette);

            Picture expected{width, height, {}};
            for (std::size_t i = 0; i < samples.size(); i += kind.channels()) {
                const int grey = 255 - inkOf(kind, &samples[i], samples.data(), palette);
                expected.pixels.push_back({grey, grey, grey});
            }
            std::ostringstream view;
            view << "0,0," << width << ',' << height;
            ASSERT_EQ(draw({(*this / "ink.png").string(), "--layout", "straight", "--view", view.str()}), expected);
        }
    }
}

TEST_F(PatternView, IgnoresWarningsOfThePngLibrary) {
    Random random(23);
    const std::string ink = writeGrey("ink.png", 12, 9, random);
    const Picture before = draw({ink});
    std::string bytes = contents(ink);
    constexpr std::size_t headerEnd = 33;
    bytes.insert(headerEnd, std::string("\0\0\0\1tEXt?bad!", 13));  // a comment with a wrong checksum
    std::ofstream(ink, std::ios::binary) << bytes;
    EXPECT_EQ(draw({ink}), before);
}

// ---- Errors ---------------------------------------------------------------------------------------------------------

TEST_F(PatternView, RejectsInvalidInputInOneLineAndLeavesNoFile) {
    Random random(13);
    const std::string ink = writeGrey("ink.png", 30, 20, random);
    const std::string other = writeGrey("other.png", 20, 30, random);
    const std::string valid = contents(ink);
    const auto writeFile = [&](const std::string& name, const std::string& bytes) {
        std::ofstream(*this / name, std::ios::binary) << bytes;
        return (*this / name).string();
    };
    const std::string output = (*this / "view.png").string();
    const std::string missing = (*this / "missing\nink.png").string();
    std::string damaged = valid;
    damaged[valid.size() / 2] ^= 1;
    std::string vast = valid;
    vast[16] = vast[20] = 0x7f;  // the high bytes of width and height

    const struct {
        Arguments arguments;
        const char* error;
    } cases[] = {
        {{missing, "-o", output}, "missing?ink.png"},
        {{folder().string(), "-o", output}, "program_"},
        {{writeFile("text.png", "no picture at all"), "-o", output}, "text.png"},
        {{writeFile("empty.png", ""), "-o", output}, "empty.png"},
        {{writeFile("head.png", valid.substr(0, 20)), "-o", output}, "head.png"},
        {{writeFile("short.png", valid.substr(0, valid.size() - 40)), "-o", output}, "short.png"},
        {{writeFile("endless.png", valid.substr(0, valid.size() - 6)), "-o", output}, "endless.png"},
        {{writeFile("damaged.png", damaged), "-o", output}, "damaged.png"},
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // sanitizers end programs that exceed the memory
        {{writeFile("vast.png", vast), "-o", output}, "vast.png"},
#endif
        {{ink, other, "-o", output}, "20 x 30"},
        {{ink, "-o", (*this / "no/view.png").string()}, "no/view.png"},
        {{ink, "-o", folder().string()}, "is not a file"},
#if !defined(_WIN32)
        {{ink, "-o", "/dev/null"}, "is not a file"},
#endif
        {{ink}, "-o"},
        {{ink, "-o"}, "missing"},
        {{"-o", output}, "INK"},
        {{}, "INK"},
        {{ink, "-o", output, "--colour", "000000"}, "--colour"},
        {{ink, "-o", output, "--color", "123456"}, "--color"},
        {{"--color", "123456", "--color", "123456", ink, "-o", output}, "--color"},
        {{"--color", "12345", ink, "-o", output}, "12345"},
        {{"--color", "-12345", ink, "-o", output}, "-12345"},
        {{"--color", "123456@256", ink, "-o", output}, "opacity"},
        {{"--color", "123456@", ink, "-o", output}, "opacity"},
        {{"--paper", "12345g", ink, "-o", output}, "12345g"},
        {{"--layout", "drop", ink, "-o", output}, "drop"},
        {{"--drop", "-1", ink, "-o", output}, "--drop"},
        {{"--drop", "2147483648", ink, "-o", output}, "--drop"},
        {{"--drop", "3.5", ink, "-o", output}, "--drop"},
        {{"--threads", "0", ink, "-o", output}, "--threads"},
        {{"--zoom", "0", ink, "-o", output}, "--zoom"},
        {{"--zoom", "-2", ink, "-o", output}, "--zoom"},
        {{"--zoom", "nan", ink, "-o", output}, "--zoom"},
        {{"--zoom", "1e999", ink, "-o", output}, "--zoom"},
        {{"--zoom", "2x", ink, "-o", output}, "--zoom"},
        {{"--zoom", "1e8", ink, "-o", output}, "zoom"},
        {{"--view", "0,0,0,5", ink, "-o", output}, "W"},
        {{"--view", "0,0,5,0", ink, "-o", output}, "H"},
        {{"--view", "0,0,5,2147483649", ink, "-o", output}, "H"},
        {{"--view", "0,0,99999999999999999999,5", ink, "-o", output}, "W"},
        {{"--view", "0,0,1073741824,1", ink, "-o", output}, "wider"},
        {{"--view", "0,0,5", ink, "-o", output}, "X,Y,W,H"},
        {{"--view", "0,0,5,5,", ink, "-o", output}, "X,Y,W,H"},
        {{"--view", "0, 0,5,5", ink, "-o", output}, "Y"},
        {{"--view", "2147483647,0,2,1", ink, "-o", output}, "32 bits"},
        {{"--view", "0,2147483600,1,100", ink, "-o", output}, "32 bits"},
        {{"--view", "0,2000000000,5,5", "--zoom", "0.5", ink, "-o", output}, "32 bits"},
        {{"--view", "2000000000,0,5,5", "--drop", "40", ink, "-o", output}, "32 bits"},
        {{"--view", "0,-2147483648,31,1", ink, "-o", output}, "32 bits"},
        {{"--view", "-30,2147483600,1,48", ink, "-o", output}, "32 bits"},
        {{"--view", "2000000000,0,5,5", "--zoom", "0.5", "--layout", "brick", ink, "-o", output}, "32 bits"},
        {{"--view", "-2147483648,0,1,21", "--layout", "brick", ink, "-o", output}, "32 bits"},
        {{"--view", "2147483600,-20,48,1", "--layout", "brick", ink, "-o", output}, "32 bits"},
        {{"--view", "1200000000,1073741820,5,10", "--zoom", "0.5", "--drop", "20", ink, "-o", output}, "32 bits"},
    };
    const std::size_t files = filesIn(folder());
    for (const auto& invalid : cases) {
        SCOPED_TRACE(testing::PrintToString(invalid.arguments));
        expectError(run(invalid.arguments), invalid.error);
        EXPECT_EQ(filesIn(folder()), files);
    }
}

TEST_F(PatternView, DrawsUpToTheEndsOf32BitPositions) {
    Random random(17);
    const std::string ink = writeGrey("ink.png", 30, 20, random);
    for (const int end : {INT32_MIN, INT32_MAX - 63}) {
        const std::string text = std::to_string(end);
        EXPECT_EQ(draw({ink, "--view", "0," + text + ",20,64"}), ReferenceView::black(ink, 10, 1, 0, end).draw(20, 64));
        EXPECT_EQ(draw({ink, "--view", text + ",0,64,20"}), ReferenceView::black(ink, 10, 1, end, 0).draw(64, 20));
        ReferenceView brick = ReferenceView::black(ink, 15, 1, end, 0);
        brick.kind = eDropHorizontal;
        EXPECT_EQ(draw({ink, "--layout", "brick", "--view", text + ",0,64,20"}), brick.draw(64, 20));
    }
}

#if !defined(_WIN32)  // Windows has neither these signals nor file size limits

// However the program ends, an existing picture is unchanged, and no other file remains.
class PatternViewStopped : public PatternView {
protected:
    PatternViewStopped() {
        Random random(19);
        ink_ = writeGrey("ink.png", 400, 300, random);
        std::ofstream(*this / "view.png") << "the picture before";
    }

    /// Starts to draw a view that takes hours, with a file size limit of `blocks` blocks of 512 bytes.
    support::Process startLongView(int blocks) const {
        const std::string limit = "ulimit -f " + std::to_string(blocks) + " && exec \"$0\" \"$@\"";
        return start({"/bin/sh", "-c", limit, PATTERN_VIEW_PROGRAM, ink_, "--view", "0,0,60000,2000000000", "-o",
                      (*this / "view.png").string()});
    }

    void expectNothingChanged() const {
        EXPECT_EQ(contents(*this / "view.png"), "the picture before");
        EXPECT_EQ(filesIn(folder()), 2U);
    }

private:
    std::string ink_;
};

TEST_F(PatternViewStopped, ByASignal) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const support::Process process =
            startLongView(4000000);  // limits the file if the signal fails to end the program
        for (int i = 0; i < 3000 && filesIn(folder()) < 3; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(filesIn(folder()), 3U) << "the program has not started to write";
        kill(process, signal);
        const Outcome outcome = wait(process);
        EXPECT_EQ(outcome.status, -signal);
        expectNothingChanged();
    }
}

TEST_F(PatternViewStopped, ByAFileSizeLimit) {
    const Outcome outcome = wait(startLongView(8));
    expectError(outcome, "view.png: ");
    expectNothingChanged();
}

#endif

}  // namespace
