// SPDX-License-Identifier: MIT

// The kernels of lighter and darker. This file is compiled once per vector level.
#include "tone/shade.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/shade_rows.cpp"
#include "buffers/foreach_level.h"
#include "tone/shade-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr ShadeRows shadeTable = filledBy<VectorKernel>(ShadeRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr ShadeRows shadeTable = filledBy<ScalarKernel>(ShadeRows{});
constinit const Levels<ShadeRows> shadeRows{&shadeTable OMNAR_VECTOR_TABLES(shadeTable)};

}  // namespace omnar
#endif
