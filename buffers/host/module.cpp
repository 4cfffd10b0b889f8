// SPDX-License-Identifier: MIT
#include "buffers/host/module.h"

#include <cstdio>
#include <new>

#include "buffers/host/platform.h"
#include "buffers/host/services.h"

namespace omnar {
namespace {

const Module theModule;

// Window messages, by their numbers on Windows.
constexpr unsigned messageCreate = 1;
constexpr unsigned messageCommand = 273;

/// The library's own exception as it is; any other becomes one of kind 1 (memory) or 3.
COmnarException classify(const std::exception& escaped) {
    constexpr const char* source = "MfcUtilities";
    if (const auto* own = dynamic_cast<const COmnarException*>(&escaped)) return *own;
    if (dynamic_cast<const std::bad_alloc*>(&escaped) != nullptr) return {1, source, 2722, 0};
    return {3, source, 2727, 0};
}

platform::ErrorInfo infoOf(const COmnarException& error) {
    platform::ErrorInfo info{error.code(), error.line(), error.further(), {}};
    std::snprintf(info.source, sizeof info.source, "%s", error.file());
    return info;
}

}  // namespace

bool createComError(const COmnarException& error) { return platform::setErrorInfo(infoOf(error)); }

void throwFromLastErrorInfo(int status) {
    platform::ErrorInfo info{};
    platform::takeErrorInfo(&info);
    throw COmnarException(status, info.source, info.line, info.further);
}

bool Module::initInstance() {
    mmxAtStart_ = IsMMX();
    return true;
}

const Module& module() { return theModule; }

}  // namespace omnar

int ReportEscapedException(const std::exception& escaped, unsigned int message) {
    using namespace omnar;
    const int handled = message == messageCommand ? 1 : 0;
    ITextMgr* const reporter = textMgr();
    if (reporter == nullptr) return message == messageCreate ? -1 : handled;

    // Takes the place of what an earlier error left on this thread. A system that cannot keep it leaves `info` as it is.
    platform::ErrorInfo info = infoOf(classify(escaped));
    if (platform::setErrorInfo(info)) platform::takeErrorInfo(&info);
    reporter->ReportError(info.kind, info.source, info.line);
    return handled;
}

int IsMMX() { return omnar::platform::hasMmx(); }
