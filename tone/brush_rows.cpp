// SPDX-License-Identifier: MIT

// The vector kernels of brush.h. This file is compiled once per vector level.
#include "tone/brush.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/brush_rows.cpp"
#include "buffers/foreach_level.h"
#include "buffers/value_set-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

using B16 = hn::Full128<uint8_t>;  ///< one table look-up moves any byte to any place

/// For each byte, the number of ones up to it. All bytes are 0 or 1.
HWY_INLINE hn::Vec<B16> sumsUpToEach(hn::Vec<B16> ones) {
    const B16 d;
    auto sums = hn::Add(ones, hn::ShiftLeftBytes<1>(d, ones));
    sums = hn::Add(sums, hn::ShiftLeftBytes<2>(d, sums));
    sums = hn::Add(sums, hn::ShiftLeftBytes<4>(d, sums));
    return hn::Add(sums, hn::ShiftLeftBytes<8>(d, sums));
}

/// Two passes. The first marks in `taken` the pixels that advance the position and counts them, so that no coverage is
/// read that no pixel gets. The second looks up each pixel's coverage by the number of marked pixels before it.
size_t spread(const L08* values, size_t n, AlphaStretch alpha, const ValueSet& protectedValues, L08* reached,
              L08* taken) {
    const hn::ScalableTag<uint8_t> d;
    constexpr size_t vector = hn::MaxLanes(d);
    const VectorSet<hn::ScalableTag<uint8_t>> isProtected(protectedValues);
    const hn::Repartition<uint64_t, decltype(d)> d64;
    auto sums = hn::Zero(d64);
    size_t i = 0;
    for (; i + vector <= n; i += vector) {
        const auto free = hn::AndNot(isProtected.contains(hn::LoadU(d, values + i)), hn::Set(d, 1));
        hn::StoreU(free, d, taken + i);
        sums = hn::Add(sums, hn::SumsOf8(free));
    }
    size_t users = hn::GetLane(hn::SumOfLanes(d64, sums));
    for (; i < n; ++i) {
        taken[i] = protectedValues.contains(values[i]) ? 0 : 1;
        users += taken[i];
    }

    // The last pixel, if it is protected, gets the coverage after that of the last marked pixel. Zeros follow, as past
    // the plane's end.
    const B16 d16;
    L08 read[spreadBlock + 16];
    const size_t count = HWY_MIN(alpha.left, users + 1 - taken[n - 1]);
    std::memcpy(read, alpha.row, count);
    std::memset(read + count, 0, n + 16 - count);

    // Pixels past n are not marked. Full vectors are stored up to the next multiple of 16.
    const size_t end = (n + 15) / 16 * 16;
    std::memset(taken + n, 0, end - n);
    size_t used = 0;
    for (i = 0; i < end; i += 16) {
        const auto free = hn::LoadU(d16, taken + i);
        const auto upTo = sumsUpToEach(free);
        const auto own = hn::TableLookupBytes(hn::LoadU(d16, read + used), hn::Sub(upTo, free));
        hn::StoreU(own, d16, reached + i);
        hn::StoreU(hn::And(own, hn::Sub(hn::Zero(d16), free)), d16, taken + i);
        used += hn::ExtractLane(upTo, 15);
    }
    return users;
}

/// Stamps as many destination pixels as D has 16-bit lanes. Each lane holds the pixel's two samples, the deciding one
/// in its low byte.
template <class D>
class Stamp {
public:
    static constexpr size_t kPixels = hn::MaxLanes(D());

    HWY_INLINE Stamp(unsigned opacity, const ValueSet& protectedValues)
        : opacity_(hn::Set(D(), static_cast<uint16_t>(opacity))), isProtected_(protectedValues) {}

    HWY_INLINE void block(L08* dst, L08* src, const L08* alpha) const {
        const D d;
        const DHalf pixels;
        const DBytes samples;
        const auto pairs = hn::LoadU(samples, src);
        const auto ink = hn::And(hn::BitCast(d, pairs), hn::Set(d, 0x00FF));
        const auto coverage = hn::PromoteTo(d, hn::LoadU(pixels, alpha));
        const auto weight = hn::ShiftRight<7>(hn::MulHigh(hn::Mul(coverage, opacity_), hn::Set(d, 0x8081)));  // / 255
        const auto product = hn::Mul(ink, weight);
        const auto leavesInk = hn::Eq(hn::Max(product, hn::Set(d, 255)), product);
        const auto full = hn::IfThenElseZero(leavesInk, hn::Set(d, 255));
        const hn::RebindToSigned<D> dSigned;
        const auto fullBytes = hn::DemoteTo(pixels, hn::BitCast(dSigned, full));
        hn::StoreU(hn::Or(hn::LoadU(pixels, dst), fullBytes), pixels, dst);

        const auto deciding = hn::BitCast(samples, hn::Set(d, 0x00FF));
        hn::StoreU(hn::And(pairs, hn::Or(deciding, isProtected_.contains(pairs))), samples, src);
    }

private:
    using DHalf = hn::Rebind<uint8_t, D>;
    using DBytes = hn::Repartition<uint8_t, D>;

    hn::Vec<D> opacity_;
    VectorSet<DBytes> isProtected_;
};

/// Stamps full blocks of pixels from `first` on. Returns where they end.
template <class D>
HWY_INLINE size_t stampBlocks(L08* dst, L08* src, const L08* alpha, size_t first, size_t n, unsigned opacity,
                              const ValueSet& protectedValues) {
    const Stamp<D> stamp(opacity, protectedValues);
    for (; first + stamp.kPixels <= n; first += stamp.kPixels) {
        stamp.block(dst + first, src + 2 * first, alpha + first);
    }
    return first;
}

/// Stamping a pixel twice equals stamping it once, so that the last block may overlap the one before it.
void stamp(L08* dst, L08* src, const L08* alpha, size_t n, unsigned opacity, const ValueSet& protectedValues) {
    using Narrow = hn::Full128<uint16_t>;
    constexpr size_t lanes = hn::MaxLanes(Narrow());
    if (n < lanes) return stampRow(dst, src, alpha, n, opacity, protectedValues);
    size_t done = stampBlocks<hn::ScalableTag<uint16_t>>(dst, src, alpha, 0, n, opacity, protectedValues);
    done = stampBlocks<Narrow>(dst, src, alpha, done, n, opacity, protectedValues);
    if (done < n) stampBlocks<Narrow>(dst, src, alpha, n - lanes, n, opacity, protectedValues);
}

extern constexpr BrushKernels brushTable{spread, stamp};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr BrushKernels brushTable{spreadAlpha, stampRow};
constinit const Levels<BrushKernels> brushKernels{&brushTable OMNAR_VECTOR_TABLES(brushTable)};

}  // namespace omnar
#endif
