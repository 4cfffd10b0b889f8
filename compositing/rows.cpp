// The kernels of rows.h at every level. This file is compiled once for each vector level and once for the scalar one.
#include "compositing/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/rows.cpp"
#include "buffers/foreach_level.h"
#include "compositing/operands-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// What becomes of one block, read before any of it is written.
template <class Into, class Part>
HWY_INLINE Pixels blended(const TRC* dst, Part part, const Pixels& target, const auto& weight) {
    Pixels pixels = loadPixels(dst, part);
    for (size_t k = 0; k < kVectors; ++k) {
        const V8 moved = weight.template step<Into>(k, pixels.v[k], target.v[k]);
        pixels.v[k] = Into::finished(k, moved, weight);
    }
    return pixels;
}

template <class Into, class Part>
HWY_INLINE void blendBlock(TRC* dst, size_t i, Part part, const auto& aim, const auto& weigh) {
    const auto weight = weigh.at(i, part, aim);
    if (weight.clear()) return;
    const Pixels target = aim.at(i, part);
    if (!weight.solid()) return storePixels(dst + i, part, blended<Into>(dst + i, part, target, weight));

    Pixels pixels = loadPixels(dst + i, part);
    for (size_t k = 0; k < kVectors; ++k) pixels.v[k] = Into::merged(pixels.v[k], target.v[k]);
    storePixels(dst + i, part, pixels);
}

/// Pixels before the first whose address is a multiple of a vector's size. In rows that are long enough to gain from it
/// they are blended apart, so that no vector of the destination straddles two cache lines.
HWY_INLINE size_t skewOf(const TRC* dst, size_t n) {
    constexpr size_t vector = hn::MaxLanes(D32());
    return n < 8 * kBlock ? 0 : (0 - reinterpret_cast<uintptr_t>(dst) / sizeof(TRC)) % vector;
}

/// The last block of a row overlaps the one before it, so it is computed from the old pixels before any is written.
template <class Into>
HWY_INLINE void blendRow(TRC* dst, const auto& aim, const auto& weigh, size_t n) {
    if (n < kBlock) return blendBlock<Into>(dst, 0, First{n}, aim, weigh);

    const size_t last = n - kBlock;
    const Pixels end = blended<Into>(dst + last, All(), aim.at(last, All()), weigh.at(last, All(), aim));
    const size_t skew = skewOf(dst, n);
    if (skew != 0) blendBlock<Into>(dst, 0, First{skew}, aim, weigh);
    for (size_t i = skew; i < last; i += kBlock) blendBlock<Into>(dst, i, All(), aim, weigh);
    storePixels(dst + last, All(), end);
}

struct VectorKernel {
    template <class Destination, class Target, class Weight>
    static void row(TRC* dst, const Target& target, const Weight& weight, size_t n) {
        const Aim<Target> aim(target);
        if (weight.opacity == 255) {
            blendRow<Into<Destination>>(dst, aim, Weigh<Weight, true>(weight), n);
        } else {
            blendRow<Into<Destination>>(dst, aim, Weigh<Weight, false>(weight), n);
        }
    }
};

extern constexpr TrueColourRows trueColourTable = filledBy<VectorKernel>(TrueColourRows{});

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr TrueColourRows trueColourTable = filledBy<ScalarKernel>(TrueColourRows{});
constinit const Levels<TrueColourRows> trueColourRows{&trueColourTable OMNAR_VECTOR_TABLES(trueColourTable)};

}  // namespace omnar
#endif
