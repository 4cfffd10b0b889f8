// SPDX-License-Identifier: MIT

// The kernels of blends in single channels, compiled once for every vector level.
#include "compositing/blend_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "compositing/samples_rows.cpp"
#include "buffers/foreach_level.h"
#include "compositing/samples-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr GreyRows greyTable = filledBy<VectorKernel>(GreyRows{});
extern constexpr InkRows inkTable = filledBy<VectorKernel>(InkRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr GreyRows greyTable = filledBy<ScalarKernel>(GreyRows{});
constexpr InkRows inkTable = filledBy<ScalarKernel>(InkRows{});
constinit const Levels<GreyRows> greyRows{&greyTable OMNAR_VECTOR_TABLES(greyTable)};
constinit const Levels<InkRows> inkRows{&inkTable OMNAR_VECTOR_TABLES(inkTable)};

}  // namespace omnar
#endif
