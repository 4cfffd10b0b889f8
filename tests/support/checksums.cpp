// SPDX-License-Identifier: MIT
#include "tests/support/checksums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "tests/support/family.h"

namespace support {
namespace {

constexpr struct {
    std::string_view name;
    std::uint64_t sum;
} committed[] = {
#include "tests/checksums.inc"
};

}  // namespace

void expectCommitted(std::string_view name, std::uint64_t sum) {
    const auto entry = std::find_if(std::begin(committed), std::end(committed),
                                    [&](const auto& candidate) { return candidate.name == name; });
    if (entry == std::end(committed)) {
        ADD_FAILURE() << "tests/checksums.inc lacks {\"" << name << "\", " << sum << "U},";
    } else {
        EXPECT_EQ(sum, entry->sum) << name;
    }
}

void checkChecksum(const Member& member) { expectCommitted(member.name, checksum(member)); }

}  // namespace support
