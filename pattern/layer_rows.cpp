// SPDX-License-Identifier: MIT
#include "pattern/layer_rows.h"

#include <algorithm>
#include <new>

namespace omnar::pattern {
namespace {

/// From this zoom on rows are scaled again for each view, unless all of them are small: half of the view rows, or more, are
/// copies of the one above, so that keeping rows saves little, and they would need more memory than the layer.
constexpr double scaledEachTimeFrom = 2.0;
constexpr std::uint64_t smallBytes = std::uint64_t{4} << 20;

/// Calls visit(pixel, part) for the overlaps of file pixels with view pixel `cell` along an axis, in file order.
/// The unit is 1 / viewSide of a file pixel, in which all edges are integers.
template <class Visit>
void forOverlaps(const Axis& axis, unsigned cell, Visit visit) {
    const std::uint64_t begin = std::uint64_t{cell} * axis.side;
    const std::uint64_t end = begin + axis.side;
    for (std::uint64_t position = begin; position < end;) {
        const std::uint64_t pixel = position / axis.viewSide;
        const std::uint64_t next = std::min(end, (pixel + 1) * axis.viewSide);
        visit(static_cast<unsigned>(pixel), next - position);
        position = next;
    }
}

/// Adds up the pixels of a line, cell by cell. Pixel i of the axis is line[i - shift], modulo the side.
template <class Px>
void addCells(const Axis& axis, const Px* line, unsigned shift, std::uint64_t weight, std::vector<Sum<Px>>& cells) {
    const Px* pixel = line + (shift == 0 ? 0 : axis.side - shift);
    const Px* const end = line + axis.side;
    std::uint64_t room = axis.side;  // what is left of the cell
    std::size_t cell = 0;
    Sum<Px> sum;
    for (unsigned i = 0; i < axis.side; ++i) {
        const std::uint64_t part = std::min<std::uint64_t>(axis.viewSide, room);
        sum.add(*pixel, part);
        room -= part;
        if (room == 0) {
            cells[cell++].add(sum, weight);
            sum = {};
            sum.add(*pixel, axis.viewSide - part);
            room = axis.side - (axis.viewSide - part);
        }
        if (++pixel == end) pixel = line;
    }
}

/// Picks the pixels of ascending columns from a line that a drop moves by `shift`, modulo `side`.
template <class Px>
void pick(const Px* line, unsigned side, unsigned shift, const unsigned* columns, std::size_t count, Px* to) {
    const Px* const beforeShift = line + (side - shift);
    const Px* const fromShift = line - shift;
    const std::size_t split = static_cast<std::size_t>(std::lower_bound(columns, columns + count, shift) - columns);
    for (std::size_t i = 0; i < split; ++i) to[i] = beforeShift[columns[i]];
    for (std::size_t i = split; i < count; ++i) to[i] = fromShift[columns[i]];
}

}  // namespace

template <class Px>
LayerRows<Px>::LayerRows(const Px* pixels, const Grid& grid, Quality quality) : pixels_(pixels), grid_(grid) {
    const double zoom = grid.x.zoom;
    const bool isSmall = std::uint64_t{grid.x.viewSide} * grid.y.side <= smallBytes / sizeof(Px);
    way_ = zoom == 1.0                                ? Way::unscaled
           : zoom < 1.0 && quality == Quality::smooth ? Way::keptSmooth
           : zoom < scaledEachTimeFrom || isSmall     ? Way::keptExact
                                                      : Way::scaledEachTime;
    if (way_ == Way::keptExact || way_ == Way::keptSmooth) row_.resize(grid.x.viewSide);
    if (way_ == Way::keptSmooth) cells_.resize(grid.x.viewSide);
    if (way_ != Way::keptExact) return;
    columns_.resize(grid.x.viewSide);
    for (unsigned i = 0; i < grid.x.viewSide; ++i) columns_[i] = grid.x.fileOf(i);
}

template <class Px>
void LayerRows<Px>::copy(const Run& run, const unsigned* columns, Px* to) {
    const unsigned side = grid_.x.side;
    const unsigned shift = grid_.shiftX(run.tile);
    if (way_ == Way::unscaled) {
        const Px* const from = line(fileRow(run));
        const unsigned first = run.offset >= shift ? run.offset - shift : run.offset + side - shift;
        const unsigned count = std::min(run.count, side - first);
        std::copy_n(from + first, count, to);
        std::copy_n(from, run.count - count, to + count);
    } else if (way_ == Way::scaledEachTime) {
        pick(line(fileRow(run)), side, shift, columns, run.count, to);
    } else {
        std::copy_n(keptRow(run) + run.offset, run.count, to);
    }
}

template <class Px>
const Px* LayerRows<Px>::find(const Run& run) {
    if (way_ == Way::scaledEachTime) return nullptr;
    if (way_ != Way::unscaled) return keptRow(run) + run.offset;
    const unsigned shift = grid_.shiftX(run.tile);
    const bool isSplit = run.offset < shift && run.offset + run.count > shift;
    return isSplit ? nullptr : line(fileRow(run)) + modulo(std::int64_t{run.offset} - shift, grid_.x.side);
}

template <class Px>
const Px* LayerRows<Px>::keptRow(const Run& run) {
    const bool isSmooth = way_ == Way::keptSmooth;
    const unsigned shift = grid_.shiftX(run.tile) + (isSmooth ? grid_.shiftY(run.tile) : 0);  // one of them is 0
    const unsigned row = isSmooth ? run.row : fileRow(run);
    const auto make = [&](Px* to) { isSmooth ? scaleSmoothly(shift, row, to) : scale(shift, row, to); };
    if (Plane* const plane = planeOf(shift)) {
        Px* const kept = plane->pixels.get() + std::size_t{row} * grid_.x.viewSide;
        if (!plane->isMade[row]) make(kept);
        plane->isMade[row] = true;
        return kept;
    }
    make(row_.data());
    return row_.data();
}

/// The plane of a shift, in place of the one that was used longest ago if there are too many; null without memory.
template <class Px>
typename LayerRows<Px>::Plane* LayerRows<Px>::planeOf(unsigned shift) {
    const auto found =
        std::find_if(planes_.begin(), planes_.end(), [=](const Plane& plane) { return plane.shift == shift; });
    Plane* plane = found != planes_.end() ? &*found : nullptr;
    if (plane == nullptr && planes_.size() >= mostPlanes_) {
        plane = &*std::min_element(planes_.begin(), planes_.end(),
                                   [](const Plane& a, const Plane& b) { return a.lastUse < b.lastUse; });
        plane->shift = shift;
        plane->isMade.assign(plane->isMade.size(), false);
    }
    if (plane == nullptr) {
        const unsigned rows = way_ == Way::keptSmooth ? grid_.y.viewSide : grid_.y.side;
        try {
            std::unique_ptr<Px[]> pixels(new Px[std::size_t{rows} * grid_.x.viewSide]);
            planes_.push_back({shift, std::move(pixels), std::vector<bool>(rows), 0});
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
        plane = &planes_.back();
    }
    plane->lastUse = ++uses_;
    return plane;
}

/// A row of the layer, scaled horizontally.
template <class Px>
void LayerRows<Px>::scale(unsigned shift, unsigned row, Px* to) const {
    pick(line(row), grid_.x.side, shift, columns_.data(), columns_.size(), to);
}

/// A view row of a tile, whose pixels are means.
template <class Px>
void LayerRows<Px>::scaleSmoothly(unsigned shift, unsigned row, Px* to) {
    const unsigned shiftX = grid_.dropX == 0 ? 0 : shift;
    const unsigned shiftY = grid_.dropY == 0 ? 0 : shift;
    std::fill(cells_.begin(), cells_.end(), Sum<Px>{});
    forOverlaps(grid_.y, row, [&](unsigned y, std::uint64_t part) {
        addCells(grid_.x, line(modulo(std::int64_t{y} - shiftY, grid_.y.side)), shiftX, part, cells_);
    });
    const std::uint64_t whole = std::uint64_t{grid_.x.side} * grid_.y.side;
    std::transform(cells_.begin(), cells_.end(), to, [=](const Sum<Px>& cell) { return cell.mean(whole); });
}

template <class Px>
void LayerRows<Px>::forget(const Rectangle& changed) {
    for (Plane& plane : planes_) {
        const auto forgetRows = [&](unsigned first, unsigned last) {
            std::fill(plane.isMade.begin() + first, plane.isMade.begin() + last, false);
        };
        const auto top = static_cast<unsigned>(changed.y);
        if (way_ == Way::keptSmooth) {
            grid_.y.forShowing(top, changed.height, grid_.dropY == 0 ? 0 : plane.shift, true,
                               [&](Axis::Span rows) { forgetRows(rows.first, rows.last); });
        } else {
            forgetRows(top, top + changed.height);
        }
    }
}

template class LayerRows<L08>;
template class LayerRows<TRC>;

}  // namespace omnar::pattern
