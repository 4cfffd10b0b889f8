// SPDX-License-Identifier: MIT

// The kernels of transfers. This file is compiled once per vector level.
#include "tone/transfer.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/transfer_rows.cpp"
#include "buffers/foreach_level.h"
#include "tone/transfer-inl.h"

HWY_BEFORE_NAMESPACE();
namespace omnar {
namespace HWY_NAMESPACE {
#if OMNAR_VECTOR_TARGET
extern constexpr TransferColourRows transferColourTable = filledBy<VectorKernel>(TransferColourRows{});
extern constexpr TransferGreyRows transferGreyTable = filledBy<VectorKernel>(TransferGreyRows{});
#endif
}  // namespace HWY_NAMESPACE
}  // namespace omnar
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace omnar {

constexpr TransferColourRows transferColourTable = filledBy<ScalarKernel>(TransferColourRows{});
constexpr TransferGreyRows transferGreyTable = filledBy<ScalarKernel>(TransferGreyRows{});
constinit const Levels<TransferColourRows> transferColourRows{
    &transferColourTable OMNAR_VECTOR_TABLES(transferColourTable)};
constinit const Levels<TransferGreyRows> transferGreyRows{&transferGreyTable OMNAR_VECTOR_TABLES(transferGreyTable)};

}  // namespace omnar
#endif
