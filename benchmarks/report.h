// SPDX-License-Identifier: MIT
/// @file
/// Results as lines of a table, and as JSON.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "benchmarks/contest.h"

namespace bench {

/// "function|scene" and its times, in the order in which they were measured.
using Results = std::vector<std::pair<std::string, Times>>;

/// True if the widest vector level is slower than a peer or below 0.6 of the rate of the plain pass.
bool isSlow(const Times& times);

void printHeading();
void printRow(const std::string& function, const std::string& scene, const Times& times);

/// Returns false if the file cannot be written.
bool writeJson(const std::string& path, const Results& results);

}  // namespace bench
