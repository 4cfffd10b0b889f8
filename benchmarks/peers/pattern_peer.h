// SPDX-License-Identifier: MIT
/// @file
/// A repeat drawn by another library.
#pragma once

#include <OmnarPattern.h>

#include <functional>

namespace bench {

/// Draws a view of a pattern of inks into a buffer of its size.
using DrawView = std::function<void(const omnar::pattern::Rectangle& view, TRC* pixels)>;

/// By images that repeat, of as many tiles as it takes for the drop to come round. Empty if the library is missing.
#if defined(OMNAR_HAS_PIXMAN)
DrawView pixmanView(const omnar::pattern::Pattern& pattern, int zoom);
#else
inline DrawView pixmanView(const omnar::pattern::Pattern&, int) { return {}; }
#endif

}  // namespace bench
