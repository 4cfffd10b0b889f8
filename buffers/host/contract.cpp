// SPDX-License-Identifier: MIT
#include "buffers/host/contract.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace omnar {
namespace {

[[noreturn]] void printAndAbort(const SContractViolation& violation) {
    std::fprintf(stderr, "OmnarRaster: %s: %s is %s, but this must hold: %s\n", violation.function, violation.parameter,
                 violation.value, violation.rule);
    std::abort();
}

constinit std::atomic<ContractHandler> handlerInUse{printAndAbort};

}  // namespace

#if defined(OMNAR_CHECKED)
void contractBroken(const char* function, const std::string& parameter, const std::string& value,
                    const std::string& rule) {
    handlerInUse.load()({function, parameter.c_str(), value.c_str(), rule.c_str()});
}

void expectNotNull(const char* function, const char* names, std::initializer_list<const void*> pointers,
                   const char* rule) {
    std::string_view rest = names;
    for (const void* const pointer : pointers) {
        const std::size_t end = std::min(rest.find(','), rest.size());
        if (pointer == nullptr) contractBroken(function, std::string(rest.substr(0, end)), "null", rule);
        rest.remove_prefix(std::min(end + 2, rest.size()));
    }
}
#endif

}  // namespace omnar

ContractHandler SetContractHandler(ContractHandler handler) {
    return omnar::handlerInUse.exchange(handler == nullptr ? omnar::printAndAbort : handler);
}
