// SPDX-License-Identifier: MIT
#include <OmnarRaster.h>

#include <cstddef>
#include <cstdio>

COmnarException::COmnarException(long code, const char* file, long line, long further) noexcept
    : code_(code), line_(line), further_(further) {
    std::snprintf(file_, sizeof file_, "%s", file == nullptr ? "" : file);
    const int length = std::snprintf(what_, sizeof what_, "OmnarRaster: error %ld", code);
    if (file_[0] == '\0') return;
    const auto used = static_cast<std::size_t>(length);
    std::snprintf(what_ + used, sizeof what_ - used, " at %s:%ld", file_, line);
}

COmnarException::COmnarException(const COmnarException&) noexcept = default;
COmnarException& COmnarException::operator=(const COmnarException&) noexcept = default;
COmnarException::~COmnarException() = default;

long COmnarException::code() const noexcept { return code_; }
const char* COmnarException::file() const noexcept { return file_; }
long COmnarException::line() const noexcept { return line_; }
long COmnarException::further() const noexcept { return further_; }
const char* COmnarException::what() const noexcept { return what_; }
