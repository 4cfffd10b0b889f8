// SPDX-License-Identifier: MIT
#include <OmnarPattern.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

#include "pattern/grid.h"
#include "pattern/layer_rows.h"

namespace omnar::pattern {
namespace {

constexpr std::int64_t least = INT32_MIN;
constexpr std::int64_t most = INT32_MAX;
constexpr unsigned longestSide = 1U << 30;

/// Tiles narrower than this count as changed as a whole if one pixel did: a list of their pixels would be longer than it
/// is worth.
constexpr unsigned narrowTile = 8;

bool fits(std::int64_t position) { return position >= least && position <= most; }

void require(bool holds, const char* rule) {
    if (!holds) throw std::invalid_argument(rule);
}

void checkArguments(const Pattern& pattern, double zoom, Quality quality) {
    const Repeat& repeat = pattern.repeat;
    require(repeat.width >= 1 && repeat.width <= longestSide, "repeat.width: not 1..1073741824");
    require(repeat.height >= 1 && repeat.height <= longestSide, "repeat.height: not 1..1073741824");
    require(repeat.layout == Layout::straight || repeat.layout == Layout::halfDrop || repeat.layout == Layout::brick,
            "repeat.layout: not a layout");
    for (const auto& layer : pattern.layers) {
        const Ink* const ink = std::get_if<Ink>(&layer);
        require(ink != nullptr ? ink->coverage != nullptr : std::get<Picture>(layer).pixels != nullptr,
                "layers: a layer without pixels");
    }
    require(quality == Quality::exact || quality == Quality::smooth, "quality: neither exact nor smooth");
    require(zoom > 0.0 && zoom * std::max(repeat.width, repeat.height) <= static_cast<double>(most),
            "zoom: not above 0, or a tile has more than 2147483647 view pixels a side");
}

void checkWithinTile(const Repeat& repeat, const Rectangle& rectangle) {
    require(rectangle.x >= 0 && rectangle.y >= 0 && std::int64_t{rectangle.x} + rectangle.width <= repeat.width &&
                std::int64_t{rectangle.y} + rectangle.height <= repeat.height,
            "changed: not within the tile");
}

void checkWithinPlane(const Rectangle& view) {
    require(fits(std::int64_t{view.x} + view.width - 1) && fits(std::int64_t{view.y} + view.height - 1),
            "view: its right or bottom edge is beyond 32 bits");
}

/// The file position of a view position before it is folded into the tile, and its part that comes from the drop.
struct Unfolded {
    Unfolded(const Repeat& repeat, const Grid& grid, std::int64_t viewX, std::int64_t viewY) {
        const Axis::Place column = grid.x.placeOf(viewX), row = grid.y.placeOf(viewY);
        x = column.tile * grid.x.side + grid.x.fileOf(column.offset);
        y = row.tile * grid.y.side + grid.y.fileOf(row.offset);
        const std::int64_t drop = repeat.drop;
        dropX = repeat.layout == Layout::brick ? -drop * row.tile : 0;
        dropY = repeat.layout == Layout::halfDrop ? -drop * column.tile : 0;
    }

    bool fitsIn32Bits() const {
        return fits(x) && fits(y) && fits(dropX) && fits(dropY) && fits(x + dropX) && fits(y + dropY);
    }

    std::int64_t x, y, dropX, dropY;
};

/// File positions are extreme in the corners of a view.
void checkCorners(const Repeat& repeat, const Grid& grid, const Rectangle& view) {
    const std::int64_t right = std::int64_t{view.x} + view.width - 1, bottom = std::int64_t{view.y} + view.height - 1;
    const std::pair<std::int64_t, std::int64_t> corners[] = {
        {view.x, view.y}, {right, view.y}, {view.x, bottom}, {right, bottom}};
    for (const auto& [x, y] : corners) {
        if (Unfolded(repeat, grid, x, y).fitsIn32Bits()) continue;
        throw std::out_of_range("view: the file position of its corner (" + std::to_string(x) + ", " +
                                std::to_string(y) + ") is beyond 32 bits");
    }
}

}  // namespace

class Painter::Work {
public:
    Work(Pattern pattern, double zoom, Quality quality)
        : pattern_(std::move(pattern)),
          grid_(pattern_.repeat, zoom),
          isSmooth_(quality == Quality::smooth && zoom < 1.0) {
        for (const auto& layer : pattern_.layers) {
            if (const Ink* const ink = std::get_if<Ink>(&layer)) {
                rows_.emplace_back(std::in_place_type<LayerRows<L08>>, ink->coverage, grid_, quality);
            } else {
                rows_.emplace_back(std::in_place_type<LayerRows<TRC>>, std::get<Picture>(layer).pixels, grid_, quality);
            }
        }
        const unsigned columns =
            grid_.dropY == 0 ? 1 : grid_.y.side / std::gcd(grid_.y.side, static_cast<unsigned>(grid_.dropY));
        period_ = std::uint64_t{columns} * grid_.x.viewSide;
    }

    const Pattern& pattern() const { return pattern_; }
    const Grid& grid() const { return grid_; }
    bool isSmooth() const { return isSmooth_; }

    /// Prepares rows of a view.
    void begin(const Rectangle& view) {
        const std::size_t shifts = isSmooth_ && grid_.dropY != 0 ? view.width / grid_.x.viewSide + std::size_t{2}
                                   : grid_.dropX != 0            ? view.height / grid_.y.viewSide + std::size_t{2}
                                                                 : 1;
        bool wantsColumns = false;
        for (auto& layer : rows_) {
            std::visit(
                [&](auto& rows) {
                    rows.keepPlanes(shifts);
                    wantsColumns = wantsColumns || rows.wantsColumns();
                },
                layer);
        }
        const unsigned length = static_cast<unsigned>(std::min<std::uint64_t>(view.width, period_));
        coverage_.resize(view.width);
        pixels_.resize(hasPicture() ? view.width : 0);
        columns_.resize(wantsColumns ? length : 0);
        for (unsigned i = 0; i < columns_.size(); ++i) {
            columns_[i] = grid_.x.fileOf(grid_.x.placeOf(std::int64_t{view.x} + i).offset);
        }
    }

    /// Draws one row, `width` pixels from view position (x, y), into the row `dstY` of the destination from dstX on.
    void drawRow(const Rectangle& view, std::int64_t y, TRC* dst, unsigned dstWidth, unsigned dstHeight, unsigned dstX,
                 unsigned dstY) {
        FillTRCBuffer(dst, dstWidth, dstHeight, dstX, dstY, view.width, 1, pattern_.paper);
        const Axis::Place place = grid_.y.placeOf(y);
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            if (const Ink* const ink = std::get_if<Ink>(&pattern_.layers[i])) {
                const L08* const coverage = rowOf(std::get<LayerRows<L08>>(rows_[i]), view, place, coverage_.data());
                AlphaBlendColorToTRC(ink->color, coverage, view.width, 1, 0, 0, dst, dstWidth, dstHeight, dstX, dstY,
                                     ink->opacity, view.width, 1, false);
            } else {
                const TRC* const pixels = rowOf(std::get<LayerRows<TRC>>(rows_[i]), view, place, pixels_.data());
                AlphaBlendTRCToTRC(pixels, view.width, 1, 0, 0, dst, dstWidth, dstHeight, dstX, dstY,
                                   std::get<Picture>(pattern_.layers[i]).opacity, view.width, 1, false);
            }
        }
    }

    /// Whether two view rows show the same.
    bool areAlike(std::int64_t a, std::int64_t b) const {
        const Axis::Place first = grid_.y.placeOf(a), second = grid_.y.placeOf(b);
        return !isSmooth_ && first.tile == second.tile && grid_.y.fileOf(first.offset) == grid_.y.fileOf(second.offset);
    }

    void forget(std::size_t layer, const Rectangle& changed) {
        std::visit([&](auto& rows) { rows.forget(changed); }, rows_[layer]);
    }

private:
    bool hasPicture() const {
        return std::any_of(pattern_.layers.begin(), pattern_.layers.end(),
                           [](const auto& layer) { return std::holds_alternative<Picture>(layer); });
    }

    /// A view row of a layer: where it is, or put together in `room`, tile by tile for one period of it and then by
    /// copies of that.
    template <class Px>
    const Px* rowOf(LayerRows<Px>& rows, const Rectangle& view, const Axis::Place& y, Px* room) {
        Axis::Place x = grid_.x.placeOf(view.x);
        if (view.width <= grid_.x.viewSide - x.offset) {
            if (const Px* const found = rows.find({{x.tile, y.tile}, y.offset, x.offset, view.width})) return found;
        }
        const unsigned period = static_cast<unsigned>(std::min<std::uint64_t>(view.width, period_));
        unsigned done = 0;
        for (; done < period; ++x.tile, x.offset = 0) {
            const unsigned count = std::min(period - done, grid_.x.viewSide - x.offset);
            rows.copy({{x.tile, y.tile}, y.offset, x.offset, count}, columns_.data() + done, room + done);
            done += count;
        }
        while (done < view.width) {
            const unsigned count = std::min(done, view.width - done);
            std::copy_n(room, count, room + done);
            done += count;
        }
        return room;
    }

    Pattern pattern_;
    Grid grid_;
    bool isSmooth_;
    std::uint64_t period_;  ///< after how many view columns a row repeats
    std::vector<std::variant<LayerRows<L08>, LayerRows<TRC>>> rows_;
    std::vector<L08> coverage_;
    std::vector<TRC> pixels_;
    std::vector<unsigned> columns_;
};

Painter::Painter(Pattern pattern, double zoom, Quality quality) {
    checkArguments(pattern, zoom, quality);
    work_ = std::make_unique<Work>(std::move(pattern), zoom, quality);
}
Painter::Painter(Painter&&) noexcept = default;
Painter& Painter::operator=(Painter&&) noexcept = default;
Painter::~Painter() = default;

void Painter::draw(const Rectangle& view, TRC* dst, unsigned dstWidth, unsigned dstHeight, unsigned dstX,
                   unsigned dstY) {
    if (view.width == 0 || view.height == 0) return;
    require(dst != nullptr, "dst: null");
    require(std::uint64_t{dstX} + view.width <= dstWidth, "dstX: dstX + view.width is above dstWidth");
    require(std::uint64_t{dstY} + view.height <= dstHeight, "dstY: dstY + view.height is above dstHeight");
    check(view);

    work_->begin(view);
    for (unsigned row = 0; row < view.height; ++row) {
        const std::int64_t y = std::int64_t{view.y} + row;
        if (row != 0 && work_->areAlike(y - 1, y)) {
            Copy2DTRCBufferToTRC(dst, dstWidth, dstHeight, dstX, dstY + row - 1, dst, dstWidth, dstHeight, dstX,
                                 dstY + row, view.width, 1);
        } else {
            work_->drawRow(view, y, dst, dstWidth, dstHeight, dstX, dstY + row);
        }
    }
}

void Painter::check(const Rectangle& view) const {
    if (view.width == 0 || view.height == 0) return;
    checkWithinPlane(view);
    checkCorners(work_->pattern().repeat, work_->grid(), view);
}

Rectangle Painter::tile() const { return {0, 0, work_->grid().x.viewSide, work_->grid().y.viewSide}; }

void Painter::update(std::size_t layer, const Rectangle& changed) {
    require(layer < work_->pattern().layers.size(), "layer: no such layer");
    checkWithinTile(work_->pattern().repeat, changed);
    work_->forget(layer, changed);
}

std::vector<Rectangle> Painter::shownIn(const Rectangle& changed, const Rectangle& view) const {
    checkWithinTile(work_->pattern().repeat, changed);
    checkWithinPlane(view);
    const Grid& grid = work_->grid();
    std::vector<Rectangle> shown;
    if (view.width == 0 || view.height == 0 || changed.width == 0 || changed.height == 0) return shown;

    // The part of a tile's span that lies in the view, along one axis.
    const auto clipped = [](std::int64_t corner, const Axis::Span& span, std::int64_t begin, unsigned length) {
        const std::int64_t first = std::max(corner + span.first, begin);
        const std::int64_t last = std::min(corner + span.last, begin + length);
        return std::pair(first, last);
    };
    const auto forSpans = [&](const Axis& axis, int first, unsigned count, unsigned shift, auto visit) {
        if (axis.viewSide < narrowTile) return visit(Axis::Span{0, axis.viewSide});
        axis.forShowing(static_cast<unsigned>(first), count, shift, work_->isSmooth(), visit);
    };
    const Tile begin{grid.x.placeOf(view.x).tile, grid.y.placeOf(view.y).tile};
    const Tile last{grid.x.placeOf(std::int64_t{view.x} + view.width - 1).tile,
                    grid.y.placeOf(std::int64_t{view.y} + view.height - 1).tile};
    for (Tile tile = begin; tile.row <= last.row; ++tile.row) {
        for (tile.column = begin.column; tile.column <= last.column; ++tile.column) {
            forSpans(grid.y, changed.y, changed.height, grid.shiftY(tile), [&](const Axis::Span& rows) {
                forSpans(grid.x, changed.x, changed.width, grid.shiftX(tile), [&](const Axis::Span& columns) {
                    const auto [left, right] = clipped(tile.column * grid.x.viewSide, columns, view.x, view.width);
                    const auto [top, bottom] = clipped(tile.row * grid.y.viewSide, rows, view.y, view.height);
                    if (left >= right || top >= bottom) return;
                    shown.push_back({static_cast<int>(left), static_cast<int>(top), static_cast<unsigned>(right - left),
                                     static_cast<unsigned>(bottom - top)});
                });
            });
        }
    }
    return shown;
}

CPoint Painter::filePosition(int x, int y) const {
    checkCorners(work_->pattern().repeat, work_->grid(), {x, y, 1, 1});
    const Grid& grid = work_->grid();
    const Axis::Place column = grid.x.placeOf(x), row = grid.y.placeOf(y);
    const Tile tile{column.tile, row.tile};
    return {static_cast<int>(modulo(std::int64_t{grid.x.fileOf(column.offset)} - grid.shiftX(tile), grid.x.side)),
            static_cast<int>(modulo(std::int64_t{grid.y.fileOf(row.offset)} - grid.shiftY(tile), grid.y.side))};
}

CPoint Painter::viewPosition(CPoint file, int tileX, int tileY) const {
    checkWithinTile(work_->pattern().repeat, {file.x, file.y, 1, 1});
    const Grid& grid = work_->grid();
    const Tile tile{tileX, tileY};
    const unsigned x = modulo(std::int64_t{file.x} + grid.shiftX(tile), grid.x.side);
    const unsigned y = modulo(std::int64_t{file.y} + grid.shiftY(tile), grid.y.side);
    const std::int64_t viewX = tile.column * grid.x.viewSide + grid.x.firstShowing(x);
    const std::int64_t viewY = tile.row * grid.y.viewSide + grid.y.firstShowing(y);
    if (!fits(viewX) || !fits(viewY)) throw std::out_of_range("tileX, tileY: the view position is beyond 32 bits");
    return {static_cast<int>(viewX), static_cast<int>(viewY)};
}

}  // namespace omnar::pattern
