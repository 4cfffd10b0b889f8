// SPDX-License-Identifier: MIT
#include "buffers/host/module.h"

#include <cstdio>
#include <new>

#include "buffers/host/platform.h"
#include "buffers/host/services.h"

namespace omnar {
namespace {

const Module theModule;

// Numbers of window messages on Windows.
constexpr unsigned messageCreate = 1;
constexpr unsigned messageCommand = 273;

/// Exceptions of other types become kind 1 (memory) or 3. Source and lines are constants that hosts report.
COmnarException classify(const std::exception& escaped) {
    constexpr const char* source = "MfcUtilities";
    if (const auto* error = dynamic_cast<const COmnarException*>(&escaped)) return *error;
    if (dynamic_cast<const std::bad_alloc*>(&escaped) != nullptr) return {1, source, 2722, 0};
    return {3, source, 2727, 0};
}

platform::ErrorInfo infoOf(const COmnarException& error) {
    platform::ErrorInfo info{error.code(), error.line(), error.further(), {}};
    std::snprintf(info.source, sizeof info.source, "%s", error.file());
    return info;
}

}  // namespace

bool setErrorInfo(const COmnarException& error) { return platform::setErrorInfo(infoOf(error)); }

void throwStatus(int status) {
    platform::ErrorInfo info{};
    platform::takeErrorInfo(&info);
    throw COmnarException(status, info.source, info.line, info.further);
}

const Module& module() { return theModule; }

}  // namespace omnar

int ReportEscapedException(const std::exception& escaped, unsigned int message) {
    using namespace omnar;
    const int handled = message == messageCommand ? 1 : 0;
    ITextMgr* const reporter = textMgr();
    if (reporter == nullptr) return message == messageCreate ? -1 : handled;

    // Replaces the error information of an earlier error on this thread. Without support by the system, `info` is
    // unchanged.
    const COmnarException error = classify(escaped);
    platform::ErrorInfo info = infoOf(error);
    if (setErrorInfo(error)) platform::takeErrorInfo(&info);
    reporter->ReportError(info.kind, info.source, info.line);
    return handled;
}

int IsMMX() { return omnar::platform::hasMmx(); }
