// SPDX-License-Identifier: MIT
/// @file
/// PNG files: inks are read, views are written.
#pragma once

#include <OmnarRaster.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace example {

/// One ink of a repeat: 0 none, 255 full.
struct InkPlane {
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<L08> pixels;
};

/// Reads any PNG as ink: the darker and the more opaque a pixel is, the more ink it gets. The samples count as they
/// stand in the file; no gamma or colour profile is applied.
InkPlane readInk(const std::string& path);

/// Writes a PNG row by row.
class PngWriter {
public:
    enum class Kind { grey, colour };

    /// `name` is what errors call the file. Pixels of kind grey are bytes, pixels of kind colour are TRC, their alpha
    /// left out.
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

}  // namespace example
