/// @file OmnarRaster.h
/// The one public header of OmnarRaster: raster and repeat geometry for the design of repeating patterns.
///
/// Everything is a free function over buffers that the caller owns. A raster function reads and writes the pixels of
/// one rectangle and nothing else: it allocates nothing, takes no lock, keeps no state and reports no error.
///
/// @section formats Pixel formats
/// | Type  | Element         | Meaning                                                                              |
/// |-------|-----------------|--------------------------------------------------------------------------------------|
/// | `TRC` | 32-bit unsigned | true colour; bytes in memory blue, green, red, alpha (0 clear, 255 opaque): 0xAARRGGBB |
/// | `L08` | 8-bit unsigned  | one channel, 0..255: grey, ink (0 none, 255 full), mask or alpha plane                |
/// | `L12` | 16-bit unsigned | one channel of 12 significant bits: 0..4095                                           |
///
/// @section buffers Buffers and regions
/// A buffer is a pointer to its first pixel (top left), then `width` and `height` in pixels, then the region's top-left
/// corner `x`, `y` in it. Rows follow one another without a gap: pixel (x, y) is element y * width + x. Offsets are
/// computed in 64 bits, so a buffer may be larger than 4 GiB. A buffer that shares the geometry of another is passed as
/// a pointer alone. `w` and `h`, given once, are the size of the region in pixels.
///
/// Corners must lie in their buffers: x <= width and y <= height. The region is cut at the right and bottom edges of
/// the buffers that each function names under "Cut by", in that order, measured from the respective corners; what is
/// left may be empty, and then nothing is written. A buffer that is not named there must hold the whole cut region.
///
/// @section weighting The weighted step
/// Every blend moves a channel from its old value toward a target by a weight of 0..255:
///
///     new = old + (target - old) * weight / 255         (the quotient cut toward zero)
///
/// Weight 0 leaves the channel alone, weight 255 reaches the target, and no step overshoots. Where a pixel has its own
/// alpha, weight = alpha * opacity / 255, cut as well. `opacity` is 0..255; 255 lets the pixel's alpha decide alone.
///
/// @section sharing Overlap and threads
/// Pixels are processed row by row from the top, in a row from the left, one after the other; where buffers share
/// memory, that order is what you see. Any number of threads may call at once as long as no thread writes what another
/// one reads or writes.
///
/// @section same The same bits everywhere
/// The library picks the widest vector instructions that the processor has while it is loaded. Every choice, and every
/// platform, gives the same bits.
///
/// @section checked The checked build
/// The ordinary build does not test its arguments. Its twin, built with `OMNAR_CHECKED=ON`, has the same functions and
/// tests every precondition on entry: swap it in to find out why a picture is wrong (see SetContractHandler()).
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

/// The order in which a motion copy visits its pixels, by the corner that it starts from. Any other value means "no copy".
enum _EMotionCopyMode : int {
    eMotionFromTopLeft = 0,     ///< rows downwards, each from left to right
    eMotionFromBottomLeft = 1,  ///< rows upwards, each from left to right
    eMotionFromTopRight = 2,    ///< rows downwards, each from right to left
    eMotionFromBottomRight = 3  ///< rows upwards, each from right to left
};

/// How the bands of worker threads lie: 0 straight, 1 turned by a quarter turn.
enum _ERotateMode : int {};

/// Whose angles are meant: 0 the user's own, 1 the system's.
enum _EAngleMode : int {};

/// The features that an object analysis is asked for; a bit whose prerequisite is missing has no effect.
enum EFeaturesNeeded : int {
    FeatureArea = 1,         ///< pixel count; everything else needs it
    FeatureCentroid = 2,     ///< centre of gravity; needs the area
    FeatureOrientation = 4,  ///< dominant direction; needs area and centroid
    FeaturePerimeter = 16,   ///< contour length and compactness; needs the area
    FeatureHistogram = 32    ///< counts by value of the second buffer; needs the area
};

/// @param a,b  two sets of features
/// @return the features of either set
constexpr EFeaturesNeeded operator|(EFeaturesNeeded a, EFeaturesNeeded b) {
    return static_cast<EFeaturesNeeded>(static_cast<int>(a) | static_cast<int>(b));
}

#ifndef OMNAR_HOST_HAS_CPOINT
/// A point in whole pixels. Define `OMNAR_HOST_HAS_CPOINT` to use a class of your own with this layout.
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

/// The one exception class that leaves the library. It is thrown by value; catch it by reference.
class OMNAR_API COmnarException : public std::exception {
public:
    /// @param code     what went wrong; a negative code is the failed status of a host service
    /// @param file     source file of the throw; copied, up to 119 characters of it
    /// @param line     line in that file
    /// @param further  a further value that depends on the code
    COmnarException(long code, const char* file, long line, long further) noexcept;
    COmnarException(const COmnarException&) noexcept;             ///< copies all four values
    COmnarException& operator=(const COmnarException&) noexcept;  ///< copies all four values @return itself
    ~COmnarException() override;                                  ///< releases nothing

    long code() const noexcept;                  ///< @return what went wrong
    const char* file() const noexcept;           ///< @return source file of the throw
    long line() const noexcept;                  ///< @return line in that file
    long further() const noexcept;               ///< @return a further value that depends on the code
    const char* what() const noexcept override;  ///< @return "OmnarRaster: error CODE at FILE:LINE"

private:
    long code_;
    long line_;
    long further_;
    char file_[120];
    char what_[200];
};

/// Gives out and takes back large blocks of memory.
class LargeAllocatorItf {
public:
    /// @param bytes  how large the block must be at least; 0 is no mistake
    /// @return the block, or null if there is none
    virtual void* Alloc(std::size_t bytes) = 0;
    /// @param block  a block that Alloc() gave, to be taken back; null is ignored
    virtual void Free(void* block) = 0;

protected:
    ~LargeAllocatorItf() = default;
};

/// The allocator of large blocks; never null. The default takes them from the ordinary heap. Set it before other
/// threads call the library, and free a block by the allocator that gave it.
extern OMNAR_API LargeAllocatorItf* g_pLargeAllocator;

/// A pair of coordinates.
class ICoordPair {
public:
    /// @param x,y  the coordinates to be stored
    /// @return below 0 if that failed
    virtual int SetCoords(double x, double y) = 0;
    /// @param x,y  where the coordinates go
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
    /// Not used by the library.
    /// @param res  where the horizontal resolution goes
    /// @return below 0 if that failed
    virtual int GetResX(double* res) = 0;
    /// Not used by the library.
    /// @param res  where the vertical resolution goes
    /// @return below 0 if that failed
    virtual int GetResY(double* res) = 0;
    /// @param vertex  the next vertex; its coordinates are copied
    /// @return below 0 if that failed
    virtual int Append(ICoordPair* vertex) = 0;

protected:
    ~ICoordPolygon() = default;
};

/// Tells how much memory a job may use.
class IMemMgr {
public:
    /// @param megabytes  where the available memory goes, in units of 2^20 bytes
    /// @return below 0 if that failed
    virtual int GetAvailableMegabytes(unsigned int* megabytes) = 0;
    /// Gives the object back to its maker.
    virtual void Release() = 0;

protected:
    ~IMemMgr() = default;
};

/// Receives the errors that nobody else caught.
class ITextMgr {
public:
    /// Shows or logs one error.
    /// @param kind  what went wrong: the code of a COmnarException; otherwise 1 for a lack of memory, 3 for anything else
    /// @param source,line  where in the source
    virtual void ReportError(long kind, const char* source, long line) = 0;

protected:
    ~ITextMgr() = default;
};

/// The host's services. A null member stands for the library's default.
struct SHostServices {
    unsigned int size = sizeof(SHostServices);  ///< size of this structure as the host knows it
    IMemMgr* (*getMemMgr)() = nullptr;          ///< memory manager; default: asks the operating system
    ITextMgr* (*getTextMgr)() = nullptr;        ///< text manager, may return null; default: none
    /// A new pair; `file` and `line` say who asks, `res` its resolution. Default: a plain one.
    ICoordPair* (*createCoordPair)(const char* file, long line, double res) = nullptr;
    bool (*cancelRequested)() = nullptr;  ///< "give up now?"; default: the Escape key on Windows, elsewhere never
};

/// Puts the host's services in place of the library's defaults.
///
/// Errors: none. Threads: call it before other threads use the library.
/// @param services  copied; its null members and the members beyond its `size` stand for the defaults; null restores all
OMNAR_API void SetHostServices(const SHostServices* services);

/// A broken precondition, as the checked build found it.
struct SContractViolation {
    const char* function;   ///< the exported function that was called
    const char* parameter;  ///< the parameter that breaks the rule
    const char* value;      ///< the value of that parameter, as text
    const char* rule;       ///< the rule, as text: a condition over the function's parameters
};

/// Receives broken preconditions. The strings live until it returns. It may throw; if it returns, the call goes on as
/// it would in the ordinary build.
using ContractHandler = void (*)(const SContractViolation& violation);

/// Replaces the handler that the checked build calls for a broken precondition. The default prints function, parameter,
/// value and rule to standard error and aborts. The ordinary build keeps the handler but never calls it.
///
/// Errors: none. Threads: may be called at any time; calls under way may still use the former handler.
/// @param handler  the new handler; null restores the default
/// @return the handler so far
OMNAR_API ContractHandler SetContractHandler(ContractHandler handler);

/// Tells whether the processor has MMX instructions, asked anew at every call.
///
/// Errors: none. Threads: any.
/// @return non-zero if it has (so on every x86-64 processor), otherwise 0
OMNAR_API int IsMMX();

/// @}
/// @defgroup truecolour Blending into true colour
/// Each moves blue, green and red of the destination by the weighted step and leaves its alpha byte alone; a
/// function that differs says so. What differs otherwise is where target and weight come from, and which buffers cut.
/// @{

/// Lays one true-colour buffer over another by the source's own alpha.
///
/// target = source pixel, weight = source alpha * opacity / 255.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendTRCToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                  unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                                  unsigned int h, bool reserved);

/// Mixes one true-colour buffer into another by a constant weight.
///
/// target = source pixel, weight = opacity; the source's alpha is ignored.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendTRCNoAlphaToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                         unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                         unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// The same as AlphaBlendTRCNoAlphaToTRC(), under a second name.
///
/// The destination's alpha byte is left alone here, too.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendTRCToTRCNoAlpha(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                         unsigned int srcX, unsigned int srcY, TRC* dst, unsigned int dstWidth,
                                         unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                         unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Lays one true-colour buffer over another by an alpha plane with a geometry of its own.
///
/// target = source pixel, weight = alpha * opacity / 255; the source's alpha is ignored. The alpha plane does not cut:
/// it must hold the cut region.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                 unsigned int srcX, unsigned int srcY, const L08* alpha,
                                                 unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                                                 unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                                 unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                 unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Lays one true-colour buffer over another by an alpha plane of the source's geometry.
///
/// target = source pixel, weight = alpha * opacity / 255; the source's alpha is ignored.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendTRCWithAlphaBufferToTRC(const TRC* src, const L08* alpha, unsigned int srcWidth,
                                                 unsigned int srcHeight, unsigned int srcX, unsigned int srcY, TRC* dst,
                                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                                 unsigned int dstY, unsigned char opacity, unsigned int w,
                                                 unsigned int h, bool reserved);

/// Lays a flat colour through an alpha plane, whose values may be remapped on the way.
///
/// target = color, weight = alpha * opacity / 255, where lut[alpha] stands for alpha if there is a `lut`.
/// With `lut`, the first w alpha values of each row are translated before the row is blended, whatever the cut: the
/// alpha plane must hold them.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
/// @param lut  256 values that replace the alpha values before use, or null
OMNAR_API void AlphaBlendL08ToTRC(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                  unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned int w, unsigned int h, bool reserved,
                                  const unsigned char* lut);

/// AlphaBlendL08ToTRC() that also clears the destination's alpha byte wherever there is coverage.
///
/// A pixel whose (remapped) alpha value is not 0 gets alpha byte 0 after it is blended, even if its weight comes out as
/// 0, as with opacity 0. With `lut`, the first w alpha values of each row are translated before the row is blended,
/// whatever the cut: the alpha plane must hold them.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param lut  256 values that replace the alpha values before use, or null
OMNAR_API void AlphaBlendL08ToTRCAndEraseA(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                           unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                           unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                           unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                           const unsigned char* lut);

/// Lays a flat colour where an alpha plane is clear.
///
/// target = color, weight = (255 - alpha) * opacity / 255.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL08ToTRCInverted(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                          unsigned int alphaX, unsigned int alphaY, unsigned int color, TRC* dst,
                                          unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                          unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                          bool reserved);

/// Lays a grey image over true colour by an alpha plane of the image's geometry.
///
/// target = the grey value for blue, green and red alike, weight = alpha * opacity / 255.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL08WithAlphaBufferToTRC(const L08* src, const L08* alpha, unsigned int srcWidth,
                                                 unsigned int srcHeight, unsigned int srcX, unsigned int srcY, TRC* dst,
                                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                                 unsigned int dstY, unsigned char opacity, unsigned int w,
                                                 unsigned int h, bool reserved);

/// Lays a flat colour through a 12-bit coverage.
///
/// target = color, weight = (src / 255) * opacity / 255. The sample is divided by 255, not scaled from 12 bits: the
/// full 4095 gives 16 * opacity / 255. Samples from 65280 on give weights of 256 and 257, which overshoot; the low 8
/// bits of the sum are stored then.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL12ToTRC(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, unsigned int color, TRC* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned int w, unsigned int h, bool reserved);

/// Lays a flat colour through an alpha plane; the region is cut by the destination alone.
///
/// target = color, weight = alpha * opacity / 255.
/// The alpha plane does not cut, and its height is not looked at: it must hold the cut region.
/// Cut by: dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendColorToTRC(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                    unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Lays a flat colour wherever an alpha plane is not clear.
///
/// target = color, weight = opacity where alpha is not 0, else 0.
/// The alpha plane does not cut, and its height is not looked at: it must hold the cut region.
/// Cut by: dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendColorToTRCFlat(unsigned int color, const L08* alpha, unsigned int alphaWidth,
                                        unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                        unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                        unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                        bool reserved);

/// The same as AlphaBlendColorToTRC(), under a second name: the alpha is not inverted.
///
/// target = color, weight = alpha * opacity / 255. For the complement use AlphaBlendL08ToTRCInverted().
/// The alpha plane does not cut, and its height is not looked at: it must hold the cut region.
/// Cut by: dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
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
/// Cut by: dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param color,bgColor  colour and background colour in bits 0..23; bits 24..31 are not used
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendColorOnBGToTRC(unsigned int color, unsigned int bgColor, const L08* alpha,
                                        unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                                        unsigned int alphaY, TRC* dst, unsigned int dstWidth, unsigned int dstHeight,
                                        unsigned int dstX, unsigned int dstY, unsigned char opacity, unsigned int w,
                                        unsigned int h, bool reserved);

/// Mixes a flat colour into a rectangle by the weight that the colour word carries.
///
/// target = color, weight = bits 24..31 of color.
/// Cut by: dst. Threads: any, on destinations that do not share pixels.
/// @param color  colour in bits 0..23, its weight 0..255 in bits 24..31
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendColorWithConstAlphaToTRC(unsigned int color, TRC* dst, unsigned int dstWidth,
                                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                  unsigned int w, unsigned int h, bool reserved);

/// Lays a flat colour through the blue channel of a true-colour buffer, in one of three ways.
///
/// With b the blue byte of the source pixel:
/// - `setColor`: pixels with b != 0 become the whole 32-bit color, alpha byte included; opacity and onWhite are ignored.
/// - `onWhite` with opacity 255, not `setColor`: where b != 0 each channel becomes 255 + (color - 255) * b / 255, the
///   colour on white paper, whatever the destination was; where b is 0 the pixel stays.
/// - otherwise: target = color, weight = b * opacity / 255.
///
/// Note the place of `opacity`, right behind the destination pointer.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param color  colour in bits 0..23; with `setColor` bits 24..31 go into the alpha byte
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param setColor  overwrite instead of blending
/// @param onWhite  at opacity 255, lay the colour on white
OMNAR_API void AlphaBlendColorWithAlphaBlueOfTrcToTrc(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                      unsigned int srcX, unsigned int srcY, unsigned int color,
                                                      TRC* dst, unsigned char opacity, unsigned int dstWidth,
                                                      unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                      unsigned int w, unsigned int h, bool setColor, bool onWhite);

/// Moves the destination's alpha byte toward a value through an alpha plane.
///
/// Only byte 3 is written: target = alphaValue, weight = alpha * opacity / 255. Blue, green and red stay.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alphaValue  the value that the alpha byte moves toward, 0..255
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendAlphaToTRC(unsigned char alphaValue, const L08* alpha, unsigned int alphaWidth,
                                    unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, TRC* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// @}
/// @defgroup grey Grey-level blending
/// Each moves the samples of a single-channel destination by the weighted step toward those of a source of the same
/// format.
/// @{

/// Blends grey levels into grey levels, optionally through an alpha plane of the source's geometry.
///
/// target = source sample, weight = alpha * opacity / 255, or opacity without an alpha plane. Where `includeZeros` is
/// 0, pixels whose source is 0 are skipped. With `twoLevel` the result becomes 255 unless it is 0; skipped pixels stay
/// as they were.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL08ToL08(const L08* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                  unsigned int srcX, unsigned int srcY, L08* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h,
                                  bool reserved);

/// Blends grey levels into grey levels, optionally through an alpha plane with a geometry of its own.
///
/// target = source sample, weight = alpha * opacity / 255, or opacity without an alpha plane. Where `includeZeros` is
/// 0, pixels whose source is 0 are skipped. With `twoLevel` the result becomes 255 unless it is 0; skipped pixels stay
/// as they were.
/// Only where zeros are included is the alpha plane read at its own corner and pitch. Where they are skipped it is read
/// at the source's corner by the source's pitch, and its own geometry is ignored. It does not cut: it must hold the cut
/// region as it is read.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels; null: the weight is opacity
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL08ToL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned char includeZeros, bool twoLevel, unsigned int w,
                                  unsigned int h, bool reserved);

/// Blends grey levels into grey levels wherever an alpha plane is not clear.
///
/// target = source sample, weight = opacity where alpha is not 0, else 0; opacity everywhere without an alpha plane.
/// Where `includeZeros` is 0, pixels whose source is 0 are skipped. With `twoLevel` the result becomes 255 unless it is
/// 0; skipped pixels stay as they were.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL08ToL08FlatAlpha(const L08* src, const L08* alpha, unsigned int srcWidth,
                                           unsigned int srcHeight, unsigned int srcX, unsigned int srcY, L08* dst,
                                           unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                           unsigned int dstY, unsigned char opacity, unsigned char includeZeros,
                                           bool twoLevel, unsigned int w, unsigned int h, bool reserved);

/// Blends all grey levels, zeros included, through an alpha plane that must be there.
///
/// target = source sample, weight = alpha * opacity / 255. With `twoLevel` the result becomes 255 unless it is 0.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL08WithAlphaBufferToL08(const L08* src, const L08* alpha, unsigned int srcWidth,
                                                 unsigned int srcHeight, unsigned int srcX, unsigned int srcY, L08* dst,
                                                 unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                                 unsigned int dstY, unsigned char opacity, bool twoLevel,
                                                 unsigned int w, unsigned int h, bool reserved);

/// Blends 12-bit samples into 12-bit samples, optionally through an alpha plane of the source's geometry.
///
/// weight = alpha * opacity / 255, or opacity without an alpha plane. The target is the source sample divided by 255,
/// so that 4095 aims at 16; only where zeros are skipped and there is an alpha plane is it the sample itself. Where
/// `includeZeros` is 0, pixels whose source is 0 are skipped.
/// With `twoLevel`, where zeros are included, the destination is raised one pixel late: after a pixel was blended, the
/// next one in memory becomes 4095 unless it is 0, and is blended only then. So the first pixel of a row moves from its
/// old value, and the pixel right of the row's last one is raised although it lies outside the region (threads that
/// share a buffer must count it in); nothing behind the buffer's last pixel is touched. Where zeros are skipped,
/// `twoLevel` has no effect.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL12ToL12(const L12* src, const L08* alpha, unsigned int srcWidth, unsigned int srcHeight,
                                  unsigned int srcX, unsigned int srcY, L12* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned char includeZeros, bool twoLevel, unsigned int w, unsigned int h,
                                  bool reserved);

/// Blends 12-bit samples into 12-bit samples, optionally through an alpha plane with a geometry of its own.
///
/// weight = alpha * opacity / 255, or opacity without an alpha plane. The target is the source sample divided by 255,
/// so that 4095 aims at 16; only where zeros are skipped and there is an alpha plane is it the sample itself. Where
/// `includeZeros` is 0, pixels whose source is 0 are skipped.
/// With `twoLevel`, where zeros are included, the destination is raised one pixel late: after a pixel was blended, the
/// next one in memory becomes 4095 unless it is 0, and is blended only then. So the first pixel of a row moves from its
/// old value, and the pixel right of the row's last one is raised although it lies outside the region (threads that
/// share a buffer must count it in); nothing behind the buffer's last pixel is touched. Where zeros are skipped,
/// `twoLevel` has no effect.
/// Only where zeros are included is the alpha plane read at its own corner and pitch. Where they are skipped it is read
/// at the source's corner by the source's pitch, and its own geometry is ignored. It does not cut: it must hold the cut
/// region as it is read.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels; null: the weight is opacity
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL12ToL12(const L12* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, unsigned char includeZeros, bool twoLevel, unsigned int w,
                                  unsigned int h, bool reserved);

/// Blends 12-bit samples into 12-bit samples wherever an alpha plane is not clear.
///
/// weight = opacity where alpha is not 0, else 0; opacity everywhere without an alpha plane. The target is the source
/// sample divided by 255, so that 4095 aims at 16; only where zeros are skipped and there is an alpha plane is it the
/// sample itself. Where `includeZeros` is 0, pixels whose source is 0 are skipped.
/// With `twoLevel`, where zeros are included, the destination is raised one pixel late: after a pixel was blended, the
/// next one in memory becomes 4095 unless it is 0, and is blended only then. So the first pixel of a row moves from its
/// old value, and the pixel right of the row's last one is raised although it lies outside the region (threads that
/// share a buffer must count it in); nothing behind the buffer's last pixel is touched. Where zeros are skipped,
/// `twoLevel` has no effect.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param alpha  alpha plane with the source's size and corner, or null: the weight is opacity then
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param includeZeros  0: samples of value 0 are transparent; otherwise they are blended like others
/// @param twoLevel  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendL12ToL12FlatAlpha(const L12* src, const L08* alpha, unsigned int srcWidth,
                                           unsigned int srcHeight, unsigned int srcX, unsigned int srcY, L12* dst,
                                           unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                           unsigned int dstY, unsigned char opacity, unsigned char includeZeros,
                                           bool twoLevel, unsigned int w, unsigned int h, bool reserved);

/// @}
/// @defgroup density Painting a density
/// Each paints one constant level, the density, into a single-channel destination through the coverage of an alpha
/// plane.
/// @{

/// Paints a density through an alpha plane.
///
/// target = density, weight = alpha * opacity / 255.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..255
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendDensityToL08(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                      unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                      unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                      unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                      bool reserved);

/// Paints a density where an alpha plane is clear.
///
/// target = density, weight = (255 - alpha) * opacity / 255.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..255
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendDensityToL08Inverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                              unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                              L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                              unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                              unsigned int w, unsigned int h, bool reserved);

/// Sets a density wherever an alpha plane is not clear.
///
/// Pixels whose alpha is not 0 become the density; others stay.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..255
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param w,h  size of the region in pixels before it is cut
OMNAR_API void AlphaBlendDensityToL08Flat(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                          unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                          unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                          unsigned int dstY, unsigned int w, unsigned int h);

/// Sets a density wherever an alpha plane is clear.
///
/// Pixels whose alpha is 0 become the density; others stay.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..255
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param w,h  size of the region in pixels before it is cut
OMNAR_API void AlphaBlendDensityToL08FlatInverted(unsigned char density, const L08* alpha, unsigned int alphaWidth,
                                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                                  L08* dst, unsigned int dstWidth, unsigned int dstHeight,
                                                  unsigned int dstX, unsigned int dstY, unsigned int w, unsigned int h);

/// Paints a 12-bit density where an alpha plane is clear.
///
/// target = density, weight = (255 - alpha) * opacity / 255: the 12-bit pair is the other way round than the 8-bit
/// pair. For the plain coverage use AlphaBlendDensityToL12Inverted().
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..4095
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendDensityToL12(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                      unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                      unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                      unsigned int dstY, unsigned char opacity, unsigned int w, unsigned int h,
                                      bool reserved);

/// Paints a 12-bit density through an alpha plane.
///
/// target = density, weight = alpha * opacity / 255, the plain coverage despite the name.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..4095
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void AlphaBlendDensityToL12Inverted(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                              unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY,
                                              L12* dst, unsigned int dstWidth, unsigned int dstHeight,
                                              unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                              unsigned int w, unsigned int h, bool reserved);

/// Sets a 12-bit density wherever an alpha plane is not clear.
///
/// Pixels whose alpha is not 0 become the density; others stay.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param density  level to paint, 0..4095
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param w,h  size of the region in pixels before it is cut
OMNAR_API void AlphaBlendDensityToL12Flat(unsigned short density, const L08* alpha, unsigned int alphaWidth,
                                          unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L12* dst,
                                          unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX,
                                          unsigned int dstY, unsigned int w, unsigned int h);

/// Paints a density through the blue channel of a true-colour buffer, in one of three ways.
///
/// With b the blue byte of the source pixel:
/// - `setDensity`: pixels with b != 0 become the density; opacity and onBlack are ignored.
/// - `onBlack` with opacity 255, not `setDensity`: where b != 0 the pixel becomes b * density / 255, whatever it was; where b
///   is 0 it stays.
/// - otherwise: target = density, weight = b * opacity / 255.
///
/// Note the place of `opacity`, right behind the destination pointer.
/// Cut by: src, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source, at most (srcWidth, srcHeight)
/// @param density  level to paint, 0..255
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
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

/// Multiplies an image by its alpha.
///
/// sample = sample * (alpha * opacity / 255) / 255. With `flat`, sample = sample * opacity / 255 where alpha is not 0,
/// and 0 where it is 0.
/// Cut by: width, height. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param data  the image
/// @param alpha  its alpha plane
/// @param width,height  size of image and alpha plane in pixels
/// @param x,y  corner of the region in both, at most (width, height)
/// @param opacity  weight of the whole, 0..255
/// @param flat  alpha counts as 0 or 255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void ApplyAlphaToL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                               unsigned int y, unsigned char opacity, bool flat, unsigned int w, unsigned int h,
                               bool reserved);

/// Multiplies a 12-bit image by its alpha.
///
/// sample = sample * (alpha * opacity / 255) / 255.
/// Cut by: width, height. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param data  the image
/// @param alpha  its alpha plane
/// @param width,height  size of image and alpha plane in pixels
/// @param x,y  corner of the region in both, at most (width, height)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param reserved  accepted and not read
OMNAR_API void ApplyAlphaToL12(L12* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                               unsigned int y, unsigned char opacity, unsigned int w, unsigned int h, bool reserved);

/// Keeps only what is opaque of an image.
///
/// Samples whose alpha is 255 stay; all others become 0, however high their alpha is. Without an alpha plane nothing
/// changes.
/// Cut by: nothing. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha  alpha values, or null
/// @param data  samples
/// @param count  how many samples and alpha values there are
OMNAR_API void PostApplyAlpha(const L08* alpha, L08* data, unsigned int count);

/// Keeps only what is opaque of a 12-bit image.
///
/// Samples whose alpha is 255 stay; all others become 0, however high their alpha is. Without an alpha plane nothing
/// changes.
/// Cut by: nothing. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha  alpha values, or null
/// @param data  samples
/// @param count  how many samples and alpha values there are
OMNAR_API void PostApplyAlpha(const L08* alpha, L12* data, unsigned int count);

/// Divides an image that was multiplied by its alpha by that alpha again.
///
/// Where alpha is 1..254, in double precision: v = (255.0 / alpha) * sample; if v exceeds the sample by less than 1, v
/// grows by 1; then v is cut to 255 and to a whole number. So the result is biased upwards, an empty sample becomes 1,
/// and a quotient that is a whole number may come out one lower. Where alpha is 0 or 255 the sample stays.
/// With `fillTransparent` nothing is divided: samples whose alpha is 0 become 255, the others stay.
/// Cut by: width, height. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param data  the image
/// @param alpha  its alpha plane
/// @param width,height  size of image and alpha plane in pixels
/// @param x,y  corner of the region in both, at most (width, height)
/// @param fillTransparent  fill what is clear instead of dividing
/// @param w,h  size of the region in pixels before it is cut
OMNAR_API void InvertAlphaL08(L08* data, const L08* alpha, unsigned int width, unsigned int height, unsigned int x,
                              unsigned int y, bool fillTransparent, unsigned int w, unsigned int h);

/// @}
/// @defgroup bitmaps Blending into bitmaps of 24 and 32 bits
/// Each lays a colour over a whole bitmap through a coverage image of the same layout and any size: the blue byte of
/// its pixels is the coverage, and it is scaled to the destination by taking the nearest pixel. The pixel for column x
/// is the one in column x * scaleX, cut to a whole number; behind the last column it is the last, and likewise for
/// rows.
/// @{

/// Lays a colour over a 24-bit bitmap through a scaled coverage image.
///
/// target = color, weight = coverage. Pixels are three bytes, blue, green, red. Rows are padded to a multiple of four
/// bytes; padding is neither read nor written, and that of the last row need not exist.
/// Cut by: nothing. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  coverage image and its size in pixels, at least 1 x 1
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param dst,dstWidth,dstHeight  bitmap and its size in pixels
/// @param scaleX,scaleY  columns and rows of the coverage image for one of the bitmap; finite, not negative
OMNAR_API void AlphaBlendBGR24AlphaToBGR24(const unsigned char* src, unsigned int srcWidth, unsigned int srcHeight,
                                           unsigned int color, unsigned char* dst, unsigned int dstWidth,
                                           unsigned int dstHeight, double scaleX, double scaleY);

/// Lays a colour over a 32-bit bitmap through a scaled coverage image.
///
/// target = color, weight = coverage. Pixels are four bytes, blue, green, red and one that is neither read nor written.
/// Cut by: nothing. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param src,srcWidth,srcHeight  coverage image and its size in pixels, at least 1 x 1
/// @param color  colour in bits 0..23; bits 24..31 are not used
/// @param dst,dstWidth,dstHeight  bitmap and its size in pixels
/// @param scaleX,scaleY  columns and rows of the coverage image for one of the bitmap; finite, not negative
OMNAR_API void AlphaBlendBGR32AlphaToBGR32(const unsigned char* src, unsigned int srcWidth, unsigned int srcHeight,
                                           unsigned int color, unsigned char* dst, unsigned int dstWidth,
                                           unsigned int dstHeight, double scaleX, double scaleY);

/// @}
/// @defgroup shades Lighter and darker by tone band
/// Each changes a destination in place, by an alpha plane that says where and how much. `opacity` says how hard, and
/// `toneBands` which tones are touched: light ones, middle ones and dark ones, each with a flag of its own. Single
/// channels hold ink, and more of it is darker. True colour is darker at a lower luminance,
///
///     luminance = (59 * green + 30 * red + 11 * blue) / 100        (cut)
///
/// A pixel changes by
///
///     change = alpha * opacity * weight / 65025                    (cut toward zero)
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
/// Without any it is 0. At full ink the dark band weighs one more than full, and the middle band therefore -1: there it
/// works the other way round.
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
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void DarkerL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                  unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                                  unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                  unsigned int w, unsigned int h, const bool* toneBands);

/// Lightens 8-bit ink.
///
/// new = max(old - change, 0), of which the low 8 bits are kept: under the middle band without the dark one, with alpha
/// and opacity 255, full ink comes to 256 and so becomes 0.
///
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void LighterL08WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                   unsigned int alphaX, unsigned int alphaY, L08* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h, const bool* toneBands);

/// Darkens 12-bit ink.
///
/// new = min(old + more, 4095), where samples without ink take on ink like all others, and samples above 4095 become
/// 4095. How much more it is:
/// - with all three flags: alpha as it is, 0..255, whatever the opacity;
/// - otherwise, with opacity 255: (alpha * weight * 4095) >> 16;
/// - otherwise: (alpha * opacity * weight * 4095) >> 24, which is 255 at most.
///
/// The products are unsigned and wrap around at 32 bits before they are shifted. The last one does so as soon as
/// alpha * opacity * weight passes 1048832, so that a stronger alpha may darken less; the other one only for samples of
/// 4095 and more, which become 4095 anyway.
///
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
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
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param toneBands  not read, may be null
OMNAR_API void LighterL12WithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                   unsigned int alphaX, unsigned int alphaY, L12* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h, const bool* toneBands);

/// Darkens true colour.
///
/// The luminance is lowered to max(luminance - change, 0), and blue, green and red are scaled with it:
///
///     channel = channel * new luminance / luminance                (cut)
///
/// The alpha byte stays. A pixel of luminance 0 becomes black, even where alpha is 0: besides black itself the darkest
/// colours have that luminance, such as blue up to 9.
///
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
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
/// The alpha byte stays. A pixel of luminance 0 becomes the grey of its new luminance, even where alpha is 0 and the grey
/// is black: besides black itself the darkest colours have that luminance, such as blue up to 9.
///
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param toneBands  three flags: touch light, middle, dark tones
OMNAR_API void LighterTRCWithAlpha(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                   unsigned int alphaX, unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                   unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                   unsigned int w, unsigned int h, const bool* toneBands);

/// @}
/// @defgroup transfer Transferring and moving tone
/// A brush, given as an alpha plane, moves an amount of ink or darkness from a source to a destination. The source is laid
/// out like the destination: both are addressed by dstWidth, dstHeight, dstX, dstY. The coverage of a pixel is
/// k = alpha * opacity / 255; s and d are the samples of source and destination. Both are read once, then d is written,
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
/// With `keepSource` the source is not written at all. Samples whose level is protected keep their value, except under a
/// hard brush with `clearEmpty`.
///
/// The alpha position runs on: it starts at (alphaX, alphaY), moves by one for every pixel, and at the end of a row goes on
/// by alphaWidth from where it stopped instead of returning to alphaX. So row i starts i * (columns of the cut region +
/// alphaWidth) behind the start; only a brush that is one row high is drawn undistorted. Past the plane's last value there
/// is no alpha.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on buffers that do not share pixels.
/// @param alpha  alpha plane: where the brush is
/// @param clearEmpty  not 0: what is empty in the source is emptied in the destination
/// @param alphaWidth,alphaHeight  size of the alpha plane in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param src  source buffer, laid out like the destination; loses what is moved
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in both buffers, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param keepSource  copy instead of move
/// @param additive  add the source's amount instead of moving toward its level; read with the soft brush only
/// @param reserved  accepted and not read
/// @param hard  all or nothing
/// @param w,h  size of the region in pixels before it is cut
/// @param protection  256 flags: a level whose flag is not 0 is never reduced in the source; null protects none
OMNAR_API void TransferToneL08ToL08(const L08* alpha, int clearEmpty, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, L08* src, L08* dst, unsigned int dstWidth,
                                    unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                    bool keepSource, bool additive, bool reserved, bool hard, unsigned int w,
                                    unsigned int h, const unsigned char* protection);

/// Transfers tone from a single channel into a true-colour image: moved as grey, or laid on as a colour.
///
/// Without `useColor` blue, green and red move toward 255 - s by k, and the source loses by the alpha alone, whatever the
/// opacity: s becomes the low 8 bits of s + (2^32 - s * alpha) / 255 where s * alpha is not 0. That leaves a residue: 255
/// under alpha 255 becomes 1.
/// With `useColor` they move toward `color` by s * k / 255, and the source stays. The alpha byte of the destination stays.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on buffers that do not share pixels.
/// @param alpha  alpha plane: where the brush is
/// @param reserved  accepted and not read
/// @param alphaWidth,alphaHeight  size of the alpha plane in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param src  source buffer, laid out like the destination; written without useColor
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in both buffers, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param useColor  lay on a colour and keep the source
/// @param color  the colour; its bits 24..31 are not used
/// @param w,h  size of the region in pixels before it is cut
OMNAR_API void TransferToneL08ToTRC(const L08* alpha, int reserved, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, L08* src, TRC* dst, unsigned int dstWidth,
                                    unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                    bool useColor, unsigned int color, unsigned int w, unsigned int h);

/// Transfers the darkness of a true-colour image into a single channel. The source stays.
///
/// darkness = 255 - (59 * green + 30 * red + 11 * blue) / 100. The soft brush moves d toward the darkness by k. The hard
/// brush makes d 255 where k is not 0 and the darkness is above 127, and leaves it alone elsewhere.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on destinations that do not share pixels.
/// @param alpha  alpha plane: where the brush is
/// @param reserved  accepted and not read
/// @param alphaWidth,alphaHeight  size of the alpha plane in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param src  source buffer, laid out like the destination
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in both buffers, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param hard  all or nothing
/// @param w,h  size of the region in pixels before it is cut
OMNAR_API void TransferToneTRCToL08(const L08* alpha, int reserved, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, const TRC* src, L08* dst,
                                    unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                    unsigned char opacity, bool hard, unsigned int w, unsigned int h);

/// Moves tone between single channels while some levels of the source are protected.
///
/// Soft: d becomes the low 8 bits of d + P / 255 with P = (s - d) * k, and, if the level of s is not protected, s becomes
/// the low 8 bits of s + Q / 255 with Q = -(alpha * s): the source loses by the alpha alone, whatever the opacity. P and Q
/// are unsigned 32-bit numbers, so that a negative one wraps, and steps downwards stop one above their aim: 200 drawn in
/// full to 0 becomes 1, and s = 255 under alpha 255 becomes 1.
///
/// Hard: the source is read at twice the pace. Pixel i of a row looks at sample s = 2i from the region's corner on: d becomes
/// 255 where k and s * k / 255 are not 0. Then the sample after it, 2i + 1, becomes 0 unless its level is protected,
/// whatever the alpha. So a source row must have room for twice as many samples as the cut region has columns; what goes
/// beyond its end is the next row, and beyond the buffer's end samples count as 0 and none is written.
///
/// The alpha position runs on as in TransferToneL08ToL08(); under the soft brush it does not move at protected samples.
/// Cut by: alpha, then dst. Overlap: in order, pixel by pixel. Threads: any, on buffers that do not share pixels.
/// @param alpha,alphaWidth,alphaHeight  alpha plane, where the brush is, and its size in pixels
/// @param alphaX,alphaY  corner of the region in the alpha plane, at most (alphaWidth, alphaHeight)
/// @param src  source buffer, laid out like the destination; loses what is moved
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in both buffers, at most (dstWidth, dstHeight)
/// @param opacity  weight of the whole, 0..255
/// @param hard  all or nothing
/// @param w,h  size of the region in pixels before it is cut
/// @param protection  256 flags: a level whose flag is not 0 is never reduced in the source
OMNAR_API void MoveToneL08ToL08Prot(const L08* alpha, unsigned int alphaWidth, unsigned int alphaHeight,
                                    unsigned int alphaX, unsigned int alphaY, L08* src, L08* dst, unsigned int dstWidth,
                                    unsigned int dstHeight, unsigned int dstX, unsigned int dstY, unsigned char opacity,
                                    bool hard, unsigned int w, unsigned int h, const unsigned char* protection);

/// @}
/// @defgroup motion Motion copy
/// Moves a region onto another place, also within one buffer. The caller chooses the order in which pixels are visited, as
/// a block move does: upwards if the region moves down, leftwards if it moves right. In the other order an overlapping
/// source is overwritten before it is read, and the picture smears.
/// @{

/// Blends a region of grey levels over another place.
///
/// Every sample moves from its old value toward the source's by alpha * opacity / 255. With `hard` the result becomes 255
/// unless it is 0, also where the weight is 0.
/// A mode that is no order, or a corner on or outside the edge of source or destination, copies nothing.
/// Cut by: src, then dst. Overlap: in the order of `mode`, pixel by pixel. Threads: any, on destinations that do not share
/// pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels; it must hold the cut region
/// @param alphaX,alphaY  corner of the region in the alpha plane
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination
/// @param opacity  weight of the whole, 0..255
/// @param hard  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param mode  the order in which pixels are visited
/// @param reserved  accepted and not read
OMNAR_API void MotionCopyL08ToL08(const L08* src, unsigned int srcWidth, unsigned int srcHeight, unsigned int srcX,
                                  unsigned int srcY, const L08* alpha, unsigned int alphaWidth,
                                  unsigned int alphaHeight, unsigned int alphaX, unsigned int alphaY, L08* dst,
                                  unsigned int dstWidth, unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                  unsigned char opacity, bool hard, unsigned int w, unsigned int h,
                                  _EMotionCopyMode mode, bool reserved);

/// Blends a region of 12-bit ink over another place.
///
/// Every sample moves from its old value toward the source's by alpha * opacity / 255. With `hard` the result becomes 4095
/// unless it is 0, also where the weight is 0.
/// A mode that is no order, or a corner on or outside the edge of source or destination, copies nothing.
/// Cut by: src, then dst. Overlap: in the order of `mode`, pixel by pixel. Threads: any, on destinations that do not share
/// pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels; it must hold the cut region
/// @param alphaX,alphaY  corner of the region in the alpha plane
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination
/// @param opacity  weight of the whole, 0..255
/// @param hard  make the result two-level
/// @param w,h  size of the region in pixels before it is cut
/// @param mode  the order in which pixels are visited
/// @param reserved  accepted and not read
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
/// Cut by: src, then dst. Overlap: in the order of `mode`, pixel by pixel. Threads: any, on destinations that do not share
/// pixels.
/// @param src,srcWidth,srcHeight  source buffer and its size in pixels
/// @param srcX,srcY  corner of the region in the source
/// @param alpha,alphaWidth,alphaHeight  alpha plane and its size in pixels; it must hold the cut region
/// @param alphaX,alphaY  corner of the region in the alpha plane
/// @param dst,dstWidth,dstHeight  destination buffer and its size in pixels
/// @param dstX,dstY  corner of the region in the destination
/// @param opacity  weight of the whole, 0..255
/// @param w,h  size of the region in pixels before it is cut
/// @param mode  the order in which pixels are visited
/// @param reserved  accepted and not read
OMNAR_API void MotionCopyTRCWithAlphaBufferToTRC(const TRC* src, unsigned int srcWidth, unsigned int srcHeight,
                                                 unsigned int srcX, unsigned int srcY, const L08* alpha,
                                                 unsigned int alphaWidth, unsigned int alphaHeight, unsigned int alphaX,
                                                 unsigned int alphaY, TRC* dst, unsigned int dstWidth,
                                                 unsigned int dstHeight, unsigned int dstX, unsigned int dstY,
                                                 unsigned char opacity, unsigned int w, unsigned int h,
                                                 _EMotionCopyMode mode, bool reserved);

/// @}
/// @defgroup placing Placing into the repeat
/// A design is one tile, the repeat, laid over an endless plane. x grows to the right, y downwards, and the tile at the
/// origin is 0 <= x < width, 0 <= y < height. The drop says how neighbouring tiles are offset:
///
/// - half-drop (#eDropVertical): each column of tiles lies lower than the column to its left by the drop, and the point
///   (x + width, y + drop) shows what (x, y) shows;
/// - brick (#eDropHorizontal): each row of tiles lies further right than the row above it by the drop, and the point
///   (x + drop, y + height) shows what (x, y) shows;
/// - any other value is no layout; each function says what it does then.
///
/// "Cut" means toward zero: a double becomes an int by losing its fraction, and whatever does not fit an int, NaN and
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
/// columns to the right and gives (5, 13): 3 - 2 * 5 = -7, plus the height 20. (-10, 0) gives (0, 5), and (0, -1) gives
/// (0, 19).
///
/// Brick layout is not the mirror image of it: it asks for the sign of x where the mirror image would ask for that of
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
/// @param x,y  position on the plane in pixels; any value
/// @param width,height  size of the tile in pixels; 0 only where no step divides by it, as for the position (0, 0)
/// @param drop  offset of neighbouring tiles in pixels; a negative one as the same 32 bits
/// @param kind  the layout
/// @param outX,outY  the placed position
OMNAR_API void SetInRapp(int x, int y, unsigned int width, unsigned int height, unsigned int drop, _EDropKind kind,
                         int* outX, int* outY);

/// Folds a position back into the tile for a drop that is not a whole number of pixels.
///
/// The steps are those of SetInRapp(). The drop of n tiles is n * (drop * scale), cut to whole pixels after the
/// multiplication, so that no error adds up over many tiles. The scale is that of the axis along which the drop runs:
/// scaleY in half-drop layout, scaleX in brick layout. n is never negative; from 2^31 on it is an unsigned number. With
/// a tile of 10 x 20, a drop of 2.5 and scales of 1, (25, 3) gives (5, 18): 3 - 2 * 2.5 = -2, plus the height 20. A
/// position on the left edge of a tile left of the origin is moved by one tile too many and back, each drop cut for
/// itself: (-10, 0) gives (0, 3), which is 5 - 2.
///
/// Any other kind passes the position through. Both outputs are always written. Errors: none. Threads: any.
/// @param x,y  position on the plane in pixels; any value
/// @param width,height  size of the tile in pixels; 0 only where no step divides by it, as for the position (0, 0)
/// @param drop  offset of neighbouring tiles in a unit of your own
/// @param scaleX,scaleY  pixels per unit of the drop; half-drop layout uses scaleY alone, brick layout scaleX alone
/// @param kind  the layout
/// @param outX,outY  the placed position
OMNAR_API void SetInRappDb(int x, int y, unsigned int width, unsigned int height, double drop, double scaleX,
                           double scaleY, _EDropKind kind, int* outX, int* outY);

/// Folds a position back into the tile in millimetres or any other continuous unit.
///
/// The steps are those of SetInRapp() on doubles, brick layout included. Where that counts -a / size + 1 tiles, this
/// counts 1 - cut(a / size), and where that counts a / size, this counts cut(a / size). For whole numbers it is the
/// same, but not for a coordinate of the other sign, as brick layout meets it: such a count is 0 or negative here, and
/// huge there. With a tile of 10 x 20 and a drop of 5 in brick layout, (5, -45) gives (15, -5).
///
/// A NaN passes no test of its sign; a size of 0 gives the quotients that doubles give, and is no error. Positions so
/// far out that the quotient does not fit an int are not folded back into the tile.
///
/// Any other kind passes the position through. Both outputs are always written. Errors: none. Threads: any.
/// @param x,y  position on the plane; any value
/// @param width,height  size of the tile; any value, sensibly above 0
/// @param drop  offset of neighbouring tiles
/// @param kind  the layout
/// @param outX,outY  the placed position
OMNAR_API void SetInRappMM(double x, double y, double width, double height, double drop, _EDropKind kind, double* outX,
                           double* outY);

/// Tells which tile holds a position, along one axis.
///
/// From 0 on it is the whole pixels of the position divided by those of the size: with a size of 10, 25.9 is in tile 2.
/// Below 0 the tolerance decides:
///
/// - 1 and more, or NaN, for whole positions: the fraction is cut off and pixels are counted. With a size of 10, -0.5
///   to -10 lie in tile -1, and -11 in tile -2. With a size of 1, -0.5 lies in tile 0, since it is cut to pixel 0.
/// - below 1, for fractional positions: each tile reaches further left by the tolerance, its new edge excluded. With a
///   size of 10 and a tolerance of 0.5, -10.4 lies in tile -1 and -10.6 in tile -2. Tile 0 begins at 0 all the same.
///   With a tolerance of 0 the edge -10 itself lies in tile -2.
///
/// Errors: none. Threads: any.
/// @param position  position in pixels; any value
/// @param repeatSize  size of the tile in pixels; its fraction is cut off, and at least 1 should be left. 0 must not
///     be; a negative size is divided by as it is (-1 only where the distance from 0 is not -2147483648, cut)
/// @param tolerance  how far a negative position may lie beyond a tile's left edge, in pixels
/// @return index of the tile: 0 at the origin, -1 left of it or above it
OMNAR_API int GetRapport(double position, double repeatSize, double tolerance);

/// Splits a position along one axis into the tile that holds it and the pixel inside that tile.
///
/// The tile is that of GetRapport(). The pixel is position - tile * repeatSize, cut, with the size as it is: a fraction
/// of the size counts here, although tiles are counted without it. A difference of exactly repeatSize gives 0, and so
/// does a position that the tolerance leaves in the tile to its right. With a size of 10 and a tolerance of 2, 25.5 is
/// pixel 5 of tile 2, -0.5 is pixel 9 of tile -1, and -10 is pixel 0 of tile -1. With a tolerance of 0.5, -10.3 is
/// pixel 0 of tile -1. With a tolerance of 0, -10 is pixel 0 of tile -2, not -1: use a tolerance of 1 or more for whole
/// positions.
///
/// The index is always written. Errors: none. Threads: any.
/// @param position  position in pixels; any value
/// @param repeatSize  size of the tile in pixels, as in GetRapport()
/// @param tolerance  how far a negative position may lie beyond a tile's left edge, in pixels
/// @param repeatIndex  index of the tile
/// @return the pixel inside the tile
OMNAR_API int SetInRappAndCalcRapp(double position, double repeatSize, double tolerance, int* repeatIndex);

/// Tells after how many columns of tiles a half-drop lines up again.
///
/// That is the smallest n from 2 to 20 for which n drops come within n pixels of one repeat height or, for a drop of
/// more than repeatHeight / 2 (cut), of n - 1 heights. Only this first wrap is looked at: a drop of two fifths of the
/// height lines up after 5 columns and two heights, but gives -1. (100, 50) gives 2; (99, 33) and (300, 200) give 3.
///
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
/// in pixels of the buffer. Both functions know the half-drop layout only (a straight repeat is one with a drop of 0);
/// how a position is placed is told at SetInRapp(). What is said of pixels below holds as long as no corner of the
/// rectangle, and no drop times a number of tiles, leaves 32 bits.
/// @{

/// Lists the pieces of the repeat buffer that a rectangle covers.
///
/// A rectangle that fits into the tile after its corner was placed is one piece. One that crosses an edge is up to
/// five: of what runs off the right edge first what lies in the tile, then what sticks out above it and comes back at
/// the bottom, then what sticks out below and comes back at the top; then what runs off the bottom edge in the corner's
/// own columns; and last what lies in the corner's own tile. In a tile of 100 x 100 with a drop of 50, the rectangle
/// (90, 10) of 20 x 20 gives two pieces: (0, 60) of 10 x 20, and (90, 10) of 10 x 20.
///
/// For rectangles no larger than the repeat either way, and drops of 0 to repH, the pieces cover exactly the pixels
/// that the rectangle shows, each of them once. Other rectangles are one piece, the whole buffer, if
/// wholeRepeatIfLarger is true; otherwise they give what the same steps come to, as other drops do: pieces may then
/// overlap, reach outside the buffer or have a negative size. Pieces without width or height are listed like others.
///
/// In brick layout nothing is written, not even the count; a kind that is no layout writes a count of 0 and nothing
/// else. Entries from the count on are not written. Errors: none. Threads: any.
/// @param x,y  corner of the rectangle on the plane in pixels; any value
/// @param w,h  size of the rectangle in pixels; sums from 2^31 on wrap around
/// @param repW,repH  size of the tile in pixels, 1..2^31 - 1; 0 only where placing the corner never divides by it
/// @param kind  the layout
/// @param drop  offset of neighbouring columns in pixels
/// @param count  number of pieces
/// @param pieceX,pieceW  left columns and widths of the pieces
/// @param pieceY,pieceH  top rows and heights of the pieces
/// @param wholeRepeatIfLarger  a rectangle as wide or as high as the repeat, or more, that does not fit covers the
///     whole
OMNAR_API void CalcPosAndSizeInRepBuffer(int x, int y, unsigned int w, unsigned int h, unsigned int repW,
                                         unsigned int repH, _EDropKind kind, int drop, int* count, int* pieceX,
                                         int* pieceW, int* pieceY, int* pieceH, bool wholeRepeatIfLarger);

/// Lists the pieces of the repeat buffer that a rectangle leaves uncovered.
///
/// A rectangle that fits into the tile after its corner was placed leaves up to four pieces: strips of full height left
/// and right of it, and what is above and below it between them. One that crosses an edge, smaller than the repeat both
/// ways, leaves three to five. Any other covers the whole repeat: the count is 0, although entry 0 is set to the whole
/// buffer (0, 0) of repW x repH. In a tile of 100 x 100 with a drop of 50, the rectangle (90, 10) of 20 x 20 leaves
/// (10, 0) of 80 x 100; (90, 0) of 10 x 10 and (90, 30) of 10 x 70; (0, 0) of 10 x 60 and (0, 80) of 10 x 20.
///
/// Together with the pieces that CalcPosAndSizeInRepBuffer() lists for wholeRepeatIfLarger and drops of 0 to repH, they
/// fill the buffer, each pixel once. One exception: a rectangle without width that crosses the bottom edge, lower than
/// the repeat, leaves out h rows as if it covered them. Pieces without width or height are listed like others.
///
/// In brick layout nothing is written, not even the count; a kind that is no layout writes a count of 0 and nothing
/// else. Entries from the count on are not written but for entry 0 as told. Errors: none. Threads: any.
/// @param x,y  corner of the rectangle on the plane in pixels; any value
/// @param w,h  size of the rectangle in pixels; sums from 2^31 on wrap around
/// @param repW,repH  size of the tile in pixels, 1..2^31 - 1; 0 only where placing the corner never divides by it
/// @param kind  the layout
/// @param drop  offset of neighbouring columns in pixels
/// @param count  number of pieces
/// @param pieceX,pieceW  left columns and widths of the pieces
/// @param pieceY,pieceH  top rows and heights of the pieces
OMNAR_API void CalcPosAndSizeInRepBufferInv(int x, int y, unsigned int w, unsigned int h, unsigned int repW,
                                            unsigned int repH, _EDropKind kind, int drop, int* count, int* pieceX,
                                            int* pieceW, int* pieceY, int* pieceH);

/// @}
/// @defgroup coordinates File, view and screen coordinates
/// A design is held in file pixels (FP), shown zoomed in view pixels (VP) and drawn in screen pixels (SP), which are
/// view pixels less the scroll origin, possibly upside down. Positions in millimetres (MM) become file pixels by a
/// resolution.
///
/// Each conversion goes tile by tile, so that zoomed tiles abut: a tile of repW file pixels is cut(repW * zoomX) view
/// pixels wide, at least one, wherever it lies, and only the way inside the tile is scaled by the zoom as it is. The
/// same holds for heights. With a width of 100 and a zoom of 1.5, tile -1 begins at view column -150, and its last
/// pixel, file column -1, lies at -150 + 99 * 1.5 = -1.5, which is cut to -1. With zooms below 1 the last pixels of a
/// tile may reach the first view pixel of the next one: a tile of 3 with a zoom of 0.5 is 1 wide, and its last pixel
/// lies at 1.
///
/// The tile of a whole position is the floor of position / size, and the way inside is never negative. Sizes of 2^31
/// and more count as negative there. Zooms of 0 and less, infinities and NaN pass through the formulas; what does not
/// fit an int becomes -2147483648.
/// @{

/// Converts a file position to a view position.
///
/// Not folded, the result is cut(tile * view size of a tile + way inside * zoom) on either axis, whatever the drop. It
/// is cut toward zero, so left of the origin a fraction moves it right: two file columns may share the view column 0.
///
/// Folded, the drop of the tiles that were crossed is taken off: in half-drop layout y loses drop * zoomY for each tile
/// along x and is folded into the view size of a tile, in brick layout x loses drop * zoomX for each tile along y; the
/// other axis keeps its way inside the tile. With a tile of 100 x 100, a drop of 50 and zooms of 1, (150, 10) gives
/// (50, 60) in half-drop layout.
///
/// A kind that is no layout gives (0, 0). Both outputs are always written. Errors: none. Threads: any.
/// @param fx,fy  file position; any value
/// @param vx,vy  the view position
/// @param repW,repH  size of the tile in file pixels, not 0 unless kind is no layout
/// @param drop  offset of neighbouring tiles in file pixels
/// @param kind  the layout
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param foldIntoRepeat  fold the result into the repeat
OMNAR_API void FPToVP(int fx, int fy, int* vx, int* vy, unsigned int repW, unsigned int repH, unsigned int drop,
                      _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat);

/// Converts a view position to a file position: the way back from FPToVP().
///
/// Tiles are counted in view pixels, and the way inside a tile is divided by the zoom and cut. Not folded, the result
/// is tile * size of a tile + way inside, whatever the drop. Folded, the drop of the tiles that were crossed is taken
/// off: in half-drop layout y loses the drop for each tile along x and is folded into 0..repH - 1, in brick layout x
/// loses it for each tile along y and is folded into 0..repW - 1; the other axis keeps its way inside. With a tile of
/// 100 x 100, a drop of 50 and zooms of 1, (150, 60) gives (50, 10) in half-drop layout.
///
/// Not folded, and for zooms that are whole numbers, it leads back to the file position that FPToVP() came from. For
/// other zooms both ways cut: one above 1 may lead to a neighbouring pixel, one below 1 further off.
///
/// A kind that is no layout gives (0, 0). Both outputs are always written. Errors: none. Threads: any.
/// @param vx,vy  view position; any value
/// @param fx,fy  the file position
/// @param repW,repH  size of the tile in file pixels; when folding, not 0 for the axis along which the drop runs
/// @param drop  offset of neighbouring tiles in file pixels
/// @param kind  the layout
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param foldIntoRepeat  fold the result into the repeat
OMNAR_API void VPToFP(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, unsigned int drop,
                      _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat);

/// Converts a view position to a file position for a drop that is not a whole number of pixels.
///
/// As VPToFP(), but the drop of n tiles is n * drop * scale, rounded to the nearest whole number of file pixels (halves
/// away from zero). The scale is that of the axis along which the drop runs: scaleY in half-drop layout, scaleX in
/// brick layout. With a tile of 100 x 100, a drop of 2.5 and scales and zooms of 1, (150, 60) gives (50, 57).
///
/// A kind that is no layout gives (0, 0). Both outputs are always written. Errors: none. Threads: any.
/// @param vx,vy  view position; any value
/// @param fx,fy  the file position
/// @param repW,repH  size of the tile in file pixels; when folding, not 0 for the axis along which the drop runs
/// @param drop  offset of neighbouring tiles in a unit of your own
/// @param scaleX,scaleY  file pixels per unit of the drop; half-drop layout uses scaleY alone, brick layout scaleX
///     alone
/// @param kind  the layout
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param foldIntoRepeat  fold the result into the repeat
OMNAR_API void VPToFPDb(int vx, int vy, int* fx, int* fy, unsigned int repW, unsigned int repH, double drop,
                        double scaleX, double scaleY, _EDropKind kind, double zoomX, double zoomY, bool foldIntoRepeat);

/// Converts a file position to a screen position that is snapped to pixels.
///
/// On either axis it is cut(tile * view size of a tile + way inside * zoom - origin). With flipY the row is counted
/// from the bottom, screenHeight - row - 1. Snapping to the pixel's centre is done last, and only on an axis whose zoom
/// is above 1: it moves x right by half a zoomed pixel, cut(zoomX / 2 + 0.5), and y up by half a pixel less than that,
/// cut(zoomY / 2 - 0.5), flipped or not. With a tile of 100 x 100 and zooms of 4, (101, 2) lies at (404, 8), snapped at
/// (406, 7). Both layouts give the same: a point is placed by its own tile, and the drop is not read.
///
/// A kind that is no layout writes nothing. Errors: none. Threads: any.
/// @param fx,fy  file position; any value
/// @param sx,sy  the screen position
/// @param originX,originY  scroll origin, the view position of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW,repH  size of the tile in file pixels, not 0
/// @param drop  accepted and not read
/// @param kind  the layout
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
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
/// @param fxs,fys  file positions, count of each
/// @param count  number of positions
/// @param sxs,sys  addresses of the pointers to two arrays of the caller with room for count entries; nothing is
///     allocated
/// @param originX,originY  scroll origin, the view position of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW,repH  size of the tile in file pixels, not 0
/// @param drop  accepted and not read
/// @param kind  the layout
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param snapToPixelCentre  any value but 0 snaps
/// @param flipY  y grows upwards on the screen
OMNAR_API void FPToSnappedSP(const int* fxs, const int* fys, int count, int* const* sxs, int* const* sys, int originX,
                             int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH,
                             unsigned int drop, _EDropKind kind, double zoomX, double zoomY,
                             unsigned char snapToPixelCentre, bool flipY);

/// Converts a position in millimetres to a screen position that is snapped to pixels.
///
/// The position in file pixels, with its fraction, is p = mm * res + 1 - 1, which flushes tiny values to zero. Its tile
/// is the floor of p / size, and the way inside is p - tile * size; from there on it goes as in FPToSnappedSP(). With a
/// tile of 100 x 100, 10 file pixels a millimetre and zooms of 2, (10.25, -0.5) is the file position (102.5, -5) and
/// lies at (205, -10), snapped at (206, -10).
///
/// From 2^53 file pixels on, where a double holds no odd numbers, the tile is that of a walk by steps of one size, each
/// of them rounded. A position so far out that a step is lost gives the tile floor(p / size).
///
/// A kind that is no layout writes nothing. Errors: none. Threads: any.
/// @param mmX,mmY  position in millimetres, finite in file pixels; NaN gives -2147483648 before snapping and flipping
/// @param sx,sy  the screen position
/// @param originX,originY  scroll origin, the view position of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW,repH  size of the tile in file pixels; 0 works like NaN for the position on its axis
/// @param drop  accepted and not read
/// @param kind  the layout
/// @param resX,resY  file pixels per millimetre
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
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
/// @param mmXs,mmYs  positions in millimetres, count of each, finite in file pixels
/// @param count  number of positions
/// @param sxs,sys  addresses of the pointers to two arrays of the caller with room for count entries; nothing is
///     allocated
/// @param originX,originY  scroll origin, the view position of the screen's corner
/// @param screenHeight  height of the screen in pixels; read with flipY only
/// @param repW,repH  size of the tile in file pixels; 0 works like NaN for the positions on its axis
/// @param drop  accepted and not read
/// @param kind  the layout
/// @param resX,resY  file pixels per millimetre
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param snapToPixelCentre  any value but 0 snaps
/// @param flipY  y grows upwards on the screen
OMNAR_API void MMToSnappedSP(const double* mmXs, const double* mmYs, int count, int* const* sxs, int* const* sys,
                             int originX, int originY, unsigned int screenHeight, unsigned int repW, unsigned int repH,
                             unsigned int drop, _EDropKind kind, double resX, double resY, double zoomX, double zoomY,
                             unsigned char snapToPixelCentre, bool flipY);

/// Extends a file size to the aspect of a view.
///
/// Shown, the file is a = fileW / zoomX by b = fileH / zoomY; only the ratio of the zooms matters. The side that limits
/// how large it can be shown in the view is kept, and the other one extended until the file fills the view:
///
///     if viewH / b > viewW / a:  fileW by cut(fileW * zoomY / zoomX * viewH / viewW)
///     otherwise:                 cut(fileH * zoomX / zoomY * viewW / viewH) by fileH
///
/// A file of 400 x 300 becomes 400 x 400 for a view of 800 x 800 and equal zooms.
///
/// What does not fit an int, as after a division by 0, becomes 2147483648. Both outputs are always written. Errors:
/// none. Threads: any.
/// @param fileW,fileH  size of the file in file pixels
/// @param viewW,viewH  size of the view in pixels
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param outW,outH  the extended size in file pixels
OMNAR_API void AdaptFileSizeToFileSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW,
                                                  unsigned int viewH, double zoomX, double zoomY, unsigned int* outW,
                                                  unsigned int* outH);

/// Fits a file into a view: the largest size in the view that has the file's aspect.
///
/// Shown, the file is a = fileW / zoomX by b = fileH / zoomY; only the ratio of the zooms matters:
///
///     if viewH / b > viewW / a:  viewW by cut(viewW * b / a)
///     otherwise:                 cut(viewH * a / b) by viewH
///
/// A file of 400 x 300 becomes 800 x 600 in a view of 800 x 800 for equal zooms.
///
/// What does not fit an int, as after a division by 0, becomes 2147483648. Both outputs are always written. Errors:
/// none. Threads: any.
/// @param fileW,fileH  size of the file in file pixels
/// @param viewW,viewH  size of the view in pixels
/// @param zoomX,zoomY  view pixels per file pixel, sensibly above 0
/// @param outW,outH  the size in view pixels
OMNAR_API void AdaptFileSizeToViewSizeForViewSize(unsigned int fileW, unsigned int fileH, unsigned int viewW,
                                                  unsigned int viewH, double zoomX, double zoomY, unsigned int* outW,
                                                  unsigned int* outH);

/// @}

#endif
