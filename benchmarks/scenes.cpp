// SPDX-License-Identifier: MIT
#include "benchmarks/scenes.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tests/support/random.h"

namespace bench {
namespace {

using support::Buffer;
using support::Call;
using support::Format;
using support::Member;

constexpr std::size_t pageBytes = 4096;
constexpr std::size_t cache = 256 << 10, memory = 64 << 20;
// clang-format off
constexpr Scene allScenes[] = {
    {.name = "1 x 1, 180", .side = 1, .alpha = Alpha::random, .opacity = 180, .runs = Runs::full},
    {.name = "8 x 8, 180", .side = 8, .alpha = Alpha::random, .opacity = 180, .runs = Runs::full},
    {.name = "8 x 8, 255", .side = 8, .alpha = Alpha::random, .opacity = 255, .runs = Runs::every},
    {.name = "16 x 16, 180", .side = 16, .alpha = Alpha::random, .opacity = 180, .runs = Runs::full},
    {.name = "16 x 16, 255", .side = 16, .alpha = Alpha::random, .opacity = 255, .runs = Runs::full},
    {.name = "40 x 40, 180", .side = 40, .alpha = Alpha::random, .opacity = 180, .runs = Runs::every},
    {.name = "40 x 40, 255", .side = 40, .alpha = Alpha::random, .opacity = 255, .runs = Runs::full},
    {.name = "random, 180", .workingSet = cache, .alpha = Alpha::random, .opacity = 180, .runs = Runs::every},
    {.name = "random, 255", .workingSet = cache, .alpha = Alpha::random, .opacity = 255, .runs = Runs::every},
    {.name = "shapes, 180", .workingSet = cache, .alpha = Alpha::shapes, .opacity = 180, .runs = Runs::full},
    {.name = "shapes, 255", .workingSet = cache, .alpha = Alpha::shapes, .opacity = 255, .runs = Runs::every},
    {.name = "lut, 180", .workingSet = cache, .alpha = Alpha::random, .opacity = 180, .runs = Runs::every, .throughLut = true},
    {.name = "64 MiB, 180", .workingSet = memory, .alpha = Alpha::random, .opacity = 180, .runs = Runs::every},
};
// clang-format on

/// Random coverage, or runs of about 50 transparent or opaque pixels with soft edges, as ink has them.
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
        if (format == Format::trc) bytes[4 * i] = bytes[4 * i + 3] = value;  // blue and alpha may be read as coverage
    }
    return bytes;
}

}  // namespace

PlacedBytes::PlacedBytes(std::span<const std::byte> pattern, std::size_t size, std::size_t offsetInPage)
    : memory_(size + 2 * pageBytes), size_(size) {
    const auto address = reinterpret_cast<std::uintptr_t>(memory_.data());
    start_ = (pageBytes - address % pageBytes) + offsetInPage;
    for (std::span<std::byte> unfilled = bytes(); !unfilled.empty();) {
        const std::size_t part = std::min(unfilled.size(), pattern.size());
        std::copy_n(pattern.begin(), part, unfilled.begin());
        unfilled = unfilled.subspan(part);
    }
}

std::span<const Scene> scenes() { return allScenes; }

Scene smallest(const Scene& scene) {
    Scene small = scene;
    small.workingSet = std::min<std::size_t>(scene.workingSet, 64 << 10);
    return small;
}

std::unique_ptr<Stage> stageOf(const Member& member, const Scene& scene) {
    auto stage = std::make_unique<Stage>();
    Call& call = stage->call;
    std::uint32_t width = 0, height = 0, corner = 0;
    if (scene.side != 0) {
        width = 616;
        height = scene.side + 20;
        corner = 7;
        call.w = call.h = scene.side;
    } else {
        const std::size_t perPixel = bytesOf(member.src) + (member.alpha != Member::noAlpha) + bytesOf(member.dst);
        width = 1024;
        height = static_cast<std::uint32_t>(scene.workingSet / perPixel / width);
        call.w = width;
        call.h = height;
    }
    support::Random random(7);
    const std::size_t count = std::size_t{width} * height;
    const auto buffer = [&](Format format, PlacedBytes& placed, std::size_t offsetInPage) {
        // Random numbers for every pixel would take longer than the measurement.
        constexpr std::size_t patternPixels = 1 << 16;
        const auto pattern = pixels(format, std::min(count, patternPixels), scene.alpha, random);
        placed = {pattern, count * bytesOf(format), offsetInPage};
        return Buffer{format, placed.bytes().data(), width, height, corner, corner};
    };
    if (member.src != Format::none) call.src = buffer(member.src, stage->src, 0);
    if (member.alpha != Member::noAlpha) call.alpha = buffer(Format::l08, stage->alpha, 1344);
    call.dst = buffer(member.dst, stage->dst, 2752);
    call.opacity = scene.opacity;
    call.color = std::uint32_t{scene.opacity} << 24 | 0x3060C0;
    call.ground = 0xFFFFFF;
    call.zeros = 1;
    // The look-up table is a permutation, so that repeated look-ups in place keep all values.
    for (std::size_t i = 0; i < 256; ++i) stage->lut[i] = static_cast<std::uint8_t>(i * 167 + 13);
    for (std::size_t i = 0; i < 256; ++i) stage->table[i] = member.mapsByTable ? stage->lut[i] : i % 8 == 1 ? 255 : 0;
    call.table = stage->table.data();
    if (scene.throughLut) call.lut = stage->lut.data();
    const auto [cols, rows] = extentOf(member, call);
    stage->pixels = cols * rows;
    return stage;
}

Pass passOver(const Member& member, const Stage& stage) {
    const Call& call = stage.call;
    const auto [cols, rows] = extentOf(member, call);
    const auto rowsOf = [cols = cols](const Buffer& buffer) {
        if (buffer.pixels == nullptr) return Rows{};
        const std::size_t pixelBytes = bytesOf(buffer.format);
        return Rows{buffer.at(0, 0), cols * pixelBytes, buffer.width * pixelBytes};
    };
    return {rowsOf(call.src), rowsOf(call.alpha), rowsOf(call.dst), rows, !member.overwrites};
}

bool verify(const Member& member, const Scene& scene, const Peer* peer) {
    const Scene small = smallest(scene);
    const auto expected = stageOf(member, small), actual = stageOf(member, small);
    runModel(member, expected->call);
    const auto theirs = actual->dst.bytes(), right = expected->dst.bytes();
    if (peer == nullptr) {
        member.call(actual->call);
        return std::equal(theirs.begin(), theirs.end(), right.begin(), right.end());
    }
    peer->prepare(actual->call)->run();
    for (std::size_t i = 0; i < right.size(); ++i) {
        if (member.dst == Format::trc && i % 4 == 3) continue;  // peers write any alpha byte
        const int off = std::abs(std::to_integer<int>(theirs[i]) - std::to_integer<int>(right[i]));
        if (off <= peer->tolerance) continue;
        std::fprintf(stderr, "off by %d at byte %zu: ", off, i);
        return false;
    }
    return true;
}

}  // namespace bench
