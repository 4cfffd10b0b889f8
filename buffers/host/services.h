// SPDX-License-Identifier: MIT
/// @file
/// The services of the host, or their defaults.
#pragma once

#include <OmnarRaster.h>

namespace omnar {

IMemMgr* memMgr();
ITextMgr* textMgr();  ///< null if the host has none
ICoordPair* createCoordPair(const char* file, long line, double res);

/// The function itself, for loops that call it before every pixel.
bool (*cancelService())();

/// False if nothing can cancel: default service, no cancel key.
bool cancellable();

}  // namespace omnar
