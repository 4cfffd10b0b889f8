// SPDX-License-Identifier: MIT

// The kernels of conversions. This file is compiled once per vector level.
#include "tone/convert.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/convert_rows.cpp"
#include "buffers/foreach_level.h"
#include "tone/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr ConversionRows conversionTable = filledBy<VectorKernel>(ConversionRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr ConversionRows conversionTable = filledBy<ScalarKernel>(ConversionRows{});
constinit const Levels<ConversionRows> conversionRows{&conversionTable OMNAR_VECTOR_TABLES(conversionTable)};

}  // namespace omnar
#endif
