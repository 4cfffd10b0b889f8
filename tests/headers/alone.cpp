// SPDX-License-Identifier: MIT

// The public header before any other.
#include <OmnarRaster.h>

#include <type_traits>

// And once more.
#include <OmnarRaster.h>

static_assert(sizeof(TRC) == 4 && sizeof(L08) == 1 && sizeof(L12) == 2);
static_assert(sizeof(CPoint) == 2 * sizeof(int));

// A host may pass values that have no name.
static_assert(std::is_same_v<std::underlying_type_t<_EDropKind>, int>);
static_assert(std::is_same_v<std::underlying_type_t<_EMotionCopyMode>, int>);
static_assert(std::is_same_v<std::underlying_type_t<_ERotateMode>, int>);
static_assert(std::is_same_v<std::underlying_type_t<_EAngleMode>, int>);
static_assert(std::is_same_v<decltype(FeatureArea | FeatureHistogram), EFeaturesNeeded>);
static_assert((FeatureArea | FeatureCentroid | FeatureOrientation | FeaturePerimeter | FeatureHistogram) == 55);

// The layout that hosts are compiled against.
static_assert(offsetof(SFeature, centerX) == 8 && offsetof(SFeature, compactness) == 40);
static_assert(offsetof(SFeature, histogram) == 48 && offsetof(SFeature, reserved) == 48 + 256 * sizeof(int));
static_assert(sizeof(SFeature) == 48 + 256 * sizeof(int) + 32);

// Who makes an object ends it.
static_assert(!std::is_destructible_v<ICoordPair> && !std::is_destructible_v<ICoordPolygon>);
static_assert(!std::is_destructible_v<IMemMgr> && !std::is_destructible_v<ITextMgr>);
static_assert(!std::is_destructible_v<LargeAllocatorItf>);
