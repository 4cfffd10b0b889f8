#include <opencv2/core.hpp>

#include "benchmarks/peers/peer.h"

namespace bench {
namespace {

using support::Buffer;
using support::Call;

/// The region of a buffer, without a copy.
cv::Mat region(const Buffer& buffer, const Call& call) {
    const auto whole = [](std::uint32_t n) { return static_cast<int>(n); };
    const cv::Mat all(whole(buffer.height), whole(buffer.width), CV_8UC1, buffer.pixels);
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

template <class Work>
std::unique_ptr<Prepared> prepare(const Call& call) {
    cv::setNumThreads(1);
    return std::make_unique<Work>(call);
}

constexpr Peer peers[] = {
    {"OpenCV", "AlphaBlendL08ToL08_noAlpha", 1, prepare<Mixed>},
    {"OpenCV", "ApplyAlphaToL08", 2, prepare<Product>},  // ours cuts twice, theirs rounds once
};

}  // namespace

std::span<const Peer> openCvPeers() { return peers; }

}  // namespace bench
