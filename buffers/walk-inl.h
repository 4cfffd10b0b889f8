// SPDX-License-Identifier: MIT

// How a row is walked, block by block, compiled once for every level.
#if defined(OMNAR_BUFFERS_WALK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_BUFFERS_WALK_INL_H_
#undef OMNAR_BUFFERS_WALK_INL_H_
#else
#define OMNAR_BUFFERS_WALK_INL_H_
#endif

#include "buffers/blocks-inl.h"
#include "buffers/rows.h"
#include "hwy/cache_control.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Pixels before the first whose address is a multiple of a vector's size, in rows that are long enough to gain if no vector
/// of the destination straddles two cache lines. Vectors of 16 bytes are too short to gain, unless alignment is needed;
/// pixels of three bytes do not fill a vector.
template <class Px>
HWY_INLINE size_t skewOf(const Px* dst, size_t n, bool needed = false) {
    constexpr size_t vector = hn::MaxLanes(D8()) / sizeof(Px);
    if (vector * sizeof(Px) != hn::MaxLanes(D8()) || (hn::MaxLanes(D8()) == 16 && !needed)) return 0;
    return n < 8 * kBlock<Px> ? 0 : (0 - reinterpret_cast<uintptr_t>(dst) / sizeof(Px)) % vector;
}

/// True if short rows take a mask, or a copy of their pixels where those do not fill a lane.
template <class Px>
constexpr bool kMasked = sizeof(Px) == 3 || (HWY_TARGET == HWY_AVX3 && sizeof(Px) == sizeof(TRC));

/// Processes a row that is shorter than a block.
template <size_t end, class Px>
HWY_INLINE void writeShort(Px* dst, const auto& step, size_t n) {
    if constexpr (end > kLeastEnd<Px>) {
        if (n < end) return writeShort<end / 2>(dst, step, n);
    }
    step.write(dst, 0, Ends<end>{n});
}

/// Regions of at least so many bytes are fetched ahead, by so many bytes. The processor does it by itself within a page, but
/// begins anew at each page and in each of the planes: 64 MiB of samples take 10 to 20 % less time on Cascade Lake.
constexpr size_t kFetchedFrom = size_t{4} << 20;
constexpr size_t kFetchedAhead = 512;

/// Fetches what the blocks of a region will read.
template <class Operation, bool fetchesDestination>
class Fetching {
public:
    HWY_INLINE Fetching(RowCursor<Operation>& at, size_t n) : at_(at) {
        size_t bytesOfPixel = sizeof(at.dst[0]);
        at.operation.eachPlane([&](const auto& plane) { bytesOfPixel += sizeof(plane[0]); });
        pays_ = at.rowsLeft * n >= kFetchedFrom / bytesOfPixel;
    }

    /// For the block at pixel i.
    HWY_INLINE void ahead(size_t i) const {
        if (HWY_LIKELY(!pays_)) return;
        if (fetchesDestination) fetch(at_.dst, i);
        at_.operation.eachPlane([i](const auto& plane) { fetch(plane, i); });
    }

private:
    HWY_INLINE static void fetch(const auto& plane, size_t i) {
        hwy::Prefetch(plane.row() + i + kFetchedAhead / sizeof(plane[0]));
    }

    RowCursor<Operation>& at_;
    bool pays_;
};

/// For kernels whose look-ups take longer than memory.
struct NotFetching {
    HWY_INLINE static void ahead(size_t) {}
};

/// Walks a row. `step.at(dst, i, part)` gives what becomes of the block at pixel i; `step.write` stores it, too. The first
/// block of a row that is aligned and the last one overlap their neighbours, so they are computed from the old pixels
/// before those are written.
template <class Px>
HWY_INLINE void walkRow(Px* dst, const auto& step, size_t n, const auto& fetching) {
    constexpr size_t block = kBlock<Px>;
    if (n < block) {
        if constexpr (kMasked<Px>) {
            return step.write(dst, 0, First{n});
        } else {
            return writeShort<block / 2>(dst, step, n);
        }
    }
    const size_t last = n - block;
    const auto end = step.at(dst, last, All());
    constexpr bool streams = requires { step.streams; };  // around the caches, for which blocks must be aligned
    const size_t skew = skewOf(dst, n, streams);
    auto first = end;
    if (skew != 0) first = step.at(dst, 0, All());
    for (size_t i = skew; i < last; i += block) {
        fetching.ahead(i);
        step.write(dst, i, All());
    }
    if (skew != 0) storeBlock(dst, All(), first);
    storeBlock(dst + last, All(), end);
}

template <class Px>
HWY_INLINE void walkRow(Px* dst, const auto& step, size_t n) {
    walkRow(dst, step, n, NotFetching());
}

/// The vector kernel of an operation, made from it once a row: `at(dst, i, part)` gives what becomes of the block at pixel
/// i. It stores row addresses only: copying a Plane reloads fields just written with another width, which defeats store
/// forwarding.
template <class Operation>
class Twin;

/// A step that stores every block.
template <class Operation>
struct EveryBlock {
    Twin<Operation> twin;

    HWY_INLINE auto at(auto* dst, size_t i, auto part) const { return twin.at(dst, i, part); }
    HWY_INLINE void write(auto* dst, size_t i, auto part) const { storeBlock(dst + i, part, at(dst, i, part)); }
};

/// How rows of n pixels are walked by an operation. What is the same in every row is computed once. Operations that have
/// more to choose from specialise it.
template <class Operation>
struct Walk {
    HWY_INLINE static void rows(RowCursor<Operation> at, size_t n) {
        const Fetching<Operation, true> fetching(at, n);
        do walkRow(at.dst.row(), EveryBlock<Operation>{Twin<Operation>(at.operation)}, n, fetching);
        while (at.next());
    }
};

/// The vector rows of a table.
struct VectorKernel {
    template <class Operation>
    static void rows(Region region, const Plane<typename Operation::Pixel>& dst, const Operation& operation) {
        Walk<Operation>::rows({dst, operation, region.rows}, region.cols);
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
