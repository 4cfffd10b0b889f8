// SPDX-License-Identifier: MIT
/// @file
/// The command line of pattern_view.
#pragma once

#include <OmnarPattern.h>

#include <optional>
#include <string>
#include <vector>

namespace example {

/// One INK of the command line.
struct InkOption {
    std::string file;
    TRC color = 0x000000;
    unsigned char opacity = 255;
};

/// The options of a call. Options that are not set follow from the inks.
struct Options {
    std::vector<InkOption> inks;
    omnar::pattern::Layout layout = omnar::pattern::Layout::halfDrop;
    std::optional<unsigned int> drop;
    std::optional<omnar::pattern::Rectangle> visible;
    double zoom = 1.0;
    TRC paper = 0xFFFFFF;
    unsigned int threads = 0;  ///< 0: one for each processor
    std::string output;
    bool help = false;  ///< print `usage` and ignore the other options
};

extern const char* const usage;

/// Parses the arguments after the program name. Throws a Failure that names an invalid argument.
Options readOptions(const std::vector<std::string>& arguments);

}  // namespace example
