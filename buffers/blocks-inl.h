// SPDX-License-Identifier: MIT

// Blocks of pixels: loading, storing and shuffling them, compiled once for every level. A block of true colour is sixteen
// pixels; a block of samples is one vector of them.
#if defined(OMNAR_BUFFERS_BLOCKS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_BUFFERS_BLOCKS_INL_H_
#undef OMNAR_BUFFERS_BLOCKS_INL_H_
#else
#define OMNAR_BUFFERS_BLOCKS_INL_H_
#endif

#include <array>
#include <cstring>
#include <type_traits>

#include "buffers/weighting-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

constexpr size_t kPixels = 16;  // of true colour: a vector of the widest level, and 128 bits of coverage
constexpr size_t kVectors = kPixels * sizeof(TRC) / hn::MaxLanes(D8());
constexpr size_t kPixelsPerVector = kPixels / kVectors;

/// Pixels of true colour, by whole vectors: a block has kVectors of them. A block of samples is a plain V8 or V16.
template <size_t vectors>
struct Pixels {
    V8 v[vectors];
};

/// How many pixels a block has: of samples as many as a vector.
template <class Px>
constexpr size_t kBlock = sizeof(Px) <= sizeof(L12) ? hn::MaxLanes(D8()) / sizeof(Px) : kPixels;

// Which pixels of a block exist. What lies outside them is not touched.

/// All of them.
struct All {
    static constexpr size_t vectors = kVectors;

    /// The pixel at which vector k begins.
    HWY_INLINE static size_t begin(size_t k) { return k * kPixelsPerVector; }
};

/// The first n, 0 < n < kBlock, in order.
struct First {
    static constexpr size_t vectors = kVectors;  // of true colour, if a block is one vector
    size_t n;
};

/// The first n, end <= n < 2 * end, for steps that give the same value for the same pixel, whatever its lane is: two ends, the
/// `end` first and the `end` last, which are side by side in the lanes. The pixels that they share are in two lanes each.
/// That needs two loads or stores of a fixed size, no mask, and no memory to piece a vector together in, for whose stores
/// a load would have to wait. `end` is a power of two.
template <size_t end>
struct Ends {
    static constexpr size_t vectors = HWY_MAX(2 * end / kPixelsPerVector, 1);  // of true colour
    size_t n;

    /// The pixel at which vector k begins, of two or more.
    HWY_INLINE size_t begin(size_t k) const {
        return k < vectors / 2 ? k * kPixelsPerVector : n - (vectors - k) * kPixelsPerVector;
    }
};

/// The least `end` of a level's short rows. Those that do not fill half a vector are left to a narrower level, down to
/// vectors of 16 bytes.
template <class Px>
constexpr size_t kLeastEnd = hn::MaxLanes(D8()) == 16 ? 1 : hn::MaxLanes(D8()) / 2 / sizeof(Px);

/// Copies 1 to `below` - 1 values, 31 at most, by one or two moves of a fixed size, which may overlap.
template <size_t below, class T>
HWY_INLINE void copyFew(T* to, const T* from, size_t n) {
    const auto ends = [=](auto size) HWY_ATTR {
        T head[decltype(size)::value], tail[decltype(size)::value];
        const size_t last = n - decltype(size)::value;
        std::memcpy(head, from, sizeof head);
        std::memcpy(tail, from + last, sizeof tail);
        std::memcpy(to, head, sizeof head);
        std::memcpy(to + last, tail, sizeof tail);
    };
    static_assert(below <= 32);
    if constexpr (below > 16) {
        if (n >= 16) return ends(std::integral_constant<size_t, 16>());
    }
    if constexpr (below > 8) {
        if (n >= 8) return ends(std::integral_constant<size_t, 8>());
    }
    if constexpr (below > 4) {
        if (n >= 4) return ends(std::integral_constant<size_t, 4>());
    }
    if (n >= 2) return ends(std::integral_constant<size_t, 2>());
    *to = *from;
}

/// A whole block in memory, 0 where it does not exist.
template <class T, size_t size = kPixels>
struct alignas(64) Padded {
    T values[size] = {};

    HWY_INLINE Padded() = default;
    HWY_INLINE Padded(const T* from, First part) { copyFew<size>(values, from, part.n); }
};

/// One vector of the lanes of `d`, which may be fewer than a whole vector has.
template <class D, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, All) {
    return hn::LoadU(d, from);
}
template <class D, class T = hn::TFromD<D>>
HWY_INLINE void storeVector(D d, T* to, All, hn::Vec<D> v) {
    hn::StoreU(v, d, to);
}

#if HWY_TARGET == HWY_AVX3
// The only level whose masks keep memory behind the mask untouched for every lane size.
template <class D, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, First part) {
    return hn::MaskedLoad(hn::FirstN(d, part.n), d, from);
}
template <class D, class T = hn::TFromD<D>>
HWY_INLINE void storeVector(D d, T* to, First part, hn::Vec<D> v) {
    hn::BlendedStore(v, hn::FirstN(d, part.n), d, to);
}
#else
template <class D, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, First part) {
    return hn::LoadU(d, Padded<T, hn::MaxLanes(d)>(from, part).values);
}
template <class D, class T = hn::TFromD<D>>
HWY_INLINE void storeVector(D d, T* to, First part, hn::Vec<D> v) {
    Padded<T, hn::MaxLanes(d)> padded;
    hn::StoreU(v, d, padded.values);
    copyFew<hn::MaxLanes(d)>(to, padded.values, part.n);
}
#endif

/// v as a vector of the lanes of `d`: its lower part, or extended by 0.
template <class D, class V>
HWY_INLINE hn::Vec<D> resized(D d, V v) {
    constexpr size_t have = hn::MaxLanes(hn::DFromV<V>()), want = hn::MaxLanes(d);
    if constexpr (have > want) {
        return resized(d, hn::LowerHalf(hn::Half<hn::DFromV<V>>(), v));
    } else if constexpr (have < want) {
        return hn::ZeroExtendVector(d, resized(hn::Half<D>(), v));
    } else {
        return v;
    }
}

/// Two ends of `size` bytes each, side by side at the bottom of a vector.
template <size_t size>
HWY_INLINE auto loadEnds(const void* low, const void* high) {
    if constexpr (size >= 8) {
        const hn::CappedTag<uint8_t, size> d;
        const hn::CappedTag<uint8_t, size * 2> both;
        return hn::Combine(both, hn::LoadU(d, static_cast<const uint8_t*>(high)),
                           hn::LoadU(d, static_cast<const uint8_t*>(low)));
    } else {
        hwy::UnsignedFromSize<size> first, last;
        std::memcpy(&first, low, size);
        std::memcpy(&last, high, size);
        const hn::Full64<uint64_t> d;
        return hn::BitCast(hn::Full64<uint8_t>(), hn::Set(d, first | uint64_t{last} << 8 * size));
    }
}
template <size_t size>
HWY_INLINE void storeEnds(void* low, void* high, V8 v) {
    if constexpr (size >= 8) {
        const hn::CappedTag<uint8_t, size> d;
        const auto both = resized(hn::CappedTag<uint8_t, size * 2>(), v);
        hn::StoreU(hn::LowerHalf(d, both), d, static_cast<uint8_t*>(low));
        hn::StoreU(hn::UpperHalf(d, both), d, static_cast<uint8_t*>(high));
    } else {
        const uint64_t first = hn::GetLane(hn::BitCast(hn::Repartition<uint64_t, D8>(), v));
        const uint64_t last = first >> 8 * size;
        std::memcpy(low, &first, size);
        std::memcpy(high, &last, size);
    }
}

template <class D, size_t end, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, Ends<end> part) {
    const auto ends = loadEnds<end * sizeof(T)>(from, from + part.n - end);
    return hn::BitCast(d, resized(hn::Repartition<uint8_t, D>(), ends));
}
template <class D, size_t end, class T = hn::TFromD<D>>
HWY_INLINE void storeVector(D, T* to, Ends<end> part, hn::Vec<D> v) {
    storeEnds<end * sizeof(T)>(to, to + part.n - end, hn::BitCast(D8(), v));
}

/// Vector k of a block of true colour, or of what belongs to its pixels.
template <class D, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, All part, size_t k) {
    return hn::LoadU(d, from + part.begin(k));
}
#if HWY_TARGET == HWY_AVX3  // where a block of true colour is one vector
template <class D, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, First part, size_t) {
    return loadVector(d, from, part);
}
HWY_INLINE void storeVector(TRC* to, First part, size_t, V8 v) { storeVector(D32(), to, part, hn::BitCast(D32(), v)); }
#endif
template <class D, size_t end, class T = hn::TFromD<D>>
HWY_INLINE hn::Vec<D> loadVector(D d, const T* from, Ends<end> part, size_t k) {
    if constexpr (part.vectors == 1) {
        return loadVector(d, from, part);
    } else {
        return hn::LoadU(d, from + part.begin(k));
    }
}
HWY_INLINE void storeVector(TRC* to, All part, size_t k, V8 v) {
    hn::StoreU(hn::BitCast(D32(), v), D32(), to + part.begin(k));
}
template <size_t end>
HWY_INLINE void storeVector(TRC* to, Ends<end> part, size_t k, V8 v) {
    if constexpr (part.vectors == 1) {
        storeVector(D32(), to, part, hn::BitCast(D32(), v));
    } else {
        hn::StoreU(hn::BitCast(D32(), v), D32(), to + part.begin(k));
    }
}

HWY_INLINE V8 loadBlock(const L08* from, auto part) { return loadVector(D8(), from, part); }
HWY_INLINE V16 loadBlock(const L12* from, auto part) { return loadVector(D16(), from, part); }
HWY_INLINE void storeBlock(L08* to, auto part, V8 samples) { storeVector(D8(), to, part, samples); }
HWY_INLINE void storeBlock(L12* to, auto part, V16 samples) { storeVector(D16(), to, part, samples); }

template <class Part>
HWY_INLINE auto loadBlock(const TRC* from, Part part) {
    Pixels<Part::vectors> pixels;
    for (size_t k = 0; k < Part::vectors; ++k) pixels.v[k] = bytes(loadVector(D32(), from, part, k));
    return pixels;
}
template <class Part>
HWY_INLINE void storeBlock(TRC* to, Part part, const Pixels<Part::vectors>& pixels) {
    for (size_t k = 0; k < Part::vectors; ++k) storeVector(to, part, k, pixels.v[k]);
}

/// v in every 128-bit part of a vector.
template <class D, class V>
HWY_INLINE hn::Vec<D> repeated(D d, V v) {
    if constexpr (hn::MaxLanes(d) == hn::MaxLanes(hn::DFromV<V>())) {
        return v;
    } else {
        const auto half = repeated(hn::Half<D>(), v);
        return hn::Combine(d, half, half);
    }
}

/// One byte for each pixel of a block, in every 128-bit part of the vector.
HWY_INLINE V8 loadCover(const L08* from, All) { return hn::LoadDup128(D8(), from); }
HWY_INLINE V8 loadCover(const L08* from, auto part) {
    return repeated(D8(), loadVector(hn::Full128<uint8_t>(), from, part));
}

// Shuffles. A byte shuffle works on each 128-bit part by itself, and 0x80 stands for "give 0".
constexpr uint8_t kNone = 0x80;

/// The 64 indices of a block, from a function of the byte's place in it.
template <class IndexOf>
constexpr std::array<uint8_t, kPixels * 4> shuffle(IndexOf indexOf) {
    std::array<uint8_t, kPixels * 4> indices{};
    for (size_t byte = 0; byte < indices.size(); ++byte) {
        indices[byte] = static_cast<uint8_t>(indexOf(byte));
    }
    return indices;
}

/// The part of a shuffle for vector k of a block.
HWY_INLINE V8 partOf(const std::array<uint8_t, kPixels * 4>& shuffle, size_t k) {
    return hn::LoadU(D8(), shuffle.data() + k * hn::MaxLanes(D8()));
}

/// From one byte a pixel: to all four bytes of the pixel, and to the high byte of both 16-bit lanes.
constexpr auto kCoverToAll = shuffle([](size_t byte) { return byte / 4; });
constexpr auto kCoverToHigh = shuffle([](size_t byte) { return byte % 2 == 1 ? byte / 4 : kNone; });

/// From channel `c` of the pixels themselves, likewise.
template <size_t c>
constexpr auto kChannelToAll = shuffle([](size_t byte) { return byte % 16 / 4 * 4 + c; });
template <size_t c>
constexpr auto kChannelToHigh = shuffle([](size_t byte) { return byte % 2 == 1 ? byte % 16 / 4 * 4 + c : kNone; });

/// From one byte a pixel: for vectors 2 * `pair` and 2 * `pair` + 1 at once, to the high byte of a 16-bit lane for each pixel,
/// those of the first vector in the lower half of each 128-bit part.
constexpr auto kCoverToPairs = shuffle([](size_t byte) {
    const size_t part = byte % hn::MaxLanes(D8()) / 16, lane = byte % 16 / 2;
    const size_t vector = byte / hn::MaxLanes(D8()) * 2 + lane / 4;
    return byte % 2 == 1 && vector < kVectors ? vector * kPixelsPerVector + part * 4 + lane % 4 : kNone;
});

/// From there to both bytes of the two 16-bit lanes of each pixel, for the first or the second vector.
template <size_t second>
constexpr auto kPairToAll = shuffle([](size_t byte) { return second * 8 + byte % 16 / 4 * 2 + 1; });

/// Doubles the even (`odd` = 0) or odd bytes of each 16-bit lane, if their channel is in the mask of moving bytes.
constexpr auto doubling(uint32_t moving, size_t odd) {
    return shuffle([=](size_t byte) {
        const size_t from = byte % 16 / 2 * 2 + odd;
        return (moving >> from % 4 * 8 & 255U) != 0 ? from : kNone;
    });
}

/// The same word in every pixel.
HWY_INLINE V8 everywhere(TRC word) { return bytes(hn::Set(D32(), word)); }

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
