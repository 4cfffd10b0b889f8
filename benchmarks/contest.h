// SPDX-License-Identifier: MIT
/// @file
/// The rows of the benchmarks. A row measures contenders that do the same work on the same data.
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
    std::function<bool()> isRight = {};      ///< checks the result before the measurement; empty: no check
    std::function<void()> reset = {};        ///< restores the data before each `work`; not timed
    std::optional<omnar::Level> level = {};  ///< the vector level of `work` and `isRight`
};

/// The name of code without vector levels.
inline constexpr const char* plainCode = "scalar";
/// The name of the pass that only reads and writes the bytes that the work reads and writes.
inline constexpr const char* plainPass = "pass";

/// The widest available vector level.
omnar::Level widestLevel();

struct Contest {
    std::size_t items;  ///< pixels, calls or points of one `work`
    std::vector<Contender> contenders;

    void add(std::vector<Contender> more);
};

/// The minima over all repetitions, in nanoseconds per item. Noise only adds time.
using Times = std::map<std::string, double>;

struct Options {
    bool quick = false;
    std::regex rows{""};
    std::string out;  ///< the JSON file of the results; empty: none
};

/// The runs that measure a row: also those with --quick, or only full ones.
enum class Runs { every, full };

class Bench {
public:
    explicit Bench(Options options) : options_(std::move(options)) {}

    /// `build` is called directly before the row is measured. Contenders own their data, so that only that of one row is in
    /// memory.
    void addRow(const std::string& function, const std::string& scene, Runs runs, std::function<Contest()> build);

    /// The contender at each measured vector level: all available ones from `narrowest` on, or only the widest.
    std::vector<Contender> atLevels(const Contender& contender, omnar::Level narrowest = omnar::Level::scalar) const;

    /// Measures the rows and returns the exit status: 0 if every function has a row and every result is right.
    int run();

private:
    struct Row {
        std::string function, scene;
        Runs runs;
        std::function<Contest()> build;
        std::string name() const { return function + "|" + scene; }
    };

    bool everyFunctionHasARow() const;
    bool isWanted(const Row& row) const;
    /// Returns false if a contender's result is wrong.
    bool measure(const Row& row, Times& times) const;

    Options options_;
    std::vector<Row> rows_;
};

}  // namespace bench
