// SPDX-License-Identifier: MIT
/// @file
/// The systems' reports of available memory, in common units.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace omnar {

/// Taken as available if the system reports nothing. Every machine that runs a host has it; more could cause swapping.
/// A quarter of it still holds a low band per thread.
inline constexpr unsigned unreportedMegabytes = 256;

/// Bytes in units of 2^20, rounded down, or `unreportedMegabytes` if there is no number.
constexpr unsigned wholeMegabytes(std::optional<std::uint64_t> bytes) {
    constexpr std::uint64_t greatest = std::numeric_limits<unsigned>::max();
    return bytes ? static_cast<unsigned>(std::min(*bytes >> 20, greatest)) : unreportedMegabytes;
}

/// Bytes from two results of sysconf(). Nothing if one of them is a failure.
constexpr std::optional<std::uint64_t> bytesOfPages(long pages, long pageBytes) {
    if (pages < 0 || pageBytes <= 0) return std::nullopt;
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes);
}

/// MemAvailable of /proc/meminfo: what programs can get without swapping, page cache included. Nothing if the line is
/// missing, as before Linux 3.14, or malformed.
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
