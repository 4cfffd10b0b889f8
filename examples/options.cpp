// SPDX-License-Identifier: MIT
#include "options.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "failure.h"

namespace example {

const char* const usage =
    R"(Draws a view of a repeating pattern into a PNG file.

usage: pattern_view [options] INK.png ... -o VIEW.png

  INK.png                    one ink of the repeat, any PNG, read as grey: dark is ink, transparent is none;
                             all inks are of one size and are printed in the order given
  --color RRGGBB[@OPACITY]   colour and opacity, 0 to 255, of the next INK (000000@255)
  --layout LAYOUT            straight, half-drop or brick (half-drop)
  --drop N                   how far each column of repeats, in brick each row, is offset against the one before,
                             in file pixels; straight has none (half the repeat's height, in brick half its width)
  --view X,Y,W,H             visible rectangle in view pixels; X and Y may be negative (three repeats each way from 0,0)
  --zoom Z                   view pixels per file pixel (1)
  --paper RRGGBB             colour of the ground (ffffff)
  --threads N                threads that draw (one for each processor)
  -o VIEW.png                the picture
  --help                     this text
)";

namespace {

/// An option together with its value, as the user wrote them.
struct Argument {
    std::string option;
    std::string value;

    [[noreturn]] void reject(const std::string& reason) const { throw Failure(option + " " + value + ": " + reason); }
};

/// The whole of `text` as a number, or nothing.
template <class Number, class... Base>
std::optional<Number> parse(std::string_view text, Base... base) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base...);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

std::int64_t readWhole(const Argument& argument, std::string_view text, const std::string& what, std::int64_t least,
                       std::int64_t most) {
    const auto number = parse<std::int64_t>(text);
    if (!number || *number < least || *number > most) {
        argument.reject(what + " must be a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return *number;
}

TRC readColor(const Argument& argument, std::string_view digits) {
    const auto color = parse<TRC>(digits, 16);
    if (!color || digits.size() != 6) argument.reject("a colour is written as six hexadecimal digits RRGGBB");
    return *color;
}

InkOption readInkOption(const Argument& argument) {
    const std::string_view text = argument.value;
    const std::size_t at = text.find('@');
    InkOption ink;
    ink.color = readColor(argument, text.substr(0, at));
    if (at != std::string_view::npos) {
        ink.opacity = static_cast<unsigned char>(readWhole(argument, text.substr(at + 1), "the opacity", 0, 255));
    }
    return ink;
}

Layout readLayout(const Argument& argument) {
    if (argument.value == "straight") return Layout::straight;
    if (argument.value == "half-drop") return Layout::halfDrop;
    if (argument.value == "brick") return Layout::brick;
    argument.reject("the layouts are straight, half-drop and brick");
}

Rectangle readRectangle(const Argument& argument) {
    std::vector<std::string_view> parts;
    for (std::string_view rest = argument.value;;) {
        const std::size_t comma = rest.find(',');
        parts.push_back(rest.substr(0, comma));
        if (comma == std::string_view::npos) break;
        rest.remove_prefix(comma + 1);
    }
    if (parts.size() != 4) argument.reject("a rectangle is written as X,Y,W,H");
    return {.x = static_cast<int>(readWhole(argument, parts[0], "X", INT32_MIN, INT32_MAX)),
            .y = static_cast<int>(readWhole(argument, parts[1], "Y", INT32_MIN, INT32_MAX)),
            .width = static_cast<unsigned int>(readWhole(argument, parts[2], "W", 1, INT32_MAX)),
            .height = static_cast<unsigned int>(readWhole(argument, parts[3], "H", 1, INT32_MAX))};
}

double readZoom(const Argument& argument) {
    const auto zoom = parse<double>(argument.value);
    if (!zoom || !std::isfinite(*zoom) || *zoom <= 0.0) argument.reject("the zoom must be a number above 0");
    return *zoom;
}

/// What has been read so far.
struct Reading {
    Options options;
    std::optional<InkOption> next;  ///< the colour that waits for its ink
};

void takeColor(const Argument& argument, Reading& reading) {
    if (reading.next) argument.reject("the colour before it has no INK");
    reading.next = readInkOption(argument);
}

struct KnownOption {
    std::string_view name;
    void (*take)(const Argument&, Reading&);
};

constexpr KnownOption knownOptions[] = {
    {"--color", takeColor},
    {"--layout", [](const Argument& argument, Reading& to) { to.options.layout = readLayout(argument); }},
    {"--drop",
     [](const Argument& argument, Reading& to) {
         to.options.drop = static_cast<unsigned int>(readWhole(argument, argument.value, "the drop", 0, INT32_MAX));
     }},
    {"--view", [](const Argument& argument, Reading& to) { to.options.visible = readRectangle(argument); }},
    {"--zoom", [](const Argument& argument, Reading& to) { to.options.zoom = readZoom(argument); }},
    {"--paper", [](const Argument& argument, Reading& to) { to.options.paper = readColor(argument, argument.value); }},
    {"--threads",
     [](const Argument& argument, Reading& to) {
         to.options.threads =
             static_cast<unsigned int>(readWhole(argument, argument.value, "the number of threads", 1, 1024));
     }},
    {"-o", [](const Argument& argument, Reading& to) { to.options.target = argument.value; }},
};

const KnownOption& findOption(std::string_view name) {
    for (const KnownOption& known : knownOptions) {
        if (known.name == name) return known;
    }
    throw Failure(std::string(name) + ": unknown option (--help lists them)");
}

void takeInk(const std::string& file, Reading& reading) {
    InkOption ink = reading.next.value_or(InkOption{});
    ink.file = file;
    reading.options.inks.push_back(ink);
    reading.next.reset();
}

}  // namespace

Options readOptions(const std::vector<std::string>& arguments) {
    Reading reading;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--help") {
            reading.options.help = true;
            return reading.options;
        }
        if (!argument->starts_with('-')) {
            takeInk(*argument, reading);
            continue;
        }
        const KnownOption& option = findOption(*argument);
        if (++argument == arguments.end()) throw Failure(std::string(option.name) + ": its value is missing");
        option.take({std::string(option.name), *argument}, reading);
    }
    if (reading.next) throw Failure("the last --color has no INK");
    if (reading.options.inks.empty()) throw Failure("there is no INK.png to draw (--help shows how)");
    if (reading.options.target.empty()) throw Failure("-o VIEW.png is missing (--help shows how)");
    return reading.options;
}

}  // namespace example
