// SPDX-License-Identifier: MIT
/// @file
/// Reading inks from PNG files, and writing pictures.
#pragma once

#include <OmnarRaster.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace example {

/// One ink of a repeat: 0 for no ink, 255 for full ink.
struct InkPlane {
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<L08> pixels;
};

/// Reads any PNG as ink: the darker and the more opaque a pixel, the more ink. No gamma or colour profile is applied.
InkPlane readInk(const std::string& path);

/// Writes a PNG row by row.
class PngWriter {
public:
    enum class Kind { grey, color };

    /// Errors name the file `name`. Pixels of kind grey are L08, those of kind color TRC, whose alpha is not written.
    PngWriter(std::FILE* file, std::string name, Kind kind, unsigned int width, unsigned int height);
    ~PngWriter();
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    void writeRow(const void* pixels);
    void finish();  ///< after the last row

private:
    template <class Body>
    void run(const Body& body);

    struct Encoder;
    std::unique_ptr<Encoder> encoder_;
    std::string name_;
};

/// Writes a picture in true colour.
void writePicture(const std::string& path, const TRC* pixels, unsigned int width, unsigned int height);

}  // namespace example
