// SPDX-License-Identifier: MIT

// The header of the second library brings all that it needs.
#include <OmnarPattern.h>

unsigned sideOf(const omnar::pattern::Repeat& repeat);
unsigned sideOf(const omnar::pattern::Repeat& repeat) { return repeat.width; }
