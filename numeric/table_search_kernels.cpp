// SPDX-License-Identifier: MIT

// Searches in tables. This file is compiled once for each vector level.
#include "numeric/table_search.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "numeric/table_search_kernels.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

namespace hn = hwy::HWY_NAMESPACE;

using D = hn::ScalableTag<double>;
using V = hn::Vec<D>;

/// Entries per branch.
constexpr size_t kBlock = 8 * hn::MaxLanes(D());

/// The segments of a block join its first entry to the entry after its last without a gap. One of them holds x if and
/// only if x lies between the least and the greatest of these entries.
size_t vectorFindSegment(const double* xs, size_t count, double x) {
    const D d;
    constexpr size_t lanes = hn::MaxLanes(d);
    const V query = hn::Set(d, x);
    size_t i = 0;
    for (; i + kBlock < count; i += kBlock) {
        V least = hn::LoadU(d, xs + i + kBlock - lanes + 1);
        V greatest = least;
        for (size_t k = 0; k < kBlock; k += lanes) {
            const V entries = hn::LoadU(d, xs + i + k);
            least = hn::Min(least, entries);
            greatest = hn::Max(greatest, entries);
        }
        if (!hn::AllFalse(d, hn::Le(least, query)) && !hn::AllFalse(d, hn::Ge(greatest, query))) break;
    }
    return findSegment(xs, count, x, i);
}

HWY_INLINE V distanceOf(const double* xs, V x) { return hn::Abs(hn::Sub(x, hn::LoadU(D(), xs))); }

/// Finds the least distance, then the first entry at this distance. If x is infinite or NaN, so is every distance, and
/// the result is 0.
size_t vectorFindNearest(const double* xs, size_t count, double x) {
    if (!(std::fabs(x) <= DBL_MAX)) return 0;
    const D d;
    constexpr size_t lanes = hn::MaxLanes(d);
    const V query = hn::Set(d, x);
    V least0 = hn::Set(d, DBL_MAX), least1 = least0;
    size_t i = 0;
    for (; i + 2 * lanes <= count; i += 2 * lanes) {
        least0 = hn::Min(least0, distanceOf(xs + i, query));
        least1 = hn::Min(least1, distanceOf(xs + i + lanes, query));
    }
    double least = hn::GetLane(hn::MinOfLanes(d, hn::Min(least0, least1)));
    for (; i < count; ++i) least = std::fmin(least, std::fabs(x - xs[i]));
    if (!(least < DBL_MAX)) return 0;

    const V bound = hn::Set(d, least);
    for (i = 0; i + kBlock <= count; i += kBlock) {
        auto found = hn::Eq(distanceOf(xs + i, query), bound);
        for (size_t k = lanes; k < kBlock; k += lanes) {
            found = hn::Or(found, hn::Eq(distanceOf(xs + i + k, query), bound));
        }
        if (!hn::AllFalse(d, found)) break;
    }
    while (std::fabs(x - xs[i]) != least) ++i;
    return i;
}

extern constexpr TableSearch searchTable{vectorFindSegment, vectorFindNearest};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr TableSearch searchTable{
    [](const double* xs, std::size_t count, double x) { return findSegment(xs, count, x); }, findNearest};
constinit const Levels<TableSearch> tableSearch{&searchTable OMNAR_VECTOR_TABLES(searchTable)};

}  // namespace omnar
#endif
