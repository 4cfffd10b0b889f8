// SPDX-License-Identifier: MIT
/// @file
/// What a system's report of its memory amounts to.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace omnar {

/// What counts as available if the system does not report it. Every machine that runs a host has it, and a quarter of it
/// still holds bands for the threads, if low ones; more could drive the machine into its swap space.
inline constexpr unsigned unreportedMegabytes = 256;

/// A number of bytes in whole units of 2^20, or `unreportedMegabytes` without one.
constexpr unsigned wholeMegabytes(std::optional<std::uint64_t> bytes) {
    constexpr std::uint64_t most = std::numeric_limits<unsigned>::max();
    return bytes ? static_cast<unsigned>(std::min(*bytes >> 20, most)) : unreportedMegabytes;
}

/// The answers of sysconf() in bytes. Nothing if one of them is a failure.
constexpr std::optional<std::uint64_t> bytesOfPages(long pages, long pageBytes) {
    if (pages < 0 || pageBytes <= 0) return std::nullopt;
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes);
}

/// The memory that programs can still get without swapping, page cache included, from the text of /proc/meminfo. Nothing
/// if the text has no such line: kernels before 3.14.
inline std::optional<std::uint64_t> availableBytes(std::string_view meminfo) {
    constexpr std::string_view label = "\nMemAvailable:";
    const std::size_t line = meminfo.find(label);
    if (line == std::string_view::npos) return std::nullopt;
    const std::size_t digits = meminfo.find_first_not_of(' ', line + label.size());
    if (digits == std::string_view::npos) return std::nullopt;
    std::uint64_t kibibytes = 0;
    const auto [end, error] = std::from_chars(meminfo.data() + digits, meminfo.data() + meminfo.size(), kibibytes);
    if (error != std::errc{} || kibibytes > std::numeric_limits<std::uint64_t>::max() >> 10) return std::nullopt;
    return kibibytes << 10;
}

}  // namespace omnar
