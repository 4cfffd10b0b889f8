// SPDX-License-Identifier: MIT
#include <OmnarRaster.h>

#include <cstdio>

COmnarException::COmnarException(long code, const char* file, long line, long further) noexcept
    : code_(code), line_(line), further_(further) {
    std::snprintf(file_, sizeof file_, "%s", file == nullptr ? "" : file);
    std::snprintf(what_, sizeof what_, "OmnarRaster: error %ld at %s:%ld", code, file_, line);
}

COmnarException::COmnarException(const COmnarException&) noexcept = default;
COmnarException& COmnarException::operator=(const COmnarException&) noexcept = default;
COmnarException::~COmnarException() = default;

long COmnarException::code() const noexcept { return code_; }
const char* COmnarException::file() const noexcept { return file_; }
long COmnarException::line() const noexcept { return line_; }
long COmnarException::further() const noexcept { return further_; }
const char* COmnarException::what() const noexcept { return what_; }
