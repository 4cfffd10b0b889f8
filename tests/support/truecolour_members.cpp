// SPDX-License-Identifier: MIT
#include "tests/support/formulas.h"

namespace support {
namespace {

std::uint32_t byteOf(std::uint32_t pixel, int n) { return pixel >> 8 * n & 255; }

std::uint32_t byteMoved(std::uint32_t old, std::uint32_t target, double weight, int n) {
    const auto sum = static_cast<std::int32_t>(moved(byteOf(old, n), byteOf(target, n), weight));
    return (old & ~(255U << 8 * n)) | (static_cast<std::uint32_t>(sum) & 255) << 8 * n;
}

std::uint32_t coloured(std::uint32_t old, std::uint32_t target, double weight) {
    for (const int n : {0, 1, 2}) old = byteMoved(old, target, weight, n);
    return old;
}

std::uint32_t bySourceAlpha(const Inputs& in) { return coloured(in.d, in.s, weightOf(in, in.s >> 24)); }
std::uint32_t byOpacity(const Inputs& in) { return coloured(in.d, in.s, in.call.opacity); }
std::uint32_t byAlpha(const Inputs& in) { return coloured(in.d, in.s, weightOf(in, in.a)); }
std::uint32_t flat(const Inputs& in) { return coloured(in.d, in.call.color, weightOf(in, in.a)); }
std::uint32_t flatErasing(const Inputs& in) { return in.a == 0 ? flat(in) : flat(in) & 0xFFFFFF; }
std::uint32_t flatInverted(const Inputs& in) { return coloured(in.d, in.call.color, weightOf(in, 255 - in.a)); }
std::uint32_t greyByAlpha(const Inputs& in) {
    return coloured(in.d, in.s | in.s << 8 | in.s << 16, weightOf(in, in.a));
}
std::uint32_t flatByL12(const Inputs& in) { return coloured(in.d, in.call.color, weightOf(in, in.s / 255)); }
std::uint32_t flatBinary(const Inputs& in) { return in.a == 0 ? in.d : coloured(in.d, in.call.color, in.call.opacity); }
std::uint32_t flatOnGround(const Inputs& in) {
    return in.a == 0 ? in.d : coloured(in.d, coloured(in.call.ground, in.call.color, in.a), in.call.opacity);
}
std::uint32_t flatByOwnAlpha(const Inputs& in) { return coloured(in.d, in.call.color, in.call.color >> 24); }
std::uint32_t flatByBlue(const Inputs& in) {
    const std::uint32_t blue = in.s & 255;
    if (in.call.first) return blue == 0 ? in.d : in.call.color;
    if (!in.call.second || in.call.opacity != 255) return coloured(in.d, in.call.color, weightOf(in, blue));
    return blue == 0 ? in.d : coloured(in.d | 0xFFFFFF, in.call.color, blue);
}
std::uint32_t alphaByte(const Inputs& in) { return byteMoved(in.d, in.call.color << 24, weightOf(in, in.a), 3); }

// clang-format off
#define SRC(Px) c.src.as<const Px>(), c.src.width, c.src.height, c.src.x, c.src.y
#define SRC_AND_ALPHA(Px) c.src.as<const Px>(), c.alpha.as<const L08>(), c.src.width, c.src.height, c.src.x, c.src.y
#define ALPHA c.alpha.as<const L08>(), c.alpha.width, c.alpha.height, c.alpha.x, c.alpha.y
#define GEOMETRY c.dst.width, c.dst.height, c.dst.x, c.dst.y
#define DST c.dst.as<TRC>(), GEOMETRY
#define CALL(...) [](const Call& c) { __VA_ARGS__; }
constexpr auto l08 = Format::l08, l12 = Format::l12, trc = Format::trc;
constexpr auto own = Member::ownGeometry; constexpr auto shared = Member::sharesSource;
constexpr auto bySrc = Member::bySrcAndDst; constexpr auto byAl = Member::byAlphaAndDst;

constexpr Member members[] = {
    {.name = "AlphaBlendTRCToTRC", .src = trc, .dst = trc, .cut = bySrc,
     .call = CALL(AlphaBlendTRCToTRC(SRC(TRC), DST, c.opacity, c.w, c.h, c.first)), .pixel = bySourceAlpha},
    {.name = "AlphaBlendTRCNoAlphaToTRC", .src = trc, .dst = trc, .cut = bySrc,
     .call = CALL(AlphaBlendTRCNoAlphaToTRC(SRC(TRC), DST, c.opacity, c.w, c.h, c.first)), .pixel = byOpacity},
    {.name = "AlphaBlendTRCToTRCNoAlpha", .src = trc, .dst = trc, .cut = bySrc,
     .call = CALL(AlphaBlendTRCToTRCNoAlpha(SRC(TRC), DST, c.opacity, c.w, c.h, c.first)), .pixel = byOpacity},
    {.name = "AlphaBlendTRCWithAlphaBufferToTRC", .src = trc, .dst = trc, .alpha = own, .cut = bySrc,
     .call = CALL(AlphaBlendTRCWithAlphaBufferToTRC(SRC(TRC), ALPHA, DST, c.opacity, c.w, c.h, c.first)), .pixel = byAlpha},
    {.name = "AlphaBlendTRCWithAlphaBufferToTRC_shared", .src = trc, .dst = trc, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendTRCWithAlphaBufferToTRC(SRC_AND_ALPHA(TRC), DST, c.opacity, c.w, c.h, c.first)),
     .pixel = byAlpha},
    {.name = "AlphaBlendL08ToTRC", .dst = trc, .alpha = own, .cut = byAl, .takesLut = true,
     .call = CALL(AlphaBlendL08ToTRC(ALPHA, c.color, DST, c.opacity, c.w, c.h, c.first, c.lut)), .pixel = flat},
    {.name = "AlphaBlendL08ToTRCAndEraseA", .dst = trc, .alpha = own, .cut = byAl, .takesLut = true,
     .call = CALL(AlphaBlendL08ToTRCAndEraseA(ALPHA, c.color, DST, c.opacity, c.w, c.h, c.lut)), .pixel = flatErasing},
    {.name = "AlphaBlendL08ToTRCInverted", .dst = trc, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendL08ToTRCInverted(ALPHA, c.color, DST, c.opacity, c.w, c.h, c.first)), .pixel = flatInverted},
    {.name = "AlphaBlendL08WithAlphaBufferToTRC", .src = l08, .dst = trc, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendL08WithAlphaBufferToTRC(SRC_AND_ALPHA(L08), DST, c.opacity, c.w, c.h, c.first)),
     .pixel = greyByAlpha},
    {.name = "AlphaBlendL12ToTRC", .src = l12, .dst = trc, .cut = bySrc,
     .call = CALL(AlphaBlendL12ToTRC(SRC(L12), c.color, DST, c.opacity, c.w, c.h, c.first)), .pixel = flatByL12},
    {.name = "AlphaBlendColorToTRC", .dst = trc, .alpha = own,
     .call = CALL(AlphaBlendColorToTRC(c.color, ALPHA, DST, c.opacity, c.w, c.h, c.first)), .pixel = flat},
    {.name = "AlphaBlendColorToTRCFlat", .dst = trc, .alpha = own,
     .call = CALL(AlphaBlendColorToTRCFlat(c.color, ALPHA, DST, c.opacity, c.w, c.h, c.first)), .pixel = flatBinary},
    {.name = "AlphaBlendColorToTRCInverted", .dst = trc, .alpha = own,
     .call = CALL(AlphaBlendColorToTRCInverted(c.color, ALPHA, DST, c.opacity, c.w, c.h, c.first)), .pixel = flat},
    {.name = "AlphaBlendColorOnBGToTRC", .dst = trc, .alpha = own,
     .call = CALL(AlphaBlendColorOnBGToTRC(c.color, c.ground, ALPHA, DST, c.opacity, c.w, c.h, c.first)),
     .pixel = flatOnGround},
    {.name = "AlphaBlendColorWithConstAlphaToTRC", .dst = trc,
     .call = CALL(AlphaBlendColorWithConstAlphaToTRC(c.color, DST, c.w, c.h, c.first)), .pixel = flatByOwnAlpha},
    {.name = "AlphaBlendColorWithAlphaBlueOfTrcToTrc", .src = trc, .dst = trc, .cut = bySrc,
     .call = CALL(AlphaBlendColorWithAlphaBlueOfTrcToTrc(SRC(TRC), c.color, c.dst.as<TRC>(), c.opacity, GEOMETRY, c.w, c.h, c.first, c.second)),
     .pixel = flatByBlue},
    {.name = "AlphaBlendAlphaToTRC", .dst = trc, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendAlphaToTRC(static_cast<unsigned char>(c.color), ALPHA, DST, c.opacity, c.w, c.h, c.first)),
     .pixel = alphaByte},
};
// clang-format on

}  // namespace

std::span<const Member> trueColourMembers() { return members; }

}  // namespace support
