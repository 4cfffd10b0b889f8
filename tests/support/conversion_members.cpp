// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "tests/support/member.h"

namespace support {
namespace {

template <std::uint32_t full>
std::uint32_t binarized(const Inputs& in) {
    return in.s == 0 ? 0 : full;
}
template <std::uint32_t full>
std::uint32_t binarizedInPlace(const Inputs& in) {
    return in.d == 0 ? 0 : full;
}
std::uint32_t binarizedAtValue(const Inputs& in) { return in.d < in.call.zeros ? 0 : 255; }
std::uint32_t narrowed(const Inputs& in) { return in.s / 16 % 256; }
std::uint32_t lookedUp(const Inputs& in) { return in.call.table[in.d]; }

/// A permutation of the 16-bit samples, so that repeated look-ups in place keep the number of different values.
std::uint32_t entry(std::uint32_t sample) { return (sample * 40503 + 12345) & 65535; }
std::uint32_t lookedUp12(const Inputs& in) { return entry(in.d); }
const L12* entries() {
    static const auto all = [] {
        std::array<L12, 65536> table;
        for (std::uint32_t i = 0; i < table.size(); ++i) table[i] = static_cast<L12>(entry(i));
        return table;
    }();
    return all.data();
}

/// The consecutive pixels, from the first one of both buffers on, that the call converts.
std::uint32_t countOf(const Call& c) {
    return std::min({c.w * c.h, c.src.width * c.src.height, c.dst.width * c.dst.height});
}
void dropFourthByte(const Call& c) {
    for (std::uint32_t i = 0; i < countOf(c); ++i) std::copy_n(c.src.pixels + 4 * i, 3, c.dst.pixels + 3 * i);
}

// clang-format off
#define SRC(Px) c.src.as<const Px>(), c.src.width, c.src.height, c.src.x, c.src.y
#define DST(Px) c.dst.as<Px>(), c.dst.width, c.dst.height, c.dst.x, c.dst.y
#define CALL(...) [](const Call& c) { __VA_ARGS__; }
constexpr auto l08 = Format::l08, l12 = Format::l12;
constexpr auto bySrc = Member::bySrcAndDst;

constexpr Member members[] = {
    {.name = "ConvertBufferFrom32To24Bits", .src = Format::trc, .dst = Format::bgr, .cut = bySrc,
     .call = CALL(ConvertBufferFrom32To24Bits(c.src.as<const TRC>(), c.dst.as<unsigned char>(), countOf(c))),
     .model = dropFourthByte, .overwrites = true, .isRun = true},
    {.name = "ConvertL012ToL08", .src = l12, .dst = l08, .cut = bySrc,
     .call = CALL(ConvertL012ToL08(SRC(L12), DST(L08), c.w, c.h)), .pixel = narrowed, .overwrites = true},
    {.name = "ConvertL08To2LevelL08", .src = l08, .dst = l08, .cut = bySrc,
     .call = CALL(ConvertL08To2LevelL08(SRC(L08), DST(L08), c.w, c.h)), .pixel = binarized<255>, .overwrites = true},
    {.name = "ConvertL08To2LevelL08_inPlace", .dst = l08,
     .call = CALL(ConvertL08To2LevelL08(DST(L08), c.w, c.h)), .pixel = binarizedInPlace<255>, .dstName = "data"},
    {.name = "ConvertL08To2LevelL08AtValue", .dst = l08,
     .call = CALL(ConvertL08To2LevelL08AtValue(c.dst.as<L08>(), c.zeros, c.dst.width, c.dst.height, c.dst.x, c.dst.y,
                                               c.w, c.h)), .pixel = binarizedAtValue, .dstName = "data"},
    {.name = "ConvertL12To2LevelL08", .src = l12, .dst = l08, .cut = bySrc,
     .call = CALL(ConvertL12To2LevelL08(SRC(L12), DST(L08), c.w, c.h)), .pixel = binarized<255>, .overwrites = true},
    {.name = "ConvertL12To2LevelL12", .src = l12, .dst = l12, .cut = bySrc,
     .call = CALL(ConvertL12To2LevelL12(SRC(L12), DST(L12), c.w, c.h)), .pixel = binarized<4095>, .overwrites = true},
    {.name = "ConvertL12To2LevelL12_inPlace", .dst = l12,
     .call = CALL(ConvertL12To2LevelL12(DST(L12), c.w, c.h)), .pixel = binarizedInPlace<255>, .dstName = "data"},
    {.name = "ApplyLUTToL08", .dst = l08,
     .call = CALL(ApplyLUTToL08(DST(L08), c.w, c.h, c.table)), .pixel = lookedUp, .mapsByTable = true, .dstName = "data"},
    {.name = "ApplyLUTToL12", .dst = l12,
     .call = CALL(ApplyLUTToL12(DST(L12), c.w, c.h, entries())), .pixel = lookedUp12, .dstName = "data"},
};
// clang-format on

}  // namespace

std::span<const Member> conversionMembers() { return members; }

}  // namespace support
