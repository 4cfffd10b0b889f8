// How a row is walked, block by block, compiled once for every level. The families say what becomes of one block.
#if defined(OMNAR_COMPOSITING_WALK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_COMPOSITING_WALK_INL_H_
#undef OMNAR_COMPOSITING_WALK_INL_H_
#else
#define OMNAR_COMPOSITING_WALK_INL_H_
#endif

#include "compositing/blocks-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// Pixels before the first whose address is a multiple of a vector's size. In rows that are long enough to gain from it
/// they are blended apart, so that no vector of the destination straddles two cache lines.
template <class Px>
HWY_INLINE size_t skewOf(const Px* dst, size_t n) {
    constexpr size_t vector = hn::MaxLanes(D8()) / sizeof(Px);
    return n < 8 * kBlock<Px> ? 0 : (0 - reinterpret_cast<uintptr_t>(dst) / sizeof(Px)) % vector;
}

/// The last block of a row overlaps the one before it, so it is computed from the old pixels before any is written.
template <class Into, class Px>
HWY_INLINE void blendRow(Px* dst, const auto& aim, const auto& weigh, size_t n) {
    constexpr size_t block = kBlock<Px>;
    if (n < block) return blendBlock<Into>(dst, 0, First{n}, aim, weigh);

    const size_t last = n - block;
    const auto end = blended<Into>(loadBlock(dst + last, All()), aim.at(last, All()), weigh.at(last, All(), aim));
    const size_t skew = skewOf(dst, n);
    if (skew != 0) blendBlock<Into>(dst, 0, First{skew}, aim, weigh);
    for (size_t i = skew; i < last; i += block) blendBlock<Into>(dst, i, All(), aim, weigh);
    storeBlock(dst + last, All(), end);
}

/// The vector rows of a table. Opacity 255 is a kernel of its own.
struct VectorKernel {
    template <class Destination, class Target, class Weight>
    static void row(typename Destination::Pixel* dst, const Target& target, const Weight& weight, size_t n) {
        using Pixel = typename Destination::Pixel;
        const Aim<Target, Pixel> aim(target);
        if (weight.opacity == 255) {
            blendRow<Into<Destination>>(dst, aim, Weigh<Weight, Pixel, true>(weight), n);
        } else {
            blendRow<Into<Destination>>(dst, aim, Weigh<Weight, Pixel, false>(weight), n);
        }
    }
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
