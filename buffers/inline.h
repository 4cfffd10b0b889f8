// SPDX-License-Identifier: MIT
/// @file
/// What the compiler's own judgement must not decide: code on the way to the first pixel, and code beside it.
#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#define OMNAR_ALWAYS_INLINE __forceinline
#define OMNAR_NEVER_INLINE __declspec(noinline)
#else
#define OMNAR_ALWAYS_INLINE inline __attribute__((always_inline))
#define OMNAR_NEVER_INLINE __attribute__((noinline))
#endif
