// Sixteen true-colour pixels at a time: loading, storing and shuffling them, compiled once for every level.
#if defined(OMNAR_COMPOSITING_PIXELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_COMPOSITING_PIXELS_INL_H_
#undef OMNAR_COMPOSITING_PIXELS_INL_H_
#else
#define OMNAR_COMPOSITING_PIXELS_INL_H_
#endif

#include <array>
#include <cstring>
#include <type_traits>

#include "buffers/weighting-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

constexpr size_t kBlock = 16;  // pixels: one vector of the widest level, and one 128-bit vector of coverage
constexpr size_t kVectors = kBlock * sizeof(TRC) / hn::MaxLanes(D8());
constexpr size_t kPixelsPerVector = kBlock / kVectors;

/// The pixels of a block.
struct Pixels {
    V8 v[kVectors];
};

/// Which pixels of a block exist: all of them, or only the first n, 0 < n < kBlock. What lies behind is not touched.
struct All {};
struct First {
    size_t n;
};

/// Copies 1 to 15 values by at most two moves of a fixed size, which may overlap.
template <class T>
HWY_INLINE void copyFew(T* to, const T* from, size_t n) {
    const auto ends = [=](auto size) HWY_ATTR {
        T head[decltype(size)::value], tail[decltype(size)::value];
        const size_t last = n - decltype(size)::value;
        std::memcpy(head, from, sizeof head);
        std::memcpy(tail, from + last, sizeof tail);
        std::memcpy(to, head, sizeof head);
        std::memcpy(to + last, tail, sizeof tail);
    };
    if (n >= 8) return ends(std::integral_constant<size_t, 8>());
    if (n >= 4) return ends(std::integral_constant<size_t, 4>());
    if (n >= 2) return ends(std::integral_constant<size_t, 2>());
    *to = *from;
}

/// A whole block in memory, 0 where it does not exist.
template <class T>
struct alignas(64) Padded {
    T values[kBlock] = {};

    HWY_INLINE Padded() = default;
    HWY_INLINE Padded(const T* from, First part) { copyFew(values, from, part.n); }
};

HWY_INLINE Pixels loadPixels(const TRC* from, All) {
    Pixels pixels;
    for (size_t k = 0; k < kVectors; ++k) {
        pixels.v[k] = bytes(hn::LoadU(D32(), from + k * kPixelsPerVector));
    }
    return pixels;
}

HWY_INLINE void storePixels(TRC* to, All, const Pixels& pixels) {
    for (size_t k = 0; k < kVectors; ++k) {
        hn::StoreU(hn::BitCast(D32(), pixels.v[k]), D32(), to + k * kPixelsPerVector);
    }
}

#if HWY_TARGET == HWY_AVX3
// The only level whose masks keep memory behind the mask untouched for every lane size.
HWY_INLINE Pixels loadPixels(const TRC* from, First part) {
    const D32 d;
    return {{bytes(hn::MaskedLoad(hn::FirstN(d, part.n), d, from))}};
}

HWY_INLINE void storePixels(TRC* to, First part, const Pixels& pixels) {
    const D32 d;
    hn::BlendedStore(hn::BitCast(d, pixels.v[0]), hn::FirstN(d, part.n), d, to);
}
#else
HWY_INLINE Pixels loadPixels(const TRC* from, First part) { return loadPixels(Padded<TRC>(from, part).values, All()); }

HWY_INLINE void storePixels(TRC* to, First part, const Pixels& pixels) {
    Padded<TRC> padded;
    storePixels(padded.values, All(), pixels);
    copyFew(to, padded.values, part.n);
}
#endif

/// One byte for each pixel of a block, in every 128-bit part of the vector.
HWY_INLINE V8 loadCover(const L08* from, All) { return hn::LoadDup128(D8(), from); }
HWY_INLINE V8 loadCover(const L08* from, First part) { return loadCover(Padded<L08>(from, part).values, All()); }

// Shuffles. A byte shuffle works on each 128-bit part by itself, and 0x80 stands for "give 0".
constexpr uint8_t kNone = 0x80;

/// The 64 indices of a block, from a function of the byte's place in it.
template <class IndexOf>
constexpr std::array<uint8_t, kBlock * 4> shuffle(IndexOf indexOf) {
    std::array<uint8_t, kBlock * 4> indices{};
    for (size_t byte = 0; byte < indices.size(); ++byte) {
        indices[byte] = static_cast<uint8_t>(indexOf(byte));
    }
    return indices;
}

/// The part of a shuffle for vector k of a block.
HWY_INLINE V8 partOf(const std::array<uint8_t, kBlock * 4>& shuffle, size_t k) {
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
