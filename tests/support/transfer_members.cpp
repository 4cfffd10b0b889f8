// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tests/support/formulas.h"

namespace support {
namespace {

// The flags of a call, from the bits of `ground`. All are off in the benchmarks.
bool erasesEmpty(const Call& c) { return (c.ground & 1) == 0; }
bool keepsSource(const Call& c) { return (c.ground & 2) == 0; }
bool adds(const Call& c) { return (c.ground & 4) == 0; }
bool isHard(const Call& c) { return (c.ground & 8) == 0; }
const std::uint8_t* protection(const Call& c) { return (c.ground & 16) == 0 ? c.table : nullptr; }

std::int64_t share(std::int64_t value, std::int64_t weight) { return value * weight / 255; }

/// The samples of the source from the region's corner in a row on. Past the buffer's end they are 0 and not written.
class Source {
public:
    Source(const Call& call, std::size_t row)
        : first_(call.src.as<std::uint8_t>() + (call.src.y + row) * call.src.width + call.src.x),
          end_(call.src.as<std::uint8_t>() + std::size_t{call.src.width} * call.src.height) {}
    std::uint8_t get(std::size_t i) const { return first_ + i < end_ ? first_[i] : 0; }
    void set(std::size_t i, std::int64_t value) const {
        if (first_ + i < end_) first_[i] = static_cast<std::uint8_t>(value);
    }

private:
    std::uint8_t* first_;
    std::uint8_t* end_;
};

/// A position in the alpha plane that advances through its memory and never returns to the region's left column.
class AlphaCursor {
public:
    explicit AlphaCursor(const Call& call)
        : alpha_(call.alpha), offset_(std::size_t{alpha_.y} * alpha_.width + alpha_.x) {}
    std::uint8_t value() const {
        return offset_ < std::size_t{alpha_.width} * alpha_.height ? alpha_.as<std::uint8_t>()[offset_] : 0;
    }
    void next() { ++offset_; }
    void nextRow() { offset_ += alpha_.width; }

private:
    Buffer alpha_;
    std::size_t offset_;
};

constexpr Member cutByAlpha{
    .name = "", .src = Format::l08, .dst = Format::l08, .alpha = Member::ownGeometry, .cut = Member::byAlphaAndDst};

/// Calls pixel(destination, source, column, alpha cursor) for every pixel of the region.
template <class Pixel>
void eachPixel(const Call& call, Pixel&& pixel) {
    const auto [cols, rows] = extentOf(cutByAlpha, call);
    AlphaCursor alpha(call);
    for (std::size_t row = 0; row < rows; ++row, alpha.nextRow()) {
        const Source source(call, row);
        for (std::size_t i = 0; i < cols; ++i) pixel(call.dst.at(i, row), source, i, alpha);
    }
}

void store8(std::byte* sample, std::int64_t value) { *sample = static_cast<std::byte>(value); }

void transferModel(const Call& c) {
    eachPixel(c, [&](std::byte* dst, const Source& source, std::size_t i, AlphaCursor& alpha) {
        const std::int64_t d = std::to_integer<int>(*dst), s = source.get(i), a = alpha.value();
        const std::int64_t k = share(a, c.opacity);
        const bool kept = keepsSource(c) || (protection(c) != nullptr && protection(c)[s] != 0);
        alpha.next();
        if (isHard(c)) {
            if (k == 0) return;
            if (s != 0 || erasesEmpty(c)) store8(dst, s != 0 ? 255 : 0);
            if (erasesEmpty(c) ? !keepsSource(c) : s != 0 && !kept) source.set(i, 0);
        } else if (s != 0) {
            store8(dst, adds(c) ? std::min<std::int64_t>(d + share(s, k), 255)
                                : static_cast<int>(moved(double(d), double(s), double(k))));
            if (!kept) source.set(i, s - share(s, k));
        } else if (erasesEmpty(c) && a != 0) {
            store8(dst, 0);
        }
    });
}

/// The quotient by 255 in unsigned 32-bit arithmetic.
std::int64_t wrapped(std::int64_t product) { return (product < 0 ? product + (std::int64_t{1} << 32) : product) / 255; }

void moveModel(const Call& c) {
    eachPixel(c, [&](std::byte* dst, const Source& source, std::size_t i, AlphaCursor& alpha) {
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

std::uint32_t colourToward(std::uint32_t old, std::uint32_t target, double weight) {
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
            if (isHard(c)) {
                store(c.dst, i, row, colourToward(d, c.color, static_cast<double>(share(s, k))));
            } else {
                store(c.dst, i, row, colourToward(d, 0x010101 * (255 - s), static_cast<double>(k)));
                store(c.src, i, row, static_cast<std::uint8_t>(s + wrapped(-std::int64_t{s} * a)));
            }
        }
    }
}

std::uint32_t darkened(const Inputs& in) {
    const std::uint32_t weighted = 11 * (in.s & 255) + 59 * (in.s >> 8 & 255) + 30 * (in.s >> 16 & 255);
    const double darkness = 255 - weighted / 100;
    const double k = weightOf(in, in.a);
    if (isHard(in.call)) return k != 0 && darkness > 127 ? 255 : in.d;
    return static_cast<std::uint32_t>(moved(in.d, darkness, k));
}

/// The order of the copy; 4 is not a valid one.
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
            store(c.dst, i, row, colourToward(d, s, k));
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

constexpr auto l08 = Format::l08, l12 = Format::l12, trc = Format::trc;
constexpr auto own = Member::ownGeometry;
constexpr auto bySrc = Member::bySrcAndDst, byAl = Member::byAlphaAndDst;

constexpr Member members[] = {
    {.name = "TransferToneL08ToL08", .src = l08, .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(TransferToneL08ToL08(ALPHA_AND(erasesEmpty(c)), BOTH(L08, L08), c.opacity, keepsSource(c), adds(c), c.first,
                                       isHard(c), c.w, c.h, protection(c))),
     .model = transferModel, .sourceFollowsDst = true},
    {.name = "TransferToneL08ToTRC", .src = l08, .dst = trc, .alpha = own, .cut = byAl,
     .call = CALL(TransferToneL08ToTRC(ALPHA_AND(c.first), BOTH(L08, TRC), c.opacity, isHard(c), c.color, c.w, c.h)),
     .model = toColourModel, .sourceFollowsDst = true},
    {.name = "TransferToneTRCToL08", .src = trc, .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(TransferToneTRCToL08(ALPHA_AND(c.first), BOTH(const TRC, L08), c.opacity, isHard(c), c.w, c.h)),
     .pixel = darkened, .sourceFollowsDst = true},
    {.name = "MoveToneL08ToL08Prot", .src = l08, .dst = l08, .alpha = own, .cut = byAl,
     .call = CALL(MoveToneL08ToL08Prot(ALPHA, BOTH(L08, L08), c.opacity, isHard(c), c.w, c.h, c.table)),
     .model = moveModel, .sourceFollowsDst = true},
    {.name = "MotionCopyL08ToL08", .src = l08, .dst = l08, .alpha = own, .cut = bySrc,
     .call = CALL(MotionCopyL08ToL08(ALL(L08), c.opacity, c.first, c.w, c.h, ORDER, c.second)),
     .model = motionModel<l08>, .cornersAnywhere = true},
    {.name = "MotionCopyL12ToL12", .src = l12, .dst = l12, .alpha = own, .cut = bySrc,
     .call = CALL(MotionCopyL12ToL12(ALL(L12), c.opacity, c.first, c.w, c.h, ORDER, c.second)),
     .model = motionModel<l12>, .cornersAnywhere = true},
    {.name = "MotionCopyTRCWithAlphaBufferToTRC", .src = trc, .dst = trc, .alpha = own, .cut = bySrc,
     .call = CALL(MotionCopyTRCWithAlphaBufferToTRC(ALL(TRC), c.opacity, c.w, c.h, ORDER, c.second)),
     .model = motionModel<trc>, .cornersAnywhere = true},
};
// clang-format on

}  // namespace

std::span<const Member> transferMembers() { return members; }

}  // namespace support
