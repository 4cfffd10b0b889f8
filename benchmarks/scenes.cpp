// SPDX-License-Identifier: MIT
#include "benchmarks/scenes.h"

#include <algorithm>
#include <cmath>

#include "tests/support/random.h"

namespace bench {
namespace {

using support::Buffer;
using support::Call;
using support::Format;
using support::Member;

constexpr Scene allScenes[] = {
    {"random, 180", 256 << 10, Alpha::random, 180}, {"random, 255", 256 << 10, Alpha::random, 255},
    {"shapes, 180", 256 << 10, Alpha::shapes, 180}, {"shapes, 255", 256 << 10, Alpha::shapes, 255},
    {"64 MiB, 180", 64 << 20, Alpha::random, 180},  {"40 x 40, 180", 0, Alpha::random, 180},
};

/// Clear, solid and soft edges, as ink has them: runs of some 50 pixels.
std::vector<std::uint8_t> alphas(std::size_t count, Alpha kind, support::Random& random) {
    std::vector<std::uint8_t> values(count);
    for (std::size_t i = 0; i < count;) {
        if (kind == Alpha::random) {
            values[i++] = static_cast<std::uint8_t>(random.next());
            continue;
        }
        const std::uint8_t inside = random.oneIn(2) ? 255 : 0;
        for (std::size_t end = i + 20 + random.below(60); i < end && i < count; ++i) values[i] = inside;
        for (std::size_t end = i + 3; i < end && i < count; ++i) values[i] = static_cast<std::uint8_t>(random.next());
    }
    return values;
}

std::vector<std::byte> pixels(Format format, std::size_t count, Alpha kind, support::Random& random) {
    std::vector<std::byte> bytes(count * bytesOf(format));
    random.fill(bytes);
    const auto values = alphas(count, kind, random);
    for (std::size_t i = 0; i < count; ++i) {
        const auto value = std::byte{values[i]};
        if (format == Format::l08) bytes[i] = value;
        if (format == Format::l12) bytes[2 * i + 1] = value & std::byte{15};
        if (format == Format::trc) bytes[4 * i] = bytes[4 * i + 3] = value;  // blue and alpha serve as coverage
    }
    return bytes;
}

}  // namespace

std::span<const Scene> scenes() { return allScenes; }

Scene smallest(const Scene& scene) {
    Scene small = scene;
    small.workingSet = std::min<std::size_t>(scene.workingSet, 64 << 10);
    return small;
}

std::size_t trafficOf(const Member& member) {
    return bytesOf(member.src) + (member.alpha == Member::noAlpha ? 0 : 1) +
           (member.overwrites ? 1 : 2) * bytesOf(member.dst);
}

std::unique_ptr<Stage> stageOf(const Member& member, const Scene& scene) {
    auto stage = std::make_unique<Stage>();
    Call& call = stage->call;
    std::uint32_t width = 1024, height = 0, corner = 0;
    if (scene.workingSet == 0) {
        width = 616;
        height = 60;
        corner = 7;
        call.w = call.h = 40;
    } else {
        const std::size_t perPixel = trafficOf(member) - (member.overwrites ? 0 : bytesOf(member.dst));
        height = static_cast<std::uint32_t>(scene.workingSet / perPixel / width);
        call.w = width;
        call.h = height;
    }
    support::Random random(7);
    const std::size_t count = std::size_t{width} * height;
    const auto buffer = [&](Format format, std::vector<std::byte>& memory) {
        memory = pixels(format, count, scene.alpha, random);
        return Buffer{format, memory.data(), width, height, corner, corner};
    };
    if (member.src != Format::none) call.src = buffer(member.src, stage->src);
    if (member.alpha != Member::noAlpha) call.alpha = buffer(Format::l08, stage->alpha);
    call.dst = buffer(member.dst, stage->dst);
    call.opacity = scene.opacity;
    call.color = std::uint32_t{scene.opacity} << 24 | 0x3060C0;
    call.ground = 0xFFFFFF;
    call.zeros = 1;
    for (std::size_t i = 0; i < stage->table.size(); ++i) stage->table[i] = i % 8 == 1 ? 255 : 0;
    call.table = stage->table.data();
    return stage;
}

std::string verify(const Member& member, const Scene& scene, const Peer* peer) {
    const Scene small = smallest(scene);
    const auto expected = stageOf(member, small);
    const auto actual = stageOf(member, small);
    runModel(member, expected->call);
    if (peer == nullptr) {
        member.call(actual->call);
        return actual->dst == expected->dst ? "" : "differs from its model";
    }
    const auto prepared = peer->prepare(actual->call);
    prepared->run();
    for (std::size_t i = 0; i < actual->dst.size(); ++i) {
        if (member.dst == Format::trc && i % 4 == 3) continue;  // the alpha byte is the peer's own
        const int off = std::abs(std::to_integer<int>(actual->dst[i]) - std::to_integer<int>(expected->dst[i]));
        if (off > peer->tolerance) return "is off by " + std::to_string(off);
    }
    return "";
}

}  // namespace bench
