// SPDX-License-Identifier: MIT
#include "benchmarks/contest.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>

#include "benchmarks/report.h"

namespace bench {
namespace {

/// Functions that hosts call at most once.
constexpr const char* unmeasured[] = {"SetHostServices",      "SetContractHandler",     "InitFeatureTables",
                                      "ReleaseFeatureTables", "ReportEscapedException", "IsMMX"};

/// The names of the exported functions.
std::set<std::string> exportedFunctions() {
    std::ifstream file(OMNAR_EXPORTS);
    std::set<std::string> functions;
    for (std::string line; std::getline(file, line);) {
        std::smatch symbol;
        if (!std::regex_search(line, symbol, std::regex("^ +_Z([0-9]+)([A-Za-z0-9_]+) @"))) continue;
        functions.insert(symbol.str(2).substr(0, std::stoul(symbol.str(1))));
    }
    return functions;
}

/// Collects the minima of one row.
class Minima final : public benchmark::BenchmarkReporter {
public:
    explicit Minima(Times& times) : times_(times) {}
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            const double time = run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
            const auto [best, isNew] = times_.try_emplace(run.run_name.function_name, time);
            if (!isNew) best->second = std::min(best->second, time);
        }
    }

private:
    Times& times_;
};

void runRepeatedly(benchmark::State& state, const Contender& contender) {
    if (contender.level) omnar::useLevel(*contender.level);
    for (auto _ : state) {
        if (contender.reset) {
            state.PauseTiming();
            contender.reset();
            state.ResumeTiming();
        }
        contender.work();
    }
}

}  // namespace

omnar::Level widestLevel() {
    omnar::Level widest = omnar::Level::scalar;
    for (const omnar::Level level : omnar::allLevels) {
        if (omnar::available(level)) widest = level;
    }
    return widest;
}

void Contest::add(std::vector<Contender> more) {
    contenders.insert(contenders.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

void Bench::addRow(const std::string& function, const std::string& scene, Runs runs, std::function<Contest()> build) {
    rows_.push_back({function, scene, runs, std::move(build)});
}

std::vector<Contender> Bench::atLevels(const Contender& contender, omnar::Level narrowest) const {
    std::vector<Contender> all;
    for (const omnar::Level level : omnar::allLevels) {
        if (level < narrowest || !omnar::available(level)) continue;
        if (options_.quick) all.clear();
        all.push_back(contender);
        all.back().name = omnar::name(level);
        all.back().level = level;
    }
    return all;
}

bool Bench::everyFunctionHasARow() const {
    std::set<std::string> missing = exportedFunctions();
    bool good = !missing.empty();
    for (const char* function : unmeasured) good &= missing.erase(function) == 1;
    for (const Row& row : rows_) {
        // The name of a row is that of the function, followed by a variant, a type or a size.
        missing.erase(row.function.substr(0, row.function.find_first_of("_< ")));
    }
    for (const std::string& function : missing) std::fprintf(stderr, "no row: %s\n", function.c_str());
    return good && missing.empty();
}

bool Bench::isWanted(const Row& row) const {
    return (row.runs == Runs::every || !options_.quick) && std::regex_search(row.name(), options_.rows);
}

bool Bench::measure(const Row& row, Times& times) const {
    bool good = true;
    const Contest contest = row.build();
    for (const Contender& contender : contest.contenders) {
        if (contender.level) omnar::useLevel(*contender.level);
        if (contender.isRight && !contender.isRight()) {
            std::fprintf(stderr, "wrong: %s by %s\n", row.name().c_str(), contender.name.c_str());
            good = false;
            continue;
        }
        benchmark::RegisterBenchmark(contender.name.c_str(),
                                     [&](benchmark::State& state) { runRepeatedly(state, contender); });
    }
    Minima minima(times);
    benchmark::RunSpecifiedBenchmarks(&minima, ".");
    benchmark::ClearRegisteredBenchmarks();
    for (auto& [contender, time] : times) time /= static_cast<double>(contest.items);
    return good;
}

int Bench::run() {
    bool good = everyFunctionHasARow();
    Results results;
    std::size_t slowRows = 0;
    printHeading();
    for (const Row& row : rows_) {
        if (!isWanted(row)) continue;
        Times times;
        good &= measure(row, times);
        slowRows += isSlow(times);
        if (!options_.quick || isSlow(times)) printRow(row.function, row.scene, times);
        results.emplace_back(row.name(), std::move(times));
    }
    std::printf("%zu of %zu rows are slower than a peer or below 0.6 of the pass\n", slowRows, results.size());
    if (!options_.out.empty()) good &= writeJson(options_.out, results);
    return good && !results.empty() ? 0 : 1;
}

}  // namespace bench
