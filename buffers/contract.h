// SPDX-License-Identifier: MIT
/// @file
/// Preconditions: tested in the checked build, nothing at all in the ordinary one.
#pragma once

#include <OmnarRaster.h>

#include <cstdint>

#if defined(OMNAR_CHECKED)
#include <string>
#include <type_traits>

namespace omnar {

/// Hands a broken precondition to the contract handler.
void contractBroken(const char* function, const char* parameter, const std::string& value, const char* rule);

/// The value of a parameter as the handler gets to see it.
template <class T>
std::string describe(T value) {
    if constexpr (std::is_pointer_v<T>) {
        return value == nullptr ? "null" : "not null";
    } else if constexpr (std::is_enum_v<T>) {
        return std::to_string(static_cast<int>(value));
    } else {
        return std::to_string(value);
    }
}

}  // namespace omnar

/// Demands `rule` and blames `parameter` for breaking it; `text` tells the rule over the function's parameters.
#define OMNAR_EXPECT_AS(parameter, rule, text) \
    ((rule) ? void() : ::omnar::contractBroken(__func__, #parameter, ::omnar::describe(parameter), text))
#else
#define OMNAR_EXPECT_AS(parameter, rule, text) static_cast<void>(0)
#endif

/// Demands a rule that tells itself.
#define OMNAR_EXPECT(parameter, rule) OMNAR_EXPECT_AS(parameter, rule, #rule)

/// Demands that a buffer is there for a region that is not empty.
#define OMNAR_EXPECT_POINTER(buffer) \
    OMNAR_EXPECT_AS(buffer, buffer != nullptr || w == 0 || h == 0, "not null, unless w or h is 0")

/// Demands that a region of w x h pixels has a buffer to lie in and does not wrap around the end of 32 bits.
/// `buffer` is the stem of the parameters' names.
#define OMNAR_EXPECT_CORNER(buffer)                                                                \
    OMNAR_EXPECT_POINTER(buffer);                                                                  \
    OMNAR_EXPECT_AS(buffer##X, buffer##X <= buffer##Width, #buffer "X <= " #buffer "Width");       \
    OMNAR_EXPECT_AS(buffer##Y, buffer##Y <= buffer##Height, #buffer "Y <= " #buffer "Height");     \
    OMNAR_EXPECT_AS(w, std::uint64_t{w} + buffer##X <= UINT32_MAX, #buffer "X + w <= 4294967295"); \
    OMNAR_EXPECT_AS(h, std::uint64_t{h} + buffer##Y <= UINT32_MAX, #buffer "Y + h <= 4294967295")

/// Demands that a buffer which does not cut the region holds all of what is left of it.
#define OMNAR_EXPECT_HOLDS(buffer, region)                                                                  \
    OMNAR_EXPECT_AS(buffer, buffer != nullptr || (region).empty(), "not null, unless the region is empty"); \
    OMNAR_EXPECT_HOLDS_IF(true, buffer, region)

/// The same, where the buffer takes part only on a condition.
#define OMNAR_EXPECT_HOLDS_IF(condition, buffer, region)                                                        \
    OMNAR_EXPECT_AS(buffer##X, !(condition) || (region).empty() || buffer##X + (region).cols <= buffer##Width,  \
                    #buffer "X + columns of the cut region <= " #buffer "Width");                               \
    OMNAR_EXPECT_AS(buffer##Y, !(condition) || (region).empty() || buffer##Y + (region).rows <= buffer##Height, \
                    #buffer "Y + rows of the cut region <= " #buffer "Height")

/// OMNAR_EXPECT_CORNER for a function whose buffers all share the geometry width, height, x, y.
#define OMNAR_EXPECT_SHARED_CORNER(buffer) \
    OMNAR_EXPECT_POINTER(buffer);          \
    OMNAR_EXPECT_SHARED_GEOMETRY()

/// The same without a buffer.
#define OMNAR_EXPECT_SHARED_GEOMETRY()                                             \
    OMNAR_EXPECT(x, x <= width);                                                   \
    OMNAR_EXPECT(y, y <= height);                                                  \
    OMNAR_EXPECT_AS(w, std::uint64_t{w} + x <= UINT32_MAX, "x + w <= 4294967295"); \
    OMNAR_EXPECT_AS(h, std::uint64_t{h} + y <= UINT32_MAX, "y + h <= 4294967295")
