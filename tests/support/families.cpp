// SPDX-License-Identifier: MIT
#include "tests/support/member.h"

namespace support {

std::vector<std::span<const Member>> families() {
    return {
        trueColourMembers(), sampleMembers(), conversionMembers(), markingMembers(), shadeMembers(), transferMembers(),
    };
}

}  // namespace support
