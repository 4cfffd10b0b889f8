// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tests/support/formulas.h"

namespace support {
namespace {

std::uint32_t sample(double old, double target, double weight) {
    return static_cast<std::uint32_t>(moved(old, target, weight));
}

bool skipped(const Inputs& in) { return in.call.zeros == 0 && in.s == 0; }
double byAlpha(const Inputs& in) { return in.call.alpha.pixels == nullptr ? in.call.opacity : weightOf(in, in.a); }
double binary(const Inputs& in) { return in.call.alpha.pixels == nullptr || in.a != 0 ? in.call.opacity : 0; }

std::uint32_t grey(const Inputs& in, double weight) {
    const std::uint32_t result = sample(in.d, in.s, weight);
    if (!in.call.first) return result;
    return result != 0 ? 255 : 0;
}
std::uint32_t greyByAlpha(const Inputs& in) { return skipped(in) ? in.d : grey(in, byAlpha(in)); }
std::uint32_t greyBinary(const Inputs& in) { return skipped(in) ? in.d : grey(in, binary(in)); }
std::uint32_t greyAll(const Inputs& in) { return grey(in, weightOf(in, in.a)); }

std::uint32_t ink(const Inputs& in, double weight) {
    if (skipped(in)) return in.d;
    const bool is12Bit = in.call.zeros == 0 && in.call.alpha.pixels != nullptr;
    return sample(in.d, is12Bit ? in.s : in.s / 255, weight);
}
std::uint32_t inkByAlpha(const Inputs& in) { return ink(in, byAlpha(in)); }
std::uint32_t inkBinary(const Inputs& in) { return ink(in, binary(in)); }

/// A call for two-level ink also sets the next pixel in memory to full if that is not 0.
void inkModel(const Call& call, bool ownAlpha, std::uint32_t (*pixel)(const Inputs& in)) {
    Member member{.name = "",
                  .src = Format::l12,
                  .dst = Format::l12,
                  .alpha = Member::sharesSource,
                  .cut = Member::bySrcAndDst,
                  .pixel = pixel};
    if (ownAlpha) {
        member.alpha = Member::ownGeometry;
        member.alphaFollowsSource = true;
    }
    if (!call.first || call.zeros == 0) return runModel(member, call);
    const auto [cols, rows] = extentOf(member, call);
    const Buffer alpha = addressedAlpha(member, call);
    const std::byte* const end = call.dst.pixels + std::size_t{call.dst.width} * call.dst.height * 2;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t i = 0; i < cols; ++i) {
            const std::uint32_t a = alpha.pixels == nullptr ? 0 : load(alpha, i, row);
            store(call.dst, i, row, pixel({load(call.dst, i, row), load(call.src, i, row), a, call}));
            if (call.dst.at(i + 1, row) != end && load(call.dst, i + 1, row) != 0) store(call.dst, i + 1, row, 4095);
        }
    }
}

/// The low bits of the colour: the value that a sample of the destination is moved toward.
std::uint32_t targetOf(const Inputs& in) { return in.call.color & (in.call.dst.format == Format::l08 ? 255 : 65535); }

std::uint32_t painted(const Inputs& in, std::uint32_t coverage) {
    return sample(in.d, targetOf(in), weightOf(in, coverage));
}
std::uint32_t density(const Inputs& in) { return painted(in, in.a); }
std::uint32_t densityInverted(const Inputs& in) { return painted(in, 255 - in.a); }
std::uint32_t densityFlat(const Inputs& in) { return in.a != 0 ? targetOf(in) : in.d; }
std::uint32_t densityFlatInverted(const Inputs& in) { return in.a == 0 ? targetOf(in) : in.d; }
std::uint32_t densityByBlue(const Inputs& in) {
    const std::uint32_t blue = in.s & 255;
    if (in.call.first) return blue != 0 ? targetOf(in) : in.d;
    if (!in.call.second || in.call.opacity != 255) return sample(in.d, targetOf(in), weightOf(in, blue));
    return blue != 0 ? sample(0, targetOf(in), blue) : in.d;
}

std::uint32_t applied(const Inputs& in) { return sample(0, in.d, weightOf(in, in.a)); }
std::uint32_t appliedMaybeFlat(const Inputs& in) {
    if (!in.call.first) return applied(in);
    return in.a != 0 ? sample(0, in.d, in.call.opacity) : 0;
}
std::uint32_t restored(const Inputs& in) {
    if (in.call.first) return in.a == 0 ? 255 : in.d;
    if (in.a == 0 || in.a == 255) return in.d;
    double v = (255.0 / in.a) * in.d;
    if (v - in.d < 1.0) v += 1.0;
    return static_cast<std::uint32_t>(std::clamp(v, 0.0, 255.0));
}

/// The consecutive samples from the buffer's first one on that a call without a region changes.
std::uint32_t countOf(const Call& call) { return std::min(call.w * call.h, call.dst.width * call.dst.height); }

void keepOpaque(const Call& call) {
    for (std::uint32_t i = 0; call.alpha.pixels != nullptr && i < countOf(call); ++i) {
        const bool opaque = call.alpha.as<const std::uint8_t>()[i] == 255;
        for (std::size_t byte = 0; !opaque && byte < bytesOf(call.dst.format); ++byte) {
            call.dst.pixels[i * bytesOf(call.dst.format) + byte] = std::byte{0};
        }
    }
}

template <class Px>
Px value(const Call& c) {
    return static_cast<Px>(c.color);
}

// clang-format off
#define SRC(Px) c.src.as<const Px>(), c.src.width, c.src.height, c.src.x, c.src.y
#define SRC_AND_ALPHA(Px) c.src.as<const Px>(), c.alpha.as<const L08>(), c.src.width, c.src.height, c.src.x, c.src.y
#define ALPHA c.alpha.as<const L08>(), c.alpha.width, c.alpha.height, c.alpha.x, c.alpha.y
// While zeros are skipped the function ignores these parameters: the offset must have no effect.
#define IGNORED_OFFSET (c.zeros == 0 ? 7U : 0U)
#define ODD_ALPHA c.alpha.as<const L08>(), c.alpha.width + IGNORED_OFFSET, c.alpha.height, c.alpha.x + IGNORED_OFFSET, \
                  c.alpha.y
#define GEOMETRY c.dst.width, c.dst.height, c.dst.x, c.dst.y
#define DST(Px) c.dst.as<Px>(), GEOMETRY
#define BOTH(Px) c.dst.as<Px>(), c.alpha.as<const L08>(), GEOMETRY
#define CALL(...) [](const Call& c) { __VA_ARGS__; }
#define MODEL(own, pixel) [](const Call& c) { inkModel(c, own, pixel); }
constexpr auto l08 = Format::l08, l12 = Format::l12, trc = Format::trc;
constexpr auto own = Member::ownGeometry;
constexpr auto shared = Member::sharesSource, withDst = Member::sharesDst;
constexpr auto bySrc = Member::bySrcAndDst, byAl = Member::byAlphaAndDst;

constexpr Member members[] = {
    {.name = "AlphaBlendL08ToL08", .src = l08, .dst = l08, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendL08ToL08(SRC_AND_ALPHA(L08), DST(L08), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = greyByAlpha, .mayLackAlpha = true},
    {.name = "AlphaBlendL08ToL08_noAlpha", .src = l08, .dst = l08, .cut = bySrc,
     .call = CALL(AlphaBlendL08ToL08(SRC_AND_ALPHA(L08), DST(L08), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = greyByAlpha},
    {.name = "AlphaBlendL08ToL08_own", .src = l08, .dst = l08, .alpha = own, .cut = bySrc,
     .call = CALL(AlphaBlendL08ToL08(SRC(L08), ODD_ALPHA, DST(L08), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = greyByAlpha, .mayLackAlpha = true, .alphaFollowsSource = true},
    {.name = "AlphaBlendL08ToL08FlatAlpha", .src = l08, .dst = l08, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendL08ToL08FlatAlpha(SRC_AND_ALPHA(L08), DST(L08), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = greyBinary, .mayLackAlpha = true},
    {.name = "AlphaBlendL08WithAlphaBufferToL08", .src = l08, .dst = l08, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendL08WithAlphaBufferToL08(SRC_AND_ALPHA(L08), DST(L08), c.opacity, c.first, c.w, c.h, c.second)),
     .pixel = greyAll},
    {.name = "AlphaBlendL12ToL12", .src = l12, .dst = l12, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendL12ToL12(SRC_AND_ALPHA(L12), DST(L12), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = inkByAlpha, .mayLackAlpha = true, .model = MODEL(false, inkByAlpha)},
    {.name = "AlphaBlendL12ToL12_noAlpha", .src = l12, .dst = l12, .cut = bySrc,
     .call = CALL(AlphaBlendL12ToL12(SRC_AND_ALPHA(L12), DST(L12), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = inkByAlpha, .model = MODEL(false, inkByAlpha)},
    {.name = "AlphaBlendL12ToL12_own", .src = l12, .dst = l12, .alpha = own, .cut = bySrc,
     .call = CALL(AlphaBlendL12ToL12(SRC(L12), ODD_ALPHA, DST(L12), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = inkByAlpha, .mayLackAlpha = true, .alphaFollowsSource = true, .model = MODEL(true, inkByAlpha)},
    {.name = "AlphaBlendL12ToL12FlatAlpha", .src = l12, .dst = l12, .alpha = shared, .cut = bySrc,
     .call = CALL(AlphaBlendL12ToL12FlatAlpha(SRC_AND_ALPHA(L12), DST(L12), c.opacity, c.zeros, c.first, c.w, c.h, c.second)),
     .pixel = inkBinary, .mayLackAlpha = true, .model = MODEL(false, inkBinary)},
    {.name = "AlphaBlendDensityToL08", .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL08(value<L08>(c), ALPHA, DST(L08), c.opacity, c.w, c.h, c.first)), .pixel = density},
    {.name = "AlphaBlendDensityToL08Inverted", .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL08Inverted(value<L08>(c), ALPHA, DST(L08), c.opacity, c.w, c.h, c.first)),
     .pixel = densityInverted},
    {.name = "AlphaBlendDensityToL08Flat", .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL08Flat(value<L08>(c), ALPHA, DST(L08), c.w, c.h)), .pixel = densityFlat},
    {.name = "AlphaBlendDensityToL08FlatInverted", .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL08FlatInverted(value<L08>(c), ALPHA, DST(L08), c.w, c.h)),
     .pixel = densityFlatInverted},
    {.name = "AlphaBlendDensityToL12", .dst = l12, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL12(value<L12>(c), ALPHA, DST(L12), c.opacity, c.w, c.h, c.first)),
     .pixel = densityInverted},
    {.name = "AlphaBlendDensityToL12Inverted", .dst = l12, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL12Inverted(value<L12>(c), ALPHA, DST(L12), c.opacity, c.w, c.h, c.first)),
     .pixel = density},
    {.name = "AlphaBlendDensityToL12Flat", .dst = l12, .alpha = own, .cut = byAl,
     .call = CALL(AlphaBlendDensityToL12Flat(value<L12>(c), ALPHA, DST(L12), c.w, c.h)), .pixel = densityFlat},
    {.name = "AlphaBlendDensityWithAlphaBlueOfTrcToL08", .src = trc, .dst = l08, .cut = bySrc,
     .call = CALL(AlphaBlendDensityWithAlphaBlueOfTrcToL08(SRC(TRC), value<L08>(c), c.dst.as<L08>(), c.opacity, GEOMETRY, c.w, c.h, c.first, c.second)),
     .pixel = densityByBlue},
    {.name = "ApplyAlphaToL08", .dst = l08, .alpha = withDst,
     .call = CALL(ApplyAlphaToL08(BOTH(L08), c.opacity, c.first, c.w, c.h, c.second)),
     .pixel = appliedMaybeFlat, .dstName = "data"},
    {.name = "ApplyAlphaToL12", .dst = l12, .alpha = withDst,
     .call = CALL(ApplyAlphaToL12(BOTH(L12), c.opacity, c.w, c.h, c.second)), .pixel = applied, .dstName = "data"},
    {.name = "PostApplyAlpha", .dst = l08, .alpha = withDst,
     .call = CALL(PostApplyAlpha(c.alpha.as<const L08>(), c.dst.as<L08>(), countOf(c))),
     .mayLackAlpha = true, .model = keepOpaque, .isRun = true, .dstName = "data"},
    {.name = "PostApplyAlpha_L12", .dst = l12, .alpha = withDst,
     .call = CALL(PostApplyAlpha(c.alpha.as<const L08>(), c.dst.as<L12>(), countOf(c))),
     .mayLackAlpha = true, .model = keepOpaque, .isRun = true, .dstName = "data"},
    {.name = "InvertAlphaL08", .dst = l08, .alpha = withDst,
     .call = CALL(InvertAlphaL08(BOTH(L08), c.first, c.w, c.h)), .pixel = restored, .dstName = "data"},
};
// clang-format on

}  // namespace

std::span<const Member> sampleMembers() { return members; }

}  // namespace support
