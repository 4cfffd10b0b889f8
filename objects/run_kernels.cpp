// SPDX-License-Identifier: MIT

// This file is compiled once for each vector level.
#include "objects/run_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

#include "objects/bit_runs.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "objects/run_kernels.cpp"
#include "buffers/foreach_level.h"
#include "hwy/cache_control.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
namespace hn = hwy::HWY_NAMESPACE;

/// Compares vectors of pixels with a value.
template <class Px>
class Comparison {
    using Lane = std::make_unsigned_t<Px>;
    using D = hn::ScalableTag<Lane>;

public:
    static constexpr size_t kLanes = hn::MaxLanes(D());
    static constexpr uint64_t kAll = ~uint64_t{0} >> (64 - kLanes);

    HWY_INLINE explicit Comparison(Px value) : value_(hn::Set(D(), static_cast<Lane>(value))) {}

    /// Bit i for pixel i, set where it holds the value.
    HWY_INLINE uint64_t equal(const Px* pixels) const {
        // As many bits as StoreMaskBits writes, so that compilers keep them in a register.
        using Bits = std::conditional_t<
            kLanes <= 8, uint8_t,
            std::conditional_t<kLanes <= 16, uint16_t, std::conditional_t<kLanes <= 32, uint32_t, uint64_t>>>;
        Bits bits = 0;
        hn::StoreMaskBits(D(), hn::Eq(hn::LoadU(D(), reinterpret_cast<const Lane*>(pixels)), value_),
                          reinterpret_cast<uint8_t*>(&bits));
        return bits;
    }

private:
    hn::Vec<D> value_;
};

/// Paints a run with vectors of `kLanes` pixels, the last two of which may overlap. Shorter runs use half the vector.
template <class Px, size_t kLanes = hn::MaxLanes(hn::ScalableTag<Px>())>
HWY_INLINE void paintRun(Px* first, size_t n, Px label) {
    if constexpr (kLanes == 1) {
        *first = label;
    } else {
        if (n < kLanes) return paintRun<Px, kLanes / 2>(first, n, label);
        const hn::CappedTag<Px, kLanes> d;
        const auto labels = hn::Set(d, label);
        for (size_t i = 0; i + kLanes < n; i += kLanes) hn::StoreU(labels, d, first + i);
        hn::StoreU(labels, d, first + n - kLanes);
    }
}

/// Paints one vector of pixels by a table look-up: a run that continues takes labels[0], each run start the next label.
template <class Px>
struct PaintGroup {
    using D = hn::CappedTag<std::make_unsigned_t<Px>, 16>;
    using Lane = hn::TFromD<D>;
    static constexpr size_t kPixels = hn::MaxLanes(D());

    static HWY_INLINE void paint(Px* pixels, uint64_t bits, uint64_t starts, const Px* labels) {
        const D d;
        uint8_t mask[8];
        std::memcpy(mask, &bits, sizeof mask);
        const Ranks ranks(starts);
        Lane* const destination = reinterpret_cast<Lane*>(pixels);
        const auto table = hn::LoadU(d, reinterpret_cast<const Lane*>(labels));
        hn::StoreU(hn::IfThenElse(hn::LoadMaskBits(d, mask), lookUp(table, ranks.bytes()), hn::LoadU(d, destination)),
                   d, destination);
    }

private:
    static HWY_INLINE hn::Vec<D> lookUp(hn::Vec<D> table, const uint8_t* ranks) {
        if constexpr (sizeof(Px) == 1) {
            return hn::TableLookupBytes(table, hn::LoadU(D(), ranks));
        } else {
            const hn::Rebind<uint8_t, D> d8;
            return hn::TableLookupLanes(table, hn::IndicesFromVec(D(), hn::PromoteTo(D(), hn::LoadU(d8, ranks))));
        }
    }
};

/// The vector kernels. The pixels at the end of a row that fill no vector are handled one by one.
struct VectorRuns {
    template <class Px>
    static size_t countEqual(const Px* row, size_t n, Px value) {
        return countWhile<true>(row, n, value);
    }

    template <class Px>
    static size_t countDifferent(const Px* row, size_t n, Px value) {
        return countWhile<false>(row, n, value);
    }

    template <class Px>
    static size_t countEqualBefore(const Px* end, size_t n, Px value) {
        using C = Comparison<Px>;
        const C comparison(value);
        size_t i = 0;
        for (; i + C::kLanes <= n; i += C::kLanes) {
            const uint64_t different = ~comparison.equal(end - i - C::kLanes) & C::kAll;
            if (different != 0) return i + C::kLanes - static_cast<size_t>(std::bit_width(different));
        }
        while (i < n && *(end - i - 1) == value) ++i;
        return i;
    }

    template <class Px>
    static void mark(const Px* row, size_t n, Px value, uint64_t* words) {
        using C = Comparison<Px>;
        const C comparison(value);
        for (size_t i = 0; i <= n; i += 64) {
            const size_t end = std::min(n - i, size_t{64});
            uint64_t word = 0;
            size_t k = 0;
            for (; k + C::kLanes <= end; k += C::kLanes) word |= comparison.equal(row + i + k) << k;
            for (; k < end; ++k) word |= uint64_t{row[i + k] == value} << k;
            *words++ = word;
        }
    }

    template <class Px>
    static bool label(const int32_t* nodes, size_t n, const ObjectLabels<Px>& objects, Px* labels) {
        return writeLabels(nodes, n, objects, labels);
    }

    template <class Px>
    static void paint(Px* row, size_t n, const uint64_t* words, const Px* labels) {
        uint64_t before = 0;
        for (size_t i = 0; i < n; i += 64) {
            const uint64_t bits = *words++;
            const uint64_t starts = runStarts(bits, before);
            before = bits;
            if (bits == 0) continue;
            prefetchAhead(row + i);
            // A group takes constant time; painting run by run is faster for few runs.
            if (std::popcount(starts) <= kFewRuns) {
                labels = paintRuns(row + i, bits, starts, labels);
            } else {
                labels = paintGroups(row + i, std::min(n - i, size_t{64}), bits, starts, labels);
            }
        }
    }

private:
    static constexpr int kFewRuns = 2;

    /// Pixels ahead are likely painted next. They may lie past the buffer, where a prefetch reads nothing.
    template <class Px>
    static HWY_INLINE void prefetchAhead(const Px* word) {
        constexpr uintptr_t kAhead = 1024, kCacheLine = 64;
        const uintptr_t ahead = reinterpret_cast<uintptr_t>(word) + kAhead;
        for (uintptr_t k = 0; k < 64 * sizeof(Px); k += kCacheLine) {
            hwy::Prefetch(reinterpret_cast<const Px*>(ahead + k));
        }
    }

    template <class Px>
    static HWY_INLINE const Px* paintRuns(Px* pixels, uint64_t bits, uint64_t starts, const Px* labels) {
        if (bits == ~uint64_t{0}) {
            labels += starts;
            paintRun(pixels, 64, *labels);
            return labels;
        }
        while (bits != 0) {
            const int first = std::countr_zero(bits);
            const int length = std::countr_one(bits >> first);
            labels += starts >> first & 1;
            paintRun(pixels + first, static_cast<size_t>(length), *labels);
            bits &= first + length == 64 ? 0 : ~uint64_t{0} << (first + length);
        }
        return labels;
    }

    template <class Px>
    static HWY_INLINE const Px* paintGroups(Px* pixels, size_t n, uint64_t bits, uint64_t starts, const Px* labels) {
        using Group = PaintGroup<Px>;
        constexpr uint64_t kAll = ~uint64_t{0} >> (64 - Group::kPixels);
        size_t k = 0;
        for (; k + Group::kPixels <= n; k += Group::kPixels) {
            const uint64_t groupBits = bits >> k & kAll;
            if (groupBits == 0) continue;
            const uint64_t groupStarts = starts >> k & kAll;
            Group::paint(pixels + k, groupBits, groupStarts, labels);
            labels += std::popcount(groupStarts);
        }
        for (; k < n; ++k) {
            labels += starts >> k & 1;
            if ((bits >> k & 1) != 0) pixels[k] = *labels;
        }
        return labels;
    }

    /// How many pixels hold the value (`equal`), or do not, before the first that differs in that.
    template <bool equal, class Px>
    static HWY_INLINE size_t countWhile(const Px* row, size_t n, Px value) {
        using C = Comparison<Px>;
        const C comparison(value);
        size_t i = 0;
        for (; i + C::kLanes <= n; i += C::kLanes) {
            const uint64_t found = equal ? ~comparison.equal(row + i) & C::kAll : comparison.equal(row + i);
            if (found != 0) return i + static_cast<size_t>(std::countr_zero(found));
        }
        while (i < n && (row[i] == value) == equal) ++i;
        return i;
    }
};

template <class Px>
constexpr RunKernels<Px> runTable{
    VectorRuns::countEqual<Px>, VectorRuns::countDifferent<Px>, VectorRuns::countEqualBefore<Px>,
    VectorRuns::mark<Px>,       VectorRuns::label<Px>,          VectorRuns::paint<Px>};
extern constexpr RunKernels<unsigned char> byteTable = runTable<unsigned char>;
extern constexpr RunKernels<int> intTable = runTable<int>;
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

/// The references.
struct ReferenceRuns {
    template <class Px>
    static std::size_t countEqual(const Px* row, std::size_t n, Px value) {
        return static_cast<std::size_t>(std::find_if(row, row + n, [=](Px pixel) { return pixel != value; }) - row);
    }

    template <class Px>
    static std::size_t countDifferent(const Px* row, std::size_t n, Px value) {
        return static_cast<std::size_t>(std::find(row, row + n, value) - row);
    }

    template <class Px>
    static std::size_t countEqualBefore(const Px* end, std::size_t n, Px value) {
        std::size_t i = 0;
        while (i < n && *(end - i - 1) == value) ++i;
        return i;
    }

    template <class Px>
    static bool label(const std::int32_t* nodes, std::size_t n, const ObjectLabels<Px>& objects, Px* labels) {
        return writeLabels(nodes, n, objects, labels);
    }

    template <class Px>
    static void paint(Px* row, std::size_t n, const std::uint64_t* words, const Px* labels) {
        bool inside = false;
        for (std::size_t i = 0; i < n; ++i) {
            const bool bit = (words[i / 64] >> i % 64 & 1) != 0;
            labels += bit && !inside ? 1 : 0;
            if (bit) row[i] = *labels;
            inside = bit;
        }
    }

    template <class Px>
    static void mark(const Px* row, std::size_t n, Px value, std::uint64_t* words) {
        std::fill_n(words, n / 64 + 1, 0);
        for (std::size_t i = 0; i < n; ++i) words[i / 64] |= std::uint64_t{row[i] == value} << i % 64;
    }
};

template <class Px>
constexpr RunKernels<Px> runTable{
    ReferenceRuns::countEqual<Px>, ReferenceRuns::countDifferent<Px>, ReferenceRuns::countEqualBefore<Px>,
    ReferenceRuns::mark<Px>,       ReferenceRuns::label<Px>,          ReferenceRuns::paint<Px>};
constexpr RunKernels<unsigned char> byteTable = runTable<unsigned char>;
constexpr RunKernels<int> intTable = runTable<int>;
constinit const Levels<RunKernels<unsigned char>> byteKernels{&byteTable OMNAR_VECTOR_TABLES(byteTable)};
constinit const Levels<RunKernels<int>> intKernels{&intTable OMNAR_VECTOR_TABLES(intTable)};

}  // namespace

template <>
const RunKernels<unsigned char>& runKernels() {
    return byteKernels.current();
}

template <>
const RunKernels<int>& runKernels() {
    return intKernels.current();
}

}  // namespace omnar
#endif
