// SPDX-License-Identifier: MIT
/// @file
/// Checksums of what functions write, and the committed ones in tests/checksums.inc.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace support {

/// The FNV-1a hash of a sequence of bytes.
class Fnv1a {
public:
    void add(std::uint8_t byte) { value_ = (value_ ^ byte) * 0x100000001B3U; }
    void add(std::span<const std::uint8_t> bytes) {
        for (const std::uint8_t byte : bytes) add(byte);
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325U;
};

/// Expects `sum` to be the checksum that is committed under `name`.
void expectCommitted(std::string_view name, std::uint64_t sum);

}  // namespace support
