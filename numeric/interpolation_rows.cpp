// SPDX-License-Identifier: MIT

// Searches in tables at every level. This file is compiled once for each vector level.
#include "numeric/interpolation.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "numeric/interpolation_rows.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

namespace hn = hwy::HWY_NAMESPACE;

using D = hn::ScalableTag<double>;
using V = hn::Vec<D>;

/// Entries that are looked at before the first branch.
constexpr size_t kBlock = 4 * hn::MaxLanes(D());

/// All bits where x lies between an entry and its successor.
HWY_INLINE V holds(const double* xs, V x) {
    const D d;
    const V end1 = hn::LoadU(d, xs);
    const V end2 = hn::LoadU(d, xs + 1);
    const auto rising = hn::And(hn::VecFromMask(d, hn::Le(end1, x)), hn::VecFromMask(d, hn::Le(x, end2)));
    const auto falling = hn::And(hn::VecFromMask(d, hn::Ge(end1, x)), hn::VecFromMask(d, hn::Ge(x, end2)));
    return hn::Or(rising, falling);
}

size_t segment(const double* xs, size_t count, double x) {
    const D d;
    const V wanted = hn::Set(d, x);
    size_t i = 0;
    for (; i + kBlock < count; i += kBlock) {
        V any = holds(xs + i, wanted);
        for (size_t k = hn::MaxLanes(d); k < kBlock; k += hn::MaxLanes(d)) any = hn::Or(any, holds(xs + i + k, wanted));
        if (!hn::AllFalse(d, hn::MaskFromVec(any))) break;
    }
    return findSegment(xs, count, x, i);
}

HWY_INLINE V distanceOf(const double* xs, V x) { return hn::Abs(hn::Sub(x, hn::LoadU(D(), xs))); }

/// What is no number is not below anything.
HWY_INLINE V lesser(V distance, V least) { return hn::IfThenElse(hn::Lt(distance, least), distance, least); }

/// First the least distance, then the first entry that has it.
size_t nearest(const double* xs, size_t count, double x) {
    const D d;
    constexpr size_t lanes = hn::MaxLanes(d);
    const V wanted = hn::Set(d, x);
    V leasts[4];
    for (V& v : leasts) v = hn::Set(d, DBL_MAX);
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        for (size_t k = 0; k < 4; ++k) leasts[k] = lesser(distanceOf(xs + i + k * lanes, wanted), leasts[k]);
    }
    const V least4 = lesser(lesser(leasts[0], leasts[1]), lesser(leasts[2], leasts[3]));
    double least = hn::GetLane(hn::MinOfLanes(d, least4));
    for (size_t k = i; k < count; ++k) {
        const double distance = std::fabs(x - xs[k]);
        if (distance < least) least = distance;
    }
    if (!(least < DBL_MAX)) return 0;

    const V bound = hn::Set(d, least);
    for (i = 0; i + lanes <= count; i += lanes) {
        if (!hn::AllFalse(d, hn::Eq(distanceOf(xs + i, wanted), bound))) break;
    }
    while (std::fabs(x - xs[i]) != least) ++i;
    return i;
}

extern constexpr TableSearch searchTable{segment, nearest};

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
