// SPDX-License-Identifier: MIT

// The vector kernel of value_set.h, compiled once for every vector level.
#if defined(OMNAR_BUFFERS_VALUE_SET_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef OMNAR_BUFFERS_VALUE_SET_INL_H_
#undef OMNAR_BUFFERS_VALUE_SET_INL_H_
#else
#define OMNAR_BUFFERS_VALUE_SET_INL_H_
#endif

#include "buffers/value_set.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET

namespace hn = hwy::HWY_NAMESPACE;

/// ValueSet for vectors of bytes.
template <class D>
class VectorSet {
public:
    HWY_INLINE explicit VectorSet(const ValueSet& set)
        : columns_{hn::LoadDup128(D(), set.columns()), hn::LoadDup128(D(), set.columns() + 16)} {}

    /// 0xFF where the set contains the value, else 0.
    HWY_INLINE hn::Vec<D> contains(hn::Vec<D> values) const {
        alignas(16) static constexpr uint8_t bits[16] = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
        const D d;
        const hn::Repartition<uint16_t, D> d16;
        // A negative index gives 0, so that only one of the halves gives a column.
        const auto index = hn::And(values, hn::Set(d, 0x8F));
        const auto column = hn::Or(hn::TableLookupBytesOr0(columns_[0], index),
                                   hn::TableLookupBytesOr0(columns_[1], hn::Xor(index, hn::Set(d, 0x80))));
        const auto shifted = hn::BitCast(d, hn::ShiftRight<4>(hn::BitCast(d16, values)));
        const auto bit = hn::TableLookupBytes(hn::LoadDup128(d, bits), hn::And(shifted, hn::Set(d, 0x0F)));
        return hn::VecFromMask(d, hn::Eq(hn::And(column, bit), bit));
    }

private:
    hn::Vec<D> columns_[2];
};

#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#endif
