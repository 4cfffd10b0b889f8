// SPDX-License-Identifier: MIT
/// @file OmnarRaster.h
/// The one public header of OmnarRaster: raster and repeat geometry for the design of repeating patterns.
///
/// Everything is a free function over memory that the caller owns. A raster function (one that says "Cut by") reads
/// and writes the pixels of one rectangle and, unless it says so, nothing else. It allocates nothing, takes no lock,
/// keeps no state and reports no error. Any other function fails only as it says under "Errors".
///
/// @section formats Pixel formats
/// | Type  | Element         | Meaning                                                                              |
/// |-------|-----------------|--------------------------------------------------------------------------------------|
/// | `TRC` | 32-bit unsigned | true colour; bytes blue, green, red, alpha (0 transparent, 255 opaque): 0xAARRGGBB   |
/// | `L08` | 8-bit unsigned  | one channel, 0..255: grey, ink (0 none, 255 full), mask or alpha plane                |
/// | `L12` | 16-bit unsigned | one channel of 12 significant bits: 0..4095                                           |
///
/// @section buffers Buffers and regions
/// A buffer is a pointer to its first pixel (top left). Rows follow one another without a gap: pixel (x, y) is element
/// y * width + x. Offsets are computed in 64 bits, so a buffer may be larger than 4 GiB.
///
/// The parameters after the pointer are the buffer's geometry and bear its name: for `dst` they are dstWidth and
/// dstHeight, the size of the buffer in pixels, and dstX and dstY, the top-left corner of the region in it. The only
/// buffer of a function has width, height, x and y. Buffers of one geometry are pointers side by side. `w` and `h`,
/// given once, are the size of the region in pixels before it is cut. These parameters have a line of their own below
/// only where they mean something else. A parameter named `reserved` is not read.
///
/// Corners must lie in their buffers: x <= width and y <= height. The region is cut at the right and bottom edges of
/// the buffers that each function names under "Cut by", measured from the respective corners; what is left may be
/// empty, and then nothing is written. A buffer that is not named there must hold the whole cut region. For the first
/// buffer that is named there, x + w and y + h must not pass 4294967295; for the others w and h may be anything, so
/// that `w = UINT_MAX - srcX` means "to the edge".
///
/// A pointer, be it to a buffer, a table or flags, may be null where the cut region is empty; elsewhere only where the
/// function says so.
///
/// @section weighting The weighted step
/// Every blend moves a channel from its old value toward a target by a weight of 0..255 (linear interpolation, the
/// "over" of alpha compositing):
///
///     new = old + (target - old) * weight / 255         (the quotient truncated)
///
/// Weight 0 leaves the channel alone, weight 255 reaches the target, and no step overshoots. Where a pixel has its own
/// alpha, weight = alpha * opacity / 255: `opacity`, 0..255, applies on top of it, and 255 lets it decide alone.
///
/// Quotients of integers truncate toward zero unless stated otherwise; trunc(x) is x without its fraction.
///
/// @section sharing Overlap and threads
/// "Overlap: in order": buffers may share memory. Pixels are processed row by row from the top, in a row from the
/// left, one after the other, and that order is what you see. A function with another order says so.
///
/// "Threads: any": any number of threads may call at once as long as no thread writes what another one reads or
/// writes. In a buffer that is written, every pixel of the region (without a region: of the buffer) counts as written,
/// and as a whole, even where it or one of its bytes keeps its value. All threads share the host's services, the
/// contract handler and the tables of InitFeatureTables(); the functions concerned say so under "Threads".
///
/// A thread with a stack of 64 KiB can call every function.
///
/// @section same The same bits everywhere
/// The library picks the widest vector instructions that the processor has while it is loaded. Every choice, and every
/// platform, gives the same bits; only sine, cosine, tangent and arc tangent are the platform's own.
///
/// @section checked The checked build
/// The ordinary build does not test its arguments. The checked build (`OMNAR_CHECKED=ON`) has the same functions and tests
/// every precondition on entry: swap it in to find out why a picture is wrong (see SetContractHandler()).
#ifndef OMNAR_RASTER_H
#define OMNAR_RASTER_H

#include <cstddef>
#include <exception>

#if defined(OMNAR_STATIC)
#define OMNAR_API
#elif defined(_WIN32) && defined(OMNAR_BUILDING)
#define OMNAR_API __declspec(dllexport)
#elif defined(_WIN32)
#define OMNAR_API __declspec(dllimport)
#else
#define OMNAR_API __attribute__((visibility("default")))
#endif

/// @defgroup types Types
/// @{

using TRC = unsigned int;    ///< true-colour pixel: blue in bits 0..7, green 8..15, red 16..23, alpha 24..31
using L08 = unsigned char;   ///< 8-bit sample, 0..255
using L12 = unsigned short;  ///< 12-bit sample in 16 bits, 0..4095

/// Layout of a repeat: how neighbouring tiles are offset. Any other value means "no placement". A straight repeat is
/// either layout with a drop of 0.
enum _EDropKind : int {
    eDropVertical = 1,   ///< half-drop: each tile column is shifted down by the drop against the column to its left
    eDropHorizontal = 2  ///< brick: each tile row is shifted right by the drop against the row above it
};

/// The order in which a motion copy visits its pixels, by the corner that it starts from. Others copy nothing.
enum _EMotionCopyMode : int {
    eMotionFromTopLeft = 0,     ///< rows downwards, each from left to right
    eMotionFromBottomLeft = 1,  ///< rows upwards, each from left to right
    eMotionFromTopRight = 2,    ///< rows downwards, each from right to left
    eMotionFromBottomRight = 3  ///< rows upwards, each from right to left
};

/// How the bands of worker threads lie in their buffer. Any other value works like #eRotateTurned.
enum _ERotateMode : int {
    eRotateStraight = 0,  ///< image not turned: each thread has its own columns
    eRotateTurned = 1     ///< image turned by a quarter turn: each thread has its own rows
};

/// How the user counts angles. Any other value works like #eAngleUser.
enum _EAngleMode : int {
    eAngleUser = 0,   ///< from the positive y axis toward the positive x axis: 90 degrees less the system's angle
    eAngleSystem = 1  ///< as the system does, from the positive x axis toward the positive y axis
};

/// Features that an object analysis computes; a bit whose prerequisite is missing has no effect.
enum EFeaturesNeeded : int {
    FeatureArea = 1,         ///< pixel count; everything else needs it
    FeatureCentroid = 2,     ///< centre of gravity; needs the area
    FeatureOrientation = 4,  ///< dominant direction; needs area and centroid
    FeaturePerimeter = 16,   ///< contour length, and a compactness that means something; needs the area
    FeatureHistogram = 32    ///< counts by value of the second buffer; needs the area
};

/// @param a  one set of features
/// @param b  another one
/// @return the features of either set
constexpr EFeaturesNeeded operator|(EFeaturesNeeded a, EFeaturesNeeded b) {
    return static_cast<EFeaturesNeeded>(static_cast<int>(a) | static_cast<int>(b));
}

#ifndef OMNAR_HOST_HAS_CPOINT
/// A point in integer pixels. Define `OMNAR_HOST_HAS_CPOINT` to use your own class with this layout.
struct CPoint {
    int x;  ///< column, to the right
    int y;  ///< row, downwards
};
#endif

/// What an object analysis finds out about one object.
struct SFeature {
    int area;                    ///< pixels of the object inside the scanned area
    double centerX;              ///< column of the centre of gravity; pixel centres lie at +0.5
    double centerY;              ///< row of the centre of gravity
    double orientation;          ///< dominant direction in radians, -pi..pi
    double perimeter;            ///< length of the contour in pixels
    double compactness;          ///< perimeter divided by the circumference of the circle of equal area
    int histogram[256];          ///< the object's pixels by value of the second buffer
    unsigned char reserved[32];  ///< neither read nor written
};

/// @}
/// @defgroup host What the host may supply
/// Services that belong to the application. The library has a default of each.
/// @{

/// The one exception class of the library itself. It is thrown by value; catch it by reference. Where a function says
/// so, an exhausted heap leaves as std::bad_alloc.
///
/// Codes are 1 (CalcAndGetFixedBufferForThreads() finds no room), -2147024882 (lack of memory), or the failed status
/// of a host service, which is negative. With a failed status, file, line and further are empty or 0; on Windows they
/// come from the thread's COM error information, as far as there is any.
class OMNAR_API COmnarException : public std::exception {
public:
    /// @param code  what went wrong
    /// @param file  source file of the throw; copied, up to 119 characters of it
    /// @param line  line in that file
    /// @param further  a further value; 0 in the library's own
    COmnarException(long code, const char* file, long line, long further) noexcept;
    COmnarException(const COmnarException&) noexcept;             ///< copies all four values
    COmnarException& operator=(const COmnarException&) noexcept;  ///< copies all four values @return itself
    ~COmnarException() override;                                  ///< releases nothing

    long code() const noexcept;         ///< @return what went wrong
    const char* file() const noexcept;  ///< @return source file of the throw
    long line() const noexcept;         ///< @return line in that file
    long further() const noexcept;      ///< @return the further value
    /// @return "OmnarRaster: error CODE at FILE:LINE"; without a file "OmnarRaster: error CODE"
    const char* what() const noexcept override;

private:
    long code_;
    long line_;
    long further_;
    char file_[120];
    char what_[200];
};

/// Gives out and takes back large blocks of memory, on whatever thread calls the library.
class LargeAllocatorItf {
public:
    /// @param bytes  how large the block must be at least; may be 0
    /// @return the block, aligned for any type as that of std::malloc(), or null if there is none; for 0 bytes either
    ///     null or a block that Free() accepts
    virtual void* Alloc(std::size_t bytes) = 0;
    /// @param block  a block that Alloc() gave, to be taken back; null is ignored
    virtual void Free(void* block) = 0;

protected:
    ~LargeAllocatorItf() = default;
};

/// The allocator of large blocks; never null. The default takes them from the ordinary heap. Set it before other
/// threads call the library, and free a block by the allocator that gave it.
extern OMNAR_API LargeAllocatorItf* g_pLargeAllocator;

/// A pair of coordinates. The library sets them and never reads them.
class ICoordPair {
public:
    /// @param x  x to be stored
    /// @param y  y to be stored
    /// @return below 0 if that failed
    virtual int SetCoords(double x, double y) = 0;
    /// @param[out] x  where x goes
    /// @param[out] y  where y goes
    /// @return below 0 if that failed
    virtual int GetCoords(double* x, double* y) = 0;
    /// Gives the object back to its maker.
    virtual void Release() = 0;

protected:
    ~ICoordPair() = default;
};

/// A polygon that vertices are appended to.
class ICoordPolygon {
public:
    /// The library calls it and ignores the result.
    /// @param[out] res  where the horizontal resolution goes
    /// @return below 0 if that failed
    virtual int GetResX(double* res) = 0;
    /// The library calls it and ignores the result.
    /// @param[out] res  where the vertical resolution goes
    /// @return below 0 if that failed
    virtual int GetResY(double* res) = 0;
    /// @param vertex  the next vertex; its coordinates are copied
    /// @return below 0 if that failed
    virtual int Append(ICoordPair* vertex) = 0;

protected:
    ~ICoordPolygon() = default;
};

/// Reports how much memory a job may use.
class IMemMgr {
public:
    /// @param[out] megabytes  where the available memory goes, in units of 2^20 bytes
    /// @return below 0 if that failed
    virtual int GetAvailableMegabytes(unsigned int* megabytes) = 0;
    /// Gives the object back to its maker.
    virtual void Release() = 0;

protected:
    ~IMemMgr() = default;
};

/// Receives the errors that escape a window procedure, from ReportEscapedException(). Nothing else reports to it: the
/// other functions of this header throw.
class ITextMgr {
public:
    /// Shows or logs one error.
    /// @param kind  what went wrong: the code of a COmnarException; else 1 for a lack of memory, 3 for anything else
    /// @param source  source file
    /// @param line  line in that file
    virtual void ReportError(long kind, const char* source, long line) = 0;

protected:
    ~ITextMgr() = default;
};

/// The host's services. A null member means the library's default.
struct SHostServices {
    unsigned int size = sizeof(SHostServices);  ///< size of this structure as the host knows it
    IMemMgr* (*getMemMgr)() = nullptr;          ///< memory manager, never null; default: the operating system's figure
    ITextMgr* (*getTextMgr)() = nullptr;        ///< text manager, may return null; default: none
    /// A new pair, or null without memory; `file` and `line` name the caller, `res` its resolution. Default: a plain
    /// pair.
    ICoordPair* (*createCoordPair)(const char* file, long line, double res) = nullptr;
    /// "Give up now?" Default: on Windows, whether the Escape key is down or was pressed since the last call;
    /// elsewhere never.
    bool (*cancelRequested)() = nullptr;
};

/// Puts the host's services in place of the library's defaults.
///
/// Threads: call it before other threads use the library.
/// @param services  copied; null members and members beyond its `size` mean the defaults; null restores all
OMNAR_API void SetHostServices(const SHostServices* services);

/// A broken precondition, as the checked build found it.
struct SContractViolation {
    const char* function;   ///< the exported function that was called
    const char* parameter;  ///< the parameter that breaks the rule
    const char* value;      ///< the value of that parameter, as text
    const char* rule;       ///< the rule, as text: a condition over the function's parameters
};

/// Receives broken preconditions, on the thread whose call broke them. The strings live until it returns. It may
/// throw; if it returns, the call goes on as it would in the ordinary build.
using ContractHandler = void (*)(const SContractViolation& violation);

/// Replaces the handler that the checked build calls for a broken precondition. The default prints function,
/// parameter, value and rule to standard error and aborts. The ordinary build keeps the handler but never calls it.
///
/// Threads: may be called at any time; calls under way may still use the former handler.
/// @param handler  the new handler; null restores the default
/// @return the handler so far
OMNAR_API ContractHandler SetContractHandler(ContractHandler handler);

/// Returns whether the processor has MMX instructions, queried at each call.
///
/// Errors: none. Threads: any.
/// @return non-zero if it has (so on every x86-64 processor), otherwise 0
OMNAR_API int IsMMX();

/// Reports an exception that escaped a window procedure, or an event handler on other systems, to the host's text
/// manager (SHostServices::getTextMgr). Call it where such exceptions are caught for good:
///
///     try {
///         return handle(window, message, wParam, lParam);
///     } catch (const std::exception& escaped) {
///         return ReportEscapedException(escaped, message);
///     }
///
/// A COmnarException is reported with its own code, file and line; std::bad_alloc as kind 1 and any other exception as
/// kind 3, with "MfcUtilities" as the source and a line of 2722 or 2727.
///
/// Errors: none of its own. Threads: any.
/// @param escaped  the exception
/// @param message  the message that the procedure was called for, by its number on Windows; 0 for anything else than
///                 the creation of a window (1) and a command (273)
/// @return 1 for a command, which counts as handled, otherwise 0. Without a text manager nothing is reported, and the
///         result for the creation of a window is -1: the window is not created
OMNAR_API int ReportEscapedException(const std::exception& escaped, unsigned int message);

/// @}
/// @defgroup truecolour Blending into true colour
/// Each moves blue, green and red of the destination by the weighted step and keeps its alpha byte; a function that
/// differs says so. What differs otherwise is where target and weight come from, and which buffers cut.
/// @{

/// Lays one true-colour buffer over another by the source's own alpha.
///
/// target = source pixel, weight = source alpha * opacity / 255.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendTRCToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                  unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                                  unsigned int h, bool reserved);

/// Mixes one true-colour buffer into another by a constant weight.
///
/// target = source pixel, weight = opacity; the source's alpha is ignored.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[in,out] dst  destination buffer
/// @param opacity  the weight, 0..255
OMNAR_API void AlphaBlendTRCNoAlphaToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                         unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                         unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// The same as AlphaBlendTRCNoAlphaToTRC(), under a second name.
///
/// The destination keeps its alpha byte here, too.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[in,out] dst  destination buffer
/// @param opacity  the weight, 0..255
OMNAR_API void AlphaBlendTRCToTRCNoAlpha(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                         unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                         unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Lays one true-colour buffer over another by an alpha plane with its own geometry.
///
/// target = source pixel, weight = alpha * opacity / 255; the source's alpha is ignored. The alpha plane does not cut:
/// it must hold the cut region.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                 unsigned int srcX, unsigned int srcY, const L08* alpha,
                                                 unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                                                 unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                                 unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                 unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Lays one true-colour buffer over another by an alpha plane of the source's geometry.
///
/// target = source pixel, weight = alpha * opacity / 255; the source's alpha is ignored.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, const L08* alpha, unsigned int srcWidth,
                                                 unsigned int srcHeight, unsigned int srcX, unsigned int srcY, TRC* dst,
                                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                                 unsigned int dstY, unsigned char opacity, unsigned int w,
                                                 unsigned int h, bool reserved);

/// Lays a flat colour through an alpha plane, whose values may be remapped on the way.
///
/// target = color, weight = alpha * opacity / 255, with lut[alpha] in place of alpha if there is a `lut`. With `lut`,
/// each row of the cut region must have w alpha values from alphaX on, also where dst cuts it; if no row is left, any
/// w will do.
/// Cut by: alpha, then dst. Overlap: with `lut`, all alpha values of a row are read before the row is blended.
/// Threads: any.
/// @param alpha  alpha plane
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param lut  256 values that replace the alpha values before use, in memory that is not written; or null
OMNAR_API void AlphaBlendL08ToTRC(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                  unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned int w, unsigned int h, bool reserved,
                                  const unsigned char* lut);

/// AlphaBlendL08ToTRC() that also erases the destination's alpha byte wherever there is coverage.
///
/// A pixel whose (remapped) alpha value is not 0 gets alpha byte 0 after it is blended, even if its weight comes out
/// as 0, as with opacity 0. With `lut` the same holds for w.
/// Cut by: alpha, then dst. Overlap: with `lut`, all alpha values of a row are read before the row is blended.
/// Threads: any.
/// @param alpha  alpha plane
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param lut  256 values that replace the alpha values before use, in memory that is not written; or null
OMNAR_API void AlphaBlendL08ToTRCAndEraseA(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                           unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                           unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                           unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                           const unsigned char* lut);

/// Lays a flat colour through the complement of an alpha plane.
///
/// target = color, weight = (255 - alpha) * opacity / 255.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendL08ToTRCInverted(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                          unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                          unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                          unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                          bool reserved);

/// Lays a grey image over true colour by an alpha plane of the image's geometry.
///
/// target = the grey value for blue, green and red alike, weight = alpha * opacity / 255.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendL08WithAlphaBufferToTRC(const L08* src, const L08* alpha, unsigned int srcWidth,
                                                 unsigned int srcHeight, unsigned int srcX, unsigned int srcY, TRC* dst,
                                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                                 unsigned int dstY, unsigned char opacity, unsigned int w,
                                                 unsigned int h, bool reserved);

/// Lays a flat colour through a 12-bit coverage.
///
/// target = color, weight = (src / 255) * opacity / 255. The sample is divided by 255, not scaled from 12 bits: the
/// full 4095 gives 16 * opacity / 255. At opacity 255, samples from 65280 on give weights of 256 and 257, which
/// overshoot; the low 8 bits of the sum are stored then.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendL12ToTRC(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, unsigned int color, TRC* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned int w, unsigned int h, bool reserved);

/// Lays a flat colour through an alpha plane; the region is cut by the destination alone.
///
/// target = color, weight = alpha * opacity / 255.
/// The alpha plane does not cut, and its height is not looked at: it must hold the cut region.
/// Cut by: dst. Overlap: in order. Threads: any.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendColorToTRC(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                    unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Lays a flat colour wherever an alpha plane is not 0.
///
/// target = color, weight = opacity where alpha is not 0, else 0.
/// The alpha plane does not cut, and its height is not looked at: it must hold the cut region.
/// Cut by: dst. Overlap: in order. Threads: any.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  the weight where alpha is not 0, 0..255
OMNAR_API void AlphaBlendColorToTRCFlat(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                        unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                        unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                        bool reserved);

/// The same as AlphaBlendColorToTRC(), under a second name: the alpha is not inverted.
///
/// target = color, weight = alpha * opacity / 255. For the complement use AlphaBlendL08ToTRCInverted().
/// The alpha plane does not cut, and its height is not looked at: it must hold the cut region.
/// Cut by: dst. Overlap: in order. Threads: any.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendColorToTRCInverted(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                            unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                            TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                            unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                            bool reserved);

/// Lays a flat colour over a background colour through an alpha plane, and the result over the destination.
///
/// target = bgColor + (color - bgColor) * alpha / 255, weight = opacity. Pixels whose alpha is 0 stay as they are,
/// although the formula would move them toward bgColor. The alpha plane does not cut, and its height is not looked at:
/// it must hold the cut region.
/// Cut by: dst. Overlap: in order. Threads: any.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param bgColor  background colour; bits 24..31 are not used
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  the weight where alpha is not 0, 0..255
OMNAR_API void AlphaBlendColorOnBGToTRC(unsigned int color, unsigned int bgColor, const L08* alpha,
                                        unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                                        unsigned int alphaY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                        unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                                        unsigned int h, bool reserved);

/// Mixes a flat colour into a rectangle by the weight that the colour word carries.
///
/// target = color, weight = bits 24..31 of color.
/// Cut by: dst. Threads: any.
/// @param color  colour in bits 0..23, its weight 0..255 in bits 24..31
/// @param[in,out] dst  destination buffer
OMNAR_API void AlphaBlendColorWithConstAlphaToTRC(unsigned int color, TRC* dst, unsigned int dstWidth,
                                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                  unsigned int w, unsigned int h, bool reserved);

/// Lays a flat colour through the blue channel of a true-colour buffer, in one of three ways.
///
/// With b the blue byte of the source pixel:
/// - `setColor`: pixels with b != 0 become all 32 bits of color, alpha byte included; opacity and onWhite have no
///   effect.
/// - `onWhite` with opacity 255, not `setColor`: where b != 0 each channel becomes 255 + (color - 255) * b / 255, the
///   colour on white paper, regardless of the destination; where b is 0 the pixel stays.
/// - otherwise: target = color, weight = b * opacity / 255.
///
/// Note the place of `opacity`, right after the destination pointer.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param color  colour in bits 0..23; with `setColor` bits 24..31 go into the alpha byte
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param setColor  overwrite instead of blending
/// @param onWhite  at opacity 255, lay the colour on white
OMNAR_API void AlphaBlendColorWithAlphaBlueOfTrcToTrc(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                      unsigned int srcX, unsigned int srcY, unsigned int color,
                                                      TRC* dst, unsigned char opacity, unsigned int dstWidth,
                                                      unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                      unsigned int w, unsigned int h, bool setColor, bool onWhite);

/// Moves the destination's alpha byte toward a value through an alpha plane.
///
/// target = alphaValue, weight = alpha * opacity / 255. Blue, green and red stay.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alphaValue  the value that the alpha byte moves toward, 0..255
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendAlphaToTRC(unsigned char alphaValue, const L08* alpha, unsigned int alphaWidth,
                                    unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// @}
/// @defgroup grey Blending grey values
/// Each moves the samples of a single-channel destination by the weighted step toward those of a source of the same
/// format.
///
/// Where `includeZeros` is 0, pixels whose source is 0 are skipped. With `twoLevel` an 8-bit result becomes 255 unless
/// it is 0; skipped pixels stay as they were.
///
/// The 12-bit functions have rules of their own. Their target is the source sample divided by 255, so that 4095 aims
/// at 16; only where zeros are skipped and there is an alpha plane is it the sample itself. Where zeros are skipped,
/// `twoLevel` has no effect. Where they are included, it raises pixels before their turn: after a pixel was blended,
/// the next one in memory becomes 4095 unless it is 0, and is blended only then. The result is not two-level: with
/// samples of 4095 and opacity 128, three pixels of 100 become 58, 2048, 2048. The first pixel of a row moves from its
/// old value, unless the row above has raised it, as in a region as wide as the buffer. The pixel after a row's last
/// one is raised although it lies outside the region, and counts as written for other threads; past the buffer's last
/// pixel there is none.
/// @{

/// Blends grey values into grey values, optionally through an alpha plane of the source's geometry.
///
/// target = source sample, weight = alpha * opacity / 255, or opacity without an alpha plane.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level: 255 unless it is 0
OMNAR_API void AlphaBlendL08ToL08(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                  unsigned int srcX, unsigned int srcY, L08* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h,
                                  bool reserved);

/// Blends grey values into grey values, optionally through an alpha plane with its own geometry.
///
/// target = source sample, weight = alpha * opacity / 255, or opacity without an alpha plane. Only where zeros are
/// included is the alpha plane read at its own corner and pitch. Where they are skipped it is read at the source's
/// corner by the source's pitch, and its own geometry is ignored. It does not cut: it must hold the cut region as it
/// is read.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane, or null: the weight is opacity then
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level: 255 unless it is 0
OMNAR_API void AlphaBlendL08ToL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned char includeZeros, bool twoLevel, unsigned int w,
                                  unsigned int h, bool reserved);

/// Blends grey values into grey values wherever an alpha plane is not 0.
///
/// target = source sample, weight = opacity where alpha is not 0, else 0; opacity everywhere without an alpha plane.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param[in,out] dst  destination buffer
/// @param opacity  the weight where alpha is not 0, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level: 255 unless it is 0
OMNAR_API void AlphaBlendL08ToL08FlatAlpha(const L08* src, const L08* alpha, unsigned int srcWidth,
                                           unsigned int srcHeight, unsigned int srcX, unsigned int srcY, L08* dst,
                                           unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                           unsigned int dstY, unsigned char opacity, unsigned char includeZeros,
                                           bool twoLevel, unsigned int w, unsigned int h, bool reserved);

/// Blends all grey values, zeros included, through an alpha plane that must be there.
///
/// target = source sample, weight = alpha * opacity / 255.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param twoLevel  make the result two-level: 255 unless it is 0
OMNAR_API void AlphaBlendL08WithAlphaBufferToL08(const L08* src, const L08* alpha, unsigned int srcWidth,
                                                 unsigned int srcHeight, unsigned int srcX, unsigned int srcY, L08* dst,
                                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                                 unsigned int dstY, unsigned char opacity, bool twoLevel,
                                                 unsigned int w, unsigned int h, bool reserved);

/// Blends 12-bit samples into 12-bit samples, optionally through an alpha plane of the source's geometry.
///
/// target = source sample / 255, or the sample itself where zeros are skipped and there is an alpha plane; weight =
/// alpha * opacity / 255, or opacity without an alpha plane. `twoLevel` with zeros writes one pixel more in each row.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  with zeros included, raise the next pixel in memory after each (see the group)
OMNAR_API void AlphaBlendL12ToL12(const L12* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                  unsigned int srcX, unsigned int srcY, L12* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h,
                                  bool reserved);

/// Blends 12-bit samples into 12-bit samples, optionally through an alpha plane with its own geometry.
///
/// target = source sample / 255, or the sample itself where zeros are skipped and there is an alpha plane; weight =
/// alpha * opacity / 255, or opacity without an alpha plane. `twoLevel` with zeros writes one pixel more in each row.
/// Only where zeros are included is the alpha plane read at its own corner and pitch. Where they are skipped it is
/// read at the source's corner by the source's pitch, and its own geometry is ignored. It does not cut: it must hold
/// the cut region as it is read.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane, or null: the weight is opacity then
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  with zeros included, raise the next pixel in memory after each (see the group)
OMNAR_API void AlphaBlendL12ToL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned char includeZeros, bool twoLevel, unsigned int w,
                                  unsigned int h, bool reserved);

/// Blends 12-bit samples into 12-bit samples wherever an alpha plane is not 0.
///
/// target = source sample / 255, or the sample itself where zeros are skipped and there is an alpha plane; weight =
/// opacity where alpha is not 0, else 0; opacity everywhere without an alpha plane. `twoLevel` with zeros writes one
/// pixel more in each row.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param[in,out] dst  destination buffer
/// @param opacity  the weight where alpha is not 0, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  with zeros included, raise the next pixel in memory after each (see the group)
OMNAR_API void AlphaBlendL12ToL12FlatAlpha(const L12* src, const L08* alpha, unsigned int srcWidth,
                                           unsigned int srcHeight, unsigned int srcX, unsigned int srcY, L12* dst,
                                           unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                           unsigned int dstY, unsigned char opacity, unsigned char includeZeros,
                                           bool twoLevel, unsigned int w, unsigned int h, bool reserved);

/// @}
/// @defgroup density Painting a density
/// Each paints one constant value, the density, into a single-channel destination through the coverage of an alpha
/// plane.
/// @{

/// Paints a density through an alpha plane.
///
/// target = density, weight = alpha * opacity / 255.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..255
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendDensityToL08(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                      unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                      unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                      unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                      bool reserved);

/// Paints a density through the complement of an alpha plane.
///
/// target = density, weight = (255 - alpha) * opacity / 255.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..255
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendDensityToL08Inverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                              unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                              L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                              unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                              unsigned int w, unsigned int h, bool reserved);

/// Sets a density wherever an alpha plane is not 0.
///
/// Pixels whose alpha is not 0 become the density; others stay.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..255
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
OMNAR_API void AlphaBlendDensityToL08Flat(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                          unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                          unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                          unsigned int dstY, unsigned int w, unsigned int h);

/// Sets a density wherever an alpha plane is 0.
///
/// Pixels whose alpha is 0 become the density; others stay.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..255
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
OMNAR_API void AlphaBlendDensityToL08FlatInverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                                  L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                                  unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Paints a 12-bit density through the complement of an alpha plane.
///
/// target = density, weight = (255 - alpha) * opacity / 255: the 12-bit pair is the other way round than the 8-bit
/// pair. For the plain coverage use AlphaBlendDensityToL12Inverted().
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..4095
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendDensityToL12(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                      unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                      unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                      unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                      bool reserved);

/// Paints a 12-bit density through an alpha plane.
///
/// target = density, weight = alpha * opacity / 255, the plain coverage despite the name.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..4095
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void AlphaBlendDensityToL12Inverted(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                              unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                              L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                                              unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                              unsigned int w, unsigned int h, bool reserved);

/// Sets a 12-bit density wherever an alpha plane is not 0.
///
/// Pixels whose alpha is not 0 become the density; others stay.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param density  value to paint, 0..4095
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
OMNAR_API void AlphaBlendDensityToL12Flat(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                          unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                          unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                          unsigned int dstY, unsigned int w, unsigned int h);

/// Paints a density through the blue channel of a true-colour buffer, in one of three ways.
///
/// With b the blue byte of the source pixel:
/// - `setDensity`: pixels with b != 0 become the density; opacity and onBlack are ignored.
/// - `onBlack` with opacity 255, not `setDensity`: where b != 0 the pixel becomes b * density / 255, whatever it was;
///   where b is 0 it stays.
/// - otherwise: target = density, weight = b * opacity / 255.
///
/// Note the place of `opacity`, right after the destination pointer.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param density  value to paint, 0..255
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param setDensity  overwrite instead of blending
/// @param onBlack  at opacity 255, lay the density on 0
OMNAR_API void AlphaBlendDensityWithAlphaBlueOfTrcToL08(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                        unsigned int srcX, unsigned int srcY, unsigned char density,
                                                        L08* dst, unsigned char opacity, unsigned int dstWidth,
                                                        unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                        unsigned int w, unsigned int h, bool setDensity, bool onBlack);

/// @}
/// @defgroup alphaplanes Operations on an image and its alpha plane
/// Each changes a single-channel image in place by an alpha plane of the same geometry.
/// @{

/// Multiplies an image by its alpha (premultiplies it).
///
/// sample = sample * (alpha * opacity / 255) / 255. With `flat`, sample = sample * opacity / 255 where alpha is not 0,
/// and 0 where it is 0.
/// Cut by: width, height. Overlap: in order. Threads: any.
/// @param[in,out] data  the image
/// @param alpha  its alpha plane
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param flat  alpha counts as 0 or 255
OMNAR_API void ApplyAlphaToL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                               unsigned int y, unsigned char opacity, bool flat, unsigned int w, unsigned int h,
                               bool reserved);

/// Multiplies a 12-bit image by its alpha.
///
/// sample = sample * (alpha * opacity / 255) / 255.
/// Cut by: width, height. Overlap: in order. Threads: any.
/// @param[in,out] data  the image
/// @param alpha  its alpha plane
/// @param opacity  weight on top of the pixel's own alpha, 0..255
OMNAR_API void ApplyAlphaToL12(L12* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                               unsigned int y, unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Keeps only what is opaque of an image.
///
/// Samples whose alpha is 255 stay; all others become 0, however high their alpha is. Without an alpha plane nothing
/// changes.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param alpha  alpha values, or null
/// @param[in,out] data  samples
/// @param count  how many samples and alpha values there are
OMNAR_API void PostApplyAlpha(const L08* alpha, L08* data, unsigned int count);

/// Keeps only what is opaque of a 12-bit image.
///
/// Samples whose alpha is 255 stay; all others become 0, however high their alpha is. Without an alpha plane nothing
/// changes.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param alpha  alpha values, or null
/// @param[in,out] data  samples
/// @param count  how many samples and alpha values there are
OMNAR_API void PostApplyAlpha(const L08* alpha, L12* data, unsigned int count);

/// Divides an image that was multiplied by its alpha by that alpha again (unpremultiplies it).
///
/// Where alpha is 1..254, in double precision: v = (255.0 / alpha) * sample; if v exceeds the sample by less than 1, v
/// grows by 1; then v is limited to 255 and truncated. So the result is biased upwards, an empty sample becomes 1,
/// and a quotient that is an integer may come out one lower. Where alpha is 0 or 255 the sample stays.
/// With `fillTransparent` nothing is divided: samples whose alpha is 0 become 255, the others stay.
/// Cut by: width, height. Overlap: in order. Threads: any.
/// @param[in,out] data  the image
/// @param alpha  its alpha plane
/// @param fillTransparent  fill what is transparent instead of dividing
OMNAR_API void InvertAlphaL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                              unsigned int y, bool fillTransparent, unsigned int w, unsigned int h);

/// @}
/// @defgroup bitmaps Blending into bitmaps of 24 and 32 bits
/// Each lays a colour over an entire bitmap through a coverage image of the same layout and any size: the blue byte of
/// its pixels is the coverage, and it is scaled to the destination without interpolation. The pixel for column x is
/// the one in column x * scaleX (a product of doubles, truncated); past the last column it is the last, and likewise
/// for rows. Scales of srcWidth / dstWidth and srcHeight / dstHeight, in doubles, spread the entire image over the
/// bitmap. With dstWidth or dstHeight 0 nothing is done, and no other argument is looked at.
/// @{

/// Lays a colour over a 24-bit bitmap through a scaled coverage image.
///
/// target = color, weight = coverage. Pixels are three bytes, blue, green, red. Rows are padded to a multiple of four
/// bytes; padding is neither read nor written, and that of the last row need not exist.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param src  coverage image
/// @param srcWidth  width of the coverage image in pixels, at least 1
/// @param srcHeight  height of the coverage image in pixels, at least 1
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param[in,out] dst  bitmap
/// @param dstWidth  width of the bitmap in pixels
/// @param dstHeight  height of the bitmap in pixels
/// @param scaleX  columns of the coverage image for one of the bitmap; finite, not negative
/// @param scaleY  rows of the coverage image for one of the bitmap; finite, not negative
OMNAR_API void AlphaBlendBGR24AlphaToBGR24(const unsigned char* src, unsigned int srcWidth, unsigned int srcHeight,
                                           unsigned int color, unsigned char* dst, unsigned int dstWidth,
                                           unsigned int dstHeight, double scaleX, double scaleY);

/// Lays a colour over a 32-bit bitmap through a scaled coverage image.
///
/// target = color, weight = coverage. Pixels are four bytes, blue, green, red and one that stays.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param src  coverage image
/// @param srcWidth  width of the coverage image in pixels, at least 1
/// @param srcHeight  height of the coverage image in pixels, at least 1
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param[in,out] dst  bitmap
/// @param dstWidth  width of the bitmap in pixels
/// @param dstHeight  height of the bitmap in pixels
/// @param scaleX  columns of the coverage image for one of the bitmap; finite, not negative
/// @param scaleY  rows of the coverage image for one of the bitmap; finite, not negative
OMNAR_API void AlphaBlendBGR32AlphaToBGR32(const unsigned char* src, unsigned int srcWidth, unsigned int srcHeight,
                                           unsigned int color, unsigned char* dst, unsigned int dstWidth,
                                           unsigned int dstHeight, double scaleX, double scaleY);

/// @}
/// @defgroup shades Lighter and darker by tone band
/// Each changes a destination in place, by an alpha plane that says where and how much. `opacity` says how hard, and
/// `toneBands` which tones are touched: light ones, middle ones and dark ones, each with its own flag. Single
/// channels hold ink, and more of it is darker. True colour is darker at a lower luminance,
///
///     luminance = (59 * green + 30 * red + 11 * blue) / 100        (truncated)
///
/// A pixel changes by
///
///     change = alpha * opacity * weight / 65025                    (truncated)
///
/// where the weight is the sum of what the touched bands weigh at its tone:
///
/// | Band   | Flag           | 8-bit ink v        | 12-bit ink v        | luminance l                   |
/// |--------|----------------|--------------------|---------------------|-------------------------------|
/// | light  | `toneBands[0]` | max(255 - 2v, 0)   | max(4095 - 2v, 0)   | max(2l - 255, 0)              |
/// | middle | `toneBands[1]` | 255 - light - dark | 4095 - light - dark | 255 - light - dark            |
/// | dark   | `toneBands[2]` | max(2v - 254, 0)   | max(2v - 4094, 0)   | min(4 * max(128 - l, 0), 255) |
///
/// With all three flags the weight is 255 (12-bit: 4095) for every tone, so that the change is alpha * opacity / 255.
/// Without any it is 0. At full ink the dark band weighs one more than full, and the middle band therefore -1: there
/// it works the other way round.
///
/// The 12-bit functions have rules of their own: DarkerL12WithAlpha() forms other products, and LighterL12WithAlpha()
/// lightens at opacity 255 only.
/// @{

/// Darkens 8-bit ink.
///
/// new = min(old + change, 255). Pixels without ink stay without.
///
/// If opacity is below 255 and a band is left out, the change is (alpha * opacity * weight) >> 16 instead: a little
/// less than what LighterL08WithAlpha() takes off, and rounded down, so that every product below 0 gives -1.
///
/// Under the middle band without the dark one full ink becomes 254: at opacity 255 where alpha is 255, below that
/// wherever neither is 0.
///
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void DarkerL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                  unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned int w, unsigned int h, const bool* toneBands);

/// Lightens 8-bit ink.
///
/// new = max(old - change, 0), of which the low 8 bits are kept: under the middle band without the dark one, with
/// alpha and opacity 255, full ink comes to 256 and so becomes 0.
///
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void LighterL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                   unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h, const bool* toneBands);

/// Darkens 12-bit ink.
///
/// new = min(old + more, 4095): samples without ink take on ink like all others, and those above 4095 come down to it.
/// How much more it is:
/// - with all three flags: alpha itself, 0..255, whatever the opacity;
/// - otherwise, with opacity 255: (alpha * weight * 4095) >> 16;
/// - otherwise: (alpha * opacity * weight * 4095) >> 24, which is 255 at most.
///
/// The products are unsigned and wrap around at 32 bits before they are shifted. The last one does so as soon as alpha
/// * opacity * weight passes 1048832, so that a stronger alpha may darken less; the other one only for samples of 4095
/// and more, which become 4095 anyway.
///
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void DarkerL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                  unsigned int alphaX, unsigned int alphaY, L12* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned int w, unsigned int h, const bool* toneBands);

/// Lightens 12-bit ink at opacity 255, and fills it below.
///
/// The tone bands do not count, and alpha is not brought to 12 bits.
/// - opacity 255: new = max(old - alpha, 0).
/// - opacity below 255: new = max(old + alpha * opacity / 255, 4095), so that every sample becomes 4095 unless the sum
///   passes it; of a sum above 65535 the low 16 bits are kept.
///
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param toneBands  not read, may be null
OMNAR_API void LighterL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                   unsigned int alphaX, unsigned int alphaY, L12* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h, const bool* toneBands);

/// Darkens true colour.
///
/// The luminance is lowered to max(luminance - change, 0), and blue, green and red are scaled with it:
///
///     channel = channel * new luminance / luminance                (truncated)
///
/// The alpha byte stays. A pixel of luminance 0 becomes black, even where alpha is 0: besides black itself the darkest
/// colours have that luminance, such as blue up to 9.
///
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void DarkerTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                  unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned int w, unsigned int h, const bool* toneBands);

/// Lightens true colour.
///
/// The luminance is raised to min(luminance + change, 255), and blue, green and red are scaled with it:
///
///     channel = min(channel * new luminance / luminance, 255)      (cut)
///
/// The alpha byte stays. A pixel of luminance 0 becomes the grey of its new luminance, even where alpha is 0 and the
/// grey is black: besides black itself the darkest colours have that luminance, such as blue up to 9.
///
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void LighterTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                   unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h, const bool* toneBands);

/// @}
/// @defgroup transfer Transferring and moving tone
/// A brush, given as an alpha plane, moves an amount of ink or darkness from a source to a destination. The source is
/// laid out like the destination: both are addressed by dstWidth, dstHeight, dstX, dstY. The coverage of a pixel is k
/// = alpha * opacity / 255; s and d are the samples of source and destination. Both are read once, then d is written,
/// then s.
/// @{

/// Transfers tone between single channels.
///
/// |                      | d becomes                                               | s becomes                   |
/// |----------------------|---------------------------------------------------------|-----------------------------|
/// | soft, s not 0        | the weighted step from d toward s by k                  | s - s * k / 255             |
/// | soft additive, s not 0 | d + s * k / 255, at most 255                          | s - s * k / 255             |
/// | soft, s is 0         | 0 with `clearEmpty` and any alpha (even if k is 0); else stays | stays                |
/// | hard, k not 0        | 255 where s is not 0; where it is 0, 0 with `clearEmpty`, else stays | 0               |
/// | hard, k is 0         | stays                                                   | stays                       |
///
/// With `keepSource` the source is not written at all. Samples whose value is protected keep their value, except under
/// a hard brush with `clearEmpty`.
///
/// The alpha position runs on: it starts at (alphaX, alphaY), moves by one for every pixel, and at the end of a row
/// goes on by alphaWidth from where it stopped instead of returning to alphaX. So row i starts i * (columns of the cut
/// region + alphaWidth) after the start; only a brush that is one row high is drawn undistorted. Past the plane's last
/// value there is no alpha.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane: where the brush is
/// @param clearEmpty  not 0: what is empty in the source is emptied in the destination
/// @param[in,out] src  source buffer, laid out like the destination; loses what is moved
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param keepSource  copy instead of move
/// @param additive  add the source's amount instead of moving toward its value; read with the soft brush only
/// @param hard  all or nothing
/// @param protection  256 flags: a value whose flag is not 0 is never reduced in the source; null protects none
OMNAR_API void TransferToneL08ToL08(const L08* alpha, int clearEmpty, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, L08* src, L08* dst, unsigned int dstWidth,
                                    unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                    bool keepSource, bool additive, bool reserved, bool hard, unsigned int w,
                                    unsigned int h, const unsigned char* protection);

/// Transfers tone from a single channel into a true-colour image: moved as grey, or laid on as a colour.
///
/// Without `useColor` blue, green and red move toward 255 - s by k, and the source loses by the alpha alone, whatever
/// the opacity: s becomes the low 8 bits of s + (2^32 - s * alpha) / 255 where s * alpha is not 0. That leaves a
/// residue: 255 under alpha 255 becomes 1.
/// With `useColor` they move toward `color` by s * k / 255, and the source stays. The destination's alpha byte stays.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane: where the brush is
/// @param[in,out] src  source buffer, laid out like the destination; written without useColor
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param useColor  lay on a colour and keep the source
/// @param color  the colour; its bits 24..31 are not used
OMNAR_API void TransferToneL08ToTRC(const L08* alpha, int reserved, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, L08* src, TRC* dst, unsigned int dstWidth,
                                    unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                    bool useColor, unsigned int color, unsigned int w, unsigned int h);

/// Transfers the darkness of a true-colour image into a single channel. The source stays.
///
/// darkness = 255 - (59 * green + 30 * red + 11 * blue) / 100. The soft brush moves d toward the darkness by k. The
/// hard brush makes d 255 where k is not 0 and the darkness is above 127, and leaves it alone elsewhere.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane: where the brush is
/// @param src  source buffer, laid out like the destination
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param hard  all or nothing
OMNAR_API void TransferToneTRCToL08(const L08* alpha, int reserved, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, const TRC* src, L08* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, bool hard, unsigned int w, unsigned int h);

/// Moves tone between single channels while some values of the source are protected.
///
/// Soft: d becomes the low 8 bits of d + P / 255 with P = (s - d) * k, and, if the value of s is not protected, s
/// becomes the low 8 bits of s + Q / 255 with Q = -(alpha * s): the source loses by the alpha alone, whatever the
/// opacity. P and Q are unsigned 32-bit numbers, so that a negative one wraps, and steps downwards stop one above
/// their aim: 200 drawn in full to 0 becomes 1, and s = 255 under alpha 255 becomes 1.
///
/// Hard: the source is read at twice the pace. Pixel i of a row looks at sample s = 2i from the region's corner on: d
/// becomes 255 where k and s * k / 255 are not 0. Then the sample after it, 2i + 1, becomes 0 unless its value is
/// protected, whatever the alpha. So leave room in the source row for twice as many samples as the cut region has
/// columns: beyond its end follows the next row, and beyond the buffer's end samples count as 0 and none is written.
///
/// The alpha position runs on as in TransferToneL08ToL08(); under the soft brush it does not move at protected
/// samples.
/// Cut by: alpha, then dst. Overlap: in order. Threads: any.
/// @param alpha  alpha plane: where the brush is
/// @param[in,out] src  source buffer, laid out like the destination; loses what is moved
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param hard  all or nothing
/// @param protection  256 flags: a value whose flag is not 0 is never reduced in the source
OMNAR_API void MoveToneL08ToL08Prot(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, L08* src, L08* dst, unsigned int dstWidth,
                                    unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                    bool hard, unsigned int w, unsigned int h, const unsigned char* protection);

/// @}
/// @defgroup motion Motion copy
/// Moves a region onto another place, also within one buffer. The caller chooses the order in which pixels are
/// visited, as a block move does: upwards if the region moves down, leftwards if it moves right. In the other order an
/// overlapping source is overwritten before it is read, and the picture smears.
/// @{

/// Blends a region of grey values over another place.
///
/// Every sample moves from its old value toward the source's by alpha * opacity / 255. With `hard` the result becomes
/// 255 unless it is 0, also where the weight is 0.
/// A mode that is no order, or a corner on or outside the edge of source or destination, copies nothing.
/// Cut by: src, then dst. Overlap: in the order of `mode`, pixel by pixel. Threads: any.
/// @param src  source buffer
/// @param srcX  left column of the region in the source
/// @param srcY  top row of the region in the source
/// @param alpha  alpha plane; it must hold the cut region
/// @param alphaX  left column of the region in the alpha plane
/// @param alphaY  top row of the region in the alpha plane
/// @param[in,out] dst  destination buffer
/// @param dstX  left column of the region in the destination
/// @param dstY  top row of the region in the destination
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param hard  make the result two-level
/// @param mode  the order in which pixels are visited
OMNAR_API void MotionCopyL08ToL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, bool hard, unsigned int w, unsigned int h,
                                  _EMotionCopyMode mode, bool reserved);

/// Blends a region of 12-bit ink over another place.
///
/// Every sample moves from its old value toward the source's by alpha * opacity / 255. With `hard` the result becomes
/// 4095 unless it is 0, also where the weight is 0.
/// A mode that is no order, or a corner on or outside the edge of source or destination, copies nothing.
/// Cut by: src, then dst. Overlap: in the order of `mode`, pixel by pixel. Threads: any.
/// @param src  source buffer
/// @param srcX  left column of the region in the source
/// @param srcY  top row of the region in the source
/// @param alpha  alpha plane; it must hold the cut region
/// @param alphaX  left column of the region in the alpha plane
/// @param alphaY  top row of the region in the alpha plane
/// @param[in,out] dst  destination buffer
/// @param dstX  left column of the region in the destination
/// @param dstY  top row of the region in the destination
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param hard  make the result two-level
/// @param mode  the order in which pixels are visited
OMNAR_API void MotionCopyL12ToL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, bool hard, unsigned int w, unsigned int h,
                                  _EMotionCopyMode mode, bool reserved);

/// Blends a region of true colour over another place.
///
/// Blue, green and red move toward the source's by alpha * opacity / 255; the destination's alpha byte stays.
/// A mode that is no order, or a corner on or outside the edge of source or destination, copies nothing.
/// Cut by: src, then dst. Overlap: in the order of `mode`, pixel by pixel. Threads: any.
/// @param src  source buffer
/// @param srcX  left column of the region in the source
/// @param srcY  top row of the region in the source
/// @param alpha  alpha plane; it must hold the cut region
/// @param alphaX  left column of the region in the alpha plane
/// @param alphaY  top row of the region in the alpha plane
/// @param[in,out] dst  destination buffer
/// @param dstX  left column of the region in the destination
/// @param dstY  top row of the region in the destination
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param mode  the order in which pixels are visited
OMNAR_API void MotionCopyTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                 unsigned int srcX, unsigned int srcY, const L08* alpha,
                                                 unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                                                 unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                                 unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                 unsigned char opacity, unsigned int w, unsigned int h,
                                                 _EMotionCopyMode mode, bool reserved);

/// @}
/// @defgroup conversions Conversions, thresholds and look-up tables
/// Each makes a sample or pixel of one format out of one of another, or maps it in place.
/// @{

/// Packs true colour into three bytes a pixel.
///
/// Blue, green and red of each pixel are copied one after the other; its alpha byte is dropped. There are no rows and
/// no padding: `count` pixels become 3 * count bytes.
/// Cut by: nothing. Overlap: in order, each pixel is read before it is written; so `dst` may be the address of `src`.
/// Threads: any.
/// @param src  true-colour pixels
/// @param[out] dst  where 3 * count bytes go
/// @param count  how many pixels
OMNAR_API void ConvertBufferFrom32To24Bits(const TRC* src, unsigned char* dst, unsigned int count);

/// Keeps the upper eight of twelve bits.
///
/// dst = the low 8 bits of src / 16: 4095 gives 255, 16 gives 1, 15 gives 0. Samples above 4095 lose their upper bits.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[out] dst  destination buffer
OMNAR_API void ConvertL012ToL08(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Makes grey values full or empty.
///
/// dst = 255 where src is above 0, otherwise 0.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[out] dst  destination buffer
OMNAR_API void ConvertL08To2LevelL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                     unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                     unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Makes grey values full or empty in place.
///
/// sample = 255 where it is above 0, otherwise 0.
/// Cut by: width, height. Threads: any.
/// @param[in,out] data  buffer
OMNAR_API void ConvertL08To2LevelL08(L08* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                                     unsigned int w, unsigned int h);

/// Makes grey values full or empty in place, parted at a threshold.
///
/// sample = 0 where it is below the threshold, otherwise 255; threshold 0 makes all of them full. Note the place of
/// `threshold`, right after the pointer.
/// Cut by: width, height. Threads: any.
/// @param[in,out] data  buffer
/// @param threshold  the lowest value that becomes full, 0..255
OMNAR_API void ConvertL08To2LevelL08AtValue(L08* data, unsigned char threshold, unsigned int width, unsigned int height,
                                            unsigned int x, unsigned int y, unsigned int w, unsigned int h);

/// Makes 12-bit samples full or empty grey values.
///
/// dst = 255 where src is above 0, otherwise 0.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[out] dst  destination buffer
OMNAR_API void ConvertL12To2LevelL08(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                     unsigned int srcY, L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                     unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Makes 12-bit samples full or empty.
///
/// dst = 4095 where src is above 0, otherwise 0.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[out] dst  destination buffer
OMNAR_API void ConvertL12To2LevelL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                     unsigned int srcY, L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                                     unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Makes 12-bit samples full or empty in place, where full is 255.
///
/// sample = 255 where it is above 0, otherwise 0: full as in 8 bits, unlike the 4095 of the form with two buffers.
/// Cut by: width, height. Threads: any.
/// @param[in,out] data  buffer
OMNAR_API void ConvertL12To2LevelL12(L12* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                                     unsigned int w, unsigned int h);

/// Maps grey values through a table.
///
/// sample = lut[sample].
/// Cut by: width, height. Overlap: a table among the samples is read as changed so far. Threads: any.
/// @param[in,out] data  buffer
/// @param lut  256 values
OMNAR_API void ApplyLUTToL08(L08* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                             unsigned int w, unsigned int h, const unsigned char* lut);

/// Maps 12-bit samples through a table.
///
/// sample = lut[sample]. The samples are not masked: one above 4095 reads past a table of 4096 entries, so the table
/// must reach as far as the largest sample of the region.
/// Cut by: width, height. Overlap: a table among the samples is read as changed so far. Threads: any.
/// @param[in,out] data  buffer
/// @param lut  an entry for each sample that occurs; 4096 entries for clean data
OMNAR_API void ApplyLUTToL12(L12* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                             unsigned int w, unsigned int h, const unsigned short* lut);

/// @}
/// @defgroup marking Fills, copies and markers
/// Each writes into true colour: a plain colour, a copy, or a mark that shows what a single-channel buffer holds. To
/// tint a pixel by a weight is to move its blue, green and red toward the colour by the weighted step; the fourth
/// byte, the alpha byte or one of flags, stays.
/// @{

/// Fills a rectangle with one colour.
///
/// All four bytes of each pixel become those of the colour.
/// Only the rows are cut: exactly w pixels are written in each, so x + w must not be above width.
/// Cut by: height. Threads: any.
/// @param[out] data  buffer
/// @param w  width of the region in pixels
/// @param color  the pixel, all 32 bits of it
OMNAR_API void FillTRCBuffer(TRC* data, unsigned int width, unsigned int height, unsigned int x, unsigned int y,
                             unsigned int w, unsigned int h, unsigned int color);

/// Fills a rectangle with a chessboard of two colours.
///
/// Pixel (x + j, y + i) lies at column originX + x + j and row originY + i of the board: rows count from originY
/// alone, whatever y is. Its cell is that position divided by cellSize, rounded down, so that the board continues
/// evenly to the left of and above 0. Where the two numbers of the cell add up to an even one the pixel becomes
/// color1, otherwise color2. Positions are integers that never wrap. Only the rows are cut: exactly w pixels are
/// written in each, so x + w must not be above width.
/// Cut by: height. Threads: any.
/// @param[out] data  buffer
/// @param w  width of the region in pixels
/// @param originX  column of the board at column 0 of the buffer
/// @param originY  row of the board at the region's first row
/// @param color1  pixel of the even cells, all 32 bits of it
/// @param color2  pixel of the odd cells, all 32 bits of it
/// @param cellSize  edge of a cell in pixels, at least 1
OMNAR_API void ChessboardFillTRCBuffer(TRC* data, unsigned int width, unsigned int height, unsigned int x,
                                       unsigned int y, unsigned int w, unsigned int h, int originX, int originY,
                                       unsigned int color1, unsigned int color2, unsigned int cellSize);

/// Copies a rectangle.
///
/// All four bytes of each pixel are copied. A row of the source must not share memory with the row that it is copied
/// to; it may with others, as rows are copied from the top.
/// Cut by: src, then dst. Threads: any.
/// @param src  source buffer
/// @param[out] dst  destination buffer
OMNAR_API void Copy2DTRCBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                    unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                    unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Copies a rectangle except for the pixels of one colour.
///
/// A source pixel is copied unless all its 32 bits, the fourth byte included, equal the key colour; pixels that do
/// leave the destination alone.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param[in,out] dst  destination buffer
/// @param keyColor  the pixel that is not copied
OMNAR_API void CopyTRCToTRCIfNotKeyColor(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                         unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned int w,
                                         unsigned int h, unsigned int keyColor);

/// Tints the background: the pixels where none of some layers holds anything.
///
/// A pixel is background if its sample is 0 in layers[layerIndices[k]] for all k from 0 to layerCount - 1; without
/// layers every pixel is. Background pixels are tinted toward color by the weight opacity.
/// Cut by: the layers' geometry, then dst. Overlap: in order. Threads: any.
/// @param layers  single-channel buffers of one geometry; like layerIndices, may be null if layerCount is 0 or less
/// @param layerIndices  which of the layers count
/// @param layerCount  how many indices there are; 0 or less for none
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param opacity  weight of the tint, 0..255
/// @param[in,out] dst  destination buffer
OMNAR_API void MarkBG(const L08* const* layers, const int* layerIndices, int layerCount, unsigned int width,
                      unsigned int height, unsigned int x, unsigned int y, unsigned int color, unsigned char opacity,
                      TRC* dst, unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                      unsigned int w, unsigned int h);

/// Flags grey values outside two limits in the fourth byte.
///
/// Where src is not 0: below lowLimit the fourth byte becomes 0x80, otherwise above highLimit it becomes 0x40. All
/// other pixels, those of value 0 and those on a limit among them, stay, and so do blue, green and red.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param lowLimit  the lowest value that is not flagged, 0..255
/// @param highLimit  the highest value that is not flagged, 0..255
/// @param[in,out] dst  destination buffer
OMNAR_API void MarkL08LimitsToTRCHighBit(const L08* src, unsigned int srcWidth, unsigned int srcHeight,
                                         unsigned int srcX, unsigned int srcY, unsigned char lowLimit,
                                         unsigned char highLimit, TRC* dst, unsigned int dstWidth,
                                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned int w,
                                         unsigned int h);

/// Tints the pixels whose grey value is among the chosen ones.
///
/// Where levels[src] is true the pixel is tinted toward color by the weight opacity. The flags must not share memory
/// with the destination.
/// Cut by: src, then dst. Overlap: in order. Threads: any.
/// @param src  source buffer
/// @param levels  256 flags, one for each value
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param opacity  weight of the tint, 0..255
/// @param[in,out] dst  destination buffer
OMNAR_API void MarkL08ToTRC(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                            unsigned int srcY, const bool* levels, unsigned int color, unsigned char opacity, TRC* dst,
                            unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                            unsigned int w, unsigned int h);

/// Shows a mask as a veil of colour over what it does not select.
///
/// A pixel is tinted toward color by the weight (255 - mask) * opacity / 255. Where the mask is 0, however, the pixel
/// becomes color with all four bytes, whatever the opacity; everywhere else the fourth byte stays.
/// Cut by: mask, then dst. Overlap: in order. Threads: any.
/// @param mask  mask
/// @param color  the veil; bits 24..31 go into the fourth byte where the mask is 0
/// @param[in,out] dst  destination buffer
/// @param opacity  weight of the veil, 0..255
OMNAR_API void ApplyQuickMaskToTRC(const L08* mask, unsigned int maskWidth, unsigned int maskHeight, unsigned int maskX,
                                   unsigned int maskY, unsigned int color, TRC* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h);

/// Recolours an image through an alpha plane and keeps its light and shade.
///
/// With L = (59 * green + 30 * red + 11 * blue) / 100 of the pixel of src, truncated to an integer, in double
/// precision t = (L - 127.5) * (contrast / 100.0) + brightness * 1.275, truncated and limited to 0..255. Each of blue,
/// green and red then moves by the weighted step, with weight = alpha * opacity / 255 and target = color + (255 -
/// color) * t / 255. So what is dark takes the colour itself, what is light goes to white. At contrast 100 and
/// brightness 0 the darker half takes the colour itself, and white goes half-way; with brightness 100, t is about L.
/// The fourth byte stays. `src` has the size and the corner of the destination, and may be the destination. The alpha
/// plane does not cut: it must hold the cut region.
/// Cut by: dst. Overlap: in order. Threads: any.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha  alpha plane
/// @param src  image whose light and shade is taken, with the destination's size and corner
/// @param[in,out] dst  destination buffer
/// @param opacity  weight on top of the pixel's own alpha, 0..255
/// @param brightness  makes the result lighter above 0, darker below; usually -100..100
/// @param contrast  in percent of that of the luminance; 0 makes the result even, below 0 light and dark change places
OMNAR_API void ChangeColorOfTRCWithAlpha(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                         unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                         const TRC* src, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                         unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                                         unsigned int h, int brightness, int contrast);

/// @}
/// @defgroup frames Hard and soft frames
/// A frame is a band of constant width around the shapes of a mask: the pixels of `src` that are not 0 are shape, the
/// others ground. An edge pixel is a pixel with a pixel of the other kind to its left, to its right, above or below
/// it. Frames that grow (dilation) draw a disc around every edge pixel of the shape; the one that shrinks (erosion)
/// erases a disc around every edge pixel of the ground. `dst` holds earlier work, often a copy of `src`; pixels
/// outside all discs stay as they are.
///
/// The disc of a frame of width r is made of the pixels whose distance from its centre is at most r. Distances are
/// looked up in a table that CreateDistTableForSoftFrame() makes; one table serves all frames up to its own radius,
/// and any number of threads. With such a table a frame of width 2 draws 5 x 5 pixels without the corners.
///
/// A hard frame of width 1 reads no table: it draws the full 3 x 3 square. In buffers of one size, discs have their
/// centres at least r pixels away from every edge of the buffer, so that no disc is cut: shapes that come closer get
/// no frame there, and where width or height is at most 2 * r, nothing is drawn. A frame of width 0 draws on the edge
/// pixels themselves; what lies outside the buffer is then ground.
///
/// Overlap: in order, disc by disc; each edge pixel is looked at when its turn comes.
///
/// The table is yours: entries of other values take part as they are, negative ones included. With a table as it was
/// made, and `dst` apart from `src`, widths up to 2000 are drawn in vectors: solid frames take a time that hardly
/// depends on the width; frames that carry values, and soft frames, take longer the wider they are and the more edge
/// pixels there are. Everything else is drawn disc by disc, in plain steps.
/// @{

/// Makes the table of distances that frames look up.
///
/// The table has (2 * tableRadius + 1)^2 entries, row by row. Column tableRadius + dx of row tableRadius + dy holds
/// the distance sqrt(dx^2 + dy^2), rounded to the nearest integer: 0 in the middle, 1 for all eight
/// neighbours, 2 for (2, 1), 3 for (2, 2). A table of radius 0 is the single entry 0.
///
/// The table is yours. It comes from `new int[]`; give it back with `delete[]`, once no frame reads it any more. On
/// Windows the module that deletes it must use the same run-time library as this one.
/// Errors: `std::bad_alloc` if there is not so much memory. Threads: any.
/// @param tableRadius  the greatest width of the frames that are to use it, in pixels
/// @return the table
OMNAR_API int* CreateDistTableForSoftFrame(unsigned int tableRadius);

/// Grows the shapes by a hard frame.
///
/// Discs are drawn around the edge pixels of the shape. With `solid` their pixels become 255; otherwise each becomes
/// at least the value of the edge pixel in its centre: max(dst, value), so that frames of many values may meet in any
/// order.
/// Cut by: nothing. Overlap: a shape that grows into its own source spreads on and on. Threads: any.
/// @param src  the mask
/// @param[in,out] dst  what is drawn on, of the same size
/// @param width  width of both in pixels
/// @param height  height of both in pixels
/// @param distTable  table of distances; not read if frameWidth is 1, and may be null then
/// @param tableRadius  the radius that the table was made for, at least frameWidth
/// @param frameWidth  width of the frame in pixels
/// @param solid  draw 255 instead of the edge pixel's value
OMNAR_API void HardFrameL08toL08(const L08* src, L08* dst, unsigned int width, unsigned int height,
                                 const int* distTable, unsigned int tableRadius, unsigned int frameWidth, bool solid);

/// Shrinks the shapes by a hard frame.
///
/// The pixels of discs around the edge pixels of the ground become 0. With a width of 1 the shapes lose one pixel in
/// all eight directions.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param src  the mask
/// @param[in,out] dst  what is drawn on, of the same size
/// @param width  width of both in pixels
/// @param height  height of both in pixels
/// @param distTable  table of distances; not read if frameWidth is 1, and may be null then
/// @param tableRadius  the radius that the table was made for, at least frameWidth
/// @param frameWidth  width of the frame in pixels
OMNAR_API void HardFrameDownL08toL08(const L08* src, L08* dst, unsigned int width, unsigned int height,
                                     const int* distTable, unsigned int tableRadius, unsigned int frameWidth);

/// Grows the shapes by a solid hard frame in the left part of larger buffers.
///
/// The pixels of discs around the edge pixels of the shape become 255. width and height are the area that is worked
/// on as if it were the entire buffer; only rows are rowLength pixels apart. A frame of width 0 alone looks past the
/// area's right edge, at the next pixel of the row, if there is one.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param src  the mask
/// @param[in,out] dst  what is drawn on
/// @param rowLength  pixels in a row of either buffer
/// @param unused  not read
/// @param width  width of the area in pixels, at most rowLength; it begins at the first pixel of the buffers
/// @param height  height of the area in pixels
/// @param distTable  table of distances; not read if frameWidth is 1, and may be null then
/// @param tableRadius  the radius that the table was made for, at least frameWidth
/// @param frameWidth  width of the frame in pixels
/// @param alsoUnused  not read
OMNAR_API void HardFrameL08toL08DifferentXYFlat(const L08* src, L08* dst, unsigned int rowLength, unsigned int unused,
                                                unsigned int width, unsigned int height, const int* distTable,
                                                unsigned int tableRadius, unsigned int frameWidth,
                                                unsigned int alsoUnused);

/// Draws the hard frame of a region into a buffer that is larger by the frame on every side.
///
/// Pixel (frameWidth, frameWidth) of `dst` belongs to the region's corner. Discs are drawn around the edge pixels of
/// the shape as in HardFrameL08toL08(), but for the first and last row and column of the region, which get none; their
/// pixels only decide which neighbours are edges. So no disc is cut. A frame of width 0 draws discs of width 1, which
/// are looked up in the table; it takes a table of radius 1 at least.
///
/// Without `solid` and with a width other than 1, the value of an edge pixel is read srcX columns to the left of it,
/// from column x of the source for column x of the region. It may be 0, and then draws nothing. Set srcX to 0, or the
/// width to 1, if every edge pixel is to carry its own value.
///
/// Cut by: src, then dst from its first pixel. Overlap: in order. Threads: any.
/// @param src  the mask
/// @param[in,out] dst  what is drawn on
/// @param dstWidth  width of `dst` in pixels; at least 2 * frameWidth more than the source leaves of w
/// @param dstHeight  height of `dst` in pixels; at least 2 * frameWidth more than the source leaves of h
/// @param distTable  table of distances; not read if frameWidth is 1, and may be null then
/// @param tableRadius  the radius that the table was made for, at least frameWidth, and at least 1
/// @param frameWidth  width of the frame in pixels
/// @param solid  draw 255 instead of the edge pixel's value
OMNAR_API void HardFrameL08toL08DifferentSize(const L08* src, unsigned int srcWidth, unsigned int srcHeight,
                                              unsigned int srcX, unsigned int srcY, L08* dst, unsigned int dstWidth,
                                              unsigned int dstHeight, unsigned int w, unsigned int h,
                                              const int* distTable, unsigned int tableRadius, unsigned int frameWidth,
                                              bool solid);

/// Grows the shapes by a frame that fades out.
///
/// Discs are drawn around the edge pixels of the shape. At distance d from an edge pixel of value v, a pixel becomes
///
///     max(dst, (frameWidth + 1 - d) * v / frameWidth)
///
/// which falls from v itself at distance 1 to v / frameWidth at distance frameWidth. No pixel is lowered.
/// On the edge pixel itself, at distance 0, the quotient is higher than v and may exceed 255; its low 8 bits
/// count then. So a value of 255 and a width of 4 give 62 there, and the pixel keeps what its neighbours draw on it.
///
/// Unlike hard frames, a frame of width 1 reads its table, and a frame of width 0 draws nothing.
/// Cut by: nothing. Overlap: in order. Threads: any.
/// @param src  the mask
/// @param[in,out] dst  what is drawn on, of the same size
/// @param width  width of both in pixels
/// @param height  height of both in pixels
/// @param distTable  table of distances
/// @param tableRadius  the radius that the table was made for, at least frameWidth
/// @param frameWidth  width of the frame in pixels
OMNAR_API void SoftFrameL08toL08(const L08* src, L08* dst, unsigned int width, unsigned int height,
                                 const int* distTable, unsigned int tableRadius, unsigned int frameWidth);

/// @}
/// @defgroup placing Placing into the repeat
/// A design is one tile, the repeat, laid over an endless plane. x grows to the right, y downwards, and the tile at
/// the origin is 0 <= x < width, 0 <= y < height. The drop says how neighbouring tiles are offset:
///
/// - half-drop (#eDropVertical): each column of tiles lies lower than the column to its left by the drop, and the
///   point (x + width, y + drop) shows what (x, y) shows;
/// - brick (#eDropHorizontal): each row of tiles lies further right than the row above it by the drop, and the point
///   (x + drop, y + height) shows what (x, y) shows;
/// - any other value is no layout; each function says what it does then.
///
/// SetInRapp() folds any position of a half-drop layout into the tile, but not of a brick layout, and only half-drop
/// layouts have pieces in the repeat buffer. VPToFP(), with foldIntoRepeat and zooms of 1, folds both.
///
/// trunc() turns a double into an int by dropping its fraction; whatever does not fit an int, NaN and
/// infinities included, becomes -2147483648. Sums, differences and products of integers wrap around at 32 bits.
///
/// A size of 0 is an error of the caller wherever something is divided by it, and undefined (most processors raise a
/// division fault). Functions of this group and of the two that follow keep no state and write nothing but their
/// outputs.
/// @{

/// Folds a position on the plane back into the tile.
///
/// In half-drop layout the result lies in the tile, for sizes below 2^31: x below width, y below height, neither
/// negative, and y has been moved up by one drop for every tile that x was moved left by, and down for every tile that
/// x was moved right by. Placing it again changes nothing. With a tile of 10 x 20 and a drop of 5, (25, 3) lies two
/// columns to the right and gives (5, 13): 3 - 2 * 5 = -7, plus the height 20. (-10, 0) gives (0, 5), and (0, -1)
/// gives (0, 19).
///
/// Brick layout is not its mirror image: it tests the sign of x where the mirror image would test that of
/// y, and it takes the tiles of x off y at last, so that the result may lie outside the tile. Hosts rely on these
/// steps, in which / is the unsigned division of 32-bit numbers, so that the opposite of a positive number counts in
/// billions:
///
///     if x < 0:  n = -y / height + 1;  y += n * height;  x += n * drop
///     if x > 0:  n = y / height;       y -= n * height;  x -= n * drop
///     if x < 0:  x += (-x / width + 1) * width
///     if y > 0:  y -= x / width * width
///
/// With the same tile, (3, 45) gives (3, 5): 45 - 2 * 20 = 5, and 3 - 2 * 5 = -7, plus the width 10. (0, 45) stays
/// where it is, and (25, 3) gives (25, -17).
///
/// Any other kind passes the position through. Both outputs are always written. Errors: none. Threads: any.
/// @param x  column on the plane in pixels; any value
/// @param y  row on the plane in pixels; any value
/// @param width  width of the tile in pixels; 0 only where no step divides by it, as for the position (0, 0)
/// @param height  height of the tile in pixels; 0 as for width
/// @param drop  offset of neighbouring tiles in pixels; a negative one as the same 32 bits
/// @param kind  the layout
/// @param[out] outX  the placed position along x
/// @param[out] outY  the placed position along y
OMNAR_API void SetInRapp(int x, int y, unsigned int width, unsigned int height, unsigned int drop, _EDropKind kind,
                         int* outX, int* outY);

/// Folds a position back into the tile for a drop that is not an integer number of pixels.
///
/// The steps are those of SetInRapp(). The drop of n tiles is n * (drop * scale), truncated to whole pixels after the
/// multiplication, so that no error adds up over many tiles. The scale is that of the axis along which the drop runs:
/// scaleY in half-drop layout, scaleX in brick layout. n is never negative; from 2^31 on it is an unsigned number.
/// With a tile of 10 x 20, a drop of 2.5 and scales of 1, (25, 3) gives (5, 18): 3 - 2 * 2.5 = -2, plus the height 20.
/// A position on the left edge of a tile left of the origin is moved by one tile too many and back, each drop
/// truncated for itself: (-10, 0) gives (0, 3), which is 5 - 2.
///
/// Any other kind passes the position through. Both outputs are always written. Errors: none. Threads: any.
/// @param x  column on the plane in pixels; any value
/// @param y  row on the plane in pixels; any value
/// @param width  width of the tile in pixels; 0 only where no step divides by it, as for the position (0, 0)
/// @param height  height of the tile in pixels; 0 as for width
/// @param drop  offset of neighbouring tiles in a unit of your own
/// @param scaleX  pixels per unit of the drop in brick layout; not read in half-drop layout
/// @param scaleY  pixels per unit of the drop in half-drop layout; not read in brick layout
/// @param kind  the layout
/// @param[out] outX  the placed position along x
/// @param[out] outY  the placed position along y
OMNAR_API void SetInRappDb(int x, int y, unsigned int width, unsigned int height, double drop, double scaleX,
                           double scaleY, _EDropKind kind, int* outX, int* outY);

/// Folds a position back into the tile in millimetres or any other continuous unit.
///
/// The steps are those of SetInRapp() on doubles, brick layout included. Where that counts -a / size + 1 tiles, this
/// counts 1 - trunc(a / size), and where that counts a / size, this counts trunc(a / size). For integers it is the
/// same, but not for a coordinate of the other sign, as brick layout meets it: such a count is 0 or negative here, and
/// huge there. With a tile of 10 x 20 and a drop of 5 in brick layout, (5, -45) gives (15, -5).
///
/// A NaN passes no test of its sign; a size of 0 gives the quotients that doubles give, and is no error. Positions so
/// far out that the quotient does not fit an int are not folded back into the tile.
///
/// Any other kind passes the position through. Both outputs are always written. Errors: none. Threads: any.
/// @param x  position on the plane along x; any value
/// @param y  position on the plane along y; any value
/// @param width  width of the tile; any value, sensibly above 0
/// @param height  height of the tile; any value, sensibly above 0
/// @param drop  offset of neighbouring tiles
/// @param kind  the layout
/// @param[out] outX  the placed position along x
/// @param[out] outY  the placed position along y
OMNAR_API void SetInRappMM(double x, double y, double width, double height, double drop, _EDropKind kind, double* outX,
                           double* outY);

/// Finds the tile that holds a position, along one axis.
///
/// From 0 on it is the whole pixels of the position divided by those of the size: with a size of 10, 25.9 is in tile
/// 2. Below 0 the tolerance decides:
///
/// - 1 and more, or NaN, for integer positions: the fraction is dropped and pixels are counted. With a size of 10,
///   -0.5 to -10 lie in tile -1, and -11 in tile -2. With a size of 1, -0.5 lies in tile 0, since it is truncated to
///   pixel 0.
/// - below 1, for fractional positions: each tile reaches further left by the tolerance, its new edge excluded. With a
///   size of 10 and a tolerance of 0.5, -10.4 lies in tile -1 and -10.6 in tile -2. Tile 0 begins at 0 all the same.
///   With a tolerance of 0 the edge -10 itself lies in tile -2.
///
/// Errors: none. Threads: any.
/// @param position  position in pixels; any value
/// @param repeatSize  size of the tile in pixels; its fraction is dropped, and at least 1 should be left. 0 must not
///     be; a negative size is divided by as it is, but -1 must not meet NaN or a position that does not fit an int
/// @param tolerance  how far a negative position may lie beyond a tile's left edge, in pixels
/// @return index of the tile: 0 at the origin, -1 left of it or above it
OMNAR_API int GetRapport(double position, double repeatSize, double tolerance);

/// Splits a position along one axis into the tile that holds it and the pixel inside that tile.
///
/// The tile is that of GetRapport(). The pixel is position - tile * repeatSize, truncated, with the size unchanged: a
/// fraction of the size counts here, although tiles are counted without it. Below 0 the difference is computed as
/// repeatSize - (-position - n * repeatSize) with n = -1 - tile. A difference of exactly repeatSize gives 0, and so
/// does a position that the tolerance leaves in the tile to its right. With a size of 10 and a tolerance of 2, 25.5 is
/// pixel 5 of tile 2, -0.5 is pixel 9 of tile -1, and -10 is pixel 0 of tile -1. With a tolerance of 0.5, -10.3 is
/// pixel 0 of tile -1. With a tolerance of 0, -10 is pixel 0 of tile -2, not -1: use a tolerance of 1 or more for
/// whole positions.
///
/// The index is always written. Errors: none. Threads: any.
/// @param position  position in pixels; any value
/// @param repeatSize  size of the tile in pixels, as in GetRapport()
/// @param tolerance  how far a negative position may lie beyond a tile's left edge, in pixels
/// @param[out] repeatIndex  index of the tile
/// @return the pixel inside the tile
OMNAR_API int SetInRappAndCalcRapp(double position, double repeatSize, double tolerance, int* repeatIndex);

/// Finds out after how many columns of tiles a half-drop lines up again.
///
/// That is the smallest n from 2 to 20 for which n drops come within n pixels of one repeat height or, for a drop of
/// more than repeatHeight / 2 (truncated), of n - 1 heights. Only this first wrap counts: a drop of two fifths of the
/// height lines up after 5 columns and two heights, but gives -1. (100, 50) gives 2; (99, 33) and (300, 200) give 3.
/// Errors: none. Threads: any.
/// @param repeatHeight  height of the tile in pixels; any value, sensibly below 2^31
/// @param drop  offset of neighbouring columns in pixels, sensibly less than the height
/// @return number of columns, 1 for a drop of 0, or -1 if no n is found
OMNAR_API int CalcNrOfHDropRepeats(unsigned int repeatHeight, unsigned int drop);

/// @}
/// @defgroup pieces Positions in the repeat buffer
/// A repeat buffer holds exactly one tile, repW x repH pixels. A rectangle on the plane falls into it in pieces, since
/// what runs off an edge comes back at the opposite one, from the right edge moved up by the drop. The pieces go into
/// four arrays of the caller, one entry a piece, each array with room for five: left column, width, top row and height
/// in pixels of the buffer. Both functions know the half-drop layout only (a straight repeat is one with a drop of 0)
/// and place positions by SetInRapp(); for brick layout use VPToFP(). What is said of pixels below holds as long as no
/// corner of the rectangle, and no drop times a number of tiles, leaves 32 bits.
///
/// The last piece that a rectangle of at most repW x repH covers begins at the rectangle's corner. With its left
/// column x0 and top row y0, the piece with the left column px and the top row py begins in the rectangle at
///
///     column 0,          row (py - y0) mod repH            where px = x0
///     column repW - x0,  row (py - y0 + drop) mod repH     where px < x0
///
/// mod being never negative. The whole buffer, as listed for wholeRepeatIfLarger, has no such place.
/// @{

/// Lists the pieces of the repeat buffer that a rectangle covers.
///
/// A rectangle that fits into the tile after its corner was placed is one piece. One that crosses an edge is up to
/// five: of what runs off the right edge first what lies in the tile, then what sticks out above it and comes back at
/// the bottom, then what sticks out below and comes back at the top; then what runs off the bottom edge in the
/// corner's own columns; and last what lies in the corner's own tile. In a tile of 100 x 100 with a drop of 50, the
/// rectangle (90, 10) of 20 x 20 gives two pieces: (0, 60) of 10 x 20, and (90, 10) of 10 x 20.
///
/// For rectangles smaller than the repeat both ways, and drops of 0 to repH, the pieces cover exactly the pixels that
/// the rectangle shows, each of them once. One that does not fit and is as wide or as high as the repeat, or more, is
/// one piece, the whole buffer, if wholeRepeatIfLarger is true; otherwise one of just that size is covered exactly as
/// well. Of larger ones, and for other drops, pieces may overlap, reach outside the buffer or have a negative size:
/// bring a drop into 0..repH by adding multiples of repH. Pieces without width or height are listed like others.
///
/// In brick layout nothing is written, not even the count; a kind that is no layout writes a count of 0 and nothing
/// else. Entries from the count on are not written. Errors: none. Threads: any.
/// @param x  left column of the rectangle on the plane; any value
/// @param y  top row of the rectangle on the plane; any value
/// @param w  width of the rectangle in pixels; sums from 2^31 on wrap around
/// @param h  height of the rectangle in pixels; sums from 2^31 on wrap around
/// @param repW  width of the tile in pixels, 1..2^31 - 1; 0 only where placing the corner never divides by it
/// @param repH  height of the tile in pixels; 0 as for width
/// @param kind  the layout
/// @param drop  offset of neighbouring columns in pixels
/// @param[out] count  number of pieces
/// @param[out] pieceX  left columns of the pieces
/// @param[out] pieceW  widths of the pieces
/// @param[out] pieceY  top rows of the pieces
/// @param[out] pieceH  heights of the pieces
/// @param wholeRepeatIfLarger  list the whole buffer for a rectangle that does not fit and is as wide or as high as the
///     repeat, or more
OMNAR_API void CalcPosAndSizeInRepBuffer(int x, int y, unsigned int w, unsigned int h, unsigned int repW,
                                         unsigned int repH, _EDropKind kind, int drop, int* count, int* pieceX,
                                         int* pieceW, int* pieceY, int* pieceH, bool wholeRepeatIfLarger);

/// Lists the pieces of the repeat buffer that a rectangle leaves uncovered.
///
/// A rectangle that fits into the tile after its corner was placed leaves up to four pieces: strips of full height
/// left and right of it, and what is above and below it between them. One that crosses an edge, smaller than the
/// repeat both ways, leaves three to five. Any other counts as the whole buffer: count is 0, although entry 0 is set
/// to the whole buffer (0, 0) of repW x repH. In a tile of 100 x 100 with a drop of 50, the rectangle (90, 10) of 20 x
/// 20 leaves (10, 0) of 80 x 100; (90, 0) of 10 x 10 and (90, 30) of 10 x 70; (0, 0) of 10 x 60 and (0, 80) of 10 x
/// 20.
///
/// Together with the pieces that CalcPosAndSizeInRepBuffer() lists for wholeRepeatIfLarger and drops of 0 to repH,
/// they fill the buffer, each pixel once; they are right for other drops, too. One exception: a rectangle without
/// width that crosses the bottom edge and is less than repH high leaves out h rows as if it covered them. Pieces
/// without width or height are listed like others.
///
/// In brick layout nothing is written, not even the count; a kind that is no layout writes a count of 0 and nothing
/// else. Entries from the count on are not written but for entry 0 as above. Errors: none. Threads: any.
/// @param x  left column of the rectangle on the plane; any value
/// @param y  top row of the rectangle on the plane; any value
/// @param w  width of the rectangle in pixels; sums from 2^31 on wrap around
/// @param h  height of the rectangle in pixels; sums from 2^31 on wrap around
/// @param repW  width of the tile in pixels, 1..2^31 - 1; 0 only where placing the corner never divides by it
/// @param repH  height of the tile in pixels; 0 as for width
/// @param kind  the layout
/// @param drop  offset of neighbouring columns in pixels
/// @param[out] count  number of pieces
/// @param[out] pieceX  left columns of the pieces
/// @param[out] pieceW  widths of the pieces
/// @param[out] pieceY  top rows of the pieces
/// @param[out] pieceH  heights of the pieces
OMNAR_API void CalcPosAndSizeInRepBufferInv(int x, int y, unsigned int w, unsigned int h, unsigned int repW,
                                            unsigned int repH, _EDropKind kind, int drop, int* count, int* pieceX,
                                            int* pieceW, int* pieceY, int* pieceH);

/// @}
/// @defgroup coordinates File, view and screen coordinates
/// A design is held in file pixels (FP), shown zoomed in view pixels (VP) and drawn in screen pixels (SP), which are
/// view pixels less the scroll origin, possibly upside down. Positions in millimetres (MM) become file pixels by a
/// resolution.
///
/// Each conversion goes tile by tile, so that zoomed tiles abut: a tile of repW file pixels is trunc(repW * zoomX)
/// view pixels wide, at least one, wherever it lies, and only the offset in the tile is scaled by the unrounded zoom.
/// The same holds for heights. With a width of 100 and a zoom of 1.5, tile -1 begins at view column -150, and its last
/// pixel, file column -1, lies at -150 + 99 * 1.5 = -1.5, which truncates to -1. With zooms below 1 the last pixels of
/// a tile may reach the first view pixel of the next one: a tile of 3 with a zoom of 0.5 is 1 wide, and its last pixel
/// lies at 1.
///
/// The tile of an integer position is the floor of position / size, and the offset in the tile is never negative.
/// Sizes of 2^31 and more count as negative there. Zooms of 0 and less, infinities and NaN pass through the formulas;
/// what does not fit an int becomes -2147483648.
/// @{

/// Converts a file position to a view position.
///
/// Not folded, the result is trunc(tile * view size of a tile + offset in the tile * zoom) on either axis; the drop
/// has no effect. It truncates, so left of the origin a fraction moves it right: two file columns may share the view
/// column 0. tile * view size wraps around at 32 bits.
///
/// Folded, the drop of the tiles that were crossed is taken off: in half-drop layout y loses drop * zoomY for each
/// tile along x and is folded into the view size of a tile, in brick layout x loses drop * zoomX for each tile along
/// y; the other axis keeps its offset in the tile. With a tile of 100 x 100, a drop of 50 and zooms of 1, (150, 10)
/// gives (50, 60) in half-drop layout.
///
/// A kind that is no layout gives (0, 0). Both outputs are always written. Errors: none. Threads: any.
/// @param fx  file column; any value
/// @param fy  file row; any value
/// @param[out] vx  the view column
/// @param[out] vy  the view row
/// @param repW  width of the tile in file pixels, not 0 unless kind is no layout
/// @param repH  height of the tile in file pixels, not 0 unless kind is no layout
/// @param drop  offset of neighbouring tiles in file pixels, never negative: the same 32 bits would count in billions
/// @param kind  the layout
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param foldIntoRepeat  fold the result into the repeat
OMNAR_API void FPToVP(int fx, int fy, int* vx, int* vy, unsigned int repW, unsigned int repH, unsigned int drop,
                      _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat);

/// Converts a view position to a file position: the way back from FPToVP().
///
/// Tiles are counted in view pixels, and the offset in the tile is divided by the zoom and truncated. Not folded, the
/// result is tile * size of a tile + offset in the tile; the drop has no effect. Folded, the drop of the tiles that
/// were crossed is taken off: in half-drop layout y loses the drop for each tile along x and is folded into 0..repH -
/// 1, in brick layout x loses it for each tile along y and is folded into 0..repW - 1; the other axis keeps its offset
/// in the tile. With a tile of 100 x 100, a drop of 50 and zooms of 1, (150, 60) gives (50, 10) in half-drop layout.
///
/// Not folded, and for zooms that are integers, it leads back to the file position that FPToVP() came from. For
/// other zooms both ways truncate: one above 1 may lead to a neighbouring pixel, one below 1 further off.
///
/// A kind that is no layout gives (0, 0). Both outputs are always written. Errors: none. Threads: any.
/// @param vx  view column; any value
/// @param vy  view row; any value
/// @param[out] fx  the file column
/// @param[out] fy  the file row
/// @param repW  width of the tile in file pixels; not 0 when folding in brick layout
/// @param repH  height of the tile in file pixels; not 0 when folding in half-drop layout
/// @param drop  offset of neighbouring tiles in file pixels; a negative one as the same 32 bits
/// @param kind  the layout
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param foldIntoRepeat  fold the result into the repeat
OMNAR_API void VPToFP(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, unsigned int drop,
                      _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat);

/// Converts a view position to a file position for a drop that is not an integer number of pixels.
///
/// As VPToFP(), but the drop of n tiles is n * drop * scale, rounded to whole file pixels (halves
/// away from zero). The scale is that of the axis along which the drop runs: scaleY in half-drop layout, scaleX in
/// brick layout. With a tile of 100 x 100, a drop of 2.5 and scales and zooms of 1, (150, 60) gives (50, 57).
///
/// A kind that is no layout gives (0, 0). Both outputs are always written. Errors: none. Threads: any.
/// @param vx  view column; any value
/// @param vy  view row; any value
/// @param[out] fx  the file column
/// @param[out] fy  the file row
/// @param repW  width of the tile in file pixels; not 0 when folding in brick layout
/// @param repH  height of the tile in file pixels; not 0 when folding in half-drop layout
/// @param drop  offset of neighbouring tiles in a unit of your own
/// @param scaleX  file pixels per unit of the drop in brick layout; not read in half-drop layout
/// @param scaleY  file pixels per unit of the drop in half-drop layout; not read in brick layout
/// @param kind  the layout
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param foldIntoRepeat  fold the result into the repeat
OMNAR_API void VPToFPDb(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, double drop,
                        double scaleX, double scaleY, _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat);

/// Converts a file position to a screen position that is snapped to pixels.
///
/// On either axis it is trunc(tile * view size of a tile + offset in the tile * zoom - origin), all in doubles: unlike
/// in FPToVP() the product does not wrap. With flipY the row is counted from the bottom: it is screenHeight - row - 1.
/// Snapping to the pixel's centre is done last, and only on an axis whose zoom is above 1: it adds trunc(zoomX / 2 +
/// 0.5) to x, and takes trunc(zoomY / 2 - 0.5) off y, flipped or not. At a zoom of 4 that is 2 and 1, at 2 it is 1 and
/// 0. With a tile of 100 x 100 and zooms of 4, (101, 2) lies at (404, 8), snapped at (406, 7). Both layouts give the
/// same: a point is placed by its own tile, and the drop is not read.
///
/// A kind that is no layout writes nothing. Errors: none. Threads: any.
/// @param fx  file column; any value
/// @param fy  file row; any value
/// @param[out] sx  the screen column
/// @param[out] sy  the screen row
/// @param originX  scroll origin: the view column of the screen's corner
/// @param originY  scroll origin: the view row of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW  width of the tile in file pixels, not 0
/// @param repH  height of the tile in file pixels, not 0
/// @param drop  not read
/// @param kind  the layout
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param snapToPixelCentre  any value but 0 snaps
/// @param flipY  y grows upwards on the screen
OMNAR_API void FPToSnappedSP(int fx, int fy, int* sx, int* sy, int originX, int originY, unsigned int screenHeight,
                             unsigned int repW, unsigned int repH, unsigned int drop, _EDropKind kind, double zoomX,
                             double zoomY, unsigned char snapToPixelCentre, bool flipY);

/// Converts many file positions to screen positions that are snapped to pixels.
///
/// Each pair (fxs[i], fys[i]) is converted, in order, as by the form for one position, into (*sxs)[i], (*sys)[i]. Both
/// coordinates of a pair are read before either is written, so the positions may be converted in place.
///
/// A kind that is no layout, or a count below 1, writes nothing and reads no array. Errors: none. Threads: any.
/// @param fxs  file columns, `count` of them
/// @param fys  file rows, `count` of them
/// @param count  number of positions
/// @param[out] sxs  address of the pointer to an array of the caller for `count` screen columns; nothing is allocated
/// @param[out] sys  address of the pointer to an array of the caller for `count` screen rows
/// @param originX  scroll origin: the view column of the screen's corner
/// @param originY  scroll origin: the view row of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW  width of the tile in file pixels, not 0
/// @param repH  height of the tile in file pixels, not 0
/// @param drop  not read
/// @param kind  the layout
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param snapToPixelCentre  any value but 0 snaps
/// @param flipY  y grows upwards on the screen
OMNAR_API void FPToSnappedSP(const int* fxs, const int* fys, int count, int* const* sxs, int* const* sys, int originX,
                             int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH,
                             unsigned int drop, _EDropKind kind, double zoomX, double zoomY,
                             unsigned char snapToPixelCentre, bool flipY);

/// Converts a position in millimetres to a screen position that is snapped to pixels.
///
/// The position in file pixels, with its fraction, is p = mm * res + 1 - 1, which flushes tiny values to zero. Its
/// tile is the floor of p / size, and the offset in the tile is p - tile * size; from there on it goes as in
/// FPToSnappedSP(). With a tile of 100 x 100, 10 file pixels a millimetre and zooms of 2, (10.25, -0.5) is the file
/// position (102.5, -5) and lies at (205, -10), snapped at (206, -10).
///
/// From 2^53 file pixels on, where a double holds no odd numbers, the tile is that of a walk by steps of one size,
/// each of them rounded. A position so far out that a step is lost gives the tile floor(p / size).
///
/// A kind that is no layout writes nothing. Errors: none. Threads: any.
/// @param mmX  position along x in millimetres, finite in file pixels; NaN gives -2147483648 before snapping
/// @param mmY  position along y in millimetres, before snapping and flipping
/// @param[out] sx  the screen column
/// @param[out] sy  the screen row
/// @param originX  scroll origin: the view column of the screen's corner
/// @param originY  scroll origin: the view row of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW  width of the tile in file pixels; 0 works like NaN for mmX
/// @param repH  height of the tile in file pixels; 0 works like NaN for mmY
/// @param drop  not read
/// @param kind  the layout
/// @param resX  file pixels per millimetre along x
/// @param resY  file pixels per millimetre along y
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param snapToPixelCentre  any value but 0 snaps
/// @param flipY  y grows upwards on the screen
OMNAR_API void MMToSnappedSP(double mmX, double mmY, int* sx, int* sy, int originX, int originY,
                             unsigned int screenHeight, unsigned int repW, unsigned int repH, unsigned int drop,
                             _EDropKind kind, double resX, double resY, double zoomX, double zoomY,
                             unsigned char snapToPixelCentre, bool flipY);

/// Converts many positions in millimetres to screen positions that are snapped to pixels.
///
/// Each pair (mmXs[i], mmYs[i]) is converted, in order, as by the form for one position, into (*sxs)[i], (*sys)[i].
///
/// A kind that is no layout, or a count below 1, writes nothing and reads no array. Errors: none. Threads: any.
/// @param mmXs  positions along x in millimetres, `count` of them, each as in the form for one
/// @param mmYs  positions along y in millimetres, `count` of them, each as in the form for one
/// @param count  number of positions
/// @param[out] sxs  address of the pointer to an array of the caller for `count` screen columns; nothing is allocated
/// @param[out] sys  address of the pointer to an array of the caller for `count` screen rows
/// @param originX  scroll origin: the view column of the screen's corner
/// @param originY  scroll origin: the view row of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW  width of the tile in file pixels; 0 works like NaN for mmXs
/// @param repH  height of the tile in file pixels; 0 works like NaN for mmYs
/// @param drop  not read
/// @param kind  the layout
/// @param resX  file pixels per millimetre along x
/// @param resY  file pixels per millimetre along y
/// @param zoomX  view pixels per file pixel along x, sensibly above 0
/// @param zoomY  view pixels per file pixel along y, sensibly above 0
/// @param snapToPixelCentre  any value but 0 snaps
/// @param flipY  y grows upwards on the screen
OMNAR_API void MMToSnappedSP(const double* mmXs, const double* mmYs, int count, int* const* sxs, int* const* sys,
                             int originX, int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH,
                             unsigned int drop, _EDropKind kind, double resX, double resY, double zoomX, double zoomY,
                             unsigned char snapToPixelCentre, bool flipY);

/// Extends a file size to the aspect of a view.
///
/// Unlike elsewhere in this group the zooms are file pixels per view pixel: shown, the file is a = fileW / zoomX by
/// b = fileH / zoomY view pixels. Only the ratio of the zooms matters. The side that limits how large the file can be
/// shown in the view is kept, and the other one extended until the file fills the view:
///
///     if viewH / b > viewW / a:  fileW by trunc(fileW * zoomY / zoomX * viewH / viewW)
///     otherwise:                 trunc(fileH * zoomX / zoomY * viewW / viewH) by fileH
///
/// A file of 400 x 300 becomes 400 x 400 for a view of 800 x 800 and equal zooms.
///
/// What does not fit an int, as after a division by 0, becomes 2147483648. Both outputs are always written.
/// Errors: none. Threads: any.
/// @param fileW  width of the file in file pixels
/// @param fileH  height of the file in file pixels
/// @param viewW  width of the view in view pixels
/// @param viewH  height of the view in view pixels
/// @param zoomX  file pixels per view pixel along x, sensibly above 0
/// @param zoomY  file pixels per view pixel along y, sensibly above 0
/// @param[out] outW  the extended width in file pixels
/// @param[out] outH  the extended height in file pixels
OMNAR_API void AdaptFileSizeToFileSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW,
                                                  unsigned int viewH, double zoomX, double zoomY, unsigned int* outW,
                                                  unsigned int* outH);

/// Fits a file into a view: the largest size in the view that has the file's aspect.
///
/// Unlike elsewhere in this group the zooms are file pixels per view pixel: shown, the file is a = fileW / zoomX by
/// b = fileH / zoomY view pixels. Only the ratio of the zooms matters:
///
///     if viewH / b > viewW / a:  viewW by trunc(viewW * b / a)
///     otherwise:                 trunc(viewH * a / b) by viewH
///
/// A file of 400 x 300 becomes 800 x 600 in a view of 800 x 800 for equal zooms.
///
/// What does not fit an int, as after a division by 0, becomes 2147483648. Both outputs are always written.
/// Errors: none. Threads: any.
/// @param fileW  width of the file in file pixels
/// @param fileH  height of the file in file pixels
/// @param viewW  width of the view in view pixels
/// @param viewH  height of the view in view pixels
/// @param zoomX  file pixels per view pixel along x, sensibly above 0
/// @param zoomY  file pixels per view pixel along y, sensibly above 0
/// @param[out] outW  the width in view pixels
/// @param[out] outH  the height in view pixels
OMNAR_API void AdaptFileSizeToViewSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW,
                                                  unsigned int viewH, double zoomX, double zoomY, unsigned int* outW,
                                                  unsigned int* outH);

/// @}
/// @defgroup partition Splitting work
/// Cutting a run of pixels where it crosses from one tile into the next, and sharing out an image among threads.
///
/// A run is `length` pixels along one axis of the plane, from position `start` on. A grid of period p has a boundary
/// at every multiple of p; (start mod p) below is never negative for a positive period. The lengths of the parts, in
/// order along the run, go into an array of the caller. Entries that are not named below are not written.
/// @{

/// Cuts a run at every boundary of a grid.
///
/// With off = start mod period and room = period - off, what is left of the tile in which the run begins:
///
///     off + length <= period:  {length}
///     otherwise:               {room, rest} with rest = length - room; a rest of more than one period is cut further,
///                              into rest / period times {period} and one {rest mod period}
///
/// So a run that ends at a boundary ends with a part of 0 if its rest is two periods or more, but not if it is one.
/// With a period of 100, 310 pixels from 90 on are {10, 100, 100, 100, 0}, 110 pixels from 90 on {10, 100}, and 20
/// pixels from -10 on {10, 10}. The parts come to the length.
///
/// A period of 0 writes the one part {length}, but a count of 0. A negative period is divided by as it is, sums and
/// differences wrap around at 32 bits. Errors: none. Threads: any.
/// @param period  distance of the boundaries in pixels, sensibly above 0; a negative one only where no part comes to
///     lie before parts[0]
/// @param start  position of the first pixel; any value
/// @param length  length of the run in pixels, sensibly not negative
/// @param[out] count  number of parts
/// @param[out] parts  lengths of the parts; room for 2 + length / period entries
OMNAR_API void CalcParts2(int period, int start, int length, int* count, int* parts);

/// Cuts a run at the first boundary of each of two grids, such as the repeats of two layers.
///
/// With toA = periodA - (startA mod periodA), the distance to the first boundary of A, and toB in the same way:
///
///     neither boundary is inside:         {length}
///     that of B is inside, that of A not: {toB, length - toB}
///     that of A is inside:
///         that of B comes before it:      {toB, toA - toB, length - toA}
///         that of B is inside, too:       {toA, toB - toA, length - toB}
///         it is not:                      {toA, length - toA}
///
/// A boundary is inside if the run goes on past it: (startA mod periodA) + length > periodA. Only the first boundary
/// of each grid is looked at: a run that is longer than a period is not cut again. Two boundaries at one place leave a
/// part of 0 between them: with periodA = 100, startA = 90, periodB = 50, startB = 40, 20 pixels are {10, 0, 10}.
///
/// A grid of period 0 has its boundary at the very start. A negative period is divided by as it is, sums and
/// differences wrap around at 32 bits. Errors: none. Threads: any.
/// @param periodA  first grid: distance of its boundaries in pixels
/// @param startA  first grid: where in it the run begins
/// @param periodB  second grid: distance of its boundaries in pixels
/// @param startB  second grid: where in it the run begins
/// @param length  length of the run in pixels
/// @param[out] count  number of parts, 1 to 3
/// @param[out] parts  lengths of the parts; room for three
OMNAR_API void CalcParts(int periodA, int startA, int periodB, int startB, int length, int* count, int* parts);

/// Makes one work buffer that holds a band of an image for each worker thread, within a quarter of the available
/// memory.
///
/// | rotateMode       | the band of one thread                          | if the memory does not suffice |
/// |------------------|-------------------------------------------------|--------------------------------|
/// | #eRotateStraight | height rows of width / threadCount pixels       | narrower, by whole pixels      |
/// | otherwise        | width / threadCount rows of height pixels       | fewer rows                     |
///
/// A buffer that turned out smaller serves the image in several passes. Columns that are left over by the division, or
/// rows of the turned image, are the caller's to deal with. Rows begin at multiples of 4 bytes, without any other gap,
/// and bands lie one after the other: row r of thread t begins at buffer + (t * rowsPerThread + r) * bytesPerRow. All
/// rowsPerThread * threadCount * bytesPerRow bytes are 0. A straight image of 1000 x 500 pixels of 3 bytes and 4
/// threads gives 500 rows of 250 pixels and 752 bytes.
///
/// The budget is M / 2 * 524288 bytes (truncated), with M the megabytes that the host's memory manager reports.
/// Whether bands fit is judged before rows are rounded up to multiples of 4 bytes. Pixels times bytesPerPixel wraps
/// around at 32 bits: keep a row below 4 GiB.
///
/// The block comes from #g_pLargeAllocator, and the caller gives it back by g_pLargeAllocator->Free(*buffer). A band
/// without pixels (height 0, or a budget of less than one pixel a row) is no error; it comes with what the allocator
/// gives for 0 bytes, to be given back like any other block.
///
/// Errors: throws a COmnarException and writes nothing, with
/// - code 1 if there is not one row (turned) or one byte of every row (straight) for each thread, as with fewer
///   columns than threads, or if the size of a row or of the block does not fit its type;
/// - the failed status of the memory manager;
/// - code -2147024882 if the allocator has no such block.
///
/// The memory manager is released in any case. Threads: any, as far as the host's memory manager and allocator allow.
/// @param width  width of the image in pixels; any value
/// @param height  height of the image in pixels; any value
/// @param bytesPerPixel  bytes of a pixel, 1 or more
/// @param threadCount  number of threads, not 0
/// @param[out] rowsPerThread  rows of a band
/// @param[out] pixelsPerRow  pixels of a row
/// @param[out] bytesPerRow  distance of two rows in bytes, a multiple of 4
/// @param[out] buffer  the block
/// @param rotateMode  how the bands lie
OMNAR_API void CalcAndGetFixedBufferForThreads(unsigned int width, unsigned int height, int bytesPerPixel,
                                               unsigned int threadCount, unsigned int* rowsPerThread,
                                               unsigned int* pixelsPerRow, unsigned int* bytesPerRow,
                                               unsigned char** buffer, _ERotateMode rotateMode);

/// @}
/// @defgroup integers Whole numbers
/// Arithmetic for common repeats and for counting, in 32 bits: products wrap around, quotients truncate.
/// Nothing is written and no state kept.
/// @{

/// Greatest common divisor, by Euclid's algorithm.
///
/// Its remainders have the sign of what was divided, and so does the result, which is the last divisor: (12, 18) and
/// (-12, 18) give 6, (12, -18) and (-12, -18) give -6, (0, b) gives b. Where it is negative, it is the opposite of the
/// greatest common divisor. Errors: none. Threads: any.
/// @param a  one number; -2147483648 and -1 must not meet: undefined like a b of 0 (most processors raise a division
///     fault)
/// @param b  the other one, not 0
/// @return the last divisor
OMNAR_API int ggT(int a, int b);

/// Least common multiple, as of the sizes of two repeats.
///
/// a * b / ggT(a, b), in this order: a product beyond 32 bits wraps around before it is divided, so that (65536,
/// 65536) gives 0. (4, 6) and (4, -6) give 12, (-4, 6) gives -12, (0, b) gives 0. Errors: none. Threads: any.
/// @param a  one number, as in ggT()
/// @param b  the other one, as in ggT(). a * b must not wrap to -2147483648 where ggT(a, b) is -1
/// @return the multiple
OMNAR_API int kgV(int a, int b);

/// Factorial.
///
/// Right up to 12! = 479001600; from there on it is n! modulo 2^32, which is 0 from n = 34 on.
/// Errors: none. Threads: any.
/// @param n  any value but 4294967295
/// @return 1 * 2 * ... * n, 1 for n = 0
OMNAR_API unsigned int Fakultaet(unsigned int n);

/// Binomial coefficient: in how many ways k can be chosen from n.
///
/// With m the smaller of k and n - k, the product of n - m + 1 to n divided by m!, both modulo 2^32: right as long as
/// that product is below 2^32, for k = 2 up to n = 65536. Where n <= k the result is 1, and so for n < k, too, where
/// there is no way to choose. Errors: none. Threads: any.
/// @param n  how many there are; 4294967295 only where n <= k
/// @param k  how many are chosen; k or n - k below 34, unless n <= k
/// @return the coefficient
OMNAR_API unsigned int NUeberK(unsigned int n, unsigned int k);

/// @}
/// @defgroup geometry Plane geometry and angles
/// System angles grow from the positive x axis toward the positive y axis. Doubles are computed in the order in which
/// the formulas below are written, from the left, each step rounded by itself. pi is 3.141592653589793. Results that
/// come of sin, cos, tan, atan or atan2 are as exact as the platform's own; everything else has the same bits
/// everywhere.
///
/// All values are passed through the formulas, infinities and NaN included. Functions keep no state and write nothing
/// but their outputs.
/// @{

/// Direction from one point to another, in degrees.
///
/// With dx = x2 - x1 and dy = y2 - y1:
///
///     dx = 0:     270 if dy < 0, otherwise 90 (so for two equal points)
///     otherwise:  atan(dy / dx) * 180 / pi + (180 if dx < 0, otherwise 360 if dy < 0, otherwise 0)
///
/// To the right it is 0, to the left 180. A direction that is a hair below 0 may be rounded to 360.
/// Errors: none. Threads: any.
/// @param x1  x of the point from which
/// @param y1  y of the point from which
/// @param x2  x of the point to which
/// @param y2  y of the point to which
/// @return degrees, 0..360
OMNAR_API double GetAngle(double x1, double y1, double x2, double y2);

/// Direction from one point to another, in radians. Horizontal ones differ from GetAngle().
///
/// With dx = x2 - x1 and dy = y2 - y1:
///
///     dy = 0:     pi / 2 for every dx: a horizontal direction counts as upright
///     otherwise:  atan(dy / dx) + (pi if dx < 0, otherwise 2 pi if dy < 0, otherwise 0)
///
/// A dx of 0 is divided by; a direction straight along y so becomes pi / 2 or, for dy < 0, 3 pi / 2.
/// Errors: none. Threads: any.
/// @param x1  x of the point from which
/// @param y1  y of the point from which
/// @param x2  x of the point to which
/// @param y2  y of the point to which
/// @return radians, 0..2 pi
OMNAR_API double GetAngleRad(double x1, double y1, double x2, double y2);

/// Distance of two points: sqrt((y2 - y1)^2 + (x2 - x1)^2).
///
/// Errors: none. Threads: any.
/// @param x1  x of one point
/// @param y1  y of one point
/// @param x2  x of the other point
/// @param y2  y of the other point
/// @return the distance
OMNAR_API double GetLength(double x1, double y1, double x2, double y2);

/// The point at a distance and in a direction from the origin.
///
/// With a = angleDegrees * pi / 180: (cos(a) * length, sin(a) * length). A length of 2 at 90 degrees gives an x of
/// about 1.2e-16, for pi is rounded. Errors: none. Threads: any.
/// @param length  the distance
/// @param angleDegrees  the direction
/// @param[out] x  x of the point
/// @param[out] y  y of the point
OMNAR_API void GetPosition(double length, double angleDegrees, double* x, double* y);

/// The same, into a pair of coordinates of the host.
///
/// Errors: a failed status of ICoordPair::SetCoords() is thrown as a COmnarException with that code. Threads: any.
/// @param length  the distance
/// @param angleDegrees  the direction
/// @param[out] pair  where the point goes, not null
OMNAR_API void GetPosition(double length, double angleDegrees, ICoordPair* pair);

/// Distance of a point from a line, measured at a right angle.
///
/// An axis-parallel line is a segment: the point must lie strictly between its ends, as seen along it, so that a point
/// beside an end has no distance. Any other line goes on without end. From (0, 0)-(0, 10) the point (5, 1) lies 5
/// away, (5, 0) and (5, 10) have no distance; but from (0, 0)-(10, 10) every point has one.
///
///     x1 = x2:    |px - x1| if py is between y1 and y2
///     y1 = y2:    |py - y1| if px is between x1 and x2
///     otherwise:  m = (y2 - y1) / (x2 - x1),  n = -(x2 - x1) / (y2 - y1),  b = y1 - x1 * m,  k = py - px * n,
///                 xf = (b - k) / (n - m),  yf = xf * m + b,  sqrt((yf - py)^2 + (xf - px)^2)
///
/// Everything is computed in doubles. Errors: none. Threads: any.
/// @param x1  x of one point of the line
/// @param y1  y of one point of the line
/// @param x2  x of another point of the line
/// @param y2  y of another point of the line
/// @param px  x of the point
/// @param py  y of the point
/// @return the distance, or 3.4028234663852886e+38 (the largest float) if there is none, as for a line of one point
OMNAR_API double GetNormalDistanceToLine(int x1, int y1, int x2, int y2, int px, int py);

/// Distance of a point from an endless line, and the direction of the perpendicular from the line to the point.
///
/// Lines that are nearly axis-parallel count as such. For them the direction is that of the perpendicular without its
/// sense, on whichever side the point lies; for other lines it leads from the foot to the point.
///
///     |y2 - y1| < 0.001:  |py - y1|, direction pi / 2
///     |x2 - x1| < 0.001:  |px - x1|, direction 0
///     otherwise:          m = (y2 - y1) / (x2 - x1),  t = tan(atan(m) - pi / 2),
///                         xf = (m * x1 + (py - y1) - t * px) / (m - t),  yf = (xf - px) * t + py,
///                         sqrt((px - xf)^2 + (py - yf)^2), direction atan2(py - yf, px - xf), plus 2 pi if below 0
///
/// For a point on the line the direction is what the rounding leaves. Errors: none. Threads: any.
/// @param px  x of the point
/// @param py  y of the point
/// @param x1  x of one point of the line
/// @param y1  y of one point of the line
/// @param x2  x of another point of the line
/// @param y2  y of another point of the line
/// @param[out] direction  radians, 0..2 pi
/// @return the distance
OMNAR_API double GetIntersectionDistanceDb(double px, double py, double x1, double y1, double x2, double y2,
                                           double* direction);

/// Converts an angle as the user counts it into a system angle.
///
/// #eAngleSystem returns the angle unfolded. Otherwise it is 90 degrees less the angle, folded into
/// [0, 360): with fold(v) = v - floor(v / 360) * 360, fold(360 - fold(angle) - 270). 0 gives 90, 90 and 450 give 0.
/// Errors: none. Threads: any.
/// @param angle  the user's angle in degrees
/// @param mode  how the user counts
/// @return system angle in degrees
OMNAR_API double GetSystemAngleFromUserAngle(double angle, _EAngleMode mode);

/// Converts a system angle into an angle as the user counts it.
///
/// #eAngleSystem returns the angle unfolded. Otherwise it is 90 degrees less the angle, folded into
/// [0, 360): with fold(v) = v - floor(v / 360) * 360, fold(360 - fold(angle) + 90). It undoes
/// GetSystemAngleFromUserAngle(), up to rounding and folding. Errors: none. Threads: any.
/// @param angle  system angle in degrees
/// @param mode  how the user counts
/// @return the user's angle in degrees
OMNAR_API double GetUserAngleFromSystemAngle(double angle, _EAngleMode mode);

/// The angle of a flexographic distortion: atan2(length * (1 - factor), size) * 180 / pi.
///
/// Errors: none. Threads: any.
/// @param length  undistorted length
/// @param factor  what the distortion leaves of it, 1 for none
/// @param size  the size across, in the unit of the length
/// @return degrees, -180..180
OMNAR_API double GetFlexoAngleFromSize(double length, double factor, double size);

/// The size that belongs to the angle of a flexographic distortion: (1 - factor) * length / tan(angle / 180 * pi).
///
/// For sizes above 0 it undoes GetFlexoAngleFromSize(), up to rounding. An angle of 0 gives an infinity, or NaN if
/// there is no distortion. Errors: none. Threads: any.
/// @param length  undistorted length
/// @param factor  what the distortion leaves of it, 1 for none
/// @param angleDegrees  the angle
/// @return the size, in the unit of the length
OMNAR_API double GetFlexoSizeFromAngle(double length, double factor, double angleDegrees);

/// @}
/// @defgroup interpolation Interpolation and round values
/// Formulas are computed from the left, each step rounded by itself, with the same bits everywhere. Functions keep no
/// state and write nothing.
/// @{

/// Linear interpolation in a table of points.
///
/// The xs need not be sorted: the first i with x in xs[i]..xs[i + 1] (rising or falling, ends included) counts.
///
///     slope = (ys[i + 1] - ys[i]) / (xs[i + 1] - xs[i]);  ys[i] - xs[i] * slope + slope * x
///
/// If xs[i] and xs[i + 1] are less than 2.220446049250313e-16 apart, it is ys[i]. If no pair holds x, it is the ys[j]
/// of the nearest xs[j], of equally near ones the first; ys[0] for x NaN or infinite, and for a table of one point.
/// Errors: none. Threads: any.
/// @param xs  xs of the points, `count` of them, none NaN
/// @param ys  ys of the points, `count` of them; any values
/// @param count  number of points, 1 or more
/// @param x  where; any value
/// @return the value there
OMNAR_API double GetLinearInterpoliertenWert(const double* xs, const double* ys, unsigned int count, double x);

/// Linear interpolation in a table of percentages, as a factor: 100 per cent are 1.
///
/// percents[k] holds for the value 100 * k. A value of 0 or less takes the first entry, one of (count - 1) * 100 or
/// more (in wrapping 32-bit numbers) the last. In between, in floats:
///
///     p = value / ((count - 1) * 100) * (count - 1);  a = percents[floor(p)] / 100;  b = percents[ceil(p)] / 100
///     (b - a) * (p - floor(p)) + a
///
/// With the percentages (0, 50, 100) the value 150 gives 0.75. The last factor of p is taken modulo 65536: tables of
/// more entries are not interpolated sensibly. Errors: none. Threads: any.
/// @param value  where; any value
/// @param percents  the percentages, rounded to floats
/// @param count  their number, 1 or more; not read for a value of 0 or less
/// @return the factor
OMNAR_API float GetInterpolatedOverlayFactor(int value, const double* percents, int count);

/// The next round value above, as for the end of an axis: one step up from the value truncated to whole steps.
///
/// The step depends on the value, and a value that is an integer number of steps moves, too: 4 gives 5, 0.34 gives
/// 0.4, 37 gives 40, 1234 gives 2000.
///
/// | value below | 0.001  | 0.01  | 0.1  | 1   | 10 | 100 | 1000 | 10000 | 100000 | 1000000 | otherwise |
/// |-------------|--------|-------|------|-----|----|-----|------|-------|--------|---------|-----------|
/// | step        | 0.0001 | 0.001 | 0.01 | 0.1 | 1  | 10  | 100  | 1000  | 10000  | 100000  | 1000000   |
/// | r           | 10000  | 1000  | 100  | 10  | 1  | 0.1 | 0.01 | 0.001 | 0.0001 | 0.00001 | 0.000001  |
///
/// The result is (trunc(value * r) + 1) / r, with r as a double. Zero and negative values belong to the first band.
/// What does not fit an int when truncated, such as NaN, becomes -2147483648. Errors: none. Threads: any.
/// @param value  any value
/// @return the round value above
OMNAR_API double GetNiceGreaterValue(double value);

/// The next round value below, as for the beginning of an axis: one step down from the value truncated to whole steps.
///
/// The steps are those of GetNiceGreaterValue(); the result is (trunc(value * r) - 1) / r, where -2147483648 - 1 wraps
/// around. So a value between two steps goes to the step below the next lower one: 4 gives 3, but 0.34 gives 0.2 and
/// 37 gives 20. Errors: none. Threads: any.
/// @param value  any value
/// @return the round value below
OMNAR_API double GetNiceSmallerValue(double value);

/// @}
/// @defgroup curve Gradation curves
/// @{

/// Turns the control points of a curve into a table with an entry for every x: a cubic spline that does not overshoot
/// its points, except next to a turn (cubic Hermite interpolation with the limit of Fritsch and Carlson).
///
/// `points` and `table` hold pairs x, y. Entry i of the table is for x = x0 + i, from the x0 of the first control
/// point up to, but not including, endX. From the last control point on all entries have its y. With the points (0, 0)
/// and (255, 255), endX = 256 and maxValue = 255 the table is y = x.
///
/// The tangent m of a point is the mean of the slopes to its two neighbours, formed as slope / 2 + slope / 2, or the
/// one slope at either end. Then, interval by interval from the left, between points j and k = j + 1 of the slope d:
///
///     yj = yk:              mj = mk = 0
///     a^2 + b^2 > 9, with a = mj / d, b = mk / d:
///                           s = 3 / sqrt(a^2 + b^2);  mj = s * a * d;  mk = s * b * d
///
/// This keeps the curve monotone in every interval whose neighbours are level or go the same way. Next to a turn it
/// leaves its points: through (0, 0), (100, 1000) and (150, 0) it reaches 1022 at x = 90. In each interval, up to and
/// including its right end, with h = xk - xj and t = (x - xj) / h:
///
///     h * mj * (t3 - 2 * t2 + t) + yj * (2 * t3 - 3 * t2 + 1) + yk * (3 * t2 - 2 * t3) + h * mk * (t3 - t2)
///     with t2 = t * t, t3 = t2 * t
///
/// rounded to the nearest integer, halves away from zero; below 0 it becomes 0, then above maxValue it becomes
/// maxValue. The last control point's y is taken unchanged, even above maxValue. Doubles are computed from the left,
/// each step rounded by itself. The low 16 bits of x and y are stored. The points are read before anything is written,
/// so that `table` may lie on them.
///
/// Errors: std::bad_alloc if the heap has no room for the points, nothing is written then. Threads: any.
/// @param valueCount  numbers in `points`, two for each point, 4 or more; an odd one at the end is not read
/// @param points  the control points; each x greater than the one before
/// @param endX  where the table ends; at x0 or below it nothing is written
/// @param maxValue  the largest y that is computed, sensibly 0..65535
/// @param[out] table  room for endX - x0 pairs
OMNAR_API void CurveInterpolation(int valueCount, const unsigned short* points, int endX, int maxValue,
                                  unsigned short* table);

/// @}
/// @defgroup objects Objects of two-level images
/// An object is a set of pixels of one value that hang together: side by side, not corner to corner. The functions are
/// there for pixels of type `unsigned char` and `int`, no others, and work in place. Sizes and positions are signed; a
/// buffer has at least one pixel.
///
/// The area to work in is given as areaX, areaY, areaW, areaH and moved into the buffer number by number:
///
///     left = areaX, within 0..width - 1        right = left + areaW, within left..width - 1
///     top = areaY, within 0..height - 1        bottom = top + areaH, within top..height - 1
///
/// The extent is inclusive: columns left..right and rows top..bottom belong to the area, so an areaW of 10 means
/// 11 columns where the buffer has them.
///
/// Leave a margin of one pixel at the right and bottom edges of the buffer: ColorBinaryObjects() looks for objects in
/// the area without its last column and row, and MultiObjectFeatureExtract() leaves out those of the buffer.
/// @{

/// Fills the region that a seed lies in with another value (flood fill).
///
/// The region is what can be reached from the seed by steps to the right, left, down or up over pixels of the seed's
/// own value. A step to the right is refused from column right on, one to the left from column left on, and one down
/// or up from row bottom or top on, so that the region of a seed in the area stays in the area. The seed is moved into
/// the buffer like the area, but not into the area: from a seed outside, the region leads toward the area and, once
/// there, not out again.
///
/// A seed that holds fillValue already changes nothing. A seed at (-5, 1000) in a buffer of 10 x 10 is (0, 9).
///
/// The time grows with the runs and pixels of the region, for any shape. What is still to be visited is kept on
/// the ordinary heap, 16 bytes for each place where the region may branch. Errors: std::bad_alloc if the heap is
/// exhausted; what was filled by then stays filled, and the count is not written. Threads: any.
/// @param[in,out] buffer  the first pixel; rows follow one another without a gap
/// @param width  width of the buffer in pixels, at least 1
/// @param height  height of the buffer in pixels, at least 1
/// @param seedX  column of the seed; any value
/// @param seedY  row of the seed; any value
/// @param areaX  left column of the area; any value
/// @param areaY  top row of the area; any value
/// @param areaW  columns of the area less 1; any value
/// @param areaH  rows of the area less 1; any value
/// @param fillValue  the region's new value
/// @param[out] changedCount  1 more than the number of pixels that changed, wrapping around at 2^31; may be null
/// @return always 0
template <class T>
OMNAR_API int Fill(T* buffer, int width, int height, int seedX, int seedY, int areaX, int areaY, int areaW, int areaH,
                   T fillValue, int* changedCount);
/// @cond
extern template int Fill<unsigned char>(unsigned char*, int, int, int, int, int, int, int, int, unsigned char, int*);
extern template int Fill<int>(int*, int, int, int, int, int, int, int, int, int, int*);
/// @endcond

/// Gives each object of a two-level image its own label (connected-component labelling).
///
/// The area without its last column and row is scanned, row by row from the top, in a row from the left. Whenever a
/// pixel holds objectValue, its object is filled with the next label as by Fill(), in the whole area, last column and
/// row included, and the label goes on: one up if ascending, else one down, wrapping around at the end of T. So the
/// objects get consecutive labels in the order of their first scanned pixels. An area of a single column or row has
/// nothing to be scanned. Three objects of the value 1, labelled from 2 up, become 2, 3 and 4.
///
/// The scan ends early as soon as the label that comes next equals labelLimit (ascending) or 1 (descending): up from 2
/// with a limit of 255 there are 253 labels, down from 3 there are two. A limit that T cannot hold never ends it.
///
/// Choose firstLabel and labelLimit so that neither objectValue nor reservedValue is among the labels. If the next
/// label is one of the two, it is refused: the object pixel is passed over and the label goes on. From there on in
/// this row
///
/// - the seed of each fill lies one column left of the object pixel that was met, and one more with every refusal.
///   What is filled there may be the ground; it counts as an object, even if it holds the label already;
/// - the row is scanned for one pixel more, and one more with every refusal, past the right edge of the buffer into
///   the next row if need be.
///
/// With an objectValue of 0, pixels at a row's start may be taken for background: whole groups of 8 zeros that begin
/// before column w - 9 of the w scanned ones (for `int`, groups of 2 before column w - 3). An object that is met
/// nowhere else keeps its value.
///
/// The time grows with the pixels of the area and the runs in it, not with the number of objects. Refused labels keep
/// it near linear, at several times the cost per pixel: once the ground has been painted as often as the area has
/// pixels, the scan goes on in a graph of the regions and writes each pixel once at the end.
///
/// Takes one bit for each pixel of the area, 4 bytes for each row and for each run of object pixels, and one row of
/// labels from #g_pLargeAllocator; after refused labels 5 to 30 bytes per pixel for most pictures, up to 130 where
/// every pixel is a separate region. All of it is given back. Without that memory the result is the same, but takes
/// longer: with refused labels, a time that grows with objects times pixels. Errors: std::bad_alloc as in Fill().
/// Threads: any.
/// @param[in,out] buffer  the first pixel; rows follow one another without a gap
/// @param width  width of the buffer in pixels, at least 1
/// @param height  height of the buffer in pixels, at least 1
/// @param areaX  left column of the area; any value
/// @param areaY  top row of the area; any value
/// @param areaW  columns of the area less 1; any value
/// @param areaH  rows of the area less 1; any value
/// @param reservedValue  a label that must not be given, such as the background's value
/// @param objectValue  value of the objects, best not 0
/// @param firstLabel  label of the first object
/// @param ascending  labels count up; otherwise down
/// @param labelLimit  counting up, the first label that must not be reached; not read when counting down
/// @return number of fills, which without refused labels is the number of labelled objects
template <class T>
OMNAR_API int ColorBinaryObjects(T* buffer, int width, int height, int areaX, int areaY, int areaW, int areaH,
                                 T reservedValue, T objectValue, T firstLabel, bool ascending, int labelLimit);
/// @cond
extern template int ColorBinaryObjects<unsigned char>(unsigned char*, int, int, int, int, int, int, unsigned char,
                                                      unsigned char, unsigned char, bool, int);
extern template int ColorBinaryObjects<int>(int*, int, int, int, int, int, int, int, int, int, bool, int);
/// @endcond

/// @}
/// @defgroup features Measuring objects
/// A labelled picture holds one value per pixel: an object is the set of pixels that hold its label, anything else is
/// background. Its size is `width` x `height` pixels, row by row without a gap, and the position of a pixel counts
/// from the top left corner of the buffer.
///
/// The two templates exist for pixels of `unsigned char` and of `int`; no others link. All their buffers are read
/// only.
///
/// The tables of InitFeatureTables(), which orientations need, belong to the process: build them before the first
/// measurement, and neither build nor release them while one is under way. MultiObjectFeatureExtract() counts no pixel
/// of a buffer's last column and row.
/// @{

/// Walks once round the outer contour of an object and measures its length.
///
/// From each pixel the walk goes on to one of its eight neighbours: the first one that holds `objectValue`, clockwise
/// from the neighbour after the one that it came from; from the start pixel, clockwise from the right. A step to the
/// side, up or down counts 1, a diagonal one the square root of 2. The walk ends
///
/// - where no neighbour holds the value: a single pixel has a length of 0 and no points;
/// - with the step that leaves the area, or that comes back to the start pixel for the first time;
/// - with the first step that finds the length to be more than areaW * areaH: a walk that never comes back to its
///   start would not end otherwise. The product wraps around at 32 bits; where it is negative, the first step is the
///   last.
///
/// The step that ends the walk does not count, but the pixel that it leaves is still recorded. A square of 2 x 2
/// pixels has a length of 3 and four points; two pixels side by side have a length of 1, two on a diagonal one of
/// sqrt(2), and two points each. So the length of a closed contour lacks the step that closes it.
///
/// Start at the first pixel of the object in row order, the leftmost of the topmost ones. Where an object is narrow
/// there, the walk comes back to its start, and ends, before it has gone all the way round. Neither the start pixel's
/// own value nor whether it lies in the area is looked at.
///
/// A neighbour lies at a plain offset in memory: left of column 0 is the last pixel of the row above, right of the
/// last column the first one of the row below. It may belong to the object, and the step to it leaves the area, unless
/// that reaches beyond the buffer. What lies before the first pixel of the buffer or past its last one belongs to no
/// object, and is not read. Errors: none. Threads: any.
/// @param buffer  labelled picture
/// @param startPixel  where the walk begins: a pixel of the buffer
/// @param width  width of the buffer in pixels
/// @param height  height of the buffer in pixels
/// @param areaX  left column of the area that the walk must not leave
/// @param areaY  top row of that area
/// @param areaW  its width, without column areaX + areaW; where that wraps at 2^31, the first step leaves the area
/// @param areaH  its height, without row areaY + areaH; where that wraps at 2^31, the first step leaves the area
/// @param objectValue  what the pixels of the object hold
/// @param[out] points  the pixels that the walk leaves, in its order, the start pixel first; room for
///     areaW * areaH + 2 of them, and for 1 at least. Null if they are not wanted
/// @param[out] pointCount  how many points were written, 0 without `points`. Null if it is not wanted
/// @return the length of the way in pixels
template <class T>
OMNAR_API double FollowContour(const T* buffer, const T* startPixel, int width, int height, int areaX, int areaY,
                               int areaW, int areaH, T objectValue, CPoint* points, int* pointCount);

/// Builds the tables that the orientation of objects is measured by.
///
/// A full turn is divided into n = trunc(angleSteps + 0.5) directions. The tables are kept until
/// ReleaseFeatureTables(), or until they are built anew, which a mark of 0 allows.
///
/// Errors: -1 and nothing changed while there are tables whose mark is not 0. -1 and no tables if n is below -1 or if
/// there is no memory for the tables, which come from the ordinary heap; a mark other than 0 is kept then, so that
/// calls fail until ReleaseFeatureTables(). Threads: only while no other thread builds, releases or uses the tables.
/// @param initMark  any value but 0 protects the tables from being built anew
/// @param angleSteps  directions in a full turn, such as 360. With less than 7.5 no orientation may be requested, with
///     less than 9.5 each one is -pi
/// @return 0 if the tables were built, otherwise -1
OMNAR_API int InitFeatureTables(int initMark, double angleSteps);

/// Releases the tables of InitFeatureTables() and forgets their mark. Without tables it does nothing.
///
/// Threads: only while no other thread builds, releases or uses the tables.
/// @return 0
OMNAR_API int ReleaseFeatureTables();

/// Measures all objects of a labelled picture in one call.
///
/// Object k, of 0 to objectCount - 1, is the set of pixels in the scanned area that hold firstLabel + k, and
/// features[k] receives what is found out about it. A label that T cannot hold belongs to an object without pixels.
///
/// The area is cut to the buffer **without its last column and its last row**, so leave a margin there: areaX is
/// brought into 0..width - 1 and areaY into 0..height - 1, and then areaW into 0..width - 1 - areaX and areaH into
/// 0..height - 1 - areaY. The size does not shrink with a corner that is moved.
///
/// `needed` says which fields are written. A feature without those that it builds on (see EFeaturesNeeded) counts as
/// not needed.
///
/// | Needed             | Field                | Value                                                               |
/// |--------------------|----------------------|---------------------------------------------------------------------|
/// | FeatureArea        | `area`               | number of pixels                                                    |
/// | FeatureArea        | `compactness`        | perimeter / (2 * sqrt(area / pi) * pi), of what `perimeter` holds   |
/// | FeatureArea        | `centerX`, `centerY` | 0, unless the centroid is needed                                    |
/// | FeatureCentroid    | `centerX`, `centerY` | mean of column + 0.5 and of row + 0.5; 0 without pixels             |
/// | FeaturePerimeter   | `perimeter`          | FollowContour() from the object's first pixel, in the cut area      |
/// | FeatureHistogram   | `histogram`          | number of pixels by value of `valueBuffer`                          |
/// | (always)           | `orientation`        | 0, unless the orientation is needed                                 |
/// | FeatureOrientation | `orientation`        | see below                                                           |
///
/// No other field is touched. Without FeaturePerimeter, and for an object without pixels, `perimeter` keeps what the
/// caller put there, and `compactness` is computed from it; without pixels that divides by 0 and is not finite. An
/// object of several parts has the perimeter of the part that comes first.
///
/// The orientation is the direction from the centre in which an object reaches furthest: 0 to the right, pi / 2 down,
/// -pi / 2 up, -pi to the left. InitFeatureTables() must have been called; n is its number of directions. Each pixel
/// adds dx * dx + dy * dy to the direction in which it lies, and the arc of 2 * trunc(n / 10) directions that has the
/// largest sum wins; of several, the first one from -pi on. The centre of the arc counts as its direction: -pi plus a
/// multiple of 2 * pi / angleSteps. Without pixels, or where all sums are 0, it is -pi. Some of this is odd:
///
/// - dx = centerX - (column + 0.5) and dy = centerY - (row + 0.5) with columns and rows that count from the corner of
///   the cut area, while the centre counts from that of the buffer. Orientations mean something in scans from (0, 0).
/// - A negative dx or dy is made larger by 1.
/// - The slope is rounded to 1 / trunc(n / 8), and its angle to an integer direction.
/// - Pixels with abs(dx) = abs(dy) count as an eighth of a turn further clockwise, except to the upper left.
/// - Where n is a multiple of 8, pixels to the left whose angle is 0 while dy is not above 0 do not count, and neither
///   do those on the diagonal to the lower left.
///
/// Cost: one pass over the area; with the orientation a second one, and then one over each object's own pixels.
/// Memory: from g_pLargeAllocator, given back before the call ends, by return or exception; a few dozen bytes per
/// object and, with the orientation, 12 per horizontal run of an object's pixels and about 20 per direction.
///
/// Cancelling: the host's `cancelRequested` is called once before each pixel of the area while FeatureArea is needed,
/// and for the orientation once more before each pixel of an object. If it says yes, *cancelled is 1 and the result
/// -1. Histograms and perimeters then hold what was found so far; all other fields but the orientation are written
/// after the pass over the area, or not at all; then orientations are written object by object.
///
/// Errors: -1 if `features` is null, or cancelled; a COmnarException with the code -2147024882 if the allocator has no
/// memory, and whatever the host's services throw; records may be written in part then. Threads: any, on records of
/// their own, while nobody writes the buffers or, if the orientation is needed, builds or releases the tables.
/// @param buffer  labelled picture
/// @param width  width of both buffers in pixels
/// @param height  height of both buffers in pixels
/// @param areaX  left column of the area that is scanned, before it is cut
/// @param areaY  top row of that area, before it is cut
/// @param areaW  width of that area in pixels, before it is cut
/// @param areaH  height of that area in pixels, before it is cut
/// @param valueBuffer  what the histogram counts, pixel by pixel as in `buffer`: 0..255 beneath every object. Read for
///     the histogram only, otherwise it may be null
/// @param firstLabel  label of object 0
/// @param objectCount  number of objects and of records; below 1 there are none
/// @param[in,out] features  a record per object
/// @param needed  the features; bits without a name are ignored
/// @param[out] cancelled  1 if the host cancelled the call, otherwise 0; not null
/// @return 0, or -1 if `features` is null or the call was cancelled
template <class T>
OMNAR_API int MultiObjectFeatureExtract(const T* buffer, int width, int height, int areaX, int areaY, int areaW,
                                        int areaH, const T* valueBuffer, T firstLabel, int objectCount,
                                        SFeature* features, EFeaturesNeeded needed, unsigned char* cancelled);

/// @cond
extern template double FollowContour(const unsigned char*, const unsigned char*, int, int, int, int, int, int,
                                     unsigned char, CPoint*, int*);
extern template double FollowContour(const int*, const int*, int, int, int, int, int, int, int, CPoint*, int*);
extern template int MultiObjectFeatureExtract(const unsigned char*, int, int, int, int, int, int, const unsigned char*,
                                              unsigned char, int, SFeature*, EFeaturesNeeded, unsigned char*);
extern template int MultiObjectFeatureExtract(const int*, int, int, int, int, int, int, const int*, int, int, SFeature*,
                                              EFeaturesNeeded, unsigned char*);
/// @endcond

/// @}
/// @defgroup outlines Outlines of objects
/// @{

/// Finds the outline of a shape and appends it to a polygon.
///
/// The shape is every pixel that differs from `background`. Two closed outlines are drawn round it: one through the
/// first and the last shape pixel of every row, down the left side and up the right one, one through the first and the
/// last of every column, along the top and back along the bottom. What lies inside both of them, each by the even-odd
/// rule, is filled in a bitmap of width x height pixels, and the polygon goes round what was filled. A bay that is
/// open to one side stays outside; holes, and what is shut in on all four sides, are filled like the shape.
///
/// **Turned by a quarter.** A shape pixel is drawn as the point (row, width - 1 - column), and a pixel of the bitmap
/// is the square between four points: vertex (x, y) of the polygon lies between rows x and x + 1 of the shape and
/// between its columns width - 2 - y and width - 1 - y. A rectangle of a x b shape pixels fills (a - 1) x (b - 1)
/// pixels, a line of one pixel none. The bitmap is not turned along, so that of a shape in a buffer that is not
/// square, what lies beyond is cut off. **Pass a square.**
///
/// To the pixel, also where edges are slanted: pixel (x, y) of the bitmap is filled if both outlines hold the point
/// (x, y + 1), y growing downwards. A point on an edge is held where the inside is to the right of it or above it.
///
/// The polygon starts at the first filled pixel of the first row that has one, and walks round the region that this
/// pixel belongs to, from pixel to pixel in eight directions: it tries front left, front and front right, and turns
/// right by a quarter where all three are empty. Each pixel that it leaves is a vertex, and the first one again is the
/// last. A pixel alone is one vertex. The nine shape pixels in the middle of 5 x 5 give (1, 1), (2, 1), (2, 2), (1,
/// 2), (1, 1). Other regions are left out.
///
/// Opposite edges of the bitmap are joined: next to the last column lies the first. In a square this does not show. In
/// other buffers a walk may go over the edge and never come back to its start; it then ends, closed by the first
/// vertex like any other, before it would repeat a position with a direction.
///
/// Without a shape pixel, and where there is no bitmap to fill (for want of memory, or with a width or height from
/// 2^31 on), the vertices are (0, 0), (0, height), (width, height), (width, 0). A shape that fills no pixel appends
/// nothing.
///
/// Errors: a failed status of the polygon or of a pair of coordinates is thrown as COmnarException with that status as
/// its code, and so is a lack of memory for anything but the bitmap, with the code -2147024882. The polygon keeps the
/// vertices appended until then; everything else is released. Threads: any, on different polygons, as far as the
/// host's services go along.
/// @param shape  the buffer, `width` x `height` bytes; may be null if either is 0
/// @param width  width of the buffer in pixels
/// @param height  height of the buffer in pixels
/// @param background  the value of the pixels that do not belong to the shape
/// @param[in,out] polygon  receives the vertices; both its resolutions are read and ignored
OMNAR_API void GetContourPolygonFromBuffer2(const unsigned char* shape, unsigned int width, unsigned int height,
                                            unsigned char background, ICoordPolygon* polygon);

/// Draws the boundary of a mask into a true-colour buffer, with one pixel of the mask as a border on all sides.
///
/// Only zero against non-zero counts. A non-zero mask pixel is drawn if the pixel above, below, to its left or to its
/// right is zero, but for one exception: in the last column that is drawn, what is to the right does not count. All
/// other pixels stay. A line of one pixel is drawn completely; a shape that fills the region and its border is
/// not drawn at all.
///
/// The region of w x h mask pixels includes the border, which is looked at but not drawn: mask pixel (maskX + 1 + i,
/// maskY + 1 + j) is drawn at (targetX + i, targetY + j), for (w - 2) x (h - 2) pixels. Nothing is drawn where less
/// than three columns or rows are left.
///
/// Cut by: mask, then target, which holds the region without its border. Overlap: row by row, each from the left, and
/// a pixel is drawn before the next one is looked at; but the right end of a run of non-zero pixels is drawn when the
/// zero pixel after it is found. Threads: any.
/// @param mask  mask
/// @param maskX  left column of the region in the mask, border included, at most maskWidth
/// @param maskY  top row of the region in the mask, border included, at most maskHeight
/// @param[in,out] target  true-colour buffer
/// @param targetX  column where the first pixel inside the border goes, at most targetWidth
/// @param targetY  row where the first pixel inside the border goes, at most targetHeight
/// @param w  width of the region in pixels, border included, before it is cut
/// @param h  height of the region in pixels, border included, before it is cut
/// @param colour  the pixel that is written, alpha byte included
OMNAR_API void DrawContourOfL08toTRC(const L08* mask, unsigned int maskWidth, unsigned int maskHeight,
                                     unsigned int maskX, unsigned int maskY, TRC* target, unsigned int targetWidth,
                                     unsigned int targetHeight, unsigned int targetX, unsigned int targetY,
                                     unsigned int w, unsigned int h, unsigned int colour);

/// @}

#endif
