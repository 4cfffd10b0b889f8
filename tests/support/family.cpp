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

#include "tests/support/fenced.h"
#include "tests/support/random.h"

namespace support {
namespace {

constexpr std::size_t arenaSize = 65536;

/// Where buffers lie: one arena each, or all in one.
struct Memory {
    Fenced first{arenaSize}, second{arenaSize}, third{arenaSize};
    std::array<std::uint8_t, 256> lut{};

    std::array<std::span<std::byte>, 3> arenas() const { return {first.bytes(), second.bytes(), third.bytes()}; }

    void fill(Random& random) {
        for (const auto arena : arenas()) random.fill(arena);
        for (auto& value : lut) value = random.byte();
    }
    /// Where placeAtFence() puts buffers: the first and the last bytes of each arena.
    void fillAtFences(Random& random) {
        for (const auto arena : arenas()) {
            random.fill(arena.first(8192));
            random.fill(arena.last(8192));
        }
        for (auto& value : lut) value = random.byte();
    }
    void save(std::vector<std::byte>& all) const {
        all.clear();
        for (const auto arena : arenas()) all.insert(all.end(), arena.begin(), arena.end());
    }
    void restore(const std::vector<std::byte>& all) const {
        const std::byte* from = all.data();
        for (const auto arena : arenas()) {
            std::copy_n(from, arena.size(), arena.begin());
            from += arena.size();
        }
    }
};

/// A size that is often just what the region needs, and a corner on or near the edges.
Buffer shape(Random& random, Format format, std::uint32_t w, std::uint32_t h, bool mustHold) {
    Buffer buffer{format, nullptr, 0, 0, 0, 0};
    buffer.x = random.oneIn(3) ? 0 : random.below(6);
    buffer.y = random.oneIn(3) ? 0 : random.below(3);
    const auto room = [&](std::uint32_t extent) {
        return mustHold || !random.oneIn(4) ? extent + (random.oneIn(2) ? 0 : random.below(5))
                                            : random.below(extent + 1);
    };
    buffer.width = buffer.x + room(w);
    buffer.height = buffer.y + room(h);
    return buffer;
}

std::size_t sizeOf(const Buffer& buffer) { return std::size_t{buffer.width} * buffer.height * bytesOf(buffer.format); }

/// Puts the buffer at the very start or the very end of the arena, so that the next byte is forbidden.
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

    const bool alphaHolds = member.cut != Member::byAlphaAndDst || call.lut != nullptr;
    if (member.src != Format::none && !member.sourceFollowsDst) call.src = shape(random, member.src, w, h, false);
    call.dst = shape(random, member.dst, w, h, false);
    if (member.sourceFollowsDst) {
        call.src = call.dst;
        call.src.format = member.src;
    }
    if (member.alpha == Member::noAlpha || (member.mayLackAlpha && random.oneIn(3))) return call;
    call.alpha = shape(random, Format::l08, w, h, alphaHolds);
    call.alpha.pixels = memory.first.bytes().data();  // anywhere, so that it counts as there
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

/// Runs model and member on the same memory and compares all of it, guard zones included.
void compare(const Member& member, const Call& call, const Memory& memory, std::uint64_t seed) {
    static std::vector<std::byte> before, expected, actual;
    memory.save(before);
    runModel(member, call);
    memory.save(expected);
    memory.restore(before);
    member.call(call);
    memory.save(actual);
    if (std::memcmp(actual.data(), expected.data(), expected.size()) == 0) return;

    const auto at = std::mismatch(actual.begin(), actual.end(), expected.begin()).first - actual.begin();
    ADD_FAILURE() << member.name << ' ' << described(call, seed) << "\nfirst difference at byte " << at
                  << " of the arenas"
                  << ": " << std::to_integer<int>(actual[static_cast<std::size_t>(at)]) << " instead of "
                  << std::to_integer<int>(expected[static_cast<std::size_t>(at)]) << ", was "
                  << std::to_integer<int>(before[static_cast<std::size_t>(at)]);
}

void placeApart(Random& random, Call& call, const Memory& memory) {
    placeAtFence(random, call.src, memory.first.bytes());
    placeAtFence(random, call.alpha, memory.second.bytes());
    placeAtFence(random, call.dst, memory.third.bytes());
}

constexpr std::uint32_t widths = 2 * 64 + 3;  // two of the widest blocks, and three

}  // namespace

void checkApart(const Member& member) {
    Memory memory;
    forSeeds(std::uint64_t{widths} * 6, [&](Random& random, std::uint64_t seed) {
        memory.fillAtFences(random);
        Call call =
            randomCall(random, member, static_cast<std::uint32_t>(seed % (widths + 1)), random.below(5), memory);
        placeApart(random, call, memory);
        compare(member, call, memory, seed);
    });
}

void checkOverlapping(const Member& member) {
    Memory memory;
    forSeeds(800, [&](Random& random, std::uint64_t seed) {
        // Now and then a single row that is longer than any scratch row. Other buffers leave most of an arena alone.
        const bool isLong = random.oneIn(20);
        const auto arena = memory.first.bytes().first(isLong ? arenaSize : arenaSize / 4);
        random.fill(arena);
        for (auto& value : memory.lut) value = random.byte();
        const std::uint32_t w = isLong ? 4000 + random.below(8000) : random.below(widths);
        Call call = randomCall(random, member, w, 1 + random.below(4), memory);
        if (random.oneIn(3) && call.src.format != Format::none &&
            !member.sourceFollowsDst) {  // rows keep their distance
            call.src.width = std::max(call.dst.width, call.src.x);
        }
        for (Buffer* buffer : {&call.src, &call.alpha, &call.dst}) {
            if (!isLong || buffer->format == Format::none) continue;
            buffer->y = 0;
            buffer->height = 1;
        }
        if (call.alpha.format != Format::none) call.alpha = addressedAlpha(member, call);
        const std::size_t base = random.below(1000) * 4;
        const std::size_t reach = random.oneIn(2) ? 100 : sizeOf(call.dst) + 4;
        for (Buffer* buffer : {&call.dst, &call.src, &call.alpha}) {
            if (buffer->format == Format::none) continue;
            const std::size_t pixel = bytesOf(buffer->format);
            const std::size_t offset = base + random.below(static_cast<std::uint32_t>(reach)) / pixel * pixel;
            buffer->pixels = arena.data() + std::min(offset, (arena.size() - sizeOf(*buffer)) / pixel * pixel);
        }
        compare(member, call, memory, seed);
    });
}

std::uint64_t checksum(const Member& member) {
    Memory memory;
    std::uint64_t sum = 0xCBF29CE484222325U;  // FNV-1a
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        Random random(seed);
        if (seed % 10 == 1) memory.fill(random);
        const std::uint32_t h = 1 + random.below(4);  // one draw a statement: compilers order arguments differently
        const std::uint32_t w = random.below(200);
        Call call = randomCall(random, member, w, h, memory);
        placeApart(random, call, memory);
        member.call(call);
        const Extent extent = extentOf(member, call);
        const auto add = [&](const Buffer& buffer) {
            const std::size_t rowBytes = extent.cols * bytesOf(buffer.format);
            for (std::size_t n = 0; n < rowBytes * extent.rows; ++n) {
                const std::byte value = buffer.at(0, n / rowBytes)[n % rowBytes];
                sum = (sum ^ std::to_integer<std::uint64_t>(value)) * 0x100000001B3U;
            }
        };
        add(call.dst);
        if (member.sourceFollowsDst) add(call.src);  // it may lose what the destination gains
    }
    return sum;
}

}  // namespace support
