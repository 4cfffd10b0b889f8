// SPDX-License-Identifier: MIT
/// @file
/// Compiles a file once for every vector level. The file defines HWY_TARGET_INCLUDE as its own name, includes this
/// header and then hwy/highway.h, and puts its vector code between HWY_BEFORE_NAMESPACE() and HWY_AFTER_NAMESPACE()
/// under `#if OMNAR_VECTOR_TARGET`.
///
/// Highway is used by its headers alone: which level runs is decided by level.h, once, while the module loads, so that
/// no first call can race with another.
#pragma once

// The instructions that make no difference to this library's rows, so that no level asks for a processor that has them.
#define HWY_DISABLE_PCLMUL_AES
#define HWY_DISABLE_F16C
#undef HWY_IS_DEBUG_BUILD
#define HWY_IS_DEBUG_BUILD 0

// Every 64-bit ARM has NEON, so that no instructions need to be allowed for it, which is what Highway does where it could
// ask the system for the processor. GCC would then refuse to inline vectors into what it generates by itself.
#if defined(__aarch64__)
#define TOOLCHAIN_MISS_SYS_AUXV_H
#endif

// Only these; Highway's generic targets are compiled to nothing. Its names are looked up when the macro is used.
#if OMNAR_MAX_LEVEL >= 3
#define HWY_DISABLED_TARGETS (~(HWY_SSE4 | HWY_AVX2 | HWY_AVX3 | HWY_NEON | HWY_EMU128 | HWY_SCALAR))
#elif OMNAR_MAX_LEVEL == 2
#define HWY_DISABLED_TARGETS (~(HWY_SSE4 | HWY_AVX2 | HWY_NEON | HWY_EMU128 | HWY_SCALAR))
#elif OMNAR_MAX_LEVEL == 1
#define HWY_DISABLED_TARGETS (~(HWY_SSE4 | HWY_NEON | HWY_EMU128 | HWY_SCALAR))
#else
#define HWY_DISABLED_TARGETS (~(HWY_EMU128 | HWY_SCALAR))
#endif

#define OMNAR_VECTOR_TARGET (HWY_TARGET != HWY_EMU128 && HWY_TARGET != HWY_SCALAR)

#include "hwy/foreach_target.h"

// The tables of one name of the vector levels that are built, each behind a comma, for the constructor of Levels.
#if OMNAR_MAX_LEVEL == 0
#define OMNAR_VECTOR_TABLES(table)
#elif defined(__aarch64__) || defined(_M_ARM64)
#define OMNAR_VECTOR_TABLES(table) , &N_NEON::table
#elif OMNAR_MAX_LEVEL == 1
#define OMNAR_VECTOR_TABLES(table) , &N_SSE4::table
#elif OMNAR_MAX_LEVEL == 2
#define OMNAR_VECTOR_TABLES(table) , &N_SSE4::table, &N_AVX2::table
#else
#define OMNAR_VECTOR_TABLES(table) , &N_SSE4::table, &N_AVX2::table, &N_AVX3::table
#endif
