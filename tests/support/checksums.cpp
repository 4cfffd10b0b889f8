// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "tests/support/family.h"

namespace support {
namespace {

struct Sum {
    const char* name;
    std::uint64_t sum;
};
constexpr Sum sums[] = {
#include "tests/checksums.inc"
};

}  // namespace

void checkChecksum(const Member& member) {
    const std::uint64_t actual = checksum(member);
    for (const Sum& committed : sums) {
        if (std::string(committed.name) == member.name) {
            EXPECT_EQ(actual, committed.sum) << member.name;
            return;
        }
    }
    ADD_FAILURE() << "{\"" << member.name << "\", " << actual << "U},";
}

}  // namespace support
