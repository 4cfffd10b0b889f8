// SPDX-License-Identifier: MIT
/// @file
/// The command line of pattern_view.
#pragma once

#include <OmnarRaster.h>

#include <optional>
#include <string>
#include <vector>

#include "view.h"

namespace example {

/// One INK of the command line.
struct InkOption {
    std::string file;
    TRC color = 0x000000;
    unsigned char opacity = 255;
};

/// How the tiles of the pattern lie.
enum class Layout { straight, halfDrop, brick };

/// What was asked for. What is not set follows from the inks.
struct Options {
    std::vector<InkOption> inks;
    Layout layout = Layout::halfDrop;
    std::optional<unsigned int> drop;
    std::optional<Rectangle> visible;
    double zoom = 1.0;
    TRC paper = 0xFFFFFF;
    unsigned int threads = 0;  ///< 0: one for each processor
    std::string target;
    bool help = false;  ///< the user wants `usage`, and nothing else here counts
};

extern const char* const usage;

/// Reads the arguments behind the program's name; throws a Failure that says which of them makes no sense.
Options readOptions(const std::vector<std::string>& arguments);

}  // namespace example
