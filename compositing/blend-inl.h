// SPDX-License-Identifier: MIT

// The vector twin of a blend, put together from the twins of its operands, compiled once for every level.
#if defined(OMNAR_COMPOSITING_BLEND_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_COMPOSITING_BLEND_INL_H_
#undef OMNAR_COMPOSITING_BLEND_INL_H_
#else
#define OMNAR_COMPOSITING_BLEND_INL_H_
#endif

#include "buffers/walk-inl.h"
#include "compositing/rows.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

// The vector twins of operands.h, for each type of destination pixel. A twin is made from its operand once a row; `at`
// gives it for the block that starts at pixel i. It keeps the row's address alone: what else it would copy of the plane
// was written just before, in other widths, and the processor would wait for that.

template <class Coverage, class Px>
class Covering;

/// `whole` says that the opacity is 255.
template <class Weight, class Px, bool whole>
class Weigh;

template <class Target, class Px>
class Aim;

template <class Destination>
struct Into;

/// What becomes of a block: blended() and blendBlock() of the pixel's type.
template <class Destination, class Aim, class Weigh>
struct BlendStep {
    Aim aim;
    Weigh weigh;

    template <class Px>
    HWY_INLINE auto at(Px* dst, size_t i, auto part) const {
        return blended<Into<Destination>>(loadBlock(dst + i, part), aim.at(i, part), weigh.at(i, part, aim));
    }
    HWY_INLINE void write(auto* dst, size_t i, auto part) const {
        blendBlock<Into<Destination>>(dst, i, part, aim, weigh);
    }
};

/// Opacity 255 is a loop of its own.
template <class Destination, class Target, class Weight>
struct Walk<Blend<Destination, Target, Weight>> {
    using Px = typename Destination::Pixel;
    using Cursor = RowCursor<Blend<Destination, Target, Weight>>;

    HWY_INLINE static void rows(Cursor at, size_t n) {
        at.operation.weight.opacity == 255 ? rows<true>(at, n) : rows<false>(at, n);
    }

private:
    template <bool whole>
    HWY_INLINE static void rows(Cursor at, size_t n) {
        using Step = BlendStep<Destination, Aim<Target, Px>, Weigh<Weight, Px, whole>>;
        const Fetching<Blend<Destination, Target, Weight>, false> fetching(at, n);
        do {
            const Step step{Aim<Target, Px>(at.operation.target), Weigh<Weight, Px, whole>(at.operation.weight)};
            walkRow(at.dst.row(), step, n, fetching);
        } while (at.next());
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
