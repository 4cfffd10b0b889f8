// SPDX-License-Identifier: MIT

// The kernels that map samples through a table, compiled once for every vector level.
#include "buffers/lookup.h"

#include <cstring>

#include "buffers/overlap.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "buffers/lookup_rows.cpp"
#include "buffers/foreach_level.h"
#include "buffers/walk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

/// A byte shuffle looks up one part of the table, 16 entries, by the low 4 bits of an index, and gives 0 for a negative
/// index. With p the part of an index, index - 16 * k is negative for every part k > p only. Each part therefore stores
/// the XOR of its entries with those of the part before it, and the XOR of parts 0..p is the entry. Signed bytes reach
/// 128 entries; the upper half of the table is a second table, whose indices are negative in the first.
class Table {
public:
    HWY_INLINE explicit Table(const L08* entries) {
        for (size_t k = 0; k < 16; ++k) changes_[k] = hn::LoadDup128(D8(), entries + 16 * k);
#if HWY_ARCH_X86  // elsewhere an index above 15 also gives 0, so that only part p counts
        for (size_t k = 15; k > 0; --k) {
            if (k != 8) changes_[k] = hn::Xor(changes_[k], changes_[k - 1]);
        }
#endif
    }

    HWY_INLINE V8 entries(V8 lower) const {
        V8 upper = hn::Xor(lower, hn::Set(D8(), 0x80));
        V8 sum = hn::Zero(D8());
        for (size_t k = 0; k < 8; ++k) {
            const V8 inLower = hn::TableLookupBytesOr0(changes_[k], lower);
            const V8 inUpper = hn::TableLookupBytesOr0(changes_[8 + k], upper);
            sum = hn::Xor(sum, hn::Xor(inLower, inUpper));
            lower = lessOnePart(lower);
            upper = lessOnePart(upper);
        }
        return sum;
    }

private:
    /// Saturates, so that negative indices stay negative.
    HWY_INLINE static V8 lessOnePart(V8 index) {
        const hn::RebindToSigned<D8> d;
        return hn::BitCast(D8(), hn::SaturatedSub(hn::BitCast(d, index), hn::Set(d, 16)));
    }

    V8 changes_[16];
};

struct MapStep {
    const Table& table;
    const L08* source;

    HWY_INLINE V8 at(const L08*, size_t i, auto part) const { return table.entries(loadBlock(source + i, part)); }
    HWY_INLINE void write(L08* dst, size_t i, auto part) const { storeBlock(dst + i, part, at(dst, i, part)); }
};

#if HWY_TARGET == HWY_AVX3
#if HWY_COMPILER_MSVC
#define OMNAR_PERMUTING
#else
#define OMNAR_PERMUTING __attribute__((target(HWY_TARGET_STR ",avx512vbmi")))
#endif

/// The same by instructions that look up 128 bytes at once. The vector level does not imply them: only functions marked
/// OMNAR_PERMUTING may use them.
class PermutingTable {
public:
    OMNAR_PERMUTING explicit PermutingTable(const L08* entries) {
        for (size_t k = 0; k < 4; ++k) parts_[k] = hn::LoadU(D8(), entries + 64 * k);
    }
    OMNAR_PERMUTING V8 entries(V8 index) const {
        const V8 lower{_mm512_permutex2var_epi8(parts_[0].raw, index.raw, parts_[1].raw)};
        const V8 upper{_mm512_permutex2var_epi8(parts_[2].raw, index.raw, parts_[3].raw)};
        return hn::IfThenElse(hn::MaskFromVec(index), upper, lower);
    }

private:
    V8 parts_[4];
};

OMNAR_PERMUTING inline void mapPermuting(RowCursor<Mapped<L08>> at, size_t n) {
    const PermutingTable table(at.operation.table);
    do {
        L08* const dst = at.dst.row();
        const L08* const source = at.operation.source.row();
        size_t i = skewOf(dst, n);
        if (i != 0) storeBlock(dst, First{i}, table.entries(loadBlock(source, First{i})));
        for (; i + kBlock<L08> <= n; i += kBlock<L08>) {
            storeBlock(dst + i, All(), table.entries(loadBlock(source + i, All())));
        }
        if (i < n) storeBlock(dst + i, First{n - i}, table.entries(loadBlock(source + i, First{n - i})));
    } while (at.next());
}
#endif

/// True if the table does not overlap the rows that are written.
template <class Px>
bool tableIsApart(const RowCursor<Mapped<Px>>& at, size_t n, size_t entries) {
    return apart(std::span(at.operation.table, entries), extentOf(at.dst, {n, at.rowsLeft}));
}

template <>
struct Walk<Mapped<L08>> {
    HWY_INLINE static void rows(RowCursor<Mapped<L08>> at, size_t n) {
        constexpr size_t shortestByTable = 16;
        if (n < shortestByTable || !tableIsApart(at, n, 256)) {
            return ScalarKernel::rows({n, at.rowsLeft}, at.dst, at.operation);
        }
#if HWY_TARGET == HWY_AVX3
        if (permutesBytes()) return mapPermuting(at, n);
#endif
        const Table table(at.operation.table);
        do walkRow(at.dst.row(), MapStep{table, at.operation.source.row()}, n);
        while (at.next());
    }
};

/// Looks up 16-bit samples one by one and stores 8 at a time.
template <>
struct Walk<Mapped<L12>> {
    HWY_INLINE static void rows(RowCursor<Mapped<L12>> at, size_t n) {
        if (!tableIsApart(at, n, 65536)) return ScalarKernel::rows({n, at.rowsLeft}, at.dst, at.operation);
        constexpr size_t block = 8;
        do {
            L12* const dst = at.dst.row();
            size_t i = 0;
            for (; i + block <= n; i += block) {
                L12 entries[block];
                for (size_t k = 0; k < block; ++k) entries[k] = at.operation.at(0, i + k);
                std::memcpy(dst + i, entries, sizeof entries);
            }
            for (; i < n; ++i) dst[i] = at.operation.at(0, i);
        } while (at.next());
    }
};

extern constexpr LookupRows lookupTable = filledBy<VectorKernel>(LookupRows{});

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr LookupRows lookupTable = filledBy<ScalarKernel>(LookupRows{});
constinit const Levels<LookupRows> lookupRows{&lookupTable OMNAR_VECTOR_TABLES(lookupTable)};

}  // namespace omnar
#endif
