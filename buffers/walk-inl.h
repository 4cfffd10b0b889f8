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

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Pixels before the first whose address is a multiple of a vector's size. In rows that are long enough to gain from it
/// they are processed apart, so that no vector of the destination straddles two cache lines. Pixels of three bytes do not
/// fill a vector.
template <class Px>
HWY_INLINE size_t skewOf(const Px* dst, size_t n) {
    constexpr size_t vector = hn::MaxLanes(D8()) / sizeof(Px);
    if (vector * sizeof(Px) != hn::MaxLanes(D8())) return 0;
    return n < 8 * kBlock<Px> ? 0 : (0 - reinterpret_cast<uintptr_t>(dst) / sizeof(Px)) % vector;
}

/// Processes n pixels, fewer than `vectors` vectors have.
template <size_t vectors, class Px>
HWY_INLINE void writeFew(Px* dst, const auto& step, size_t i, size_t n) {
    if constexpr (vectors > 1) {
        if (n < kBlock<Px> / kVectors * vectors / 2) return writeFew<vectors / 2>(dst, step, i, n);
    }
    step.write(dst, i, Few<vectors>{n});
}

/// Walks a row. `step.at(dst, i, part)` gives what becomes of the block at pixel i; `step.write` stores it, too. The last
/// block of a row overlaps the one before it, so it is computed from the old pixels before that one is written. Rows
/// shorter than a block and what is before the first aligned pixel are processed in one place, so that there is one copy
/// of that code.
template <class Px>
HWY_INLINE void walkRow(Px* dst, const auto& step, size_t n) {
    constexpr size_t block = kBlock<Px>;
    constexpr size_t vectors = std::is_same_v<Px, TRC> ? kVectors : 1;
#if HWY_TARGET == HWY_AVX3  // another copy, whose masks are the same for every row, is faster
    if (n < block) return writeFew<vectors>(dst, step, 0, n);
#endif
    const size_t few = n < block ? n : skewOf(dst, n);
    if (few != 0) writeFew<vectors>(dst, step, 0, few);
    if (n < block) return;

    const size_t last = n - block;
    const auto end = step.at(dst, last, All());
    for (size_t i = few; i < last; i += block) step.write(dst, i, All());
    storeBlock(dst + last, All(), end);
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
        do walkRow(at.dst.row(), EveryBlock<Operation>{Twin<Operation>(at.operation)}, n);
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
