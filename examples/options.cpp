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
  --paper RRGGBB             colour of the paper (ffffff)
  --threads N                threads that draw (one for each processor)
  -o VIEW.png                the picture
  --help                     this text
)";

namespace {

using omnar::pattern::Layout;
using omnar::pattern::Rectangle;

/// An option and its value on the command line.
struct Argument {
    std::string option;
    std::string value;

    [[noreturn]] void reject(const std::string& reason) const { throw Failure(option + " " + value + ": " + reason); }
};

/// Parses all of `text` as a number.
template <class Number, class... Base>
std::optional<Number> parse(std::string_view text, Base... base) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base...);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

std::int64_t readInteger(const Argument& argument, std::string_view text, const std::string& name, std::int64_t min,
                         std::int64_t max) {
    const auto number = parse<std::int64_t>(text);
    if (!number || *number < min || *number > max) {
        argument.reject(name + " must be a whole number from " + std::to_string(min) + " to " + std::to_string(max));
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
    const std::size_t separator = text.find('@');
    InkOption ink;
    ink.color = readColor(argument, text.substr(0, separator));
    if (separator != std::string_view::npos) {
        ink.opacity =
            static_cast<unsigned char>(readInteger(argument, text.substr(separator + 1), "the opacity", 0, 255));
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
    return {.x = static_cast<int>(readInteger(argument, parts[0], "X", INT32_MIN, INT32_MAX)),
            .y = static_cast<int>(readInteger(argument, parts[1], "Y", INT32_MIN, INT32_MAX)),
            .width = static_cast<unsigned int>(readInteger(argument, parts[2], "W", 1, INT32_MAX)),
            .height = static_cast<unsigned int>(readInteger(argument, parts[3], "H", 1, INT32_MAX))};
}

double readZoom(const Argument& argument) {
    const auto zoom = parse<double>(argument.value);
    if (!zoom || !std::isfinite(*zoom) || *zoom <= 0.0) argument.reject("the zoom must be a number above 0");
    return *zoom;
}

struct Parser {
    Options options;
    std::optional<InkOption> nextInk;  ///< colour and opacity of the next INK, if given
};

void readNextInk(const Argument& argument, Parser& parser) {
    if (parser.nextInk) argument.reject("the colour before it has no INK");
    parser.nextInk = readInkOption(argument);
}

struct KnownOption {
    std::string_view name;
    void (*read)(const Argument&, Parser&);
};

constexpr KnownOption knownOptions[] = {
    {"--color", readNextInk},
    {"--layout", [](const Argument& argument, Parser& parser) { parser.options.layout = readLayout(argument); }},
    {"--drop",
     [](const Argument& argument, Parser& parser) {
         parser.options.drop =
             static_cast<unsigned int>(readInteger(argument, argument.value, "the drop", 0, INT32_MAX));
     }},
    {"--view", [](const Argument& argument, Parser& parser) { parser.options.visible = readRectangle(argument); }},
    {"--zoom", [](const Argument& argument, Parser& parser) { parser.options.zoom = readZoom(argument); }},
    {"--paper",
     [](const Argument& argument, Parser& parser) { parser.options.paper = readColor(argument, argument.value); }},
    {"--threads",
     [](const Argument& argument, Parser& parser) {
         parser.options.threads =
             static_cast<unsigned int>(readInteger(argument, argument.value, "the number of threads", 1, 1024));
     }},
    {"-o", [](const Argument& argument, Parser& parser) { parser.options.output = argument.value; }},
};

const KnownOption& findOption(std::string_view name) {
    for (const KnownOption& known : knownOptions) {
        if (known.name == name) return known;
    }
    throw Failure(std::string(name) + ": unknown option (--help lists them)");
}

void addInk(const std::string& file, Parser& parser) {
    InkOption ink = parser.nextInk.value_or(InkOption{});
    ink.file = file;
    parser.options.inks.push_back(ink);
    parser.nextInk.reset();
}

}  // namespace

Options readOptions(const std::vector<std::string>& arguments) {
    Parser parser;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--help") {
            parser.options.help = true;
            return parser.options;
        }
        if (!argument->starts_with('-')) {
            addInk(*argument, parser);
            continue;
        }
        const KnownOption& option = findOption(*argument);
        if (++argument == arguments.end()) throw Failure(std::string(option.name) + ": its value is missing");
        option.read({std::string(option.name), *argument}, parser);
    }
    if (parser.nextInk) throw Failure("the last --color has no INK");
    if (parser.options.inks.empty()) throw Failure("there is no INK.png to draw (--help shows how)");
    if (parser.options.output.empty()) throw Failure("-o VIEW.png is missing (--help shows how)");
    return parser.options;
}

}  // namespace example
