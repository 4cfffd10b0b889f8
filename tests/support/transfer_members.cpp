// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tests/support/formulas.h"

namespace support {
namespace {

// The switches of a call. They are off in the benchmarks.
bool clearsEmpty(const Call& c) { return (c.ground & 1) == 0; }
bool keepsSource(const Call& c) { return (c.ground & 2) == 0; }
bool adds(const Call& c) { return (c.ground & 4) == 0; }
bool isHard(const Call& c) { return (c.ground & 8) == 0; }
const std::uint8_t* protection(const Call& c) { return (c.ground & 16) == 0 ? c.table : nullptr; }

std::int64_t share(std::int64_t level, std::int64_t weight) { return level * weight / 255; }

/// A sample of the source's memory, counted from the region's corner; 0 behind the buffer's end.
class Source {
public:
    Source(const Call& call, std::size_t row)
        : first_(call.src.as<std::uint8_t>() + (call.src.y + row) * call.src.width + call.src.x),
          end_(call.src.as<std::uint8_t>() + std::size_t{call.src.width} * call.src.height) {}
    std::uint8_t get(std::size_t i) const { return first_ + i < end_ ? first_[i] : 0; }
    void set(std::size_t i, std::int64_t level) const {
        if (first_ + i < end_) first_[i] = static_cast<std::uint8_t>(level);
    }

private:
    std::uint8_t* first_;
    std::uint8_t* end_;
};

/// The alpha plane as a brush sees it that goes through it without ever coming back to a column.
class Running {
public:
    explicit Running(const Call& call) : alpha_(call.alpha), at_(std::size_t{alpha_.y} * alpha_.width + alpha_.x) {}
    std::uint8_t value() const {
        return at_ < std::size_t{alpha_.width} * alpha_.height ? alpha_.as<std::uint8_t>()[at_] : 0;
    }
    void next() { ++at_; }
    void nextRow() { at_ += alpha_.width; }

private:
    Buffer alpha_;
    std::size_t at_;
};

constexpr Member cutByAlpha{.name = "",
                            .src = Format::l08,
                            .dst = Format::l08,
                            .alpha = Member::ownGeometry,
                            .cut = Member::byAlphaAndDst,
                            .takesLut = false,
                            .call = nullptr,
                            .pixel = nullptr};

/// Calls pixel(d, source, i, alpha position) for every pixel and stores what it returns, and nextRow() after each row.
template <class Pixel>
void eachPixel(const Call& call, Pixel&& pixel) {
    const auto [cols, rows] = extentOf(cutByAlpha, call);
    Running alpha(call);
    for (std::size_t row = 0; row < rows; ++row, alpha.nextRow()) {
        const Source source(call, row);
        for (std::size_t i = 0; i < cols; ++i) pixel(call.dst.at(i, row), source, i, alpha);
    }
}

void store8(std::byte* to, std::int64_t level) { *to = static_cast<std::byte>(level); }

void transferModel(const Call& c) {
    eachPixel(c, [&](std::byte* dst, const Source& source, std::size_t i, Running& alpha) {
        const std::int64_t d = std::to_integer<int>(*dst), s = source.get(i), a = alpha.value();
        const std::int64_t k = share(a, c.opacity);
        const bool kept = keepsSource(c) || (protection(c) != nullptr && protection(c)[s] != 0);
        alpha.next();
        if (isHard(c)) {
            if (k == 0) return;
            if (s != 0 || clearsEmpty(c)) store8(dst, s != 0 ? 255 : 0);
            if (clearsEmpty(c) ? !keepsSource(c) : s != 0 && !kept) source.set(i, 0);
        } else if (s != 0) {
            store8(dst, adds(c) ? std::min<std::int64_t>(d + share(s, k), 255)
                                : static_cast<int>(moved(double(d), double(s), double(k))));
            if (!kept) source.set(i, s - share(s, k));
        } else if (clearsEmpty(c) && a != 0) {
            store8(dst, 0);
        }
    });
}

/// A quotient of 32 bits without sign.
std::int64_t wrapped(std::int64_t product) { return (product < 0 ? product + (std::int64_t{1} << 32) : product) / 255; }

void moveModel(const Call& c) {
    eachPixel(c, [&](std::byte* dst, const Source& source, std::size_t i, Running& alpha) {
        const std::int64_t d = std::to_integer<int>(*dst), a = alpha.value(), k = share(a, c.opacity);
        if (isHard(c)) {
            if (share(source.get(2 * i), k) != 0) store8(dst, 255);
            if (c.table[source.get(2 * i + 1)] == 0) source.set(2 * i + 1, 0);
            return alpha.next();
        }
        const std::int64_t s = source.get(i);
        store8(dst, d + wrapped((s - d) * k));
        if (c.table[s] != 0) return;
        source.set(i, s + wrapped(-(a * s)));
        alpha.next();
    });
}

std::uint32_t towardEach(std::uint32_t old, std::uint32_t target, double weight) {
    std::uint32_t pixel = old & 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8) {
        pixel |= static_cast<std::uint32_t>(moved(old >> shift & 255, target >> shift & 255, weight)) << shift;
    }
    return pixel;
}

void toColourModel(const Call& c) {
    const auto [cols, rows] = extentOf(cutByAlpha, c);
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t i = 0; i < cols; ++i) {
            const std::uint32_t d = load(c.dst, i, row), s = load(c.src, i, row), a = load(c.alpha, i, row);
            const std::int64_t k = share(a, c.opacity);
            if (isHard(c)) {  // by a colour
                store(c.dst, i, row, towardEach(d, c.color, static_cast<double>(share(s, k))));
            } else {
                store(c.dst, i, row, towardEach(d, 0x010101 * (255 - s), static_cast<double>(k)));
                store(c.src, i, row, static_cast<std::uint8_t>(s + wrapped(-std::int64_t{s} * a)));
            }
        }
    }
}

std::uint32_t darkened(const Inputs& in) {
    const std::uint32_t weighted = 11 * (in.s & 255) + 59 * (in.s >> 8 & 255) + 30 * (in.s >> 16 & 255);
    const double darkness = 255 - weighted / 100;
    const double k = weighed(in, in.a);
    if (isHard(in.call)) return k != 0 && darkness > 127 ? 255 : in.d;
    return static_cast<std::uint32_t>(moved(in.d, darkness, k));
}

/// One order in five is none.
int orderOf(const Call& c) { return static_cast<int>(c.color % 5); }

template <Format format>
void motionModel(const Call& c) {
    Member cut = cutByAlpha;
    cut.cut = Member::bySrcAndDst;
    if (orderOf(c) == 4) return;
    const auto [cols, rows] = extentOf(cut, c);
    for (std::size_t n = 0; n < cols * rows; ++n) {
        const std::size_t row = (orderOf(c) & 1) != 0 ? rows - 1 - n / cols : n / cols;
        const std::size_t i = (orderOf(c) & 2) != 0 ? cols - 1 - n % cols : n % cols;
        const std::uint32_t d = load(c.dst, i, row), s = load(c.src, i, row);
        const double k = static_cast<double>(share(load(c.alpha, i, row), c.opacity));
        const std::uint32_t full = format == Format::l08 ? 255 : 4095;
        if (format == Format::trc) {
            store(c.dst, i, row, towardEach(d, s, k));
        } else {
            const double t = moved(d, s, k);
            store(c.dst, i, row, !c.first ? static_cast<std::uint32_t>(t) : t != 0 ? full : 0);
        }
    }
}

// clang-format off
#define ALPHA c.alpha.as<const L08>(), c.alpha.width, c.alpha.height, c.alpha.x, c.alpha.y
#define ALPHA_AND(flag) c.alpha.as<const L08>(), flag, c.alpha.width, c.alpha.height, c.alpha.x, c.alpha.y
#define BOTH(Src, Dst) c.src.as<Src>(), c.dst.as<Dst>(), c.dst.width, c.dst.height, c.dst.x, c.dst.y
#define ALL(Px) c.src.as<const Px>(), c.src.width, c.src.height, c.src.x, c.src.y, ALPHA, \
                c.dst.as<Px>(), c.dst.width, c.dst.height, c.dst.x, c.dst.y
#define CALL(...) [](const Call& c) { __VA_ARGS__; }
#define ORDER static_cast<_EMotionCopyMode>(orderOf(c))

constexpr Member transfer(const char* name, Format src, Format dst, void (*call)(const Call&), void (*model)(const Call&),
                          std::uint32_t (*pixel)(const Inputs&) = nullptr) {
    return {.name = name, .src = src, .dst = dst, .alpha = Member::ownGeometry, .cut = Member::byAlphaAndDst, .takesLut = false,
            .call = call, .pixel = pixel, .model = model, .sourceFollowsDst = true};
}
constexpr Member motion(const char* name, Format format, void (*call)(const Call&), void (*model)(const Call&)) {
    return {.name = name, .src = format, .dst = format, .alpha = Member::ownGeometry, .cut = Member::bySrcAndDst, .takesLut = false,
            .call = call, .pixel = nullptr, .model = model, .cornersAnywhere = true};
}

constexpr Member members[] = {
    transfer("TransferToneL08ToL08", Format::l08, Format::l08,
             CALL(TransferToneL08ToL08(ALPHA_AND(clearsEmpty(c)), BOTH(L08, L08), c.opacity, keepsSource(c), adds(c), c.first, isHard(c),
                                       c.w, c.h, protection(c))), transferModel),
    transfer("TransferToneL08ToTRC", Format::l08, Format::trc,
             CALL(TransferToneL08ToTRC(ALPHA_AND(c.first), BOTH(L08, TRC), c.opacity, isHard(c), c.color, c.w, c.h)), toColourModel),
    transfer("TransferToneTRCToL08", Format::trc, Format::l08,
             CALL(TransferToneTRCToL08(ALPHA_AND(c.first), BOTH(const TRC, L08), c.opacity, isHard(c), c.w, c.h)), nullptr, darkened),
    transfer("MoveToneL08ToL08Prot", Format::l08, Format::l08,
             CALL(MoveToneL08ToL08Prot(ALPHA, BOTH(L08, L08), c.opacity, isHard(c), c.w, c.h, c.table)), moveModel),
    motion("MotionCopyL08ToL08", Format::l08,
           CALL(MotionCopyL08ToL08(ALL(L08), c.opacity, c.first, c.w, c.h, ORDER, c.second)), motionModel<Format::l08>),
    motion("MotionCopyL12ToL12", Format::l12,
           CALL(MotionCopyL12ToL12(ALL(L12), c.opacity, c.first, c.w, c.h, ORDER, c.second)), motionModel<Format::l12>),
    motion("MotionCopyTRCWithAlphaBufferToTRC", Format::trc,
           CALL(MotionCopyTRCWithAlphaBufferToTRC(ALL(TRC), c.opacity, c.w, c.h, ORDER, c.second)), motionModel<Format::trc>),
};
// clang-format on

}  // namespace

std::span<const Member> transferMembers() { return members; }

}  // namespace support
