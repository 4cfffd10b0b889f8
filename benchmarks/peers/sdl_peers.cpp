// SPDX-License-Identifier: MIT
#include <SDL_surface.h>

#include "benchmarks/peers/peer.h"

namespace bench {
namespace {

using support::Buffer;
using support::Call;

/// A surface that shares the buffer's memory.
class Surface {
public:
    Surface(const Buffer& buffer, std::uint32_t format)
        : surface_(SDL_CreateRGBSurfaceWithFormatFrom(buffer.pixels, static_cast<int>(buffer.width),
                                                      static_cast<int>(buffer.height), 32,
                                                      static_cast<int>(buffer.width * 4), format)) {}
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    ~Surface() { SDL_FreeSurface(surface_); }
    operator SDL_Surface*() const { return surface_; }

private:
    SDL_Surface* surface_;
};

SDL_Rect region(const Buffer& buffer, const Call& call) {
    const auto number = [](std::uint32_t n) { return static_cast<int>(n); };
    return {number(buffer.x), number(buffer.y), number(call.w), number(call.h)};
}

class Filled final : public Prepared {
public:
    explicit Filled(const Call& call)
        : dst_(call.dst, SDL_PIXELFORMAT_ARGB8888), region_(region(call.dst, call)), color_(call.color) {}
    void run() override { SDL_FillRect(dst_, &region_, color_); }

private:
    Surface dst_;
    SDL_Rect region_;
    std::uint32_t color_;
};

/// A blit, set up by `prepare(surface, call)`.
template <std::uint32_t format, void (*prepare)(SDL_Surface* src, const Call& call)>
class Blit final : public Prepared {
public:
    explicit Blit(const Call& call)
        : src_(call.src, format),
          dst_(call.dst, SDL_PIXELFORMAT_RGB888),
          srcRegion_(region(call.src, call)),
          dstRegion_(region(call.dst, call)) {
        prepare(src_, call);
    }
    void run() override {
        SDL_Rect cut = dstRegion_;  // SDL writes the cut region here
        SDL_BlitSurface(src_, &srcRegion_, dst_, &cut);
    }

private:
    Surface src_, dst_;
    SDL_Rect srcRegion_, dstRegion_;
};

void copying(SDL_Surface* src, const Call&) { SDL_SetSurfaceBlendMode(src, SDL_BLENDMODE_NONE); }
void copyingButKey(SDL_Surface* src, const Call& call) {
    copying(src, call);
    SDL_SetColorKey(src, SDL_TRUE, call.color);
}
void blending(SDL_Surface* src, const Call& call) {
    SDL_SetSurfaceBlendMode(src, SDL_BLENDMODE_BLEND);
    SDL_SetSurfaceAlphaMod(src, call.opacity);
}

template <class Work>
std::unique_ptr<Prepared> prepare(const Call& call) {
    return std::make_unique<Work>(call);
}

constexpr Peer peers[] = {
    {.name = "SDL", .member = "FillTRCBuffer", .tolerance = 0, .prepare = prepare<Filled>},
    {.name = "SDL",
     .member = "Copy2DTRCBufferToTRC",
     .tolerance = 0,
     .prepare = prepare<Blit<SDL_PIXELFORMAT_RGB888, copying>>},
    {.name = "SDL",
     .member = "CopyTRCToTRCIfNotKeyColor",
     .tolerance = 0,
     .prepare = prepare<Blit<SDL_PIXELFORMAT_RGB888, copyingButKey>>},
    {.name = "SDL",
     .member = "AlphaBlendTRCToTRC",
     .tolerance = 3,
     .prepare = prepare<Blit<SDL_PIXELFORMAT_ARGB8888, blending>>},
    {.name = "SDL",
     .member = "AlphaBlendTRCNoAlphaToTRC",
     .tolerance = 3,
     .prepare = prepare<Blit<SDL_PIXELFORMAT_RGB888, blending>>},
};

}  // namespace

std::span<const Peer> sdlPeers() { return peers; }

}  // namespace bench
