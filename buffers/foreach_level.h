// SPDX-License-Identifier: MIT
/// @file
/// Compiles a file once for every vector level. The file defines HWY_TARGET_INCLUDE as its own name, includes this
/// header and then hwy/highway.h, and puts its vector code between HWY_BEFORE_NAMESPACE() and HWY_AFTER_NAMESPACE()
/// under `#if OMNAR_VECTOR_TARGET`.
///
/// Only the headers of Highway are used. level.h chooses the vector level that runs while the module loads, so that
/// first calls cannot race.
#pragma once

// Instructions that the kernels do not use; without them the vector levels run on more processors.
#define HWY_DISABLE_PCLMUL_AES
#define HWY_DISABLE_F16C
#undef HWY_IS_DEBUG_BUILD
#define HWY_IS_DEBUG_BUILD 0

// Every 64-bit ARM has NEON, so no target attribute is needed. Highway adds one where it can detect the processor; GCC
// then refuses to inline vector code into functions that the compiler generates.
#if defined(__aarch64__)
#define TOOLCHAIN_MISS_SYS_AUXV_H
#endif

// Only these targets are compiled; code for Highway's generic ones is empty. Highway defines the names before it uses
// the macro.
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

// The tables named `table` of the vector levels that are built, each after a comma, for the constructor of Levels.
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
