// SPDX-License-Identifier: MIT

// The overlap of two outlines by the system's graphics interface.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// GDI+ needs this and the lines above first.
#include <objidl.h>
// clang-format keeps an order over comments.
#include <gdiplus.h>

#include <algorithm>
#include <memory>
#include <type_traits>

#include "objects/outline.h"

namespace omnar {
namespace {

using namespace Gdiplus;
using namespace Gdiplus::DllExports;

struct Release {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
    void operator()(HDC context) const { DeleteDC(context); }
    void operator()(GpPath* path) const { GdipDeletePath(path); }
    void operator()(GpGraphics* graphics) const { GdipDeleteGraphics(graphics); }
    void operator()(GpMatrix* matrix) const { GdipDeleteMatrix(matrix); }
    void operator()(GpSolidFill* brush) const { GdipDeleteBrush(brush); }
};

/// A handle that is released at the end of its scope.
template <class Handle>
using Held = std::unique_ptr<std::remove_pointer_t<Handle>, Release>;

/// GDI+ runs for as long as this lives.
class Session {
public:
    Session() {
        const GdiplusStartupInput input;
        runs_ = GdiplusStartup(&token_, &input, nullptr) == Ok;
    }
    ~Session() {
        if (runs_) GdiplusShutdown(token_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool runs() const { return runs_; }

private:
    ULONG_PTR token_ = 0;
    bool runs_ = false;
};

/// Null if GDI+ refuses. Less than three points are no polygon to it; they fill nothing, as an empty path does.
Held<GpPath*> pathOf(std::span<const CPoint> polygon) {
    static_assert(sizeof(CPoint) == sizeof(GpPoint));
    GpPath* path = nullptr;
    GdipCreatePath(FillModeAlternate, &path);
    Held<GpPath*> held(path);
    const auto* const points = reinterpret_cast<const GpPoint*>(polygon.data());
    const auto count = static_cast<INT>(polygon.size());
    if (count > 2 && GdipAddPathPolygonI(path, points, count) != Ok) held.reset();
    return held;
}

/// Turns the outlines' y around, since a display's rows count downwards: y becomes height - y.
bool turnAround(GpGraphics* graphics, int height) {
    GpMatrix* matrix = nullptr;
    GdipCreateMatrix2(1, 0, 0, 1, 0, 0, &matrix);
    const Held<GpMatrix*> held(matrix);
    return GdipScaleMatrix(matrix, 1, -1, MatrixOrderAppend) == Ok &&
           GdipTranslateMatrix(matrix, 0, static_cast<REAL>(height), MatrixOrderAppend) == Ok &&
           GdipSetWorldTransform(graphics, matrix) == Ok;
}

/// Draws white all over what is left of the bitmap between both outlines.
bool draw(HDC context, GpPath* rows, GpPath* columns, Raster raster) {
    GpGraphics* graphics = nullptr;
    GdipCreateFromHDC(context, &graphics);
    const Held<GpGraphics*> heldGraphics(graphics);
    GpSolidFill* white = nullptr;
    GdipCreateSolidFill(0xFFFFFFFF, &white);
    const Held<GpSolidFill*> heldWhite(white);
    return turnAround(graphics, raster.height) && GdipSetClipPath(graphics, rows, CombineModeReplace) == Ok &&
           GdipSetClipPath(graphics, columns, CombineModeIntersect) == Ok &&
           GdipFillRectangleI(graphics, white, 0, 0, raster.width, raster.height) == Ok &&
           GdipFlush(graphics, FlushIntentionSync) == Ok;
}

}  // namespace

bool fillOverlapBySystem(const Outlines& outlines, Raster raster) noexcept {
    const Session session;
    if (!session.runs()) return false;
    const Held<GpPath*> rows = pathOf(outlines.ofRows), columns = pathOf(outlines.ofColumns);
    if (rows == nullptr || columns == nullptr) return false;

    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = raster.width;
    info.bmiHeader.biHeight = raster.height;  // positive: from the bottom up
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const Held<HBITMAP> bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (bitmap == nullptr) return false;
    auto* const pixels = static_cast<TRC*>(bits);
    std::fill_n(pixels, raster.size(), TRC{0});

    const Held<HDC> display(CreateDCW(L"DISPLAY", nullptr, nullptr, nullptr));
    const Held<HDC> memory(CreateCompatibleDC(display.get()));
    if (memory == nullptr || SelectObject(memory.get(), bitmap.get()) == nullptr) return false;
    if (!draw(memory.get(), rows.get(), columns.get(), raster)) return false;
    GdiFlush();

    // GDI leaves a pixel's fourth byte to chance.
    constexpr TRC colour = 0x00FFFFFF;
    std::transform(pixels, pixels + raster.size(), raster.pixels,
                   [](TRC pixel) { return static_cast<std::uint8_t>((pixel & colour) != 0); });
    return true;
}

}  // namespace omnar
