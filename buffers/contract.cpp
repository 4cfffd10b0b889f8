// SPDX-License-Identifier: MIT
#include "buffers/contract.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

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
void contractBroken(const char* function, const char* parameter, const std::string& value, const char* rule) {
    handlerInUse.load()({function, parameter, value.c_str(), rule});
}
#endif

}  // namespace omnar

ContractHandler SetContractHandler(ContractHandler handler) {
    return omnar::handlerInUse.exchange(handler == nullptr ? omnar::printAndAbort : handler);
}
