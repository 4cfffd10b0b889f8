// SPDX-License-Identifier: MIT
#include "benchmarks/report.h"

#include <algorithm>
#include <cstdio>

#include "buffers/level.h"

namespace bench {
namespace {

constexpr int nameWidth = 44;
// std: the standard library; plain: a simple loop, where no library does the work.
constexpr const char* peers[] = {"pixman", "OpenCV", "std", "plain"};

void cell(const std::map<std::string, double>& row, const std::string& contender) {
    const auto found = row.find(contender);
    found == row.end() ? std::printf("%9s", "-") : std::printf("%9.3f", found->second);
}

}  // namespace

bool Report::ReportContext(const Context&) { return true; }

void Report::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
        const std::string& name = run.run_name.function_name;
        const auto bar = name.rfind('|');
        const std::string row = name.substr(0, bar);
        if (rows_.find(row) == rows_.end()) order_.push_back(row);
        const double time = 1e9 / run.counters.at("items_per_second").value;
        const auto [best, isNew] = rows_[row].try_emplace(name.substr(bar + 1), time);
        if (!isNew) best->second = std::min(best->second, time);
    }
}

void Report::Finalize() {
    std::printf(
        "\nns a pixel (a call for positions, a point for contours); memcpy: as many bytes as read and written\n");
    std::printf("%-*s %-13s", nameWidth, "", "");
    for (const auto level : omnar::allLevels) std::printf("%9s", name(level));
    for (const char* peer : peers) std::printf("%9s", peer);
    std::printf("%9s%9s%12s\n", "memcpy", "x peer", "of memcpy");
    std::sort(order_.begin(), order_.end());
    for (const std::string& key : order_) {
        const Nanoseconds& row = rows_.at(key);
        const auto bar = key.find('|');
        std::printf("%-*s %-13s", nameWidth, key.substr(0, bar).c_str(), key.substr(bar + 1).c_str());
        double ours = 1e300;
        for (const auto level : omnar::allLevels) {
            cell(row, name(level));
            if (const auto found = row.find(name(level)); found != row.end()) ours = std::min(ours, found->second);
        }
        double best = 1e300;  // of the peers
        for (const char* peer : peers) {
            cell(row, peer);
            if (const auto found = row.find(peer); found != row.end()) best = std::min(best, found->second);
        }
        cell(row, "memcpy");
        best == 1e300 ? std::printf("%9s", "-") : std::printf("%9.2f", best / ours);
        const auto copy = row.find("memcpy");
        copy == row.end() ? std::printf("%12s", "-") : std::printf("%12.2f", copy->second / ours);
        std::printf("\n");
    }
}

}  // namespace bench
