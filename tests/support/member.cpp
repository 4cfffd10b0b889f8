// SPDX-License-Identifier: MIT
#include "tests/support/member.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace support {

std::uint32_t load(const Buffer& buffer, std::size_t column, std::size_t row) {
    std::uint32_t value = 0;  // every supported platform is little-endian
    std::memcpy(&value, buffer.at(column, row), bytesOf(buffer.format));
    return value;
}

void store(const Buffer& buffer, std::size_t column, std::size_t row, std::uint32_t value) {
    std::memcpy(buffer.at(column, row), &value, bytesOf(buffer.format));
}

Buffer addressedAlpha(const Member& member, const Call& call) {
    const bool bySource = member.alpha == Member::sharesSource || (member.alphaFollowsSource && call.zeros == 0);
    if (!bySource && member.alpha != Member::sharesDst) return call.alpha;
    Buffer shared = bySource ? call.src : call.dst;
    shared.format = Format::l08;
    shared.pixels = call.alpha.pixels;
    return shared;
}

Extent extentOf(const Member& member, const Call& call) {
    std::uint64_t right = std::min<std::uint64_t>(std::uint64_t{call.dst.x} + call.w, call.dst.width);
    std::uint64_t bottom = std::min<std::uint64_t>(std::uint64_t{call.dst.y} + call.h, call.dst.height);
    if (member.cut != Member::byDst) {
        const Buffer& other = member.cut == Member::bySrcAndDst ? call.src : call.alpha;
        right = std::min<std::uint64_t>(right, std::uint64_t{call.dst.x} + other.width - other.x);
        bottom = std::min<std::uint64_t>(bottom, std::uint64_t{call.dst.y} + other.height - other.y);
    }
    return {right - call.dst.x, bottom - call.dst.y};
}

void runModel(const Member& member, const Call& call) {
    if (member.model != nullptr) return member.model(call);
    const auto [cols, rows] = extentOf(member, call);
    const Buffer alpha = addressedAlpha(member, call);
    std::vector<std::uint32_t> remapped(cols);
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t i = 0; call.lut != nullptr && i < cols; ++i) remapped[i] = call.lut[load(alpha, i, row)];
        for (std::size_t i = 0; i < cols; ++i) {
            const std::uint32_t s = member.src == Format::none ? 0 : load(call.src, i, row);
            const std::uint32_t a = alpha.pixels == nullptr ? 0
                                    : call.lut != nullptr   ? remapped[i]
                                                            : load(alpha, i, row);
            store(call.dst, i, row, member.pixel({load(call.dst, i, row), s, a, call}));
        }
    }
}

}  // namespace support
