/// @file
/// May a row be processed many pixels at once although its buffers share memory?
#pragma once

#include <cstddef>
#include <cstdint>

namespace omnar {

/// True if two runs of pixels share no memory.
template <class A, class B>
bool apart(const A* a, std::size_t countOfA, const B* b, std::size_t countOfB) {
    const auto beginOfA = reinterpret_cast<std::uintptr_t>(a);
    const auto beginOfB = reinterpret_cast<std::uintptr_t>(b);
    return beginOfA + countOfA * sizeof(A) <= beginOfB || beginOfB + countOfB * sizeof(B) <= beginOfA;
}

/// True if n pixels that are read together before any of them is written give what one pixel after the other gives: no
/// pixel of `read` is written before it is read. So it is for rows that share nothing, and where what is read starts at
/// or ahead of what is written and stays there, its pixels being no smaller.
template <class Read, class Written>
bool orderIsFree(const Read* read, const Written* written, std::size_t n) {
    const bool ahead = reinterpret_cast<std::uintptr_t>(read) >= reinterpret_cast<std::uintptr_t>(written);
    return apart(read, n, written, n) || (sizeof(Read) >= sizeof(Written) && ahead);
}

/// How many neighbouring pixels, of any n, may be read together before any of them is written.
template <class Read, class Written>
std::size_t freeStretch(const Read* read, const Written* written, std::size_t n) {
    if (orderIsFree(read, written, n)) return n;
    if (sizeof(Read) != sizeof(Written)) return 1;
    return (reinterpret_cast<std::uintptr_t>(written) - reinterpret_cast<std::uintptr_t>(read)) / sizeof(Written);
}

}  // namespace omnar
