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

/// A block of true colour. A block of samples is a plain V8 or V16.
struct Pixels {
    V8 v[kVectors];
};

/// How many pixels a block has: of samples as many as a vector.
template <class Px>
constexpr size_t kBlock = sizeof(Px) <= sizeof(L12) ? hn::MaxLanes(D8()) / sizeof(Px) : kPixels;

/// Which pixels of a block exist: all of them, or only the first n, 0 < n < kBlock. What lies behind is not touched.
struct All {};
struct First {
    size_t n;
};

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

HWY_INLINE V8 loadBlock(const L08* from, auto part) { return loadVector(D8(), from, part); }
HWY_INLINE V16 loadBlock(const L12* from, auto part) { return loadVector(D16(), from, part); }
HWY_INLINE void storeBlock(L08* to, auto part, V8 samples) { storeVector(D8(), to, part, samples); }
HWY_INLINE void storeBlock(L12* to, auto part, V16 samples) { storeVector(D16(), to, part, samples); }

HWY_INLINE Pixels loadBlock(const TRC* from, All) {
    Pixels pixels;
    for (size_t k = 0; k < kVectors; ++k) {
        pixels.v[k] = bytes(hn::LoadU(D32(), from + k * kPixelsPerVector));
    }
    return pixels;
}
HWY_INLINE void storeBlock(TRC* to, All, const Pixels& pixels) {
    for (size_t k = 0; k < kVectors; ++k) {
        hn::StoreU(hn::BitCast(D32(), pixels.v[k]), D32(), to + k * kPixelsPerVector);
    }
}
HWY_INLINE Pixels loadBlock(const TRC* from, First part) {
    if constexpr (kVectors == 1) return {{bytes(loadVector(D32(), from, part))}};
    return loadBlock(Padded<TRC>(from, part).values, All());
}
HWY_INLINE void storeBlock(TRC* to, First part, const Pixels& pixels) {
    if constexpr (kVectors == 1) return storeVector(D32(), to, part, hn::BitCast(D32(), pixels.v[0]));
    Padded<TRC> padded;
    storeBlock(padded.values, All(), pixels);
    copyFew<kPixels>(to, padded.values, part.n);
}

/// One byte for each pixel of a block, in every 128-bit part of the vector.
HWY_INLINE V8 loadCover(const L08* from, All) { return hn::LoadDup128(D8(), from); }
HWY_INLINE V8 loadCover(const L08* from, First part) { return loadCover(Padded<L08>(from, part).values, All()); }

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
