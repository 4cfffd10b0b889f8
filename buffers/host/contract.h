// SPDX-License-Identifier: MIT
/// @file
/// Preconditions: checked in the checked build, no code in the ordinary one.
///
/// A function checks all preconditions before it writes anything. A raster function forms its planes
/// (buffers/planes.h), cuts the region, and then checks what depends on the region.
#pragma once

#include <OmnarRaster.h>

#if defined(OMNAR_CHECKED)
#include <charconv>
#include <initializer_list>
#include <string>
#include <type_traits>

namespace omnar {

/// Calls the contract handler.
void reportBreach(const char* function, const std::string& parameter, const std::string& value,
                  const std::string& rule);

/// The text of a parameter's value. A floating-point number is the shortest text that is parsed as the same number.
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

/// Reports each null pointer. `names` are their names, separated by ", ".
void expectNotNull(const char* function, const char* names, std::initializer_list<const void*> pointers,
                   const char* rule);

}  // namespace omnar

/// Checks `condition`. A breach is reported for `parameter`, with `rule` as the text of what must hold.
#define OMNAR_EXPECT_AS(parameter, condition, rule) \
    ((condition) ? void() : ::omnar::reportBreach(__func__, #parameter, ::omnar::describe(parameter), rule))

/// Checks `condition` of element `i` of an array. The report names the element by its index.
#define OMNAR_EXPECT_ELEMENT(array, i, condition, rule)                                  \
    ((condition) ? void()                                                                \
                 : ::omnar::reportBreach(__func__, #array "[" + std::to_string(i) + "]", \
                                         ::omnar::describe((array)[static_cast<std::size_t>(i)]), rule))

/// Checks that no pointer of the list is null, if `needed`. `exception` is appended to the text of the rule.
#define OMNAR_EXPECT_NOT_NULL_IF(needed, exception, ...) \
    ((needed) ? ::omnar::expectNotNull(__func__, #__VA_ARGS__, {__VA_ARGS__}, "not null" exception) : void())
#else
#define OMNAR_EXPECT_AS(parameter, condition, rule) static_cast<void>(0)
#define OMNAR_EXPECT_ELEMENT(array, i, condition, rule) static_cast<void>(0)
#define OMNAR_EXPECT_NOT_NULL_IF(needed, exception, ...) static_cast<void>(0)
#endif

/// Checks that no pointer of the list is null.
#define OMNAR_EXPECT_NOT_NULL(...) OMNAR_EXPECT_NOT_NULL_IF(true, "", __VA_ARGS__)
