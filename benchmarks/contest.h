// SPDX-License-Identifier: MIT
/// @file
/// The rows of the benchmark: contenders that do the same work on the same data, measured side by side.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "buffers/level.h"

namespace bench {

struct Contender {
    std::string name;
    std::function<void()> work;
    std::function<bool()> isRight = {};      ///< checks the result before anything is timed; empty: nothing to check
    std::function<void()> reset = {};        ///< restores the data before each `work`, untimed
    std::optional<omnar::Level> level = {};  ///< the vector level of `work` and `isRight`
};

/// The same work by the plain code that has no levels.
inline constexpr const char* plainCode = "scalar";
/// A read and a write of each byte that the work reads and writes, and nothing else.
inline constexpr const char* plainPass = "pass";

/// The widest level that this processor can run.
omnar::Level widestLevel();

struct Contest {
    std::size_t items;  ///< pixels, calls or points of one `work`
    std::vector<Contender> contenders;

    void add(std::vector<Contender> more);
};

/// Minima over all repetitions, in nanoseconds an item, since noise only ever adds time.
using Times = std::map<std::string, double>;

struct Options {
    bool quick = false;
    std::regex rows{""};
    std::string out;  ///< the file for the results in JSON; empty: none
};

/// Where a row is measured.
enum class In { everyRun, fullRun };

class Bench {
public:
    explicit Bench(Options options) : options_(std::move(options)) {}

    /// `build` is called when it is the row's turn. The contenders own what they work on, so that only one row's data is
    /// in memory.
    void row(const std::string& function, const std::string& scene, In in, std::function<Contest()> build);

    /// The contender at each level that is measured: all available ones from `narrowest` on, or only the widest.
    std::vector<Contender> atLevels(const Contender& contender, omnar::Level narrowest = omnar::Level::scalar) const;

    /// Measures the rows and returns the exit status: 0 if every function has a row and every result is right.
    int run();

private:
    struct Row {
        std::string function, scene;
        In in;
        std::function<Contest()> build;
        std::string name() const { return function + "|" + scene; }
    };

    bool everyFunctionHasARow() const;
    bool isWanted(const Row& row) const;
    /// False if a contender's result is wrong.
    bool measure(const Row& row, Times& times) const;

    Options options_;
    std::vector<Row> rows_;
};

}  // namespace bench
