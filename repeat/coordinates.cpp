// SPDX-License-Identifier: MIT

// Conversions between file, view, screen and millimetre positions. Each goes tile by tile: a tile is a whole number of
// view pixels, and the zoom scales only the offset in the tile.

#include <algorithm>
#include <cmath>

#include "buffers/host/contract.h"
#include "numeric/integers.h"
#include "repeat/layout.h"
#include "repeat/placing.h"
#include "repeat/tile_position.h"

using namespace omnar;

namespace {

/// The size of a zoomed tile in view pixels, at least 1.
int zoomedSize(unsigned int size, double zoom) { return std::max(toInt(size * zoom), 1); }

/// The position in tiles of `size` pixels. The size counts as signed, like the position.
TilePosition filePosition(int position, unsigned int size) { return tilePosition(position, Wrapping(size).value()); }

/// The position in millimetres in tiles of `size` pixels. Adding and subtracting 1 flushes tiny values to zero.
FractionalTilePosition filePositionOfMM(double mm, double resolution, unsigned int size) {
    return steppedTilePosition(mm * resolution + 1.0 - 1.0, size);
}

/// One coordinate on its way from the file to the view.
class FileToView {
public:
    FileToView(int position, unsigned int size, double zoom)
        : file_(filePosition(position, size)), zoom_(zoom), viewSize_(zoomedSize(size, zoom)) {}

    int tile() const { return file_.tile; }
    int unfolded() const { return toInt(scaled()); }
    int folded() const { return toInt(file_.offset * zoom_); }
    int foldedLess(double drop) const { return tilePosition(toInt(scaled() - drop), viewSize_).offset; }

private:
    double scaled() const { return (Wrapping(file_.tile) * viewSize_).value() + file_.offset * zoom_; }

    TilePosition file_;
    double zoom_;
    int viewSize_;
};

/// One coordinate on its way from the view to the file.
class ViewToFile {
public:
    ViewToFile(int position, unsigned int size, double zoom)
        : view_(tilePosition(position, zoomedSize(size, zoom))), size_(size), offset_(toInt(view_.offset / zoom)) {}

    int tile() const { return view_.tile; }
    int unfolded() const { return (offset_ + size_ * view_.tile).value(); }
    int folded() const { return offset_; }
    int foldedLess(Wrapping drop) const {
        return tilePosition((offset_ - drop + size_ * view_.tile).value(), size_.value()).offset;
    }

private:
    TilePosition view_;
    Wrapping size_;
    int offset_;
};

/// Writes the position that `Coordinate` converts along either axis, (0, 0) for a kind that is no layout. Folding into
/// the repeat takes off the drop of the tiles crossed.
template <class Coordinate, class Drop>
void convert(int inX, int inY, unsigned int repW, unsigned int repH, const DropLayout<Drop>& layout, double zoomX,
             double zoomY, bool foldIntoRepeat, int* outX, int* outY) {
    if (!layout.isLayout()) {
        *outX = *outY = 0;
        return;
    }
    const Coordinate x(inX, repW, zoomX), y(inY, repH, zoomY);
    if (!foldIntoRepeat) {
        *outX = x.unfolded();
        *outY = y.unfolded();
    } else if (layout.isHalfDrop()) {
        *outX = x.folded();
        *outY = y.foldedLess(layout.drop(x.tile()));
    } else {
        *outX = x.foldedLess(layout.drop(y.tile()));
        *outY = y.folded();
    }
}

/// The conversion of file positions to screen positions snapped to pixels.
class Screen {
public:
    Screen(int originX, int originY, unsigned int height, unsigned int repW, unsigned int repH, double zoomX,
           double zoomY, bool snapToPixelCentre, bool flipY)
        : x_{zoomX, zoomedSize(repW, zoomX), originX},
          y_{zoomY, zoomedSize(repH, zoomY), originY},
          height_(height),
          flipY_(flipY),
          snapX_(snapToPixelCentre && zoomX > 1.0 ? toInt(zoomX * 0.5 + 0.5) : 0),
          snapY_(snapToPixelCentre && zoomY > 1.0 ? toInt(zoomY * 0.5 - 0.5) : 0) {}

    /// Writes the screen position of a TilePosition or FractionalTilePosition on either axis.
    template <class T>
    void convert(const T& x, const T& y, int* sx, int* sy) const {
        const Wrapping column = toInt(x_.convert(x));
        const Wrapping row = toInt(y_.convert(y));
        *sx = (column + snapX_).value();
        *sy = ((flipY_ ? height_ - row - 1 : row) - snapY_).value();
    }

private:
    struct Axis {
        double zoom;
        int viewSize;
        int origin;

        template <class T>
        double convert(const T& file) const {
            return file.offset * zoom + static_cast<double>(file.tile) * viewSize - origin;
        }
    };

    Axis x_;
    Axis y_;
    Wrapping height_;
    bool flipY_;
    int snapX_;  ///< half a zoomed pixel, rounded up, to the right
    int snapY_;  ///< half of one pixel less than a zoomed pixel, upwards
};

/// True if the width of the view, not its height, limits the size at which the file fits into it.
bool isLimitedByWidth(unsigned int fileW, unsigned int fileH, unsigned int viewW, unsigned int viewH, double zoomX,
                      double zoomY) {
    return viewH / (fileH / zoomY) > viewW / (fileW / zoomX);
}

/// The size in whole pixels. Values that do not fit an int give 2^31.
unsigned int wholeSize(double pixels) { return Wrapping(toInt(pixels)).bits(); }

}  // namespace

/// Checks the sizes where every layout divides by them.
#define OMNAR_EXPECT_SIZES()                                                                         \
    OMNAR_EXPECT_AS(repW, repW != 0 || !Layout(kind).isLayout(), "not 0, unless kind is no layout"); \
    OMNAR_EXPECT_AS(repH, repH != 0 || !Layout(kind).isLayout(), "not 0, unless kind is no layout")

/// Checks the size that a folded position is divided by: that of the axis along which the drop shifts.
#define OMNAR_EXPECT_FOLDABLE()                                                       \
    OMNAR_EXPECT_AS(repW, repW != 0 || !Layout(kind).isBrick() || !foldIntoRepeat,    \
                    "not 0, if the position is folded and kind is eDropHorizontal");  \
    OMNAR_EXPECT_AS(repH, repH != 0 || !Layout(kind).isHalfDrop() || !foldIntoRepeat, \
                    "not 0, if the position is folded and kind is eDropVertical")

/// Checks the arrays for screen positions.
#define OMNAR_EXPECT_SCREEN_ARRAYS() \
    OMNAR_EXPECT_NOT_NULL(sxs, sys); \
    OMNAR_EXPECT_NOT_NULL(*sxs, *sys)

void FPToVP(int fx, int fy, int* vx, int* vy, unsigned int repW, unsigned int repH, unsigned int drop, _EDropKind kind,
            double zoomX, double zoomY, bool foldIntoRepeat) {
    OMNAR_EXPECT_NOT_NULL(vx, vy);
    OMNAR_EXPECT_SIZES();
    const double viewDrop = drop * Layout(kind).shifted(zoomX, zoomY);
    const DropLayout layout(kind, [viewDrop](int tiles) { return viewDrop * tiles; });
    convert<FileToView>(fx, fy, repW, repH, layout, zoomX, zoomY, foldIntoRepeat, vx, vy);
}

void VPToFP(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, unsigned int drop, _EDropKind kind,
            double zoomX, double zoomY, bool foldIntoRepeat) {
    OMNAR_EXPECT_NOT_NULL(fx, fy);
    OMNAR_EXPECT_FOLDABLE();
    const DropLayout layout(kind, WholeDrop{drop});
    convert<ViewToFile>(vx, vy, repW, repH, layout, zoomX, zoomY, foldIntoRepeat, fx, fy);
}

void VPToFPDb(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, double drop, double scaleX,
              double scaleY, _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat) {
    OMNAR_EXPECT_NOT_NULL(fx, fy);
    OMNAR_EXPECT_FOLDABLE();
    const double scale = Layout(kind).shifted(scaleX, scaleY);
    const DropLayout layout(kind, [drop, scale](int tiles) { return Wrapping(rounded(tiles * drop * scale)); });
    convert<ViewToFile>(vx, vy, repW, repH, layout, zoomX, zoomY, foldIntoRepeat, fx, fy);
}

void FPToSnappedSP(int fx, int fy, int* sx, int* sy, int originX, int originY, unsigned int screenHeight,
                   unsigned int repW, unsigned int repH, unsigned int, _EDropKind kind, double zoomX, double zoomY,
                   unsigned char snapToPixelCentre, bool flipY) {
    if (!Layout(kind).isLayout()) return;
    OMNAR_EXPECT_NOT_NULL(sx, sy);
    OMNAR_EXPECT_SIZES();
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    screen.convert(filePosition(fx, repW), filePosition(fy, repH), sx, sy);
}

void FPToSnappedSP(const int* fxs, const int* fys, int count, int* const* sxs, int* const* sys, int originX,
                   int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH, unsigned int,
                   _EDropKind kind, double zoomX, double zoomY, unsigned char snapToPixelCentre, bool flipY) {
    if (!Layout(kind).isLayout() || count < 1) return;
    OMNAR_EXPECT_NOT_NULL(fxs, fys);
    OMNAR_EXPECT_SCREEN_ARRAYS();
    OMNAR_EXPECT_SIZES();
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    for (int i = 0; i < count; ++i) {
        screen.convert(filePosition(fxs[i], repW), filePosition(fys[i], repH), &(*sxs)[i], &(*sys)[i]);
    }
}

void MMToSnappedSP(double mmX, double mmY, int* sx, int* sy, int originX, int originY, unsigned int screenHeight,
                   unsigned int repW, unsigned int repH, unsigned int, _EDropKind kind, double resX, double resY,
                   double zoomX, double zoomY, unsigned char snapToPixelCentre, bool flipY) {
    if (!Layout(kind).isLayout()) return;
    OMNAR_EXPECT_NOT_NULL(sx, sy);
    OMNAR_EXPECT_AS(mmX, !std::isinf(mmX * resX), "times resX not infinite");
    OMNAR_EXPECT_AS(mmY, !std::isinf(mmY * resY), "times resY not infinite");
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    screen.convert(filePositionOfMM(mmX, resX, repW), filePositionOfMM(mmY, resY, repH), sx, sy);
}

void MMToSnappedSP(const double* mmXs, const double* mmYs, int count, int* const* sxs, int* const* sys, int originX,
                   int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH, unsigned int,
                   _EDropKind kind, double resX, double resY, double zoomX, double zoomY,
                   unsigned char snapToPixelCentre, bool flipY) {
    if (!Layout(kind).isLayout() || count < 1) return;
    OMNAR_EXPECT_NOT_NULL(mmXs, mmYs);
    OMNAR_EXPECT_SCREEN_ARRAYS();
    for (int i = 0; i < count; ++i) {
        OMNAR_EXPECT_ELEMENT(mmXs, i, !std::isinf(mmXs[i] * resX), "times resX not infinite");
        OMNAR_EXPECT_ELEMENT(mmYs, i, !std::isinf(mmYs[i] * resY), "times resY not infinite");
    }
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    for (int i = 0; i < count; ++i) {
        screen.convert(filePositionOfMM(mmXs[i], resX, repW), filePositionOfMM(mmYs[i], resY, repH), &(*sxs)[i],
                       &(*sys)[i]);
    }
}

void AdaptFileSizeToFileSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW, unsigned int viewH,
                                        double zoomX, double zoomY, unsigned int* outW, unsigned int* outH) {
    OMNAR_EXPECT_NOT_NULL(outW, outH);
    if (isLimitedByWidth(fileW, fileH, viewW, viewH, zoomX, zoomY)) {
        *outW = fileW;
        *outH = wholeSize(fileW * zoomY / zoomX * viewH / viewW);
    } else {
        *outH = fileH;
        *outW = wholeSize(fileH * zoomX / zoomY * viewW / viewH);
    }
}

void AdaptFileSizeToViewSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW, unsigned int viewH,
                                        double zoomX, double zoomY, unsigned int* outW, unsigned int* outH) {
    OMNAR_EXPECT_NOT_NULL(outW, outH);
    const double shownW = fileW / zoomX;
    const double shownH = fileH / zoomY;
    if (isLimitedByWidth(fileW, fileH, viewW, viewH, zoomX, zoomY)) {
        *outW = viewW;
        *outH = wholeSize(viewW * shownH / shownW);
    } else {
        *outH = viewH;
        *outW = wholeSize(viewH * shownW / shownH);
    }
}
