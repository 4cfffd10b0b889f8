// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>

#include "tests/support/formulas.h"

namespace support {
namespace {

std::uint32_t byteOf(std::uint32_t pixel, int n) { return pixel >> 8 * n & 255; }

/// Moves blue, green and red toward another colour.
std::uint32_t tinted(std::uint32_t pixel, std::uint32_t color, double weight) {
    std::uint32_t result = pixel & 0xFF000000;
    for (const int n : {0, 1, 2}) {
        result |= static_cast<std::uint32_t>(moved(byteOf(pixel, n), byteOf(color, n), weight)) << 8 * n;
    }
    return result;
}
std::uint32_t tinted(const Inputs& in) { return tinted(in.d, in.call.color, in.call.opacity); }

std::uint32_t plain(const Inputs& in) { return in.call.color; }
std::uint32_t copied(const Inputs& in) { return in.s; }

/// A key colour; for most calls a frequent pixel value.
std::uint32_t keyOf(const Call& c) { return c.first ? 0 : c.second ? 0xFFFFFFFF : c.color; }
std::uint32_t copiedExceptKey(const Inputs& in) { return in.s == keyOf(in.call) ? in.d : in.s; }

/// The number of layers that a call reads: -1 to 2 of two.
int layersOf(const Call& c) { return c.first ? c.second - 1 : 1 + c.second; }
std::uint32_t background(const Inputs& in) {
    const int count = layersOf(in.call);
    const bool isBackground = count <= 0 || (in.a == 0 && (count == 1 || in.s == 0));
    return isBackground ? tinted(in) : in.d;
}
void markBackground(const Call& c) {
    const L08* const layers[] = {nullptr, c.src.as<const L08>(), c.alpha.as<const L08>()};
    constexpr int indices[] = {2, 1};
    MarkBG(layers, indices, layersOf(c), c.src.width, c.src.height, c.src.x, c.src.y, c.color, c.opacity,
           c.dst.as<TRC>(), c.dst.width, c.dst.height, c.dst.x, c.dst.y, c.w, c.h);
}

std::uint32_t flagged(const Inputs& in) {
    const std::uint32_t low = byteOf(in.call.color, 0), high = byteOf(in.call.color, 1);
    const std::uint32_t flag = in.s == 0 ? 0 : in.s < low ? 0x80 : in.s > high ? 0x40 : 0;
    return flag == 0 ? in.d : (in.d & 0xFFFFFF) + flag * 0x1000000;
}

bool isChosen(const Call& c, std::uint32_t value) { return c.table[value] > 128; }
std::uint32_t chosen(const Inputs& in) { return isChosen(in.call, in.s) ? tinted(in) : in.d; }
std::array<bool, 256> choice(const Call& c) {
    std::array<bool, 256> values;
    for (std::uint32_t value = 0; value < 256; ++value) values[value] = isChosen(c, value);
    return values;
}

std::uint32_t veiled(const Inputs& in) {
    return in.a == 0 ? in.call.color : tinted(in.d, in.call.color, weightOf(in, 255 - in.a));
}

/// The brightness is in [-150, 150], or any int.
int brightnessOf(const Call& c) {
    return c.first ? static_cast<int>(c.ground) : static_cast<int>(c.ground % 301) - 150;
}
int contrastOf(const Call& c) {
    return c.second && c.first ? static_cast<int>(c.ground * 7U) : static_cast<int>(c.zeros) * 3 - 100;
}
std::uint32_t recoloured(const Inputs& in) {
    const double light = std::floor(0.01 * (59 * byteOf(in.s, 1) + 30 * byteOf(in.s, 2) + 11 * byteOf(in.s, 0)) + 1e-6);
    const double gain = contrastOf(in.call) / 100.0;
    const double spread = (light - 127.5) * gain;
    const double t = std::trunc(spread + brightnessOf(in.call) * 1.275);
    const double share = t < 0 ? 0 : t > 255 ? 255 : t;
    return tinted(in.d, tinted(in.call.color, 0xFFFFFF, share), weightOf(in, in.a));
}

/// The columns of the region. The caller has to cut them.
std::uint32_t colsOf(const Call& c) { return std::min(c.w, c.dst.width - c.dst.x); }

std::uint32_t cellOf(const Call& c) { return c.first ? 1 + c.zeros % 40U : 1 + (c.color >> (c.second ? 0 : 20)); }
void chessboard(const Call& c) {
    const double cell = cellOf(c);
    for (std::uint32_t row = 0; row < std::min(c.h, c.dst.height - c.dst.y); ++row) {
        for (std::uint32_t col = 0; col < colsOf(c); ++col) {
            const double across = std::floor((static_cast<int>(c.ground) + static_cast<double>(c.dst.x) + col) / cell);
            const double down = std::floor((static_cast<double>(static_cast<int>(c.color)) + row) / cell);
            const bool even = std::fmod(across + down, 2) == 0;
            store(c.dst, col, row, even ? c.color : c.ground);
        }
    }
}

// clang-format off
#define SRC(Px) c.src.as<const Px>(), c.src.width, c.src.height, c.src.x, c.src.y
#define ALPHA c.alpha.as<const L08>(), c.alpha.width, c.alpha.height, c.alpha.x, c.alpha.y
#define GEOMETRY c.dst.width, c.dst.height, c.dst.x, c.dst.y
#define DST c.dst.as<TRC>(), GEOMETRY
#define CALL(...) [](const Call& c) { __VA_ARGS__; }
constexpr auto l08 = Format::l08, trc = Format::trc;
constexpr auto own = Member::ownGeometry;
constexpr auto bySrc = Member::bySrcAndDst;

constexpr Member members[] = {
    {.name = "FillTRCBuffer", .dst = trc,
     .call = CALL(FillTRCBuffer(DST, colsOf(c), c.h, c.color)), .pixel = plain, .overwrites = true, .columnsUncut = true,
     .dstName = "data"},
    {.name = "ChessboardFillTRCBuffer", .dst = trc,
     .call = CALL(ChessboardFillTRCBuffer(DST, colsOf(c), c.h, static_cast<int>(c.ground), static_cast<int>(c.color),
                                          c.color, c.ground, cellOf(c))), .model = chessboard, .overwrites = true,
     .columnsUncut = true, .dstName = "data"},
    {.name = "Copy2DTRCBufferToTRC", .src = trc, .dst = trc, .cut = bySrc,
     .call = CALL(Copy2DTRCBufferToTRC(SRC(TRC), DST, c.w, c.h)), .pixel = copied, .overwrites = true, .rowsApart = true},
    {.name = "CopyTRCToTRCIfNotKeyColor", .src = trc, .dst = trc, .cut = bySrc,
     .call = CALL(CopyTRCToTRCIfNotKeyColor(SRC(TRC), DST, c.w, c.h, keyOf(c))), .pixel = copiedExceptKey},
    {.name = "MarkBG", .src = l08, .dst = trc, .alpha = Member::sharesSource, .cut = bySrc,
     .call = markBackground, .pixel = background, .srcName = "layers"},
    {.name = "MarkL08LimitsToTRCHighBit", .src = l08, .dst = trc, .cut = bySrc,
     .call = CALL(MarkL08LimitsToTRCHighBit(SRC(L08), static_cast<unsigned char>(c.color),
                                            static_cast<unsigned char>(c.color >> 8), DST, c.w, c.h)), .pixel = flagged},
    {.name = "MarkL08ToTRC", .src = l08, .dst = trc, .cut = bySrc,
     .call = CALL(MarkL08ToTRC(SRC(L08), choice(c).data(), c.color, c.opacity, DST, c.w, c.h)), .pixel = chosen},
    {.name = "ApplyQuickMaskToTRC", .dst = trc, .alpha = own, .cut = Member::byAlphaAndDst,
     .call = CALL(ApplyQuickMaskToTRC(ALPHA, c.color, DST, c.opacity, c.w, c.h)), .pixel = veiled, .alphaName = "mask"},
    {.name = "ChangeColorOfTRCWithAlpha", .src = trc, .dst = trc, .alpha = own,
     .call = CALL(ChangeColorOfTRCWithAlpha(c.color, ALPHA, c.src.as<const TRC>(), DST, c.opacity, c.w, c.h,
                                            brightnessOf(c), contrastOf(c))), .pixel = recoloured, .sourceFollowsDst = true},
};
// clang-format on

}  // namespace

std::span<const Member> markingMembers() { return members; }

}  // namespace support
