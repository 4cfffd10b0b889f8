// SPDX-License-Identifier: MIT

// The ends of runs at every level. This file is compiled once for each vector level.
#include "objects/runs.h"

#include <algorithm>
#include <bit>
#include <type_traits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "objects/runs.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
namespace hn = hwy::HWY_NAMESPACE;

/// One vector of pixels, compared with a value.
template <class Px>
class Compare {
    using Lane = std::make_unsigned_t<Px>;
    using D = hn::ScalableTag<Lane>;

public:
    static constexpr size_t kLanes = hn::MaxLanes(D());
    static constexpr uint64_t kAll = ~uint64_t{0} >> (64 - kLanes);

    HWY_INLINE explicit Compare(Px value) : value_(hn::Set(D(), static_cast<Lane>(value))) {}

    /// Bit i for pixel i, set where it holds the value.
    HWY_INLINE uint64_t same(const Px* from) const {
        // A word of exactly the bits that are stored, so that it never leaves the registers.
        using Bits = std::conditional_t<
            kLanes <= 8, uint8_t,
            std::conditional_t<kLanes <= 16, uint16_t, std::conditional_t<kLanes <= 32, uint32_t, uint64_t>>>;
        Bits bits = 0;
        hn::StoreMaskBits(D(), hn::Eq(hn::LoadU(D(), reinterpret_cast<const Lane*>(from)), value_),
                          reinterpret_cast<uint8_t*>(&bits));
        return bits;
    }

private:
    hn::Vec<D> value_;
};

/// The vector rows of a table. The pixels of a row that fill no vector are looked at one by one.
struct VectorRuns {
    template <class Px>
    static size_t same(const Px* row, size_t n, Px value) {
        return upTo<true>(row, n, value);
    }

    template <class Px>
    static size_t other(const Px* row, size_t n, Px value) {
        return upTo<false>(row, n, value);
    }

    template <class Px>
    static size_t sameBefore(const Px* end, size_t n, Px value) {
        using C = Compare<Px>;
        const C compare(value);
        size_t i = 0;
        for (; i + C::kLanes <= n; i += C::kLanes) {
            const uint64_t differ = ~compare.same(end - i - C::kLanes) & C::kAll;
            if (differ != 0) return i + C::kLanes - static_cast<size_t>(std::bit_width(differ));
        }
        while (i < n && *(end - i - 1) == value) ++i;
        return i;
    }

    template <class Px>
    static void mark(const Px* row, size_t n, Px value, uint64_t* words) {
        using C = Compare<Px>;
        const C compare(value);
        for (size_t i = 0; i <= n; i += 64) {
            const size_t end = std::min(n - i, size_t{64});
            uint64_t word = 0;
            size_t k = 0;
            for (; k + C::kLanes <= end; k += C::kLanes) word |= compare.same(row + i + k) << k;
            for (; k < end; ++k) word |= uint64_t{row[i + k] == value} << k;
            *words++ = word;
        }
    }

private:
    /// The first pixel that holds the value, or (`skipped`) that does not.
    template <bool skipped, class Px>
    static HWY_INLINE size_t upTo(const Px* row, size_t n, Px value) {
        using C = Compare<Px>;
        const C compare(value);
        size_t i = 0;
        for (; i + C::kLanes <= n; i += C::kLanes) {
            const uint64_t found = skipped ? ~compare.same(row + i) & C::kAll : compare.same(row + i);
            if (found != 0) return i + static_cast<size_t>(std::countr_zero(found));
        }
        while (i < n && (row[i] == value) == skipped) ++i;
        return i;
    }
};

template <class Px>
constexpr RunRows<Px> tableOf{VectorRuns::same<Px>, VectorRuns::other<Px>, VectorRuns::sameBefore<Px>,
                              VectorRuns::mark<Px>};
extern constexpr RunRows<unsigned char> byteTable = tableOf<unsigned char>;
extern constexpr RunRows<int> intTable = tableOf<int>;
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {
namespace {

/// The scalar rules.
struct ScalarRuns {
    template <class Px>
    static std::size_t same(const Px* row, std::size_t n, Px value) {
        return static_cast<std::size_t>(std::find_if(row, row + n, [=](Px pixel) { return pixel != value; }) - row);
    }

    template <class Px>
    static std::size_t other(const Px* row, std::size_t n, Px value) {
        return static_cast<std::size_t>(std::find(row, row + n, value) - row);
    }

    template <class Px>
    static std::size_t sameBefore(const Px* end, std::size_t n, Px value) {
        std::size_t i = 0;
        while (i < n && *(end - i - 1) == value) ++i;
        return i;
    }

    template <class Px>
    static void mark(const Px* row, std::size_t n, Px value, std::uint64_t* words) {
        std::fill_n(words, n / 64 + 1, 0);
        for (std::size_t i = 0; i < n; ++i) words[i / 64] |= std::uint64_t{row[i] == value} << i % 64;
    }
};

template <class Px>
constexpr RunRows<Px> tableOf{ScalarRuns::same<Px>, ScalarRuns::other<Px>, ScalarRuns::sameBefore<Px>,
                              ScalarRuns::mark<Px>};
constexpr RunRows<unsigned char> byteTable = tableOf<unsigned char>;
constexpr RunRows<int> intTable = tableOf<int>;
constinit const Levels<RunRows<unsigned char>> byteRows{&byteTable OMNAR_VECTOR_TABLES(byteTable)};
constinit const Levels<RunRows<int>> intRows{&intTable OMNAR_VECTOR_TABLES(intTable)};

}  // namespace

template <>
const RunRows<unsigned char>& runRows() {
    return byteRows.current();
}

template <>
const RunRows<int>& runRows() {
    return intRows.current();
}

}  // namespace omnar
#endif
