// SPDX-License-Identifier: MIT
#include <pixman.h>

#include <vector>

#include "benchmarks/peers/peer.h"
#include "buffers/weighting.h"

namespace bench {
namespace {

using support::Buffer;
using support::Call;

pixman_image_t* image(pixman_format_code_t format, const Buffer& buffer, void* pixels) {
    return pixman_image_create_bits(format, static_cast<int>(buffer.width), static_cast<int>(buffer.height),
                                    static_cast<std::uint32_t*>(pixels),
                                    static_cast<int>(buffer.width * bytesOf(buffer.format)));
}

pixman_image_t* solid(TRC color, unsigned alpha) {
    const auto premultiplied = [&](int shift) {
        return static_cast<std::uint16_t>(static_cast<unsigned>(omnar::channel(color, shift)) * 257U * alpha / 255U);
    };
    const pixman_color_t words{premultiplied(16), premultiplied(8), premultiplied(0),
                               static_cast<std::uint16_t>(alpha * 257)};
    return pixman_image_create_solid_fill(&words);
}

class Over final : public Prepared {
public:
    Over(const Call& call, pixman_image_t* src, pixman_image_t* mask, const Buffer& srcPlane, const Buffer& maskPlane)
        : call_(call),
          src_(src),
          mask_(mask),
          dst_(image(PIXMAN_x8r8g8b8, call.dst, call.dst.pixels)),
          srcPlane_(srcPlane),
          maskPlane_(maskPlane) {}
    Over(const Over&) = delete;
    Over& operator=(const Over&) = delete;
    ~Over() override {
        pixman_image_unref(src_);
        if (mask_ != nullptr) pixman_image_unref(mask_);
        pixman_image_unref(dst_);
    }

    void run() override {
        const auto number = [](std::uint32_t n) { return static_cast<std::int32_t>(n); };
        pixman_image_composite32(PIXMAN_OP_OVER, src_, mask_, dst_, number(srcPlane_.x), number(srcPlane_.y),
                                 number(maskPlane_.x), number(maskPlane_.y), number(call_.dst.x), number(call_.dst.y),
                                 number(call_.w), number(call_.h));
    }

    std::vector<std::uint32_t> converted;  ///< converted pixels of the source

private:
    Call call_;
    pixman_image_t* src_;
    pixman_image_t* mask_;
    pixman_image_t* dst_;
    Buffer srcPlane_, maskPlane_;
};

pixman_image_t* opacityMask(const Call& call) { return call.opacity == 255 ? nullptr : solid(0, call.opacity); }

/// Pixman takes sources that are multiplied by their alpha. This is done before the measurement.
std::unique_ptr<Prepared> bySourceAlpha(const Call& call) {
    std::vector<std::uint32_t> premultiplied(std::size_t{call.src.width} * call.src.height);
    for (std::size_t i = 0; i < premultiplied.size(); ++i) {
        const TRC pixel = call.src.as<const TRC>()[i];
        premultiplied[i] = omnar::colorToward(pixel & 0xFF000000U, pixel, pixel >> 24);
    }
    auto over = std::make_unique<Over>(call, image(PIXMAN_a8r8g8b8, call.src, premultiplied.data()), opacityMask(call),
                                       call.src, Buffer{});
    over->converted = std::move(premultiplied);
    return over;
}

std::unique_ptr<Prepared> byOpacity(const Call& call) {
    return std::make_unique<Over>(call, image(PIXMAN_x8r8g8b8, call.src, call.src.pixels), opacityMask(call), call.src,
                                  Buffer{});
}

/// Pixman takes one mask: the alpha plane or the opacity.
std::unique_ptr<Prepared> byAlpha(const Call& call) {
    if (call.opacity != 255) return nullptr;
    return std::make_unique<Over>(call, image(PIXMAN_x8r8g8b8, call.src, call.src.pixels),
                                  image(PIXMAN_a8, call.alpha, call.alpha.pixels), call.src, call.alpha);
}

std::unique_ptr<Prepared> flat(const Call& call) {
    return std::make_unique<Over>(call, solid(call.color, call.opacity),
                                  image(PIXMAN_a8, call.alpha, call.alpha.pixels), Buffer{}, call.alpha);
}

std::unique_ptr<Prepared> flatByOwnAlpha(const Call& call) {
    return std::make_unique<Over>(call, solid(call.color, call.color >> 24), nullptr, Buffer{}, Buffer{});
}

/// Multiplies a plane by an alpha plane and an opacity.
class In final : public Prepared {
public:
    explicit In(const Call& call)
        : call_(call),
          alpha_(image(PIXMAN_a8, call.alpha, call.alpha.pixels)),
          mask_(opacityMask(call)),
          dst_(image(PIXMAN_a8, call.dst, call.dst.pixels)) {}
    In(const In&) = delete;
    In& operator=(const In&) = delete;
    ~In() override {
        pixman_image_unref(alpha_);
        if (mask_ != nullptr) pixman_image_unref(mask_);
        pixman_image_unref(dst_);
    }

    void run() override {
        const auto number = [](std::uint32_t n) { return static_cast<std::int32_t>(n); };
        pixman_image_composite32(PIXMAN_OP_IN, alpha_, mask_, dst_, number(call_.alpha.x), number(call_.alpha.y), 0, 0,
                                 number(call_.dst.x), number(call_.dst.y), number(call_.w), number(call_.h));
    }

private:
    Call call_;
    pixman_image_t* alpha_;
    pixman_image_t* mask_;
    pixman_image_t* dst_;
};

std::unique_ptr<Prepared> multiplied(const Call& call) { return std::make_unique<In>(call); }

constexpr Peer peers[] = {
    {.name = "pixman", .member = "ApplyAlphaToL08", .tolerance = 2, .prepare = multiplied},
    {.name = "pixman",
     .member = "AlphaBlendTRCToTRC",
     .tolerance = 3,
     .prepare = bySourceAlpha},  // the multiplication by alpha rounds once more
    {.name = "pixman", .member = "AlphaBlendTRCNoAlphaToTRC", .tolerance = 2, .prepare = byOpacity},
    {.name = "pixman", .member = "AlphaBlendTRCToTRCNoAlpha", .tolerance = 2, .prepare = byOpacity},
    {.name = "pixman", .member = "AlphaBlendTRCWithAlphaBufferToTRC", .tolerance = 2, .prepare = byAlpha},
    {.name = "pixman", .member = "AlphaBlendTRCWithAlphaBufferToTRC_shared", .tolerance = 2, .prepare = byAlpha},
    {.name = "pixman", .member = "AlphaBlendL08ToTRC", .tolerance = 2, .prepare = flat},
    {.name = "pixman", .member = "AlphaBlendColorToTRC", .tolerance = 2, .prepare = flat},
    {.name = "pixman", .member = "AlphaBlendColorToTRCInverted", .tolerance = 2, .prepare = flat},
    {.name = "pixman", .member = "AlphaBlendColorWithConstAlphaToTRC", .tolerance = 2, .prepare = flatByOwnAlpha},
};

}  // namespace

std::span<const Peer> pixmanPeers() { return peers; }

}  // namespace bench
