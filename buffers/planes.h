// SPDX-License-Identifier: MIT
/// @file
/// Forms and checks the planes that the arguments of a raster function describe.
///
/// `buffer` is the stem of the parameters' names: OMNAR_PLANE(src) reads src, srcWidth, srcHeight, srcX and srcY.
#pragma once

#include <cstddef>
#include <cstdint>

#include "buffers/host/contract.h"
#include "buffers/overlap.h"
#include "buffers/region.h"

namespace omnar {

/// True if no row of the region overlaps the `count` elements of a table.
template <class Px, class Element>
bool tableApart(const Element* table, std::size_t count, const Plane<Px>& plane, Region region) {
    for (std::size_t row = 0; row < region.rows && region.cols != 0; ++row) {
        if (!apart(table, count, plane.row(static_cast<std::ptrdiff_t>(row)), region.cols)) return false;
    }
    return true;
}

}  // namespace omnar

/// Checks that a corner lies in its buffer.
#define OMNAR_EXPECT_CORNER(x, y, width, height) \
    (OMNAR_EXPECT_AS(x, (x) <= (width), #x " <= " #width), OMNAR_EXPECT_AS(y, (y) <= (height), #y " <= " #height))

/// Checks that x + w and y + h fit in 32 bits. Only the first buffer that cuts the region has this precondition.
#define OMNAR_EXPECT_SUMS(x, y)                                                         \
    (OMNAR_EXPECT_AS(w, std::uint64_t{w} + (x) <= UINT32_MAX, #x " + w <= 4294967295"), \
     OMNAR_EXPECT_AS(h, std::uint64_t{h} + (y) <= UINT32_MAX, #y " + h <= 4294967295"))

/// The plane of a buffer.
#define OMNAR_PLANE(buffer) \
    (OMNAR_EXPECT_CORNER(buffer##X, buffer##Y, buffer##Width, buffer##Height), OMNAR_PLANE_LIKE(buffer, buffer))

/// The plane of the first buffer that cuts the region.
#define OMNAR_FIRST_PLANE(buffer)                                              \
    (OMNAR_EXPECT_CORNER(buffer##X, buffer##Y, buffer##Width, buffer##Height), \
     OMNAR_EXPECT_SUMS(buffer##X, buffer##Y), OMNAR_PLANE_LIKE(buffer, buffer))

/// The plane of a buffer that shares the geometry of another one.
#define OMNAR_PLANE_LIKE(buffer, owner) ::omnar::Plane(buffer, owner##Width, owner##Height, owner##X, owner##Y)

/// The plane of the first buffer that cuts the region, with the geometry width, height, x and y, the function's only
/// one.
#define OMNAR_ONLY_PLANE(buffer) \
    (OMNAR_EXPECT_CORNER(x, y, width, height), OMNAR_EXPECT_SUMS(x, y), OMNAR_PLANE_HERE(buffer))

/// The plane of a further buffer of that geometry.
#define OMNAR_PLANE_HERE(buffer) ::omnar::Plane(buffer, width, height, x, y)

/// Checks that no pointer is null, unless the cut region is empty.
#define OMNAR_EXPECT_MEMORY(region, ...) \
    OMNAR_EXPECT_NOT_NULL_IF(!(region).empty(), ", unless the cut region is empty", __VA_ARGS__)

/// Checks that a buffer that does not cut the region contains all of the cut region.
#define OMNAR_EXPECT_HOLDS(buffer, region)                                                       \
    (OMNAR_EXPECT_AS(buffer##X, (region).empty() || buffer##X + (region).cols <= buffer##Width,  \
                     #buffer "X + columns of the cut region <= " #buffer "Width"),               \
     OMNAR_EXPECT_AS(buffer##Y, (region).empty() || buffer##Y + (region).rows <= buffer##Height, \
                     #buffer "Y + rows of the cut region <= " #buffer "Height"))

/// Checks that a table of `count` elements does not overlap pixels that are written.
#define OMNAR_EXPECT_NOT_WRITTEN(table, count, destination, region)                                      \
    OMNAR_EXPECT_AS(table, (table) == nullptr || ::omnar::tableApart(table, count, destination, region), \
                    "shares no memory with pixels that are written")
