// SPDX-License-Identifier: MIT
/// @file
/// Prints what was measured as one table: a line for each member and scene, a column for each contender.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Benchmarks are named "row|scene|contender". The best of all repetitions counts: noise only ever adds time.
class Report final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    using Nanoseconds = std::map<std::string, double>;
    std::vector<std::string> order_;
    std::map<std::string, Nanoseconds> rows_;
};

}  // namespace bench
