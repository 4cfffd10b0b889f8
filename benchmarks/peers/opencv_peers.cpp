// SPDX-License-Identifier: MIT
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "benchmarks/peers/peer.h"

namespace bench {
namespace {

using support::Buffer;
using support::Call;
using support::Format;

int typeOf(Format format) {
    switch (format) {
        case Format::l12:
            return CV_16UC1;
        case Format::bgr:
            return CV_8UC3;
        case Format::trc:
            return CV_8UC4;
        default:
            return CV_8UC1;
    }
}

/// The region of a buffer. It shares the buffer's memory.
cv::Mat region(const Buffer& buffer, const Call& call) {
    const auto number = [](std::uint32_t n) { return static_cast<int>(n); };
    const cv::Mat all(number(buffer.height), number(buffer.width), typeOf(buffer.format), buffer.pixels);
    return all(cv::Rect(number(buffer.x), number(buffer.y), number(call.w), number(call.h)));
}

class Mixed final : public Prepared {
public:
    explicit Mixed(const Call& call)
        : src_(region(call.src, call)), dst_(region(call.dst, call)), weight_(call.opacity / 255.0) {}
    void run() override { cv::addWeighted(src_, weight_, dst_, 1.0 - weight_, 0.0, dst_); }

private:
    cv::Mat src_, dst_;
    double weight_;
};

class Product final : public Prepared {
public:
    explicit Product(const Call& call)
        : alpha_(region(call.alpha, call)), dst_(region(call.dst, call)), scale_(call.opacity / (255.0 * 255.0)) {}
    void run() override { cv::multiply(alpha_, dst_, dst_, scale_); }

private:
    cv::Mat alpha_, dst_;
    double scale_;
};

/// Reads one buffer and writes another or the same.
template <void (*convert)(const Call& call, const cv::Mat& src, cv::Mat& dst)>
class Converted final : public Prepared {
public:
    explicit Converted(const Call& call)
        : call_(call),
          src_(region(call.src.format == Format::none ? call.dst : call.src, call)),
          dst_(region(call.dst, call)) {}
    void run() override { convert(call_, src_, dst_); }

private:
    Call call_;
    cv::Mat src_, dst_;
};

void lookedUp(const Call& call, const cv::Mat& src, cv::Mat& dst) {
    cv::LUT(src, cv::Mat(1, 256, CV_8UC1, const_cast<std::uint8_t*>(call.table)), dst);
}
void binarized(const Call&, const cv::Mat& src, cv::Mat& dst) { cv::threshold(src, dst, 0, 255, cv::THRESH_BINARY); }
void binarizedAtValue(const Call& call, const cv::Mat& src, cv::Mat& dst) {
    cv::threshold(src, dst, call.zeros - 1, 255, cv::THRESH_BINARY);
}
void narrowed(const Call&, const cv::Mat& src, cv::Mat& dst) { src.convertTo(dst, CV_8U, 1 / 16.0, -15 / 32.0); }
void packed(const Call&, const cv::Mat& src, cv::Mat& dst) { cv::cvtColor(src, dst, cv::COLOR_BGRA2BGR); }
void filled(const Call& call, const cv::Mat&, cv::Mat& dst) {
    dst.setTo(cv::Scalar(call.color & 255, call.color >> 8 & 255, call.color >> 16 & 255, call.color >> 24));
}
void copied(const Call&, const cv::Mat& src, cv::Mat& dst) { src.copyTo(dst); }

template <class Work>
std::unique_ptr<Prepared> prepare(const Call& call) {
    cv::setNumThreads(1);
    return std::make_unique<Work>(call);
}

/// The member takes no region.
std::unique_ptr<Prepared> packedBuffer(const Call& call) {
    return call.w == call.dst.width ? prepare<Converted<packed>>(call) : nullptr;
}

constexpr Peer peers[] = {
    {.name = "OpenCV", .member = "AlphaBlendL08ToL08_noAlpha", .tolerance = 1, .prepare = prepare<Mixed>},
    {.name = "OpenCV",
     .member = "ApplyAlphaToL08",
     .tolerance = 2,
     .prepare = prepare<Product>},  // two truncations against one rounding
    {.name = "OpenCV", .member = "ConvertBufferFrom32To24Bits", .tolerance = 0, .prepare = packedBuffer},
    {.name = "OpenCV", .member = "ConvertL012ToL08", .tolerance = 1, .prepare = prepare<Converted<narrowed>>},
    {.name = "OpenCV", .member = "ConvertL08To2LevelL08", .tolerance = 0, .prepare = prepare<Converted<binarized>>},
    {.name = "OpenCV",
     .member = "ConvertL08To2LevelL08AtValue",
     .tolerance = 0,
     .prepare = prepare<Converted<binarizedAtValue>>},
    {.name = "OpenCV", .member = "ApplyLUTToL08", .tolerance = 0, .prepare = prepare<Converted<lookedUp>>},
    {.name = "OpenCV", .member = "FillTRCBuffer", .tolerance = 0, .prepare = prepare<Converted<filled>>},
    {.name = "OpenCV", .member = "Copy2DTRCBufferToTRC", .tolerance = 0, .prepare = prepare<Converted<copied>>},
};

}  // namespace

std::span<const Peer> openCvPeers() { return peers; }

}  // namespace bench
