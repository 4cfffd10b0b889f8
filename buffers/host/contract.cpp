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

constinit std::atomic<ContractHandler> currentHandler{printAndAbort};

}  // namespace

#if defined(OMNAR_CHECKED)
void reportBreach(const char* function, const std::string& parameter, const std::string& value,
                  const std::string& rule) {
    currentHandler.load()({function, parameter.c_str(), value.c_str(), rule.c_str()});
}

void expectNotNull(const char* function, const char* names, std::initializer_list<const void*> pointers,
                   const char* rule) {
    std::string_view remaining = names;
    for (const void* const pointer : pointers) {
        const std::size_t end = std::min(remaining.find(','), remaining.size());
        if (pointer == nullptr) reportBreach(function, std::string(remaining.substr(0, end)), "null", rule);
        remaining.remove_prefix(std::min(end + 2, remaining.size()));
    }
}
#endif

}  // namespace omnar

ContractHandler SetContractHandler(ContractHandler handler) {
    return omnar::currentHandler.exchange(handler == nullptr ? omnar::printAndAbort : handler);
}
