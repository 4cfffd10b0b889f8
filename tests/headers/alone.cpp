// SPDX-License-Identifier: MIT

// The public header compiles before any other header, and twice.
#include <OmnarRaster.h>

#include <type_traits>

#include <OmnarRaster.h>

static_assert(sizeof(TRC) == 4 && sizeof(L08) == 1 && sizeof(L12) == 2);
static_assert(sizeof(CPoint) == 2 * sizeof(int));

// A fixed underlying type: a host may pass values without an enumerator.
static_assert(std::is_same_v<std::underlying_type_t<_EDropKind>, int>);
static_assert(std::is_same_v<std::underlying_type_t<_EMotionCopyMode>, int>);
static_assert(std::is_same_v<std::underlying_type_t<_ERotateMode>, int>);
static_assert(std::is_same_v<std::underlying_type_t<_EAngleMode>, int>);
static_assert(std::is_same_v<decltype(FeatureArea | FeatureHistogram), EFeaturesNeeded>);
static_assert((FeatureArea | FeatureCentroid | FeatureOrientation | FeaturePerimeter | FeatureHistogram) == 55);

// The binary layout of SFeature.
static_assert(offsetof(SFeature, centerX) == 8 && offsetof(SFeature, compactness) == 40);
static_assert(offsetof(SFeature, histogram) == 48 && offsetof(SFeature, reserved) == 48 + 256 * sizeof(int));
static_assert(sizeof(SFeature) == 48 + 256 * sizeof(int) + 32);

// Only the module that creates an object destroys it.
static_assert(!std::is_destructible_v<ICoordPair> && !std::is_destructible_v<ICoordPolygon>);
static_assert(!std::is_destructible_v<IMemMgr> && !std::is_destructible_v<ITextMgr>);
static_assert(!std::is_destructible_v<LargeAllocatorItf>);
