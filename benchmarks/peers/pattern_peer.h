// SPDX-License-Identifier: MIT
/// @file
/// The peer of pattern views.
#pragma once

#include <OmnarPattern.h>

#include <functional>

namespace bench {

/// Draws a view of a pattern of inks into a buffer of its size.
using DrawView = std::function<void(const omnar::pattern::Rectangle& view, TRC* pixels)>;

/// Draws with repeating images of as many tiles as the drop has a period of. Empty if the library is missing.
#if defined(OMNAR_HAS_PIXMAN)
DrawView pixmanView(const omnar::pattern::Pattern& pattern, int zoom);
#else
inline DrawView pixmanView(const omnar::pattern::Pattern&, int) { return {}; }
#endif

}  // namespace bench
