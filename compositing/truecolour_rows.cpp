// SPDX-License-Identifier: MIT

// The kernels of true colour at every level. This file is compiled once for each vector level.
#include "compositing/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/truecolour_rows.cpp"
#include "buffers/foreach_level.h"
#include "compositing/truecolour-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr TrueColourRows trueColourTable = filledBy<VectorKernel>(TrueColourRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr TrueColourRows trueColourTable = filledBy<ScalarKernel>(TrueColourRows{});
constinit const Levels<TrueColourRows> trueColourRows{&trueColourTable OMNAR_VECTOR_TABLES(trueColourTable)};

}  // namespace omnar
#endif
