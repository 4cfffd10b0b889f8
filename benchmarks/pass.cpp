// SPDX-License-Identifier: MIT

// The plain pass. This file is compiled once for each vector level.
#include "benchmarks/pass.h"

#include <OmnarRaster.h>

#include <cstdint>

#include "buffers/level.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "benchmarks/pass.cpp"
#include "buffers/foreach_level.h"
#include "buffers/walk-inl.h"

#ifndef OMNAR_BENCHMARKS_PASS_ROWS
#define OMNAR_BENCHMARKS_PASS_ROWS
namespace bench {

/// `none` is 0, but not known to the compiler, so that no read is dropped and old values are unchanged.
struct PassTable {
    void (*run)(const Pass& pass, std::uint8_t none);
};

inline std::uint8_t* rowOf(const Rows& rows, std::size_t y) {
    return reinterpret_cast<std::uint8_t*>(rows.first) + y * rows.pitch;
}

}  // namespace bench
#endif

HWY_BEFORE_NAMESPACE();
namespace bench {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
using namespace omnar::HWY_NAMESPACE;

HWY_INLINE V8 readRow(const std::uint8_t* row, std::size_t bytes) {
    V8 sum = hn::Zero(D8());
    std::size_t i = 0;
    for (; i + kBlock<L08> <= bytes; i += kBlock<L08>) sum = hn::Xor(sum, loadBlock(row + i, All()));
    return i == bytes ? sum : hn::Xor(sum, loadBlock(row + i, First{bytes - i}));
}

template <bool reads>
HWY_INLINE void writeRow(std::uint8_t* row, std::size_t bytes, V8 mix) {
    const auto step = [&](std::size_t i, auto part)
                          HWY_ATTR { storeBlock(row + i, part, reads ? hn::Xor(loadBlock(row + i, part), mix) : mix); };
    std::size_t i = 0;
    for (; i + kBlock<L08> <= bytes; i += kBlock<L08>) step(i, All());
    if (i < bytes) step(i, First{bytes - i});
}

void runPass(const Pass& pass, std::uint8_t none) {
    const V8 noBits = hn::Set(D8(), none);
    for (std::size_t y = 0; y < pass.rows; ++y) {
        const V8 sum =
            hn::Xor(readRow(rowOf(pass.src, y), pass.src.bytes), readRow(rowOf(pass.alpha, y), pass.alpha.bytes));
        const V8 mix = hn::And(sum, noBits);
        pass.readsDst ? writeRow<true>(rowOf(pass.dst, y), pass.dst.bytes, mix)
                      : writeRow<false>(rowOf(pass.dst, y), pass.dst.bytes, mix);
    }
}

extern constexpr PassTable passTable{runPass};
#endif
}  // namespace HWY_NAMESPACE
}  // namespace bench
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace bench {
namespace {

void runPass(const Pass& pass, std::uint8_t none) {
    for (std::size_t y = 0; y < pass.rows; ++y) {
        std::uint8_t sum = 0;
        for (std::size_t i = 0; i < pass.src.bytes; ++i) sum ^= rowOf(pass.src, y)[i];
        for (std::size_t i = 0; i < pass.alpha.bytes; ++i) sum ^= rowOf(pass.alpha, y)[i];
        std::uint8_t* const dst = rowOf(pass.dst, y);
        for (std::size_t i = 0; i < pass.dst.bytes; ++i) {
            dst[i] = static_cast<std::uint8_t>((pass.readsDst ? dst[i] : 0) ^ (sum & none));
        }
    }
}

constexpr PassTable passTable{runPass};
constinit const omnar::Levels<PassTable> passes{&passTable OMNAR_VECTOR_TABLES(passTable)};
volatile std::uint8_t nothing = 0;

}  // namespace

void Pass::run() const { passes.current().run(*this, nothing); }

}  // namespace bench
#endif
