// SPDX-License-Identifier: MIT
/// @file
/// Inlining that must not depend on heuristics: the path to the first pixel, and code kept out of it.
#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#define OMNAR_ALWAYS_INLINE __forceinline
#define OMNAR_NEVER_INLINE __declspec(noinline)
#else
#define OMNAR_ALWAYS_INLINE inline __attribute__((always_inline))
#define OMNAR_NEVER_INLINE __attribute__((noinline))
#endif
