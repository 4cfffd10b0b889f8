// SPDX-License-Identifier: MIT
#include "tests/support/family.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/checksums.h"
#include "tests/support/fenced.h"
#include "tests/support/random.h"

namespace support {
namespace {

constexpr std::size_t arenaSize = 65536;

/// The memory of the buffers: one arena each, or one for all.
struct Memory {
    Fenced first{arenaSize}, second{arenaSize}, third{arenaSize};
    std::array<std::uint8_t, 256> lut{};

    std::array<std::span<std::byte>, 3> arenas() const { return {first.bytes(), second.bytes(), third.bytes()}; }

    void fill(Random& random) {
        for (const auto arena : arenas()) random.fill(arena);
        for (auto& value : lut) value = random.byte();
    }
    /// Fills the first and the last bytes of each arena, where placeAtFence() puts buffers.
    void fillAtFences(Random& random) {
        constexpr std::size_t filled = 8192;
        for (const auto arena : arenas()) {
            random.fill(arena.first(filled));
            random.fill(arena.last(filled));
        }
        for (auto& value : lut) value = random.byte();
    }
    void save(std::vector<std::byte>& all) const {
        all.clear();
        for (const auto arena : arenas()) all.insert(all.end(), arena.begin(), arena.end());
    }
    void restore(const std::vector<std::byte>& all) const {
        const std::byte* source = all.data();
        for (const auto arena : arenas()) {
            std::copy_n(source, arena.size(), arena.begin());
            source += arena.size();
        }
    }
};

/// A random buffer: its size is often exactly what the region needs, its corner on or near the edges.
Buffer shape(Random& random, Format format, std::uint32_t w, std::uint32_t h, bool holdsRegion) {
    Buffer buffer{format, nullptr, 0, 0, 0, 0};
    buffer.x = random.oneIn(3) ? 0 : random.below(6);
    buffer.y = random.oneIn(3) ? 0 : random.below(3);
    const auto room = [&](std::uint32_t extent) {
        return holdsRegion || !random.oneIn(4) ? extent + (random.oneIn(2) ? 0 : random.below(5))
                                               : random.below(extent + 1);
    };
    buffer.width = buffer.x + room(w);
    buffer.height = buffer.y + room(h);
    return buffer;
}

std::size_t sizeOf(const Buffer& buffer) { return std::size_t{buffer.width} * buffer.height * bytesOf(buffer.format); }

/// Puts the buffer at the start or the end of the arena, next to a fence.
void placeAtFence(Random& random, Buffer& buffer, std::span<std::byte> arena) {
    if (buffer.format == Format::none) return;
    buffer.pixels = random.oneIn(2) ? arena.data() : arena.data() + arena.size() - sizeOf(buffer);
}

Call randomCall(Random& random, const Member& member, std::uint32_t w, std::uint32_t h, Memory& memory) {
    Call call;
    call.w = w;
    call.h = h;
    call.opacity = random.oneIn(3) ? 255 : random.byte();
    call.color = static_cast<std::uint32_t>(random.next());
    call.ground = static_cast<std::uint32_t>(random.next());
    if (random.oneIn(4)) call.color |= 0xFF000000;
    call.first = random.oneIn(3);
    call.second = random.oneIn(2);
    call.zeros = random.oneIn(2) ? 0 : random.byte();
    if (member.takesLut && random.oneIn(2)) call.lut = memory.lut.data();
    call.table = memory.lut.data();

    const bool alphaHoldsRegion = member.cut != Member::byAlphaAndDst || call.lut != nullptr;
    if (member.src != Format::none && !member.sourceFollowsDst) call.src = shape(random, member.src, w, h, false);
    call.dst = shape(random, member.dst, w, h, false);
    if (member.sourceFollowsDst) {
        call.src = call.dst;
        call.src.format = member.src;
    }
    if (member.alpha == Member::noAlpha || (member.mayLackAlpha && random.oneIn(3))) return call;
    call.alpha = shape(random, Format::l08, w, h, alphaHoldsRegion);
    call.alpha.pixels = memory.first.bytes().data();  // any address: not null means that the call has an alpha plane
    call.alpha = addressedAlpha(member, call);
    return call;
}

std::string described(const Call& call, std::uint64_t seed) {
    const auto geometry = [](const char* name, const Buffer& b) {
        return std::string(" ") + name + " " + std::to_string(b.width) + "x" + std::to_string(b.height) + " at " +
               std::to_string(b.x) + "," + std::to_string(b.y);
    };
    return "seed " + std::to_string(seed) + " (OMNAR_SEED replays it): " + std::to_string(call.w) + "x" +
           std::to_string(call.h) + " opacity " + std::to_string(call.opacity) + geometry("src", call.src) +
           geometry("alpha", call.alpha) + geometry("dst", call.dst) + (call.lut != nullptr ? " lut" : "");
}

/// Runs model and member on equal memory and compares all arenas, the bytes around the buffers included.
void compare(const Member& member, const Call& call, const Memory& memory, std::uint64_t seed) {
    static std::vector<std::byte> before, expected, actual;
    memory.save(before);
    runModel(member, call);
    memory.save(expected);
    memory.restore(before);
    member.call(call);
    memory.save(actual);
    if (std::memcmp(actual.data(), expected.data(), expected.size()) == 0) return;

    const auto difference = std::mismatch(actual.begin(), actual.end(), expected.begin()).first - actual.begin();
    const auto i = static_cast<std::size_t>(difference);
    ADD_FAILURE() << member.name << ' ' << described(call, seed) << "\nfirst difference at byte " << i
                  << " of the arenas: " << std::to_integer<int>(actual[i]) << " instead of "
                  << std::to_integer<int>(expected[i]) << ", was " << std::to_integer<int>(before[i]);
}

void placeApart(Random& random, Call& call, const Memory& memory) {
    placeAtFence(random, call.src, memory.first.bytes());
    placeAtFence(random, call.alpha, memory.second.bytes());
    placeAtFence(random, call.dst, memory.third.bytes());
}

constexpr std::uint32_t widestBlock = 64;
constexpr std::uint32_t maxWidth = 2 * widestBlock + 3;

}  // namespace

void checkApart(const Member& member) {
    Memory memory;
    forSeeds(std::uint64_t{maxWidth} * 6, [&](Random& random, std::uint64_t seed) {
        memory.fillAtFences(random);
        Call call =
            randomCall(random, member, static_cast<std::uint32_t>(seed % (maxWidth + 1)), random.below(5), memory);
        placeApart(random, call, memory);
        compare(member, call, memory, seed);
    });
}

void checkOverlapping(const Member& member) {
    Memory memory;
    forSeeds(800, [&](Random& random, std::uint64_t seed) {
        // One call in 20 has a single row, longer than any scratch row. The others use a quarter of the arena.
        const bool isLong = random.oneIn(20);
        const auto arena = memory.first.bytes().first(isLong ? arenaSize : arenaSize / 4);
        random.fill(arena);
        for (auto& value : memory.lut) value = random.byte();
        const std::uint32_t w = isLong ? 4000 + random.below(8000) : random.below(maxWidth);
        Call call = randomCall(random, member, w, 1 + random.below(4), memory);
        const bool equalPitch = random.oneIn(3) && call.src.format != Format::none && !member.sourceFollowsDst;
        if (equalPitch) {  // all rows overlap by the same distance
            call.src.width = std::max(call.dst.width, call.src.x);
        }
        for (Buffer* buffer : {&call.src, &call.alpha, &call.dst}) {
            if (!isLong || buffer->format == Format::none) continue;
            buffer->y = 0;
            buffer->height = 1;
        }
        if (call.alpha.format != Format::none) call.alpha = addressedAlpha(member, call);
        const std::size_t base = random.below(1000) * 4;
        const std::size_t spread = random.oneIn(2) ? 100 : sizeOf(call.dst) + 4;
        for (Buffer* buffer : {&call.dst, &call.src, &call.alpha}) {
            if (buffer->format == Format::none) continue;
            const std::size_t pixel = bytesOf(buffer->format);
            const std::size_t offset = base + random.below(static_cast<std::uint32_t>(spread)) / pixel * pixel;
            buffer->pixels = arena.data() + std::min(offset, (arena.size() - sizeOf(*buffer)) / pixel * pixel);
        }
        compare(member, call, memory, seed);
    });
}

std::uint64_t checksum(const Member& member) {
    Memory memory;
    Fnv1a sum;
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        Random random(seed);
        if (seed % 10 == 1) memory.fill(random);
        const std::uint32_t h = 1 + random.below(4);  // separate statements: the order of arguments is unspecified
        const std::uint32_t w = random.below(200);
        Call call = randomCall(random, member, w, h, memory);
        placeApart(random, call, memory);
        member.call(call);
        const Extent extent = extentOf(member, call);
        const auto add = [&](const Buffer& buffer) {
            const std::size_t rowBytes = extent.cols * bytesOf(buffer.format);
            for (std::size_t n = 0; n < rowBytes * extent.rows; ++n) {
                sum.add(std::to_integer<std::uint8_t>(buffer.at(0, n / rowBytes)[n % rowBytes]));
            }
        };
        add(call.dst);
        if (member.sourceFollowsDst) add(call.src);  // tone moves from the source to the destination
    }
    return sum.value();
}

}  // namespace support
