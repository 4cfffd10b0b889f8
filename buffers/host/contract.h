// SPDX-License-Identifier: MIT
/// @file
/// Preconditions: tested in the checked build, nothing at all in the ordinary one.
///
/// A function tests all of its preconditions before it writes anything. A raster function forms its planes first
/// (buffers/planes.h), then cuts the region, and then tests what depends on the region.
#pragma once

#include <OmnarRaster.h>

#if defined(OMNAR_CHECKED)
#include <charconv>
#include <initializer_list>
#include <string>
#include <type_traits>

namespace omnar {

/// Hands a broken precondition to the contract handler.
void contractBroken(const char* function, const std::string& parameter, const std::string& value,
                    const std::string& rule);

/// The value of a parameter as the handler receives it. Floating-point numbers are the shortest text that reads back as
/// the same number.
template <class T>
std::string describe(T value) {
    if constexpr (std::is_pointer_v<T>) {
        return value == nullptr ? "null" : "not null";
    } else if constexpr (std::is_enum_v<T>) {
        return std::to_string(static_cast<int>(value));
    } else if constexpr (std::is_floating_point_v<T>) {
        char text[32];
        return {text, std::to_chars(text, text + sizeof text, value).ptr};
    } else {
        return std::to_string(value);
    }
}

/// Blames each null pointer. `names` holds their names, separated by ", ".
void expectNotNull(const char* function, const char* names, std::initializer_list<const void*> pointers,
                   const char* rule);

}  // namespace omnar

/// Checks `condition`. A failure is blamed on `parameter`; `rule` says in words what must hold.
#define OMNAR_EXPECT_AS(parameter, condition, rule) \
    ((condition) ? void() : ::omnar::contractBroken(__func__, #parameter, ::omnar::describe(parameter), rule))

/// The same for element `i` of an array, which the message names by its index.
#define OMNAR_EXPECT_ELEMENT(array, i, condition, rule)                                    \
    ((condition) ? void()                                                                  \
                 : ::omnar::contractBroken(__func__, #array "[" + std::to_string(i) + "]", \
                                           ::omnar::describe((array)[static_cast<std::size_t>(i)]), rule))

/// Checks that no pointer of the list is null, where `needed` is true; `exception` is appended to the rule.
#define OMNAR_EXPECT_NOT_NULL_IF(needed, exception, ...) \
    ((needed) ? ::omnar::expectNotNull(__func__, #__VA_ARGS__, {__VA_ARGS__}, "not null" exception) : void())
#else
#define OMNAR_EXPECT_AS(parameter, condition, rule) static_cast<void>(0)
#define OMNAR_EXPECT_ELEMENT(array, i, condition, rule) static_cast<void>(0)
#define OMNAR_EXPECT_NOT_NULL_IF(needed, exception, ...) static_cast<void>(0)
#endif

/// Checks that no pointer of the list is null.
#define OMNAR_EXPECT_NOT_NULL(...) OMNAR_EXPECT_NOT_NULL_IF(true, "", __VA_ARGS__)
