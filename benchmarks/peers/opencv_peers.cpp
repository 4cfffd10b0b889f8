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

/// The region of a buffer, without a copy.
cv::Mat region(const Buffer& buffer, const Call& call) {
    const auto whole = [](std::uint32_t n) { return static_cast<int>(n); };
    const cv::Mat all(whole(buffer.height), whole(buffer.width), typeOf(buffer.format), buffer.pixels);
    return all(cv::Rect(whole(buffer.x), whole(buffer.y), whole(call.w), whole(call.h)));
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

/// What reads one buffer and writes another, or the same again.
template <void (*convert)(const Call& call, const cv::Mat& from, cv::Mat& to)>
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

void mapped(const Call& call, const cv::Mat& from, cv::Mat& to) {
    cv::LUT(from, cv::Mat(1, 256, CV_8UC1, const_cast<std::uint8_t*>(call.table)), to);
}
void inked(const Call&, const cv::Mat& from, cv::Mat& to) { cv::threshold(from, to, 0, 255, cv::THRESH_BINARY); }
void parted(const Call& call, const cv::Mat& from, cv::Mat& to) {
    cv::threshold(from, to, call.zeros - 1, 255, cv::THRESH_BINARY);
}
void narrowed(const Call&, const cv::Mat& from, cv::Mat& to) { from.convertTo(to, CV_8U, 1 / 16.0, -15 / 32.0); }
void packed(const Call&, const cv::Mat& from, cv::Mat& to) { cv::cvtColor(from, to, cv::COLOR_BGRA2BGR); }
void filled(const Call& call, const cv::Mat&, cv::Mat& to) {
    to.setTo(cv::Scalar(call.color & 255, call.color >> 8 & 255, call.color >> 16 & 255, call.color >> 24));
}
void copied(const Call&, const cv::Mat& from, cv::Mat& to) { from.copyTo(to); }

template <class Work>
std::unique_ptr<Prepared> prepare(const Call& call) {
    cv::setNumThreads(1);
    return std::make_unique<Work>(call);
}

/// Ours takes no region.
std::unique_ptr<Prepared> wholePacked(const Call& call) {
    return call.w == call.dst.width ? prepare<Converted<packed>>(call) : nullptr;
}

constexpr Peer peers[] = {
    {"OpenCV", "AlphaBlendL08ToL08_noAlpha", 1, prepare<Mixed>},
    {"OpenCV", "ApplyAlphaToL08", 2, prepare<Product>},  // ours cuts twice, theirs rounds once
    {"OpenCV", "ConvertBufferFrom32To24Bits", 0, wholePacked},
    {"OpenCV", "ConvertL012ToL08", 1, prepare<Converted<narrowed>>},
    {"OpenCV", "ConvertL08To2LevelL08", 0, prepare<Converted<inked>>},
    {"OpenCV", "ConvertL08To2LevelL08AtValue", 0, prepare<Converted<parted>>},
    {"OpenCV", "ApplyLUTToL08", 0, prepare<Converted<mapped>>},
    {"OpenCV", "FillTRCBuffer", 0, prepare<Converted<filled>>},
    {"OpenCV", "Copy2DTRCBufferToTRC", 0, prepare<Converted<copied>>},
};

}  // namespace

std::span<const Peer> openCvPeers() { return peers; }

}  // namespace bench
