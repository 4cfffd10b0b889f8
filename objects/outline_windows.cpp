// SPDX-License-Identifier: MIT
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// GDI+ needs this and the lines above first.
#include <objidl.h>
// A comment, since clang-format sorts adjacent includes.
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

template <class Handle>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Release>;

/// Starts GDI+ for its lifetime.
class Session {
public:
    Session() {
        const GdiplusStartupInput input;
        started_ = GdiplusStartup(&token_, &input, nullptr) == Ok;
    }
    ~Session() {
        if (started_) GdiplusShutdown(token_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool started() const { return started_; }

private:
    ULONG_PTR token_ = 0;
    bool started_ = false;
};

/// Null if GDI+ refuses. It takes no polygon of less than three points; an empty path fills nothing either.
Owned<GpPath*> pathOf(std::span<const CPoint> polygon) {
    static_assert(sizeof(CPoint) == sizeof(GpPoint));
    GpPath* path = nullptr;
    GdipCreatePath(FillModeAlternate, &path);
    Owned<GpPath*> owned(path);
    const auto* const points = reinterpret_cast<const GpPoint*>(polygon.data());
    const auto count = static_cast<INT>(polygon.size());
    if (count > 2 && GdipAddPathPolygonI(path, points, count) != Ok) owned.reset();
    return owned;
}

/// Maps y to height - y, since rows of a display count downwards.
bool flipY(GpGraphics* graphics, int height) {
    GpMatrix* matrix = nullptr;
    GdipCreateMatrix2(1, 0, 0, 1, 0, 0, &matrix);
    const Owned<GpMatrix*> owned(matrix);
    return GdipScaleMatrix(matrix, 1, -1, MatrixOrderAppend) == Ok &&
           GdipTranslateMatrix(matrix, 0, static_cast<REAL>(height), MatrixOrderAppend) == Ok &&
           GdipSetWorldTransform(graphics, matrix) == Ok;
}

/// Fills the intersection of two paths with white.
bool draw(HDC context, GpPath* rows, GpPath* columns, Raster raster) {
    GpGraphics* graphics = nullptr;
    GdipCreateFromHDC(context, &graphics);
    const Owned<GpGraphics*> ownedGraphics(graphics);
    GpSolidFill* white = nullptr;
    GdipCreateSolidFill(0xFFFFFFFF, &white);
    const Owned<GpSolidFill*> ownedWhite(white);
    return flipY(graphics, raster.height) && GdipSetClipPath(graphics, rows, CombineModeReplace) == Ok &&
           GdipSetClipPath(graphics, columns, CombineModeIntersect) == Ok &&
           GdipFillRectangleI(graphics, white, 0, 0, raster.width, raster.height) == Ok &&
           GdipFlush(graphics, FlushIntentionSync) == Ok;
}

}  // namespace

bool fillIntersectionWindows(const Outlines& outlines, Raster raster) noexcept {
    const Session session;
    if (!session.started()) return false;
    const Owned<GpPath*> rows = pathOf(outlines.rowOutline), columns = pathOf(outlines.columnOutline);
    if (rows == nullptr || columns == nullptr) return false;

    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = raster.width;
    info.bmiHeader.biHeight = raster.height;  // positive: bottom-up
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const Owned<HBITMAP> bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (bitmap == nullptr) return false;
    auto* const pixels = static_cast<TRC*>(bits);
    std::fill_n(pixels, raster.size(), TRC{0});

    const Owned<HDC> display(CreateDCW(L"DISPLAY", nullptr, nullptr, nullptr));
    const Owned<HDC> memory(CreateCompatibleDC(display.get()));
    if (memory == nullptr || SelectObject(memory.get(), bitmap.get()) == nullptr) return false;
    if (!draw(memory.get(), rows.get(), columns.get(), raster)) return false;
    GdiFlush();

    // GDI does not define the fourth byte of a pixel.
    constexpr TRC colorBytes = 0x00FFFFFF;
    std::transform(pixels, pixels + raster.size(), raster.pixels,
                   [](TRC pixel) { return static_cast<std::uint8_t>((pixel & colorBytes) != 0); });
    return true;
}

}  // namespace omnar
