// SPDX-License-Identifier: MIT

// This file is compiled once for each vector level.
#include "objects/run_components.h"

#include <numeric>

#include "buffers/level.h"
#include "objects/bit_runs.h"
#include "objects/union_find.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "objects/run_components.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

#ifndef OMNAR_OBJECTS_RUN_COMPONENTS_CPP_
#define OMNAR_OBJECTS_RUN_COMPONENTS_CPP_
namespace omnar {

struct ComponentKernels {
    decltype(countRuns)* count;
    decltype(joinRuns)* join;
    decltype(numberRuns)* number;
};

}  // namespace omnar
#endif

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
namespace {

int32_t count(const uint64_t* row, size_t words) { return countRuns(row, words); }

void join(const uint64_t* upper, int32_t above, const uint64_t* lower, int32_t below, size_t words, int32_t* nodes) {
    joinRuns(upper, above, lower, below, words, nodes);
}

/// Most runs take their parent's object, or are roots that begin one. Vectors with any other run go to the reference.
int32_t number(int32_t* nodes, int32_t first, int32_t end, int32_t objects) {
    namespace hn = hwy::HWY_NAMESPACE;
    const hn::CappedTag<int32_t, 16> d;
    constexpr int32_t kLanes = hn::MaxLanes(d);
    const hn::Rebind<uint8_t, decltype(d)> d8;
    int32_t run = first;
    for (; run + kLanes <= end; run += kLanes) {
        const auto parents = hn::LoadU(d, nodes + run);
        auto object = hn::GatherIndex(d, nodes, parents);
        const auto unnumbered = hn::Gt(object, hn::Set(d, -1));
        if (!hn::AllFalse(d, unnumbered)) {
            const auto roots = hn::Eq(parents, hn::Iota(d, run));  // a root has no object yet
            const size_t count = hn::CountTrue(d, roots);
            if (hn::CountTrue(d, unnumbered) != count) {
                objects = numberRuns(nodes, run, run + kLanes, objects);
                continue;
            }
            uint64_t bits = 0;
            hn::StoreMaskBits(d, roots, reinterpret_cast<uint8_t*>(&bits));
            const Ranks ranks(bits);
            const auto rank = hn::PromoteTo(d, hn::LoadU(d8, ranks.bytes()));
            object = hn::IfThenElse(roots, hn::Sub(hn::Set(d, -objects), rank), object);
            objects += static_cast<int32_t>(count);
        }
        hn::StoreU(object, d, nodes + run);
    }
    return numberRuns(nodes, run, end, objects);
}

}  // namespace
extern constexpr ComponentKernels componentTable{count, join, number};
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

constexpr ComponentKernels componentTable{countRuns, joinRuns, numberRuns};
constinit const Levels<ComponentKernels> kernels{&componentTable OMNAR_VECTOR_TABLES(componentTable)};

}  // namespace

RunComponents::RunComponents(const BitRows& bits) : firstRuns_(bits.rows() + 1), nodes_(countRows(bits) + spareRuns) {
    std::iota(nodes_.begin(), nodes_.begin() + firstRuns_[1], 0);
    const auto join = kernels.current().join;
    for (std::size_t y = 1; y < bits.rows(); ++y) {
        join(bits.row(y - 1), firstRuns_[y - 1], bits.row(y), firstRuns_[y], bits.words(), nodes_.data());
    }
}

std::size_t RunComponents::countRows(const BitRows& bits) {
    const auto count = kernels.current().count;
    std::int32_t runs = 0;
    for (std::size_t y = 0; y < bits.rows(); ++y) {
        firstRuns_[y] = runs;
        runs += count(bits.row(y), bits.words());
    }
    firstRuns_[bits.rows()] = runs;
    return static_cast<std::size_t>(runs);
}

const std::int32_t* RunComponents::number(std::size_t row, std::size_t unscanned) {
    const std::int32_t end = firstRuns_[row + 1], scannedEnd = end - static_cast<std::int32_t>(unscanned);
    objects_ = kernels.current().number(nodes_.data(), firstRuns_[row], scannedEnd, objects_);
    for (std::int32_t run = scannedEnd; run < end; ++run) resolve(run);
    return nodes_.data() + firstRuns_[row];
}

}  // namespace omnar
#endif
