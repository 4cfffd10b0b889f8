// SPDX-License-Identifier: MIT
#include "png_file.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "failure.h"
#include "new_file.h"

namespace example {
namespace {

/// The text of the last error of libpng.
using ErrorText = char[200];

[[noreturn]] void onError(png_structp png, png_const_charp text) {
    char* const errorText = static_cast<char*>(png_get_error_ptr(png));
    std::strncpy(errorText, text, sizeof(ErrorText) - 1);
    png_longjmp(png, 1);
}

/// Ignores warnings, which libpng prints by default.
void onWarning(png_structp, png_const_charp) {}

/// Runs calls to libpng. Returns false after an error, which libpng reports by a long jump that skips destructors:
/// `body` must own nothing.
template <class Body>
bool succeeds(png_structp png, const Body& body) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    body();
    return true;
}

void readBytes(png_structp png, png_bytep bytes, std::size_t count) {
    std::FILE* const file = static_cast<std::FILE*>(png_get_io_ptr(png));
    if (std::fread(bytes, 1, count, file) == count) return;
    png_error(png, std::ferror(file) != 0 ? std::strerror(errno) : "the file ends early");
}

void writeBytes(png_structp png, png_bytep bytes, std::size_t count) {
    if (std::fwrite(bytes, 1, count, static_cast<std::FILE*>(png_get_io_ptr(png))) != count) {
        png_error(png, std::strerror(errno));
    }
}

void flushBytes(png_structp) {}

/// By default libpng refuses pictures of more than a million pixels a side.
void liftSizeLimits(png_structp png) { png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX); }

/// Reads one PNG. The object owns everything, so that what it runs in succeeds() owns nothing.
class InkReader {
public:
    InkReader() : png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, errorText_, onError, onWarning)) {
        if (png_ != nullptr) info_ = png_create_info_struct(png_);
    }
    ~InkReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
    InkReader(const InkReader&) = delete;
    InkReader& operator=(const InkReader&) = delete;

    InkPlane read(std::FILE* file) {
        if (info_ == nullptr) throw std::bad_alloc();
        if (!succeeds(png_, [this, file] { readHeader(file); })) throw Failure(errorText_);
        InkPlane plane{png_get_image_width(png_, info_), png_get_image_height(png_, info_), {}};
        plane.pixels.resize(std::size_t{plane.width} * plane.height);
        row_.resize(png_get_rowbytes(png_, info_));
        L08* const pixels = plane.pixels.data();
        if (!succeeds(png_, [this, pixels] { readPixels(pixels); })) throw Failure(errorText_);
        return plane;
    }

private:
    void readHeader(std::FILE* file) {
        png_set_read_fn(png_, file, readBytes);
        liftSizeLimits(png_);
        png_read_info(png_, info_);
        png_set_expand(png_);    // palettes, 1 to 4 bits and colours marked as transparent
        png_set_scale_16(png_);  // 16 bits to 8, rounded
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 255, PNG_FILLER_AFTER);
        passes_ = png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
    }

    // Each of the seven passes of an interlaced picture has other pixels, so one row of memory is enough.
    void readPixels(L08* pixels) {
        const png_uint_32 width = png_get_image_width(png_, info_);
        const png_uint_32 height = png_get_image_height(png_, info_);
        for (int pass = 0; pass < passes_; ++pass) {
            const bool isInterlaced = passes_ != 1;
            const png_uint_32 start = isInterlaced ? PNG_PASS_START_COL(pass) : 0;
            const png_uint_32 step = isInterlaced ? PNG_PASS_COL_OFFSET(pass) : 1;
            for (png_uint_32 y = 0; y < height; ++y) {
                png_read_row(png_, row_.data(), nullptr);
                if (isInterlaced && !PNG_ROW_IN_INTERLACE_PASS(y, pass)) continue;
                L08* const row = pixels + std::size_t{y} * width;
                for (std::size_t x = start; x < width; x += step) row[x] = inkOf(&row_[4 * x]);
            }
        }
        png_read_end(png_, nullptr);
    }

    /// The ink of a pixel in the order red, green, blue, alpha.
    static L08 inkOf(const png_byte* pixel) {
        const int luminance = (59 * pixel[1] + 30 * pixel[0] + 11 * pixel[2]) / 100;
        return static_cast<L08>(pixel[3] * (255 - luminance) / 255);
    }

    ErrorText errorText_ = "";
    png_structp png_;
    png_infop info_ = nullptr;
    int passes_ = 1;
    std::vector<png_byte> row_;
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

InkPlane readInk(const std::string& path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) throw Failure(path + ": " + std::strerror(errno));
    try {
        return InkReader().read(file.get());
    } catch (const Failure& failure) {
        throw Failure(path + ": " + failure.what());
    } catch (const std::bad_alloc&) {
        throw Failure(path + ": too large for the memory");
    }
}

struct PngWriter::Encoder {
    Encoder() : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, errorText, onError, onWarning)) {
        if (png != nullptr) info = png_create_info_struct(png);
    }
    ~Encoder() { png_destroy_write_struct(&png, &info); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void begin(std::FILE* file, Kind kind, unsigned int width, unsigned int height) {
        png_set_write_fn(png, file, writeBytes, flushBytes);
        liftSizeLimits(png);
        // Compression is nearly all the work of a large view. The fastest setting finds repeats, which are equal runs
        // of bytes, as well as the others, and without filters.
        png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
        png_set_compression_level(png, 1);
        png_set_IHDR(png, info, width, height, 8, kind == Kind::grey ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        if (kind == Kind::grey) return;
        png_set_bgr(png);  // the bytes of TRC are blue, green, red and one that is not written
        png_set_filler(png, 0, PNG_FILLER_AFTER);
    }

    ErrorText errorText = "";
    png_structp png;
    png_infop info = nullptr;
};

PngWriter::PngWriter(std::FILE* file, std::string name, Kind kind, unsigned int width, unsigned int height)
    : encoder_(std::make_unique<Encoder>()), name_(std::move(name)) {
    if (encoder_->info == nullptr) throw std::bad_alloc();
    run([&] { encoder_->begin(file, kind, width, height); });
}

PngWriter::~PngWriter() = default;

void PngWriter::writeRow(const void* pixels) {
    run([&] { png_write_row(encoder_->png, static_cast<png_const_bytep>(pixels)); });
}

void PngWriter::finish() {
    run([&] { png_write_end(encoder_->png, nullptr); });
}

template <class Body>
void PngWriter::run(const Body& body) {
    if (!succeeds(encoder_->png, body)) throw Failure(name_ + ": " + encoder_->errorText);
}

void writePicture(const std::string& path, const TRC* pixels, unsigned int width, unsigned int height) {
    NewFile file(path);
    PngWriter writer(file.stream(), path, PngWriter::Kind::color, width, height);
    for (std::size_t y = 0; y < height; ++y) writer.writeRow(pixels + y * width);
    writer.finish();
    file.commit();
}

}  // namespace example
