// SPDX-License-Identifier: MIT
/// @file
/// Mapping samples through a table.
#pragma once

#include <OmnarRaster.h>

#include "buffers/level.h"
#include "buffers/region.h"
#include "buffers/rows.h"

namespace omnar {

/// A sample becomes its entry in the table. The table may overlap the samples that are written.
template <class Px>
struct Mapped {
    using Pixel = Px;

    Plane<const Px> source;
    const Px* table;

    Px at(Px /*old*/, std::size_t i) const { return table[source[i]]; }
    void eachPlane(auto&& visit) { visit(source); }
};

using LookupRows = RowTable<Mapped<L08>, Mapped<L12>>;
extern const Levels<LookupRows> lookupRows;

}  // namespace omnar
