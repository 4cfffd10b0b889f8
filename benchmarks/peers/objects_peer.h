// SPDX-License-Identifier: MIT
/// @file
/// The peers of flood fill and connected-component labelling, for square pictures.
#pragma once

namespace bench {

#if defined(OMNAR_HAS_OPENCV)
inline constexpr bool hasObjectsPeer = true;
template <class T>
void openCvFill(T* pixels, int side, int seedX, int seedY, T value);
void openCvLabel(const unsigned char* mask, int* labels, int side);
#else
inline constexpr bool hasObjectsPeer = false;
template <class T>
void openCvFill(T*, int, int, int, T) {}
inline void openCvLabel(const unsigned char*, int*, int) {}
#endif

}  // namespace bench
