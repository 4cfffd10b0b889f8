// SPDX-License-Identifier: MIT

// The kernels of fills, copies and markers. This file is compiled once per vector level.
#include "tone/marks/mark.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/marks/mark_rows.cpp"
#include "buffers/foreach_level.h"
#include "tone/marks/mark-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr MarkRows markTable = filledBy<VectorKernel>(MarkRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr MarkRows markTable = filledBy<ScalarKernel>(MarkRows{});
constinit const Levels<MarkRows> markRows{&markTable OMNAR_VECTOR_TABLES(markTable)};

}  // namespace omnar
#endif
