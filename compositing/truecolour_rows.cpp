// SPDX-License-Identifier: MIT

// The kernels of blends in true colour, compiled once for every vector level.
#include "compositing/blend_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/truecolour_rows.cpp"
#include "buffers/foreach_level.h"
#include "compositing/truecolour-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr TrueColorRows trueColorTable = filledBy<VectorKernel>(TrueColorRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr TrueColorRows trueColorTable = filledBy<ScalarKernel>(TrueColorRows{});
constinit const Levels<TrueColorRows> trueColorRows{&trueColorTable OMNAR_VECTOR_TABLES(trueColorTable)};

}  // namespace omnar
#endif
