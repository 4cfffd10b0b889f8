// SPDX-License-Identifier: MIT

// The checked build reports each breach before anything is written, and no valid call. The ordinary build takes the
// same valid calls and never calls the handler.
#include <OmnarRaster.h>
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/member.h"

namespace {

using support::Buffer;
using support::Call;
using support::Format;
using support::Member;

struct Breach {
    std::string function, parameter, value, rule;
    bool operator==(const Breach&) const = default;
};

void PrintTo(const Breach& breach, std::ostream* stream) {
    *stream << breach.function << ": " << breach.parameter << " is " << breach.value << " | " << breach.rule;
}

/// Throws breaches as exceptions for its lifetime.
class Handler {
public:
    Handler()
        : before_(SetContractHandler([](const SContractViolation& violation) {
              throw Breach{violation.function, violation.parameter, violation.value, violation.rule};
          })) {}
    ~Handler() { SetContractHandler(before_); }
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;

private:
    ContractHandler before_;
};

/// The first breach that a call reports; empty for a valid call.
Breach breachOf(const std::function<void()>& call) {
    const Handler handler;
    try {
        call();
    } catch (const Breach& breach) {
        return breach;
    }
    return {};
}

const std::string fitsInRange = " <= 4294967295";
[[maybe_unused]] constexpr const char* notNullUnlessEmpty = "not null, unless the cut region is empty";

// The preconditions that raster functions share, for each member of the tables.

/// A valid call with its own memory. The first buffer that cuts the region has 8 x 6 pixels and the corner (2, 1), the
/// others 9 x 7 and (3, 2), so that each leaves 6 x 5.
class ValidCall {
public:
    explicit ValidCall(const Member& member) : member_(member) {
        call.w = 4;
        call.h = 4;
        call.opacity = 255;
        call.zeros = 1;
        call.table = tables_.data();
        place(call.src, member.src, 0, &first() == &call.src);
        place(call.alpha, member.alpha == Member::noAlpha ? Format::none : Format::l08, 1, &first() == &call.alpha);
        place(call.dst, member.dst, 2, &first() == &call.dst);
        if (member.sourceFollowsDst) follow(call.src, call.dst);
        if (member.alpha == Member::sharesSource) follow(call.alpha, call.src);
        if (member.alpha == Member::sharesDst) follow(call.alpha, call.dst);
    }

    Buffer& first() {
        return member_.cut == Member::bySrcAndDst     ? call.src
               : member_.cut == Member::byAlphaAndDst ? call.alpha
                                                      : call.dst;
    }
    bool owns(const Buffer& buffer) const {
        if (&buffer == &call.src) return member_.src != Format::none && !member_.sourceFollowsDst;
        return &buffer == &call.dst || member_.alpha == Member::ownGeometry;
    }
    std::string name(const Buffer& buffer) const {
        return &buffer == &call.src ? member_.srcName : &buffer == &call.dst ? member_.dstName : member_.alphaName;
    }
    /// The name of a geometry parameter of the buffer.
    std::string name(const Buffer& buffer, const char* suffix) const {
        const std::string stem = name(buffer);
        if (stem != "data" && stem != "layers") return stem + suffix;
        std::string plain = suffix;
        plain[0] = static_cast<char>(plain[0] - 'A' + 'a');
        return plain;
    }

    /// The breach that the call reports after `change`. A call that reports one must write nothing.
    Breach breachOf(const std::function<void()>& change) {
        const Call valid = call;
        const auto before = pixels_;
        change();
        Breach breach = ::breachOf([this] { member_.call(call); });
        EXPECT_TRUE(breach.function.empty() || pixels_ == before) << member_.name << " wrote before it reported";
        call = valid;
        return breach;
    }

    Call call;

private:
    void place(Buffer& buffer, Format format, std::size_t index, bool isFirst) {
        if (format == Format::none) return;
        buffer = isFirst ? Buffer{format, nullptr, 8, 6, 2, 1} : Buffer{format, nullptr, 9, 7, 3, 2};
        buffer.pixels = pixels_[index].data();
    }
    static void follow(Buffer& buffer, const Buffer& owner) {
        const Format format = buffer.format;
        std::byte* const pixels = buffer.pixels;
        buffer = owner;
        buffer.format = format;
        buffer.pixels = pixels;
    }

    const Member& member_;
    std::array<std::uint8_t, 256> tables_{};
    std::array<std::array<std::byte, 9 * 7 * 4>, 3> pixels_{};
};

class MemberContract : public testing::TestWithParam<const Member*> {
protected:
    const Member& member() const { return *GetParam(); }
    /// A breach of the member's function. A suffix after "_" distinguishes several members of one function.
    Breach breach(const std::string& parameter, const std::string& value, const std::string& rule) const {
        const std::string name = member().name;
        return {name.substr(0, name.find('_')), parameter, value, rule};
    }
    std::vector<Buffer*> buffers(ValidCall& valid) const {
        std::vector<Buffer*> all;
        for (Buffer* buffer : {&valid.call.src, &valid.call.alpha, &valid.call.dst}) {
            if (buffer->format != Format::none) all.push_back(buffer);
        }
        return all;
    }
};

#if defined(OMNAR_CHECKED)

TEST_P(MemberContract, CornersAndSums) {
    ValidCall valid(member());
    for (Buffer* buffer : buffers(valid)) {
        if (!valid.owns(*buffer)) continue;
        const auto parameter = [&](const char* suffix) { return valid.name(*buffer, suffix); };
        const bool anyCorner = member().cornersAnywhere;
        const bool holdsRegion = anyCorner && buffer == &valid.call.alpha;
        const auto rule = [&](const char* corner, const std::string& edge, const char* left) {
            const std::string extent = holdsRegion ? std::string(" + ") + left + " of the cut region" : "";
            return parameter(corner) + extent + " <= " + parameter(edge.c_str());
        };
        const Breach nothing{};
        EXPECT_EQ(valid.breachOf([&] { buffer->x = buffer->width + 1; }),
                  anyCorner && !holdsRegion
                      ? nothing
                      : breach(parameter("X"), std::to_string(buffer->width + 1), rule("X", "Width", "columns")));
        EXPECT_EQ(valid.breachOf([&] { buffer->y = buffer->height + 1; }),
                  anyCorner && !holdsRegion
                      ? nothing
                      : breach(parameter("Y"), std::to_string(buffer->height + 1), rule("Y", "Height", "rows")));
    }
    const Buffer& first = valid.first();
    const auto overlong = [](std::uint32_t corner) { return std::to_string(UINT_MAX - corner + 1); };
    EXPECT_EQ(valid.breachOf([&] { valid.call.h = UINT_MAX - first.y + 1; }),
              breach("h", overlong(first.y), valid.name(first, "Y") + " + h" + fitsInRange));
    if (member().columnsUncut) return;
    EXPECT_EQ(valid.breachOf([&] { valid.call.w = UINT_MAX - first.x + 1; }),
              breach("w", overlong(first.x), valid.name(first, "X") + " + w" + fitsInRange));
}

TEST_P(MemberContract, NullAndTooSmallBuffers) {
    ValidCall valid(member());
    for (Buffer* buffer : buffers(valid)) {
        const bool optional = buffer == &valid.call.alpha && member().mayLackAlpha;
        const bool isLayer = std::string(member().srcName) == "layers" && buffer != &valid.call.dst;
        if (!optional && !isLayer) {
            EXPECT_EQ(valid.breachOf([&] { buffer->pixels = nullptr; }),
                      breach(valid.name(*buffer), "null", notNullUnlessEmpty));
        }
    }
    Buffer& alpha = valid.call.alpha;
    if (member().alpha != Member::ownGeometry || member().cut == Member::byAlphaAndDst) return;
    EXPECT_EQ(valid.breachOf([&] { alpha.width = alpha.x + valid.call.w - 1; }),
              breach("alphaX", "3", "alphaX + columns of the cut region <= alphaWidth"));
    EXPECT_EQ(valid.breachOf([&] { alpha.height = alpha.y + valid.call.h - 1; }),
              breach("alphaY", "2", "alphaY + rows of the cut region <= alphaHeight"));
}

#endif

// Regions to the edge of the first buffer, where other buffers have corners further from their origin. Empty regions
// need no memory.
TEST_P(MemberContract, ValidExtremes) {
    ValidCall valid(member());
    const Breach nothing{};
    const Buffer& first = valid.first();
    EXPECT_EQ(valid.breachOf([] {}), nothing);
    EXPECT_EQ(valid.breachOf([&] {
        valid.call.w = member().columnsUncut ? first.width - first.x : UINT_MAX - first.x;
        valid.call.h = UINT_MAX - first.y;
    }),
              nothing);
    const auto forget = [&] {
        for (Buffer* buffer : buffers(valid)) buffer->pixels = nullptr;
    };
    for (std::uint32_t* const extent : {&valid.call.w, &valid.call.h}) {
        EXPECT_EQ(valid.breachOf([&] { forget(), *extent = 0; }), nothing);
    }
    for (Buffer* const buffer : {&valid.first(), &valid.call.dst}) {
        EXPECT_EQ(valid.breachOf([&] { forget(), buffer->x = buffer->width; }), nothing);
        EXPECT_EQ(valid.breachOf([&] { forget(), buffer->y = buffer->height; }), nothing);
    }
    if (member().alpha != Member::ownGeometry || member().cut == Member::byAlphaAndDst) return;
    Buffer& alpha = valid.call.alpha;
    EXPECT_EQ(valid.breachOf([&] {
        alpha.width = alpha.x + valid.call.w;
        alpha.height = alpha.y + valid.call.h;
    }),
              nothing);
}

std::vector<const Member*> membersWithARegion() {
    std::vector<const Member*> all;
    for (const auto family : support::families()) {
        for (const Member& member : family) {
            if (!member.isRun) all.push_back(&member);
        }
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, MemberContract, testing::ValuesIn(membersWithARegion()),
                         [](const auto& instance) { return std::string(instance.param->name); });

// All other preconditions, and extreme valid calls.

TRC trc[16], striped[160];
L08 l08[81], alpha[81];
L12 l12[16], ink[16];
int out, pieces[6], table5[25], labels[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1}, values[9] = {0, 255, 0, 0, -1};
int *const outputs = pieces, *const noOutputs = nullptr;
unsigned size;
double real;
unsigned char flag, *block;
unsigned char lut[256];
const double rising[] = {1, 2, 3}, withNan[] = {1, 2, NAN}, far[] = {1, HUGE_VAL};
const unsigned short knots[] = {0, 0, 5, 5, 5, 9};
unsigned short curve[20];
SFeature record;
const int layer0[] = {0}, layerBefore[] = {-1};
const L08 *const layers[] = {l08}, *const noLayers[] = {nullptr};
constexpr double inf = HUGE_VAL;
constexpr auto halfDrop = eDropVertical, brick = eDropHorizontal, straight = _EDropKind{0};
constexpr auto topLeft = eMotionFromTopLeft, noOrder = _EMotionCopyMode{9};

// Calls of the lists, with the parameters that the lists vary.
void toL08(const L08* plane, TRC* dst, const unsigned char* map, unsigned w, bool erase) {
    erase ? AlphaBlendL08ToTRCAndEraseA(plane, 4, 4, 1, 0, 7, dst, 4, 4, 0, 0, 255, w, 2, map)
          : AlphaBlendL08ToTRC(plane, 4, 4, 1, 0, 7, dst, 4, 4, 0, 0, 255, w, 2, false, map);
}
template <auto function>
void bitmaps(const unsigned char* src, unsigned srcW, unsigned srcH, unsigned char* dst, unsigned dstW, double sx,
             double sy) {
    function(src, srcW, srcH, 1, dst, dstW, 2, sx, sy);
}
template <auto function, class Px>
void shade(Px* destination, const bool* flags) {
    function(alpha, 4, 4, 0, 0, destination, 4, 4, 0, 0, 255, 4, 4, flags);
}
void background(const L08* const* sources, const int* indices, int count, unsigned w) {
    MarkBG(sources, indices, count, 4, 4, 0, 0, 1, 1, trc, 4, 4, 0, 0, w, 4);
}
void measure(const int* buffer, int width, const int* valueBuffer, int objects, int needed, unsigned char* cancelled) {
    MultiObjectFeatureExtract<int>(buffer, width, 3, 0, 0, 3, 3, valueBuffer, 1, objects, &record,
                                   EFeaturesNeeded(needed), cancelled);
}
void follow(const int* buffer, const int* start, int width, int height) {
    FollowContour<int>(buffer, start, width, height, 0, 0, 1, 1, 1, nullptr, nullptr);
}
void toScreen(const int* xs, const int* ys, int* const* sxs, int* const* sys, unsigned repW, unsigned repH) {
    FPToSnappedSP(xs, ys, 1, sxs, sys, 0, 0, 9, repW, repH, 0, halfDrop, 1, 1, 0, false);
}
void toScreenMM(const double* xs, const double* ys, int* const* sxs, int* const* sys) {
    MMToSnappedSP(xs, ys, 2, sxs, sys, 0, 0, 9, 9, 9, 0, halfDrop, 1, 1, 1, 1, 0, false);
}
void sized(unsigned dstW, unsigned dstH, unsigned tableRadius, unsigned frameWidth) {
    HardFrameL08toL08DifferentSize(l08, 9, 9, 0, 0, alpha, dstW, dstH, 5, 5, table5, tableRadius, frameWidth, true);
}

struct Polygon final : ICoordPolygon {
    int GetResX(double*) override { return 0; }
    int GetResY(double*) override { return 0; }
    int Append(ICoordPair*) override { return 0; }
} polygon;

/// Calls `call` without the host's allocator, or without the memory manager.
template <class Function>
void withoutAllocator(Function call) {
    struct Absence {
        LargeAllocatorItf* const usual = std::exchange(g_pLargeAllocator, nullptr);
        ~Absence() { g_pLargeAllocator = usual; }
    } absence;
    call();
}
template <class Function>
void withoutMemMgr(Function call) {
    struct Absence {
        Absence() {
            SHostServices services;
            services.getMemMgr = []() -> IMemMgr* { return nullptr; };
            SetHostServices(&services);
        }
        ~Absence() { SetHostServices(nullptr); }
    } absence;
    call();
}
void makeWorkBuffer() { CalcAndGetFixedBufferForThreads(9, 9, 1, 1, &size, &size, &size, &block, eRotateTurned); }

struct Case {
    const char* text;
    void (*call)();
    const char *parameter = nullptr, *value = nullptr, *rule = nullptr;  ///< of the breach, if any
    const char* function = nullptr;                                      ///< if not the one that `text` begins with
};
#define VALID(...)                        \
    {                                     \
#__VA_ARGS__, [] { __VA_ARGS__; } \
    }
#define BREAKS(parameter, value, rule, ...)                       \
    {                                                             \
#__VA_ARGS__, [] { __VA_ARGS__; }, parameter, value, rule \
    }
#define BREAKS_OF(function, parameter, value, rule, ...)                    \
    {                                                                       \
#__VA_ARGS__, [] { __VA_ARGS__; }, parameter, value, rule, function \
    }

void expectEach(const std::vector<Case>& cases) {
    for (const Case& each : cases) {
        Breach expected;
        if (each.parameter != nullptr) {
            const std::string text = each.text;
            const std::string function =
                each.function != nullptr ? each.function : text.substr(0, text.find_first_of("(<"));
            expected = {function, each.parameter, each.value, each.rule};
        }
        EXPECT_EQ(breachOf(each.call), expected) << each.text;
    }
}

// clang-format off
TEST(Contract, AcceptsExtremeValidCalls) {
    expectEach({
        VALID(toL08(alpha, trc, lut, 3, false)), VALID(toL08(alpha, trc, lut, 3, true)), VALID(toL08(alpha, trc, nullptr, 4, true)),
        VALID(AlphaBlendL08ToTRC(alpha, 4, 4, 1, 4, 7, trc, 4, 4, 0, 0, 255, 9, 2, false, lut)),
        VALID(AlphaBlendL08ToTRC(alpha, 4, 4, 1, 0, 7, trc, 4, 4, 0, 4, 255, 9, 2, false, nullptr)),
        // A table that lies between written rows.
        VALID(MarkL08ToTRC(l08, 1, 2, 0, 0, reinterpret_cast<bool*>(striped + 1), 1, 0, striped, 70, 2, 0, 0, 1, 2)),
        // The alpha plane's own geometry is checked only with a plane and with includeZeros.
        VALID(AlphaBlendL08ToL08(l08, 4, 4, 0, 0, alpha, 0, 0, 7, 7, l08, 4, 4, 0, 0, 255, 0, false, 4, 4, false)),
        VALID(AlphaBlendL08ToL08(l08, 4, 4, 0, 0, nullptr, 0, 0, 7, 7, l08, 4, 4, 0, 0, 255, 1, false, 4, 4, false)),
        VALID(AlphaBlendL12ToL12(l12, 4, 4, 0, 0, nullptr, 0, 0, 7, 7, ink, 4, 4, 0, 0, 255, 1, false, 4, 4, false)),
        VALID(PostApplyAlpha(nullptr, static_cast<L08*>(nullptr), 16)), VALID(PostApplyAlpha(alpha, static_cast<L12*>(nullptr), 0)),
        VALID(bitmaps<AlphaBlendBGR24AlphaToBGR24>(nullptr, 0, 0, nullptr, 0, inf, NAN)),
        VALID(bitmaps<AlphaBlendBGR32AlphaToBGR32>(nullptr, 0, 0, nullptr, 0, -1, inf)),
        VALID(bitmaps<AlphaBlendBGR32AlphaToBGR32>(l08, 1, 1, alpha, 2, 0, std::numeric_limits<double>::max())),
        VALID(shade<LighterL12WithAlpha>(ink, nullptr)),
        VALID(DarkerTRCWithAlpha(alpha, 4, 4, 4, 0, trc, 4, 4, 0, 0, 255, 4, 4, nullptr)),
        VALID(TransferToneL08ToL08(alpha, 1, 4, 4, 0, 0, l08, l08 + 40, 4, 4, 0, 0, 255, false, false, false, true, 4, 4, nullptr)),
        VALID(MoveToneL08ToL08Prot(alpha, 4, 4, 0, 4, l08, l08 + 40, 4, 4, 0, 0, 255, false, 4, 4, nullptr)),
        VALID(MotionCopyL08ToL08(nullptr, 4, 4, 5, 0, nullptr, 0, 0, 9, 9, nullptr, 4, 4, 0, 9, 255, false, 2, 2, topLeft, false)),
        VALID(MotionCopyL12ToL12(nullptr, 4, 4, 1, 0, nullptr, 0, 0, 9, 9, nullptr, 4, 4, 0, 0, 255, false, UINT_MAX, 2, noOrder, false)),
        VALID(ConvertBufferFrom32To24Bits(nullptr, nullptr, 0)),
        VALID(ApplyLUTToL08(l08, 4, 4, 4, 0, 4, 4, nullptr)),
        VALID(FillTRCBuffer(trc, 4, 4, 1, 4, 9, 9, 1)), VALID(FillTRCBuffer(trc, 4, 4, 1, 1, 3, 9, 1)),
        VALID(ChessboardFillTRCBuffer(trc, 4, 4, 1, 4, 9, 9, 0, 0, 1, 2, 0)),
        // Source rows that are overwritten before or after they are copied, not while.
        VALID(Copy2DTRCBufferToTRC(trc, 4, 4, 0, 1, trc, 4, 4, 0, 0, 4, 3)), VALID(Copy2DTRCBufferToTRC(trc, 4, 4, 0, 0, trc, 4, 4, 2, 0, 2, 4)),
        VALID(background(nullptr, nullptr, 0, 4)), VALID(background(layers, layerBefore, 0, 4)), VALID(background(layers, layer0, 1, 4)), VALID(background(nullptr, nullptr, 3, 0)), VALID(background(noLayers, layer0, 1, 0)),
        VALID(MarkL08ToTRC(l08, 4, 4, 0, 4, nullptr, 1, 1, trc, 4, 4, 0, 0, 4, 4)),
        // No frame is drawn, or no table is read.
        VALID(HardFrameL08toL08(nullptr, nullptr, 4, 4, nullptr, 0, 2, true)), VALID(HardFrameL08toL08(l08, alpha, 9, 9, nullptr, 0, 1, true)),
        VALID(HardFrameDownL08toL08(l08, alpha, 9, 9, table5, 2, 2)), VALID(SoftFrameL08toL08(l08, alpha, 9, 9, nullptr, 0, 0)),
        VALID(HardFrameL08toL08DifferentXYFlat(l08, alpha, 3, 9, 4, 4, nullptr, 0, 2, 0)), VALID(sized(9, 9, 2, 2)),
        VALID(HardFrameL08toL08DifferentSize(l08, 9, 9, 9, 9, nullptr, 0, 0, 5, 5, nullptr, 0, 3, true)), VALID(sized(9, 9, 1, 0)),
        VALID(SetInRapp(0, 0, 0, 0, 5, halfDrop, &out, &out)), VALID(SetInRapp(0, 0, 0, 0, 5, brick, &out, &out)),
        VALID(SetInRapp(5, 6, 0, 0, 5, straight, &out, &out)), VALID(SetInRappMM(1, 5, 0, 0, 5, halfDrop, &real, &real)),
        VALID(SetInRappDb(0, 0, 0, 0, 5, 1, 1, halfDrop, &out, &out)),
        VALID(GetRapport(1e10, 1, 2)), VALID(GetRapport(5, -1, 2)), VALID(GetRapport(5, 1.5, 2)),
        VALID(CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 0, 0, brick, 0, nullptr, nullptr, nullptr, nullptr, nullptr, true)),
        VALID(CalcPosAndSizeInRepBufferInv(1, 2, 3, 4, 0, 0, straight, 0, &out, nullptr, nullptr, nullptr, nullptr)),
        VALID(CalcPosAndSizeInRepBuffer(0, 0, 3, 4, 0, 0, halfDrop, 0, &out, pieces, pieces, pieces, pieces, true)),
        VALID(FPToVP(1, 2, &out, &out, 0, 0, 0, straight, 1, 1, true)),
        VALID(VPToFP(1, 2, &out, &out, 0, 0, 0, halfDrop, 1, 1, false)), VALID(VPToFP(1, 2, &out, &out, 0, 9, 0, halfDrop, 1, 1, true)),
        VALID(VPToFPDb(1, 2, &out, &out, 9, 0, 0, 1, 1, brick, 1, 1, true)),
        VALID(FPToSnappedSP(1, 2, nullptr, nullptr, 0, 0, 9, 0, 0, 0, straight, 1, 1, 0, false)),
        VALID(FPToSnappedSP(nullptr, nullptr, 0, &noOutputs, nullptr, 0, 0, 9, 0, 0, 0, halfDrop, 1, 1, 0, false)),
        VALID(MMToSnappedSP(NAN, -0.0, &out, &out, 0, 0, 9, 0, 0, 0, halfDrop, 1, 1, 1, 1, 0, false)),
        VALID(toScreen(pieces, pieces, &outputs, &outputs, 9, 9)), VALID(toScreenMM(rising, withNan, &outputs, &outputs)),
        VALID(CalcParts2(0, 5, 100, &out, pieces)), VALID(CalcParts2(-100, 5, 1, &out, pieces)), VALID(CalcParts(0, 2, 0, 4, 5, &out, pieces)), VALID(makeWorkBuffer(); g_pLargeAllocator->Free(block)),
        VALID(ggT(INT_MIN, 1)), VALID(ggT(INT_MIN, -2)), VALID(kgV(INT_MIN, 3)), VALID(Fakultaet(UINT_MAX - 1)),
        VALID(NUeberK(UINT_MAX, UINT_MAX)), VALID(NUeberK(68, 33)), VALID(NUeberK(68, 35)),
        VALID(GetLinearInterpoliertenWert(far, withNan, 2, NAN)), VALID(GetInterpolatedOverlayFactor(0, rising, 0)),
        VALID(CurveInterpolation(5, knots, 0, 9, nullptr)), VALID(CurveInterpolation(5, knots, 6, 9, curve)),
        VALID(Fill(labels, 1, 1, 5, 5, 5, 5, -1, -1, 1, nullptr)),
        VALID(GetContourPolygonFromBuffer2(nullptr, 0, 9, 0, &polygon)), VALID(follow(labels, labels, 1 << 30, 4)), VALID(follow(labels, labels + 8, 3, 3)),
        VALID(measure(nullptr, 3, nullptr, 1, 0, &flag)), VALID(measure(labels, 3, nullptr, 1, 3, &flag)),
        VALID(measure(labels, 3, values, 0, 39, &flag)), VALID(measure(labels, 3, nullptr, 1, FeatureOrientation, &flag)), VALID(InitFeatureTables(0, HUGE_VAL)),
        VALID(DrawContourOfL08toTRC(nullptr, 4, 4, 0, 0, nullptr, 4, 4, 4, 4, 4, 4, 1)), VALID(DrawContourOfL08toTRC(nullptr, 4, 4, 2, 0, nullptr, 4, 4, 0, 0, 4, 4, 1)),
        VALID(DrawContourOfL08toTRC(l08, 4, 4, 1, 0, trc, 4, 4, 2, 2, UINT_MAX - 1, UINT_MAX, 1)),
    });
}

#if defined(OMNAR_CHECKED)

constexpr const char* apart = "shares no memory with pixels that are written";

TEST(Contract, ReportsBreachesOfRasterFunctions) {
    expectEach({
        BREAKS_OF("AlphaBlendL08ToTRC", "w", "4", "alphaX + w <= alphaWidth, unless lut is null or the cut region is empty", toL08(alpha, trc, lut, 4, false)),
        BREAKS_OF("AlphaBlendL08ToTRCAndEraseA", "w", "4", "alphaX + w <= alphaWidth, unless lut is null or the cut region is empty", toL08(alpha, trc, lut, 4, true)),
        BREAKS_OF("AlphaBlendL08ToTRC", "lut", "not null", apart, toL08(alpha, trc, reinterpret_cast<L08*>(trc + 5), 2, false)),
        BREAKS_OF("AlphaBlendL08ToTRCAndEraseA", "lut", "not null", apart, toL08(alpha, striped + 64, reinterpret_cast<L08*>(striped + 64) - 255, 2, true)),
        BREAKS("data", "null", "not null, unless alpha is null or count is 0", PostApplyAlpha(alpha, static_cast<L08*>(nullptr), 1)),
        BREAKS("data", "null", "not null, unless alpha is null or count is 0", PostApplyAlpha(alpha, static_cast<L12*>(nullptr), 1)),
        BREAKS_OF("AlphaBlendBGR24AlphaToBGR24", "src", "null", "not null, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR24AlphaToBGR24>(nullptr, 1, 1, alpha, 2, 1, 1)),
        BREAKS_OF("AlphaBlendBGR32AlphaToBGR32", "dst", "null", "not null, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR32AlphaToBGR32>(l08, 1, 1, nullptr, 2, 1, 1)),
        BREAKS_OF("AlphaBlendBGR24AlphaToBGR24", "srcWidth", "0", "not 0, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR24AlphaToBGR24>(l08, 0, 1, alpha, 2, 1, 1)),
        BREAKS_OF("AlphaBlendBGR32AlphaToBGR32", "srcHeight", "0", "not 0, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR32AlphaToBGR32>(l08, 1, 0, alpha, 2, 1, 1)),
        BREAKS_OF("AlphaBlendBGR24AlphaToBGR24", "scaleX", "-1e-09", "finite and not negative, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR24AlphaToBGR24>(l08, 1, 1, alpha, 2, -1e-9, 1)),
        BREAKS_OF("AlphaBlendBGR32AlphaToBGR32", "scaleX", "nan", "finite and not negative, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR32AlphaToBGR32>(l08, 1, 1, alpha, 2, NAN, 1)),
        BREAKS_OF("AlphaBlendBGR32AlphaToBGR32", "scaleY", "inf", "finite and not negative, unless dstWidth or dstHeight is 0", bitmaps<AlphaBlendBGR32AlphaToBGR32>(l08, 1, 1, alpha, 2, 1, inf)),
        BREAKS_OF("DarkerL08WithAlpha", "toneBands", "null", notNullUnlessEmpty, shade<DarkerL08WithAlpha>(l08, nullptr)),
        BREAKS_OF("LighterL08WithAlpha", "toneBands", "null", notNullUnlessEmpty, shade<LighterL08WithAlpha>(l08, nullptr)),
        BREAKS_OF("DarkerL12WithAlpha", "toneBands", "null", notNullUnlessEmpty, shade<DarkerL12WithAlpha>(ink, nullptr)),
        BREAKS_OF("DarkerTRCWithAlpha", "toneBands", "null", notNullUnlessEmpty, shade<DarkerTRCWithAlpha>(trc, nullptr)),
        BREAKS_OF("LighterTRCWithAlpha", "toneBands", "null", notNullUnlessEmpty, shade<LighterTRCWithAlpha>(trc, nullptr)),
        BREAKS("protection", "null", notNullUnlessEmpty, MoveToneL08ToL08Prot(alpha, 4, 4, 0, 0, l08, l08 + 40, 4, 4, 0, 0, 255, false, 1, 1, nullptr)),
        BREAKS("w", "4294967295", "srcX + w <= 4294967295", MotionCopyL08ToL08(l08, 4, 4, 1, 0, alpha, 4, 4, 0, 0, l08, 4, 4, 0, 1, 255, false, UINT_MAX, 2, topLeft, false)),
        BREAKS("h", "4294967295", "srcY + h <= 4294967295", MotionCopyL12ToL12(l12, 4, 4, 1, 1, alpha, 4, 4, 0, 0, ink, 4, 4, 0, 1, 255, false, 1, UINT_MAX, topLeft, false)),
        BREAKS("src", "null", "not null, unless count is 0", ConvertBufferFrom32To24Bits(nullptr, l08, 1)),
        BREAKS("dst", "null", "not null, unless count is 0", ConvertBufferFrom32To24Bits(trc, nullptr, 1)),
        BREAKS("lut", "null", notNullUnlessEmpty, ApplyLUTToL08(l08, 4, 4, 0, 0, 1, 1, nullptr)),
        BREAKS("lut", "null", notNullUnlessEmpty, ApplyLUTToL12(l12, 4, 4, 0, 0, 1, 1, nullptr)),
        BREAKS("w", "4", "x + w <= width, unless the cut region is empty", FillTRCBuffer(trc, 4, 4, 1, 0, 4, 1, 1)),
        BREAKS("x", "5", "x <= width", FillTRCBuffer(trc, 4, 4, 5, 0, 0, 1, 1)),
        BREAKS("w", "4294967295", "x + w <= width, unless the cut region is empty", ChessboardFillTRCBuffer(trc, 4, 4, 1, 0, UINT_MAX, 1, 0, 0, 1, 2, 3)),
        BREAKS("cellSize", "0", "not 0, unless the cut region is empty", ChessboardFillTRCBuffer(trc, 4, 4, 0, 0, 1, 1, 0, 0, 1, 2, 0)),
        BREAKS("dst", "not null", "no row shares memory with the row of src that it is copied from", Copy2DTRCBufferToTRC(trc, 4, 4, 0, 0, trc, 4, 4, 1, 0, 2, 4)),
        BREAKS_OF("MarkBG", "layers", "null", "not null, unless layerCount is 0 or less or the cut region is empty", background(nullptr, layer0, 1, 4)),
        BREAKS_OF("MarkBG", "layerIndices", "null", "not null, unless layerCount is 0 or less or the cut region is empty", background(layers, nullptr, 1, 4)),
        BREAKS_OF("MarkBG", "layers[0]", "null", "not null, unless the cut region is empty", background(noLayers, layer0, 1, 4)),
        BREAKS_OF("MarkBG", "layerIndices[0]", "-1", "not negative", background(layers, layerBefore, 1, 4)),
        BREAKS("levels", "null", notNullUnlessEmpty, MarkL08ToTRC(l08, 4, 4, 0, 0, nullptr, 1, 1, trc, 4, 4, 0, 0, 1, 1)),
        BREAKS("levels", "not null", apart, MarkL08ToTRC(l08, 4, 4, 0, 0, reinterpret_cast<bool*>(trc), 1, 1, trc, 4, 4, 0, 0, 1, 1)),
        BREAKS("alphaX", "5", "alphaX <= alphaWidth", ChangeColorOfTRCWithAlpha(1, alpha, 4, 4, 5, 0, trc, trc, 4, 4, 0, 4, 9, 1, 1, 0, 0)),
        BREAKS("src", "null", "not null, unless nothing is drawn", HardFrameL08toL08(nullptr, alpha, 9, 9, table5, 2, 2, true)),
        BREAKS("tableRadius", "2", "tableRadius >= the width of the discs, if distTable is read", HardFrameL08toL08(l08, alpha, 9, 9, table5, 2, 3, true)),
        BREAKS("dst", "null", "not null, unless nothing is drawn", HardFrameDownL08toL08(l08, nullptr, 9, 9, table5, 2, 1)),
        BREAKS("distTable", "null", "not null, if it is read", HardFrameDownL08toL08(l08, alpha, 9, 9, nullptr, 2, 2)),
        BREAKS("distTable", "null", "not null, if it is read", SoftFrameL08toL08(l08, alpha, 9, 9, nullptr, 2, 1)),
        BREAKS("tableRadius", "0", "tableRadius >= the width of the discs, if distTable is read", SoftFrameL08toL08(l08, alpha, 9, 9, table5, 0, 1)),
        BREAKS("width", "10", "width <= rowLength, unless nothing is drawn", HardFrameL08toL08DifferentXYFlat(l08, alpha, 9, 9, 10, 8, table5, 2, 2, 0)),
        BREAKS("src", "null", "not null, unless nothing is drawn", HardFrameL08toL08DifferentXYFlat(nullptr, alpha, 9, 9, 9, 8, table5, 2, 2, 0)),
        BREAKS("srcX", "10", "srcX <= srcWidth", HardFrameL08toL08DifferentSize(l08, 9, 9, 10, 0, alpha, 9, 9, 1, 1, table5, 2, 2, true)),
        BREAKS("srcY", "10", "srcY <= srcHeight", HardFrameL08toL08DifferentSize(l08, 9, 9, 0, 10, alpha, 9, 9, 1, 1, table5, 2, 2, true)),
        BREAKS("w", "4294967295", "srcX + w <= 4294967295", HardFrameL08toL08DifferentSize(l08, 9, 9, 1, 0, alpha, 9, 9, UINT_MAX, 1, table5, 2, 2, true)),
        BREAKS("h", "4294967295", "srcY + h <= 4294967295", HardFrameL08toL08DifferentSize(l08, 9, 9, 0, 1, alpha, 9, 9, 1, UINT_MAX, table5, 2, 2, true)),
        BREAKS_OF("HardFrameL08toL08DifferentSize", "dstWidth", "8", "columns that src leaves of the region + 2 * frameWidth <= dstWidth, unless nothing is drawn", sized(8, 9, 2, 2)),
        BREAKS_OF("HardFrameL08toL08DifferentSize", "dstHeight", "8", "rows that src leaves of the region + 2 * frameWidth <= dstHeight, unless nothing is drawn", sized(9, 8, 2, 2)),
        BREAKS_OF("HardFrameL08toL08DifferentSize", "tableRadius", "0", "tableRadius >= the width of the discs, if distTable is read", sized(9, 9, 0, 0)),
        BREAKS("maskX", "5", "maskX <= maskWidth", DrawContourOfL08toTRC(l08, 4, 4, 5, 0, trc, 4, 4, 0, 0, 4, 4, 1)),
        BREAKS("maskY", "5", "maskY <= maskHeight", DrawContourOfL08toTRC(l08, 4, 4, 0, 5, trc, 4, 4, 0, 0, 4, 4, 1)),
        BREAKS("w", "4294967295", "maskX + w <= 4294967295", DrawContourOfL08toTRC(l08, 4, 4, 1, 0, trc, 4, 4, 0, 0, UINT_MAX, 4, 1)),
        BREAKS("h", "4294967295", "maskY + h <= 4294967295", DrawContourOfL08toTRC(l08, 4, 4, 0, 1, trc, 4, 4, 0, 0, 4, UINT_MAX, 1)),
        BREAKS("targetX", "5", "targetX <= targetWidth", DrawContourOfL08toTRC(l08, 4, 4, 0, 0, trc, 4, 4, 5, 0, 4, 4, 1)),
        BREAKS("targetY", "5", "targetY <= targetHeight", DrawContourOfL08toTRC(l08, 4, 4, 0, 0, trc, 4, 4, 0, 5, 4, 4, 1)),
        BREAKS("mask", "null", notNullUnlessEmpty, DrawContourOfL08toTRC(nullptr, 4, 4, 0, 0, trc, 4, 4, 0, 0, 4, 4, 1)),
        BREAKS("target", "null", notNullUnlessEmpty, DrawContourOfL08toTRC(l08, 4, 4, 0, 0, nullptr, 4, 4, 0, 0, 4, 4, 1)),
    });
}

constexpr const char* neverDivides = "not 0, unless placing never divides by it";
constexpr const char* wholeSize = "cut to a whole number it is not 0, nor -1 for a position that is cut to -2147483648";
constexpr const char* ifHalfDrop = "not null, if kind is eDropVertical";
constexpr const char* ifFolded = "not 0, if the position is folded and kind is ";

TEST(Contract, ReportsBreachesOfRepeatFunctions) {
    static const std::string foldedW = std::string(ifFolded) + "eDropHorizontal", foldedH = std::string(ifFolded) + "eDropVertical";
    expectEach({
        BREAKS("outX", "null", "not null", SetInRapp(1, 5, 1, 1, 5, halfDrop, nullptr, &out)),
        BREAKS("outY", "null", "not null", SetInRapp(1, 5, 1, 1, 5, halfDrop, &out, nullptr)),
        BREAKS("width", "0", neverDivides, SetInRapp(1, 5, 0, 20, 5, halfDrop, &out, &out)),
        BREAKS("width", "0", neverDivides, SetInRapp(3, 45, 0, 20, 5, brick, &out, &out)),
        BREAKS("height", "0", neverDivides, SetInRapp(-1, 5, 10, 0, 5, halfDrop, &out, &out)),
        BREAKS("height", "0", neverDivides, SetInRapp(1, 0, 10, 0, 5, brick, &out, &out)),
        BREAKS("outX", "null", "not null", SetInRappDb(1, 5, 1, 1, 5, 1, 1, halfDrop, nullptr, &out)),
        BREAKS("outY", "null", "not null", SetInRappDb(1, 5, 1, 1, 5, 1, 1, halfDrop, &out, nullptr)),
        BREAKS("width", "0", neverDivides, SetInRappDb(1, 5, 0, 20, 5, 1, 1, halfDrop, &out, &out)),
        BREAKS("height", "0", neverDivides, SetInRappDb(1, 0, 10, 0, 5, 1, 1, brick, &out, &out)),
        BREAKS("outX", "null", "not null", SetInRappMM(1, 5, 0, 0, 5, halfDrop, nullptr, &real)),
        BREAKS("outY", "null", "not null", SetInRappMM(1, 5, 0, 0, 5, halfDrop, &real, nullptr)),
        BREAKS("repeatSize", "-1", wholeSize, GetRapport(1e10, -1, 2)),
        BREAKS("repeatSize", "0.5", wholeSize, SetInRappAndCalcRapp(3, 0.5, 2, &out)),
        BREAKS("repeatIndex", "null", "not null", SetInRappAndCalcRapp(3, 5, 2, nullptr)),
        BREAKS("count", "null", "not null, unless kind is eDropHorizontal", CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, straight, 0, nullptr, pieces, pieces, pieces, pieces, true)),
        BREAKS("pieceX", "null", ifHalfDrop, CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, halfDrop, 0, &out, nullptr, pieces, pieces, pieces, true)),
        BREAKS("pieceW", "null", ifHalfDrop, CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, halfDrop, 0, &out, pieces, nullptr, pieces, pieces, true)),
        BREAKS("pieceY", "null", ifHalfDrop, CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, halfDrop, 0, &out, pieces, pieces, nullptr, pieces, true)),
        BREAKS("pieceH", "null", ifHalfDrop, CalcPosAndSizeInRepBuffer(1, 2, 3, 4, 9, 9, halfDrop, 0, &out, pieces, pieces, pieces, nullptr, true)),
        BREAKS("repW", "0", neverDivides, CalcPosAndSizeInRepBuffer(1, 0, 3, 4, 0, 9, halfDrop, 0, &out, pieces, pieces, pieces, pieces, true)),
        BREAKS("repH", "0", neverDivides, CalcPosAndSizeInRepBufferInv(0, 2, 3, 4, 9, 0, halfDrop, 0, &out, pieces, pieces, pieces, pieces)),
        BREAKS("count", "null", "not null, unless kind is eDropHorizontal", CalcPosAndSizeInRepBufferInv(1, 2, 3, 4, 9, 9, halfDrop, 0, nullptr, pieces, pieces, pieces, pieces)),
        BREAKS("pieceW", "null", ifHalfDrop, CalcPosAndSizeInRepBufferInv(0, 2, 3, 4, 9, 9, halfDrop, 0, &out, pieces, nullptr, pieces, pieces)),
        BREAKS("vx", "null", "not null", FPToVP(1, 2, nullptr, &out, 9, 9, 0, straight, 1, 1, true)),
        BREAKS("vy", "null", "not null", FPToVP(1, 2, &out, nullptr, 9, 9, 0, straight, 1, 1, true)),
        BREAKS("repW", "0", "not 0, unless kind is no layout", FPToVP(1, 2, &out, &out, 0, 9, 0, halfDrop, 1, 1, true)),
        BREAKS("repH", "0", "not 0, unless kind is no layout", FPToVP(1, 2, &out, &out, 9, 0, 0, brick, 1, 1, false)),
        BREAKS("fx", "null", "not null", VPToFP(1, 2, nullptr, &out, 9, 9, 0, straight, 1, 1, true)),
        BREAKS("fy", "null", "not null", VPToFP(1, 2, &out, nullptr, 9, 9, 0, straight, 1, 1, true)),
        BREAKS("repW", "0", foldedW.c_str(), VPToFP(1, 2, &out, &out, 0, 9, 0, brick, 1, 1, true)),
        BREAKS("repH", "0", foldedH.c_str(), VPToFP(1, 2, &out, &out, 0, 0, 0, halfDrop, 1, 1, true)),
        BREAKS("fx", "null", "not null", VPToFPDb(1, 2, nullptr, &out, 9, 9, 0, 1, 1, straight, 1, 1, true)),
        BREAKS("fy", "null", "not null", VPToFPDb(1, 2, &out, nullptr, 9, 9, 0, 1, 1, straight, 1, 1, true)),
        BREAKS("repW", "0", foldedW.c_str(), VPToFPDb(1, 2, &out, &out, 0, 9, 0, 1, 1, brick, 1, 1, true)),
        BREAKS("sx", "null", "not null", FPToSnappedSP(1, 2, nullptr, &out, 0, 0, 9, 9, 9, 0, brick, 1, 1, 0, false)),
        BREAKS("sy", "null", "not null", FPToSnappedSP(1, 2, &out, nullptr, 0, 0, 9, 9, 9, 0, brick, 1, 1, 0, false)),
        BREAKS("repW", "0", "not 0, unless kind is no layout", FPToSnappedSP(1, 2, &out, &out, 0, 0, 9, 0, 9, 0, brick, 1, 1, 0, false)),
        BREAKS("repH", "0", "not 0, unless kind is no layout", FPToSnappedSP(1, 2, &out, &out, 0, 0, 9, 9, 0, 0, brick, 1, 1, 0, false)),
        BREAKS_OF("FPToSnappedSP", "fxs", "null", "not null", toScreen(nullptr, pieces, &outputs, &outputs, 9, 9)),
        BREAKS_OF("FPToSnappedSP", "fys", "null", "not null", toScreen(pieces, nullptr, &outputs, &outputs, 9, 9)),
        BREAKS_OF("FPToSnappedSP", "sxs", "null", "not null", toScreen(pieces, pieces, nullptr, &outputs, 9, 9)),
        BREAKS_OF("FPToSnappedSP", "*sxs", "null", "not null", toScreen(pieces, pieces, &noOutputs, &outputs, 9, 9)),
        BREAKS_OF("FPToSnappedSP", "*sys", "null", "not null", toScreen(pieces, pieces, &outputs, &noOutputs, 9, 9)),
        BREAKS_OF("FPToSnappedSP", "repW", "0", "not 0, unless kind is no layout", toScreen(pieces, pieces, &outputs, &outputs, 0, 9)),
        BREAKS_OF("FPToSnappedSP", "repH", "0", "not 0, unless kind is no layout", toScreen(pieces, pieces, &outputs, &outputs, 9, 0)),
        BREAKS("sx", "null", "not null", MMToSnappedSP(1, 2, nullptr, &out, 0, 0, 9, 9, 9, 0, brick, 1, 1, 1, 1, 0, false)),
        BREAKS("sy", "null", "not null", MMToSnappedSP(1, 2, &out, nullptr, 0, 0, 9, 9, 9, 0, brick, 1, 1, 1, 1, 0, false)),
        BREAKS("mmX", "1e+300", "times resX not infinite", MMToSnappedSP(1e300, 2, &out, &out, 0, 0, 9, 9, 9, 0, brick, 1e10, 1, 1, 1, 0, false)),
        BREAKS("mmY", "-inf", "times resY not infinite", MMToSnappedSP(1, -inf, &out, &out, 0, 0, 9, 9, 9, 0, brick, 1, 1, 1, 1, 0, false)),
        BREAKS_OF("MMToSnappedSP", "mmXs", "null", "not null", toScreenMM(nullptr, rising, &outputs, &outputs)),
        BREAKS_OF("MMToSnappedSP", "mmYs", "null", "not null", toScreenMM(rising, nullptr, &outputs, &outputs)),
        BREAKS_OF("MMToSnappedSP", "sys", "null", "not null", toScreenMM(rising, rising, &outputs, nullptr)),
        BREAKS_OF("MMToSnappedSP", "*sxs", "null", "not null", toScreenMM(rising, rising, &noOutputs, &outputs)),
        BREAKS_OF("MMToSnappedSP", "mmXs[1]", "inf", "times resX not infinite", toScreenMM(far, rising, &outputs, &outputs)),
        BREAKS_OF("MMToSnappedSP", "mmYs[1]", "inf", "times resY not infinite", toScreenMM(rising, far, &outputs, &outputs)),
        BREAKS("outW", "null", "not null", AdaptFileSizeToFileSizeForViewSize(1, 2, 3, 4, 1, 1, nullptr, &size)),
        BREAKS("outH", "null", "not null", AdaptFileSizeToFileSizeForViewSize(1, 2, 3, 4, 1, 1, &size, nullptr)),
        BREAKS("outW", "null", "not null", AdaptFileSizeToViewSizeForViewSize(1, 2, 3, 4, 1, 1, nullptr, &size)),
        BREAKS("outH", "null", "not null", AdaptFileSizeToViewSizeForViewSize(1, 2, 3, 4, 1, 1, &size, nullptr)),
        BREAKS("period", "-10", "not negative, unless all parts have their place in the array", CalcParts2(-10, 5, 100, &out, pieces)),
        BREAKS("count", "null", "not null", CalcParts2(10, 5, 100, nullptr, pieces)),
        BREAKS("parts", "null", "not null", CalcParts2(10, 5, 100, &out, nullptr)),
        BREAKS("count", "null", "not null", CalcParts(1, 2, 3, 4, 5, nullptr, pieces)),
        BREAKS("parts", "null", "not null", CalcParts(1, 2, 3, 4, 5, &out, nullptr)),
        BREAKS("threadCount", "0", "not 0", CalcAndGetFixedBufferForThreads(9, 9, 1, 0, &size, &size, &size, &block, eRotateStraight)),
        BREAKS("bytesPerPixel", "0", "1 or more", CalcAndGetFixedBufferForThreads(9, 9, 0, 1, &size, &size, &size, &block, eRotateTurned)),
        BREAKS("rowsPerThread", "null", "not null", CalcAndGetFixedBufferForThreads(9, 9, 1, 1, nullptr, &size, &size, &block, eRotateTurned)),
        BREAKS("pixelsPerRow", "null", "not null", CalcAndGetFixedBufferForThreads(9, 9, 1, 1, &size, nullptr, &size, &block, eRotateTurned)),
        BREAKS("bytesPerRow", "null", "not null", CalcAndGetFixedBufferForThreads(9, 9, 1, 1, &size, &size, nullptr, &block, eRotateTurned)),
        BREAKS("buffer", "null", "not null", CalcAndGetFixedBufferForThreads(9, 9, 1, 1, &size, &size, &size, nullptr, eRotateTurned)),
    });
}

TEST(Contract, ReportsBreachesOfNumbersAndObjects) {
    using Byte = unsigned char;
    expectEach({
        BREAKS("b", "0", "not 0", ggT(7, 0)), BREAKS("b", "0", "not 0", kgV(7, 0)),
        BREAKS("a", "-2147483648", "not -2147483648 where b is -1", ggT(INT_MIN, -1)),
        BREAKS("b", "-2147483648", "not -2147483648 where a is -1", ggT(-1, INT_MIN)),
        BREAKS("a", "-2147483648", "times b not -2147483648, wrapped, where ggT(a, b) is -1", kgV(INT_MIN, -3)),
        BREAKS("n", "4294967295", "not 4294967295", Fakultaet(UINT_MAX)), BREAKS("n", "4294967295", "not 4294967295", NUeberK(UINT_MAX, 1)),
        BREAKS("k", "34", "below 34, unless n - k is", NUeberK(68, 34)),
        BREAKS("x", "null", "not null", GetPosition(1, 2, nullptr, &real)), BREAKS("y", "null", "not null", GetPosition(1, 2, &real, nullptr)),
        BREAKS("pair", "null", "not null", GetPosition(1, 2, nullptr)),
        BREAKS("direction", "null", "not null", GetIntersectionDistanceDb(1, 2, 3, 4, 5, 6, nullptr)),
        BREAKS("xs", "null", "not null", GetLinearInterpoliertenWert(nullptr, rising, 3, 1)),
        BREAKS("ys", "null", "not null", GetLinearInterpoliertenWert(rising, nullptr, 3, 1)),
        BREAKS("count", "0", "not 0", GetLinearInterpoliertenWert(rising, rising, 0, 1)),
        BREAKS("xs[2]", "nan", "not NaN", GetLinearInterpoliertenWert(withNan, rising, 3, 1)),
        BREAKS("percents", "null", "not null", GetInterpolatedOverlayFactor(1, nullptr, 2)),
        BREAKS("count", "0", "1 or more, unless value is 0 or less", GetInterpolatedOverlayFactor(1, rising, 0)),
        BREAKS("valueCount", "3", "4 or more", CurveInterpolation(3, knots, 9, 9, curve)),
        BREAKS("points", "null", "not null", CurveInterpolation(4, nullptr, 9, 9, curve)),
        BREAKS("points[4]", "5", "greater than the x of the point before it", CurveInterpolation(6, knots, 9, 9, curve)),
        BREAKS("table", "null", "not null, unless endX <= points[0]", CurveInterpolation(4, knots, 1, 9, nullptr)),
        BREAKS("buffer", "null", "not null", Fill<int>(nullptr, 1, 1, 0, 0, 0, 0, 1, 1, 1, nullptr)),
        BREAKS("width", "0", "1 or more", Fill<int>(labels, 0, 1, 0, 0, 0, 0, 1, 1, 1, nullptr)),
        BREAKS("height", "0", "1 or more", Fill<Byte>(l08, 1, 0, 0, 0, 0, 0, 1, 1, 1, nullptr)),
        BREAKS("buffer", "null", "not null", ColorBinaryObjects<Byte>(nullptr, 1, 1, 0, 0, 1, 1, 0, 1, 2, true, 9)),
        BREAKS("width", "0", "1 or more", ColorBinaryObjects<Byte>(l08, 0, 1, 0, 0, 1, 1, 0, 1, 2, true, 9)),
        BREAKS("height", "0", "1 or more", ColorBinaryObjects<int>(labels, 1, 0, 0, 0, 1, 1, 0, 1, 2, true, 9)),
        BREAKS_OF("FollowContour", "buffer", "null", "not null", follow(nullptr, labels, 3, 3)),
        BREAKS_OF("FollowContour", "width", "0", "1 or more", follow(labels, labels, 0, 3)),
        BREAKS_OF("FollowContour", "startPixel", "not null", "buffer <= startPixel < buffer + width * height", follow(labels, labels + 9, 3, 3)),
        BREAKS_OF("FollowContour", "startPixel", "not null", "buffer <= startPixel < buffer + width * height", follow(labels + 1, labels, 2, 2)),
        BREAKS_OF("MultiObjectFeatureExtract", "cancelled", "null", "not null", measure(labels, 3, nullptr, 1, 1, nullptr)),
        BREAKS_OF("MultiObjectFeatureExtract", "width", "0", "1 or more", measure(labels, 0, nullptr, 1, 1, &flag)),
        BREAKS("height", "0", "1 or more", MultiObjectFeatureExtract<int>(labels, 3, 0, 0, 0, 3, 3, nullptr, 1, 1, &record, FeatureArea, &flag)),
        BREAKS("angleSteps", "nan", "not NaN", InitFeatureTables(0, NAN)),
        BREAKS_OF("MultiObjectFeatureExtract", "buffer", "null", "not null, unless no pixel is looked at", measure(nullptr, 3, nullptr, 1, 1, &flag)),
        BREAKS_OF("MultiObjectFeatureExtract", "valueBuffer", "null", "not null, unless no histogram is counted", measure(labels, 3, nullptr, 1, 33, &flag)),
        BREAKS_OF("MultiObjectFeatureExtract", "valueBuffer", "not null", "0..255 beneath every object", measure(labels, 3, values, 1, 33, &flag)),
        BREAKS_OF("MultiObjectFeatureExtract", "needed", "7", "without the orientation, unless there are tables of at least 8 steps or no objects", measure(labels, 3, nullptr, 1, 7, &flag)),
        BREAKS_OF("CalcAndGetFixedBufferForThreads", "getMemMgr", "null", "not null", withoutMemMgr(makeWorkBuffer)),
        BREAKS_OF("CalcAndGetFixedBufferForThreads", "g_pLargeAllocator", "null", "not null", withoutAllocator(makeWorkBuffer)),
        BREAKS_OF("MultiObjectFeatureExtract", "g_pLargeAllocator", "null", "not null", withoutAllocator([] { measure(labels, 3, nullptr, 1, 1, &flag); })),
        BREAKS_OF("ColorBinaryObjects", "g_pLargeAllocator", "null", "not null", withoutAllocator([] { ColorBinaryObjects<Byte>(l08, 1, 1, 0, 0, 1, 1, 0, 1, 2, true, 9); })),
        BREAKS_OF("GetContourPolygonFromBuffer2", "g_pLargeAllocator", "null", "not null", withoutAllocator([] { GetContourPolygonFromBuffer2(nullptr, 0, 0, 0, &polygon); })),
        BREAKS("shape", "null", "not null, unless width or height is 0", GetContourPolygonFromBuffer2(nullptr, 1, 1, 0, nullptr)),
        BREAKS("polygon", "null", "not null", GetContourPolygonFromBuffer2(nullptr, 0, 1, 0, nullptr)),
    });
}

TEST(ContractDeathTest, TheDefaultHandlerPrintsAndAborts) {
    EXPECT_DEATH(AlphaBlendColorWithConstAlphaToTRC(1, nullptr, 4, 4, 3, 0, 1, 1, false),
                 "OmnarRaster: AlphaBlendColorWithConstAlphaToTRC: dst is null, but this must hold: not null");
}

#endif
// clang-format on

}  // namespace
