// SPDX-License-Identifier: MIT

// Conversions between file, view, screen and millimetre positions. Each goes tile by tile: a tile becomes a whole
// number of view pixels, and the zoom scales only the way inside the tile.

#include <algorithm>
#include <cmath>

#include "buffers/host/contract.h"
#include "numeric/integers.h"
#include "repeat/tile_walk.h"

using namespace omnar;

namespace {

bool isLayout(_EDropKind kind) { return kind == eDropVertical || kind == eDropHorizontal; }

/// View pixels of a zoomed tile; at least one.
int zoomedSize(unsigned int size, double zoom) { return std::max(toInt(size * zoom), 1); }

/// The place of a whole position; the size counts as signed, like the position.
Place wholePlaceOf(int position, unsigned int size) { return placeOf(position, Wrapping(size).value()); }

/// One axis of the way from the file to the view.
class FileToView {
public:
    FileToView(int position, unsigned int size, double zoom, double drop)
        : place_(wholePlaceOf(position, size)), zoom_(zoom), drop_(drop), viewSize_(zoomedSize(size, zoom)) {}

    int tile() const { return place_.tile; }
    int unfolded() const { return toInt(whole()); }
    int inTile() const { return toInt(place_.rest * zoom_); }
    /// In the tile after the drop of so many tiles of the other axis was taken off.
    int inTileWithout(int drops) const { return placeOf(toInt(whole() - drop_ * zoom_ * drops), viewSize_).rest; }

private:
    double whole() const { return (Wrapping(place_.tile) * viewSize_).value() + place_.rest * zoom_; }

    Place place_;
    double zoom_;
    double drop_;
    int viewSize_;
};

/// One axis of the way from the view to the file. `drop(n)` is the drop of n tiles in file pixels.
template <class Drop>
class ViewToFile {
public:
    ViewToFile(int position, unsigned int size, double zoom, Drop drop)
        : place_(placeOf(position, zoomedSize(size, zoom))),
          size_(size),
          inTile_(toInt(place_.rest / zoom)),
          drop_(drop) {}

    int tile() const { return place_.tile; }
    int unfolded() const { return (inTile_ + size_ * place_.tile).value(); }
    int inTile() const { return inTile_; }
    /// In the tile after the drop of so many tiles of the other axis was taken off.
    int inTileWithout(int drops) const {
        return placeOf((inTile_ - drop_(drops) + size_ * place_.tile).value(), size_.value()).rest;
    }

private:
    Place place_;
    Wrapping size_;
    int inTile_;
    Drop drop_;
};

template <class Drop>
ViewToFile(int, unsigned int, double, Drop) -> ViewToFile<Drop>;

/// Writes the converted position. Folding into the repeat takes the drop off: half-drop layout shifts y by the tiles
/// that were crossed along x, brick layout x by those along y.
template <class Axis>
void convert(const Axis& x, const Axis& y, _EDropKind kind, bool foldIntoRepeat, int* outX, int* outY) {
    if (!foldIntoRepeat) {
        *outX = x.unfolded();
        *outY = y.unfolded();
    } else if (kind == eDropVertical) {
        *outX = x.inTile();
        *outY = y.inTileWithout(x.tile());
    } else {
        *outX = x.inTileWithout(y.tile());
        *outY = y.inTile();
    }
}

template <class Drop>
void viewToFile(int vx, int vy, unsigned int repW, unsigned int repH, Drop drop, _EDropKind kind, double zoomX,
                double zoomY, bool foldIntoRepeat, int* fx, int* fy) {
    if (isLayout(kind)) {
        convert(ViewToFile(vx, repW, zoomX, drop), ViewToFile(vy, repH, zoomY, drop), kind, foldIntoRepeat, fx, fy);
    } else {
        *fx = *fy = 0;
    }
}

/// How file positions become positions on the screen, snapped to pixels.
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

    /// Writes the screen position of a place on either axis.
    template <class P>
    void put(const P& x, const P& y, int* sx, int* sy) const {
        const Wrapping column = toInt(x_.at(x));
        const Wrapping row = toInt(y_.at(y));
        *sx = (column + snapX_).value();
        *sy = ((flipY_ ? height_ - row - 1 : row) - snapY_).value();
    }

private:
    struct Axis {
        double zoom;
        int viewSize;
        int origin;

        template <class P>
        double at(const P& place) const {
            return place.rest * zoom + static_cast<double>(place.tile) * viewSize - origin;
        }
    };

    Axis x_;
    Axis y_;
    Wrapping height_;
    bool flipY_;
    int snapX_;  ///< half a zoomed pixel, rounded up, to the right ...
    int snapY_;  ///< ... but half a pixel less than half a zoomed one upwards
};

/// The place of a position in millimetres. Adding 1 and taking it off again flushes tiny values to zero.
FractionalPlace placeOfMM(double mm, double res, unsigned int size) {
    return walkedPlaceOf(mm * res + 1.0 - 1.0, size);
}

/// True if the view's width, not its height, limits how large the file can be shown in it.
bool widthLimits(unsigned int fileW, unsigned int fileH, unsigned int viewW, unsigned int viewH, double zoomX,
                 double zoomY) {
    return viewH / (fileH / zoomY) > viewW / (fileW / zoomX);
}

/// A size, cut to whole pixels.
unsigned int sizeOf(double pixels) { return Wrapping(toInt(pixels)).bits(); }

}  // namespace

void FPToVP(int fx, int fy, int* vx, int* vy, unsigned int repW, unsigned int repH, unsigned int drop, _EDropKind kind,
            double zoomX, double zoomY, bool foldIntoRepeat) {
    OMNAR_EXPECT_NOT_NULL(vx, vy);
    OMNAR_EXPECT_AS(repW, repW != 0 || !isLayout(kind), "not 0, unless kind is no layout");
    OMNAR_EXPECT_AS(repH, repH != 0 || !isLayout(kind), "not 0, unless kind is no layout");
    if (!isLayout(kind)) {
        *vx = *vy = 0;
        return;
    }
    convert(FileToView(fx, repW, zoomX, drop), FileToView(fy, repH, zoomY, drop), kind, foldIntoRepeat, vx, vy);
}

/// Checks the size that a folded position is divided by: that of the axis along which the drop runs.
#define OMNAR_EXPECT_FOLDABLE()                                                      \
    OMNAR_EXPECT_AS(repW, repW != 0 || kind != eDropHorizontal || !foldIntoRepeat,   \
                    "not 0, if the position is folded and kind is eDropHorizontal"); \
    OMNAR_EXPECT_AS(repH, repH != 0 || kind != eDropVertical || !foldIntoRepeat,     \
                    "not 0, if the position is folded and kind is eDropVertical")

void VPToFP(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, unsigned int drop, _EDropKind kind,
            double zoomX, double zoomY, bool foldIntoRepeat) {
    OMNAR_EXPECT_NOT_NULL(fx, fy);
    OMNAR_EXPECT_FOLDABLE();
    const auto wholeDrop = [drop](int tiles) { return Wrapping(drop) * tiles; };
    viewToFile(vx, vy, repW, repH, wholeDrop, kind, zoomX, zoomY, foldIntoRepeat, fx, fy);
}

void VPToFPDb(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, double drop, double scaleX,
              double scaleY, _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat) {
    OMNAR_EXPECT_NOT_NULL(fx, fy);
    OMNAR_EXPECT_FOLDABLE();
    const double scale = kind == eDropVertical ? scaleY : scaleX;
    const auto scaledDrop = [drop, scale](int tiles) { return Wrapping(rounded(tiles * drop * scale)); };
    viewToFile(vx, vy, repW, repH, scaledDrop, kind, zoomX, zoomY, foldIntoRepeat, fx, fy);
}

void FPToSnappedSP(int fx, int fy, int* sx, int* sy, int originX, int originY, unsigned int screenHeight,
                   unsigned int repW, unsigned int repH, unsigned int, _EDropKind kind, double zoomX, double zoomY,
                   unsigned char snapToPixelCentre, bool flipY) {
    if (!isLayout(kind)) return;
    OMNAR_EXPECT_NOT_NULL(sx, sy);
    OMNAR_EXPECT_AS(repW, repW != 0, "not 0, unless kind is no layout");
    OMNAR_EXPECT_AS(repH, repH != 0, "not 0, unless kind is no layout");
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    screen.put(wholePlaceOf(fx, repW), wholePlaceOf(fy, repH), sx, sy);
}

/// Checks that there are arrays for many screen positions.
#define OMNAR_EXPECT_ROOM()          \
    OMNAR_EXPECT_NOT_NULL(sxs, sys); \
    OMNAR_EXPECT_NOT_NULL(*sxs, *sys)

void FPToSnappedSP(const int* fxs, const int* fys, int count, int* const* sxs, int* const* sys, int originX,
                   int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH, unsigned int,
                   _EDropKind kind, double zoomX, double zoomY, unsigned char snapToPixelCentre, bool flipY) {
    if (!isLayout(kind) || count < 1) return;
    OMNAR_EXPECT_NOT_NULL(fxs, fys);
    OMNAR_EXPECT_ROOM();
    OMNAR_EXPECT_AS(repW, repW != 0, "not 0, unless kind is no layout");
    OMNAR_EXPECT_AS(repH, repH != 0, "not 0, unless kind is no layout");
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    for (int i = 0; i < count; ++i) {
        screen.put(wholePlaceOf(fxs[i], repW), wholePlaceOf(fys[i], repH), &(*sxs)[i], &(*sys)[i]);
    }
}

void MMToSnappedSP(double mmX, double mmY, int* sx, int* sy, int originX, int originY, unsigned int screenHeight,
                   unsigned int repW, unsigned int repH, unsigned int, _EDropKind kind, double resX, double resY,
                   double zoomX, double zoomY, unsigned char snapToPixelCentre, bool flipY) {
    if (!isLayout(kind)) return;
    OMNAR_EXPECT_NOT_NULL(sx, sy);
    OMNAR_EXPECT_AS(mmX, !std::isinf(mmX * resX), "times resX not infinite");
    OMNAR_EXPECT_AS(mmY, !std::isinf(mmY * resY), "times resY not infinite");
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    screen.put(placeOfMM(mmX, resX, repW), placeOfMM(mmY, resY, repH), sx, sy);
}

void MMToSnappedSP(const double* mmXs, const double* mmYs, int count, int* const* sxs, int* const* sys, int originX,
                   int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH, unsigned int,
                   _EDropKind kind, double resX, double resY, double zoomX, double zoomY,
                   unsigned char snapToPixelCentre, bool flipY) {
    if (!isLayout(kind) || count < 1) return;
    OMNAR_EXPECT_NOT_NULL(mmXs, mmYs);
    OMNAR_EXPECT_ROOM();
    for (int i = 0; i < count; ++i) {
        OMNAR_EXPECT_ELEMENT(mmXs, i, !std::isinf(mmXs[i] * resX), "times resX not infinite");
        OMNAR_EXPECT_ELEMENT(mmYs, i, !std::isinf(mmYs[i] * resY), "times resY not infinite");
    }
    const Screen screen(originX, originY, screenHeight, repW, repH, zoomX, zoomY, snapToPixelCentre != 0, flipY);
    for (int i = 0; i < count; ++i) {
        screen.put(placeOfMM(mmXs[i], resX, repW), placeOfMM(mmYs[i], resY, repH), &(*sxs)[i], &(*sys)[i]);
    }
}

void AdaptFileSizeToFileSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW, unsigned int viewH,
                                        double zoomX, double zoomY, unsigned int* outW, unsigned int* outH) {
    OMNAR_EXPECT_NOT_NULL(outW, outH);
    if (widthLimits(fileW, fileH, viewW, viewH, zoomX, zoomY)) {
        *outW = fileW;
        *outH = sizeOf(fileW * zoomY / zoomX * viewH / viewW);
    } else {
        *outH = fileH;
        *outW = sizeOf(fileH * zoomX / zoomY * viewW / viewH);
    }
}

void AdaptFileSizeToViewSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW, unsigned int viewH,
                                        double zoomX, double zoomY, unsigned int* outW, unsigned int* outH) {
    OMNAR_EXPECT_NOT_NULL(outW, outH);
    const double shownW = fileW / zoomX;
    const double shownH = fileH / zoomY;
    if (widthLimits(fileW, fileH, viewW, viewH, zoomX, zoomY)) {
        *outW = viewW;
        *outH = sizeOf(viewW * shownH / shownW);
    } else {
        *outH = viewH;
        *outW = sizeOf(viewH * shownW / shownH);
    }
}
