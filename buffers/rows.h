/// @file
/// What raster functions are made of: operations on one row, and a table of their kernels for each level.
///
/// An operation says what becomes of a pixel, `Pixel at(Pixel old, std::size_t i)` for pixel i of the row, and hands the
/// planes that it reads to `eachPlane`, which is all that the walk over a region needs to know of it.
#pragma once

#include <cstddef>

namespace omnar {

/// Processes pixels 0..n-1 of a row, n > 0.
template <class Operation>
struct RowOf {
    using Function = void (*)(typename Operation::Pixel* dst, const Operation& operation, std::size_t n);

    Function row;
};

/// The operations that exist. One that is not listed does not compile; every level fills the list by itself.
template <class... Operation>
struct RowTable : RowOf<Operation>... {
    template <class Wanted>
    auto of() const {
        return static_cast<const RowOf<Wanted>&>(*this).row;
    }
};

/// Fills a table with the instances of `Kernel::row`.
template <class Kernel, class... Operation>
constexpr RowTable<Operation...> filledBy(RowTable<Operation...>) {
    return {RowOf<Operation>{Kernel::template row<Operation>}...};
}

/// The scalar rule of a row, and the order that overlapping rows show.
struct ScalarKernel {
    template <class Operation>
    static void row(typename Operation::Pixel* dst, const Operation& operation, std::size_t n) {
        for (std::size_t i = 0; i < n; ++i) dst[i] = operation.at(dst[i], i);
    }
};

}  // namespace omnar
