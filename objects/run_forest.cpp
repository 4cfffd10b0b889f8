// SPDX-License-Identifier: MIT

// Joining the runs of rows. What does so is compiled once for each vector level.
#include "objects/run_forest.h"

#include <numeric>

#include "buffers/level.h"
#include "objects/run_joining.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "objects/run_forest.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
namespace {

int32_t count(const uint64_t* row, size_t words) { return countRuns(row, words); }

void join(const uint64_t* upper, int32_t above, const uint64_t* lower, int32_t below, size_t words, int32_t* nodes) {
    joinRuns(upper, above, lower, below, words, nodes);
}

}  // namespace
extern constexpr JoiningRows joiningTable{count, join};
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

constexpr JoiningRows joiningTable{countRuns, joinRuns};
constinit const Levels<JoiningRows> joiningRows{&joiningTable OMNAR_VECTOR_TABLES(joiningTable)};

}  // namespace

RunForest::RunForest(const BitRows& bits) : firstRuns_(bits.rows() + 1), nodes_(countRows(bits)) {
    std::iota(nodes_.begin(), nodes_.begin() + firstRuns_[1], 0);
    const auto join = joiningRows.current().join;
    for (std::size_t y = 1; y < bits.rows(); ++y) {
        join(bits.row(y - 1), firstRuns_[y - 1], bits.row(y), firstRuns_[y], bits.words(), nodes_.data());
    }
    numberObjects(bits);
}

std::size_t RunForest::countRows(const BitRows& bits) {
    const auto count = joiningRows.current().count;
    std::int32_t runs = 0;
    for (std::size_t y = 0; y < bits.rows(); ++y) {
        firstRuns_[y] = runs;
        runs += count(bits.row(y), bits.words());
    }
    firstRuns_[bits.rows()] = runs;
    return static_cast<std::size_t>(runs);
}

void RunForest::numberObjects(const BitRows& bits) {
    for (std::size_t y = 0; y < bits.rows(); ++y) {
        const bool isLast = y == bits.rows() - 1;
        const std::int32_t end = firstRuns_[y + 1];
        const std::int32_t scannedEnd = isLast ? firstRuns_[y] : end - (bits.lastIsAlone(y) ? 1 : 0);
        for (std::int32_t run = firstRuns_[y]; run < end; ++run) {
            std::int32_t& node = nodes_[static_cast<std::size_t>(run)];
            // Every run before this one is at most one step away from its root by now, so this one is two at most.
            node = ends(ends(node));
            if (node >= 0 && run < scannedEnd) {
                nodes_[static_cast<std::size_t>(node)] = ~objects_;
                node = ~objects_++;
            }
        }
    }
}

}  // namespace omnar
#endif
