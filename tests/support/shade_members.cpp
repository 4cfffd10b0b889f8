// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "tests/support/member.h"

namespace support {
namespace {

/// The flags of a call: light, middle, dark.
struct Flags {
    bool bands[3];
    bool all() const { return bands[0] && bands[1] && bands[2]; }
};
Flags every(const Call&) { return {{true, true, true}}; }
Flags some(const Call& call) {
    return {{(call.table[0] & 1) != 0, (call.table[1] & 1) != 0, (call.table[2] & 1) != 0}};
}

/// The ordinate at x of the line through (x0, y0).
double line(double x, double x0, double y0, double slope) { return y0 + slope * (x - x0); }

double inkWeight(const Flags& flags, double v, double full) {
    const double half = (full + 1) / 2;
    const double light = std::max(line(v, 0, full, -2), 0.0);
    const double middle = v < half ? line(v, 0, 0, 2) : line(v, full, -1, -2);
    const double dark = std::max(line(v, full, full + 1, 2), 0.0);
    return flags.bands[0] * light + flags.bands[1] * middle + flags.bands[2] * dark;
}

double lightWeight(const Flags& flags, double luminance) {
    const double u = 255 - luminance;
    const double light = std::max(line(u, 0, 255, -2), 0.0);
    const double dark = std::clamp(line(u, 127, 0, 4), 0.0, 255.0);
    const double middle = std::clamp(u < 128 ? line(u, 0, 0, 2) : line(u, 127, 255, -4), 0.0, 255.0);
    return flags.bands[0] * light + flags.bands[1] * middle + flags.bands[2] * dark;
}

double product(const Inputs& in, double weight) { return 1.0 * in.a * in.call.opacity * weight; }

template <Flags (*flags)(const Call&)>
std::uint32_t darkerGrey(const Inputs& in) {
    if (in.d == 0) return 0;
    const double p = product(in, inkWeight(flags(in.call), in.d, 255));
    const bool dividesBy65536 = in.call.opacity != 255 && !flags(in.call).all();
    const double v = in.d + (dividesBy65536 ? std::floor(p / 65536) : std::trunc(p / 65025));
    return static_cast<std::uint32_t>(std::min(v, 255.0));
}

template <Flags (*flags)(const Call&)>
std::uint32_t lighterGrey(const Inputs& in) {
    const double v = in.d - std::trunc(product(in, inkWeight(flags(in.call), in.d, 255)) / 65025);
    return static_cast<std::uint32_t>(std::max(v, 0.0)) % 256;
}

template <Flags (*flags)(const Call&)>
std::uint32_t darkerInk(const Inputs& in) {
    if (flags(in.call).all()) return std::min(in.d + in.a, 4095U);
    const bool isOpaque = in.call.opacity == 255;
    const auto weight = static_cast<std::int64_t>(inkWeight(flags(in.call), in.d, 4095));
    const std::int64_t wide = weight * 4095 * in.a * (isOpaque ? 1 : in.call.opacity);
    const std::uint64_t wrapped = static_cast<std::uint64_t>(wide) % 0x100000000U;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(in.d + wrapped / (isOpaque ? 0x10000 : 0x1000000), 4095));
}

std::uint32_t lighterInk(const Inputs& in) {
    if (in.call.opacity == 255) return in.d < in.a ? 0 : in.d - in.a;
    return std::max(in.d + in.a * in.call.opacity / 255, 4095U) % 65536;
}

template <int direction, Flags (*flags)(const Call&)>
std::uint32_t colour(const Inputs& in) {
    const double blue = in.d & 255, green = in.d >> 8 & 255, red = in.d >> 16 & 255;
    const double luminance = std::floor((11 * blue + 30 * red + 59 * green) / 100);
    const double change = std::trunc(product(in, lightWeight(flags(in.call), luminance)) / 65025);
    const double target = std::clamp(luminance + direction * change, 0.0, 255.0);
    const auto scaled = [=](double channel) {
        return static_cast<std::uint32_t>(luminance == 0 ? target
                                                         : std::min(std::floor(channel * target / luminance), 255.0));
    };
    return (in.d & 0xFF000000) | scaled(red) << 16 | scaled(green) << 8 | scaled(blue);
}

// clang-format off
#define ARGS(Px) c.alpha.as<const L08>(), c.alpha.width, c.alpha.height, c.alpha.x, c.alpha.y, \
    c.dst.as<Px>(), c.dst.width, c.dst.height, c.dst.x, c.dst.y, c.opacity, c.w, c.h
#define CALL(...) [](const Call& c) { __VA_ARGS__; }
constexpr auto l08 = Format::l08, l12 = Format::l12, trc = Format::trc;
constexpr auto own = Member::ownGeometry;
constexpr auto byAlpha = Member::byAlphaAndDst;

constexpr Member members[] = {
    {.name = "DarkerL08WithAlpha", .dst = l08, .alpha = own, .cut = byAlpha,
     .call = CALL(DarkerL08WithAlpha(ARGS(L08), some(c).bands)), .pixel = darkerGrey<some>},
    {.name = "DarkerL08WithAlpha_every", .dst = l08, .alpha = own, .cut = byAlpha,
     .call = CALL(DarkerL08WithAlpha(ARGS(L08), every(c).bands)), .pixel = darkerGrey<every>},
    {.name = "LighterL08WithAlpha", .dst = l08, .alpha = own, .cut = byAlpha,
     .call = CALL(LighterL08WithAlpha(ARGS(L08), some(c).bands)), .pixel = lighterGrey<some>},
    {.name = "LighterL08WithAlpha_every", .dst = l08, .alpha = own, .cut = byAlpha,
     .call = CALL(LighterL08WithAlpha(ARGS(L08), every(c).bands)), .pixel = lighterGrey<every>},
    {.name = "DarkerL12WithAlpha", .dst = l12, .alpha = own, .cut = byAlpha,
     .call = CALL(DarkerL12WithAlpha(ARGS(L12), some(c).bands)), .pixel = darkerInk<some>},
    {.name = "DarkerL12WithAlpha_every", .dst = l12, .alpha = own, .cut = byAlpha,
     .call = CALL(DarkerL12WithAlpha(ARGS(L12), every(c).bands)), .pixel = darkerInk<every>},
    {.name = "LighterL12WithAlpha", .dst = l12, .alpha = own, .cut = byAlpha,
     .call = CALL(LighterL12WithAlpha(ARGS(L12), nullptr)), .pixel = lighterInk},
    {.name = "DarkerTRCWithAlpha", .dst = trc, .alpha = own, .cut = byAlpha,
     .call = CALL(DarkerTRCWithAlpha(ARGS(TRC), some(c).bands)), .pixel = colour<-1, some>},
    {.name = "DarkerTRCWithAlpha_every", .dst = trc, .alpha = own, .cut = byAlpha,
     .call = CALL(DarkerTRCWithAlpha(ARGS(TRC), every(c).bands)), .pixel = colour<-1, every>},
    {.name = "LighterTRCWithAlpha", .dst = trc, .alpha = own, .cut = byAlpha,
     .call = CALL(LighterTRCWithAlpha(ARGS(TRC), some(c).bands)), .pixel = colour<1, some>},
    {.name = "LighterTRCWithAlpha_every", .dst = trc, .alpha = own, .cut = byAlpha,
     .call = CALL(LighterTRCWithAlpha(ARGS(TRC), every(c).bands)), .pixel = colour<1, every>},
};
// clang-format on

}  // namespace

std::span<const Member> shadeMembers() { return members; }

}  // namespace support
