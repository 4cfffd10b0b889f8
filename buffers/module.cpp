// SPDX-License-Identifier: MIT
#include "buffers/module.h"

#include <cstdio>
#include <new>

#include "buffers/host.h"
#include "buffers/platform.h"

namespace omnar {
namespace {

const Module theModule;

/// The library's own exception as it is; any other becomes one of kind 1 (memory) or 3.
COmnarException classify(const std::exception& escaped) {
    constexpr const char* source = "MfcUtilities";
    if (const auto* own = dynamic_cast<const COmnarException*>(&escaped)) return *own;
    if (dynamic_cast<const std::bad_alloc*>(&escaped) != nullptr) return {1, source, 2722, 0};
    return {3, source, 2727, 0};
}

}  // namespace

bool createComError(const COmnarException& error) {
    platform::ErrorInfo info{error.code(), error.line(), error.further(), {}};
    std::snprintf(info.source, sizeof info.source, "%s", error.file());
    return platform::setErrorInfo(info);
}

void throwFromLastErrorInfo(int status) {
    platform::ErrorInfo info{};
    platform::takeErrorInfo(&info);
    throw COmnarException(status, info.source, info.line, info.further);
}

bool Module::initInstance() {
    mmxAtStart_ = IsMMX();
    return true;
}

int Module::processWndProcException(const std::exception& escaped, unsigned message) const {
    const int handled = message == messageCommand ? 1 : 0;
    ITextMgr* const reporter = textMgr();
    if (reporter == nullptr) return message == messageCreate ? -1 : handled;

    platform::ErrorInfo info{};
    if (createComError(classify(escaped)) && platform::takeErrorInfo(&info)) {
        reporter->ReportError(info.kind, info.source, info.line);
    }
    return handled;
}

const Module& module() { return theModule; }

}  // namespace omnar

int IsMMX() { return omnar::platform::hasMmx(); }
