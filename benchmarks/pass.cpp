// SPDX-License-Identifier: MIT

// The plain pass at every level. This file is compiled once for each vector level.
#include "benchmarks/pass.h"

#include <cstdint>
#include <cstring>

#include "buffers/level.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "benchmarks/pass.cpp"
#include "buffers/foreach_level.h"
#include "hwy/highway.h"

#ifndef OMNAR_BENCH_PASS
#define OMNAR_BENCH_PASS
namespace bench {

struct PassTable {
    void (*run)(const Pass& pass, std::uint8_t none);
};

/// Bytes in words and single ones: the ends of rows, and everything where there are no vectors.
struct PlainRow {
    static std::uint64_t word(const std::uint8_t* bytes) {
        std::uint64_t value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    static std::uint64_t read(const std::uint8_t* row, std::size_t i, std::size_t bytes) {
        std::uint64_t sum = 0;
        for (; i + 8 <= bytes; i += 8) sum ^= word(row + i);
        for (; i < bytes; ++i) sum ^= row[i];
        return sum;
    }
    static void write(std::uint8_t* row, std::size_t i, std::size_t bytes, bool reads, std::uint64_t mix) {
        for (; i + 8 <= bytes; i += 8) {
            const std::uint64_t value = reads ? word(row + i) ^ mix : mix;
            std::memcpy(row + i, &value, sizeof value);
        }
        for (; i < bytes; ++i) row[i] = static_cast<std::uint8_t>(reads ? row[i] ^ mix : mix);
    }
};

/// `none` is 0, which the compiler does not know: what was read counts, and old values stay.
template <class Row>
void runPass(const Pass& pass, std::uint8_t none) {
    const auto at = [](const Rows& rows, std::size_t y) {
        return reinterpret_cast<std::uint8_t*>(rows.first) + y * rows.pitch;
    };
    for (std::size_t y = 0; y < pass.rows; ++y) {
        const std::uint64_t sum =
            Row::read(at(pass.src, y), 0, pass.src.bytes) ^ Row::read(at(pass.alpha, y), 0, pass.alpha.bytes);
        Row::write(at(pass.dst, y), 0, pass.dst.bytes, pass.readsDst, sum * none);
    }
}

}  // namespace bench
#endif

HWY_BEFORE_NAMESPACE();
namespace bench {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
namespace hn = hwy::HWY_NAMESPACE;

struct VectorRow {
    using D = hn::ScalableTag<std::uint64_t>;
    static constexpr std::size_t step = hn::MaxLanes(D()) * 8;

    static std::uint64_t read(const std::uint8_t* row, std::size_t i, std::size_t bytes) {
        auto sum = hn::Zero(D());
        for (; i + step <= bytes; i += step) sum = hn::Xor(sum, load(row + i));
        return hn::GetLane(hn::SumOfLanes(D(), sum)) ^ PlainRow::read(row, i, bytes);
    }
    static void write(std::uint8_t* row, std::size_t i, std::size_t bytes, bool reads, std::uint64_t mix) {
        const auto mixes = hn::Set(D(), mix);
        if (reads) {
            for (; i + step <= bytes; i += step) store(hn::Xor(load(row + i), mixes), row + i);
        } else {
            for (; i + step <= bytes; i += step) store(mixes, row + i);
        }
        PlainRow::write(row, i, bytes, reads, mix);
    }

private:
    static hn::Vec<D> load(const std::uint8_t* bytes) {
        return hn::BitCast(D(), hn::LoadU(hn::Repartition<std::uint8_t, D>(), bytes));
    }
    static void store(hn::Vec<D> value, std::uint8_t* bytes) {
        hn::StoreU(hn::BitCast(hn::Repartition<std::uint8_t, D>(), value), hn::Repartition<std::uint8_t, D>(), bytes);
    }
};

extern constexpr PassTable passTable{[](const Pass& pass, std::uint8_t none) { runPass<VectorRow>(pass, none); }};
#endif
}  // namespace HWY_NAMESPACE
}  // namespace bench
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace bench {
namespace {

constexpr PassTable passTable{[](const Pass& pass, std::uint8_t none) { runPass<PlainRow>(pass, none); }};
constinit const omnar::Levels<PassTable> passes{&passTable OMNAR_VECTOR_TABLES(passTable)};
volatile std::uint8_t nothing = 0;

}  // namespace

void Pass::run() const { passes.current().run(*this, nothing); }

}  // namespace bench
#endif
