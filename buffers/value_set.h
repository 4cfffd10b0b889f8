// SPDX-License-Identifier: MIT
/// @file
/// A set of 8-bit values that a caller passes as 256 flags. The vector kernel is in value_set-inl.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace omnar {

class ValueSet {
public:
    constexpr explicit ValueSet(const unsigned char* flags) : flags_(flags) {
        for (std::size_t high = 0; high < 16; ++high) {
            const auto bit = static_cast<std::uint8_t>(1U << high % 8);
            for (std::size_t low = 0; low < 16; ++low) {
                const auto isIn = static_cast<std::uint8_t>(flags[high * 16 + low] != 0 ? bit : 0);
                columns_[high / 8 * 16 + low] = static_cast<std::uint8_t>(columns_[high / 8 * 16 + low] | isIn);
            }
        }
    }
    explicit ValueSet(const bool* flags) : ValueSet(reinterpret_cast<const unsigned char*>(flags)) {}

    constexpr bool contains(unsigned value) const { return flags_[value] != 0; }

    /// The set for byte shuffles: bit (v >> 4) % 8 of byte (v >> 7) * 16 + (v & 15) is 1 if the set contains v.
    const std::uint8_t* columns() const { return columns_.data(); }

private:
    const unsigned char* flags_;
    std::array<std::uint8_t, 32> columns_{};
};

}  // namespace omnar
