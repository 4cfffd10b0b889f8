/// @file
/// May a row be processed many pixels at once although its buffers share memory?
#pragma once

#include <cstddef>
#include <cstdint>

namespace omnar {

/// True if pixels that are read together before any of them is written give what one pixel after the other gives: no
/// pixel of `read` is written before it is read. So it is for rows that share nothing, and for rows of equally large
/// pixels where what is read lies at or ahead of what is written.
template <class Read, class Written>
bool orderIsFree(const Read* read, const Written* written, std::size_t n) {
    const auto r = reinterpret_cast<std::uintptr_t>(read);
    const auto w = reinterpret_cast<std::uintptr_t>(written);
    const bool apart = r + n * sizeof(Read) <= w || w + n * sizeof(Written) <= r;
    return apart || (sizeof(Read) == sizeof(Written) && r >= w);
}

}  // namespace omnar
