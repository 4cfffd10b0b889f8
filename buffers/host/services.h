// SPDX-License-Identifier: MIT
/// @file
/// The host's services as the rest of the library asks for them: the host's own, or the default.
#pragma once

#include <OmnarRaster.h>

namespace omnar {

IMemMgr* memMgr();
ITextMgr* textMgr();  ///< null if the host has none
ICoordPair* createCoordPair(const char* file, long line, double res);

/// The service itself, not its answer, for loops that ask before every pixel.
bool (*cancelService())();

/// False where the service can only say no and nobody could tell whether it was asked: it is the library's default, and
/// the system has no key for it to look at.
bool cancellable();

}  // namespace omnar
