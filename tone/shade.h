// SPDX-License-Identifier: MIT
/// @file
/// Lighter and darker: the change of a pixel. The vector kernels are in shade-inl.h.
#pragma once

#include <algorithm>

#include "buffers/level.h"
#include "buffers/region.h"
#include "buffers/rows.h"
#include "buffers/weighting.h"
#include "compositing/operands.h"
#include "tone/luminance.h"

namespace omnar {

/// The tone bands that a change is limited to. Each band weighs a tone from 0 to full; all three together weigh every
/// tone in full.
struct Bands {
    bool light = true, middle = true, dark = true;

    constexpr bool all() const { return light && middle && dark; }

    /// The weight of an amount of ink. The light band falls to 0 in the middle, where the dark band begins to rise. At
    /// full ink the dark band weighs full + 1, so that the middle band weighs -1.
    constexpr int inkWeight(int ink, int full) const {
        return sum(std::max(full - 2 * ink, 0), std::max(2 * ink - (full - 1), 0), full);
    }

    /// The weight of a luminance. Here the dark band weighs 255 from the first quarter down.
    constexpr int luminanceWeight(int luminance) const {
        return sum(std::max(2 * luminance - 255, 0), std::min(4 * std::max(128 - luminance, 0), 255), 255);
    }

private:
    /// The middle band weighs what the other two leave.
    constexpr int sum(int lightWeight, int darkWeight, int full) const {
        return (light ? lightWeight : 0) + (middle ? full - lightWeight - darkWeight : 0) + (dark ? darkWeight : 0);
    }
};

/// What the six operations share: a change by the product of the coverage, the opacity and the weight of the pixel's
/// tone. Each of them is 255 in full.
struct Shade {
    Plane<const L08> alpha;
    int opacity;
    Bands bands;

    void eachPlane(auto&& visit) { visit(alpha); }

protected:
    int product(std::size_t i, int weight) const { return alpha[i] * opacity * weight; }
    int change(std::size_t i, int weight) const { return product(i, weight) / (255 * 255); }
};

template <class Px>
struct Darker;
template <class Px>
struct Lighter;

/// Adds ink where there is some. Below opacity 255 and limited to bands, it adds a little less than Lighter takes away:
/// the product is divided by 65536 and rounded down.
template <>
struct Darker<L08> : Shade {
    using Pixel = L08;

    L08 at(L08 old, std::size_t i) const {
        if (old == 0) return 0;
        const int weight = bands.inkWeight(old, fullOf<L08>);
        const bool exact = opacity == 255 || bands.all();
        return static_cast<L08>(std::min(old + (exact ? change(i, weight) : product(i, weight) >> 16), 255));
    }
};

/// Takes ink away. Full ink of weight -1 comes to 256, of which the low 8 bits are kept.
template <>
struct Lighter<L08> : Shade {
    using Pixel = L08;

    L08 at(L08 old, std::size_t i) const {
        return static_cast<L08>(std::max(old - change(i, bands.inkWeight(old, fullOf<L08>)), 0));
    }
};

/// Adds ink. With all bands the change is the coverage: it is neither widened to 12 bits nor scaled by the opacity.
/// Products wrap at 32 bits.
template <>
struct Darker<L12> : Shade {
    using Pixel = L12;
    static constexpr unsigned full = fullOf<L12>;

    L12 at(L12 old, std::size_t i) const { return static_cast<L12>(std::min(old + more(old, i), full)); }

private:
    unsigned more(L12 old, std::size_t i) const {
        if (bands.all()) return alpha[i];
        const unsigned scaledWeight = static_cast<unsigned>(bands.inkWeight(old, full)) * full;
        return opacity == 255 ? alpha[i] * scaledWeight >> 16
                              : alpha[i] * static_cast<unsigned>(opacity) * scaledWeight >> 24;
    }
};

/// Takes away as much ink as the coverage, whatever the bands. Below opacity 255 it does not lighten: samples become
/// full, and those above full rise and wrap at 16 bits.
template <>
struct Lighter<L12> : Shade {
    using Pixel = L12;
    static constexpr unsigned full = fullOf<L12>;

    L12 at(L12 old, std::size_t i) const {
        if (opacity == 255) return static_cast<L12>(std::max(old - alpha[i], 0));
        return static_cast<L12>(std::max(old + scaled(alpha[i], static_cast<unsigned>(opacity)), full));
    }
};

/// Changes the luminance of a pixel by scaling its channels, which saturate at 255. A pixel of luminance 0 becomes a
/// grey. The alpha byte is unchanged.
constexpr TRC relit(TRC pixel, int oldLuminance, int newLuminance) {
    const TRC alpha = pixel & 0xFF000000U;
    if (oldLuminance == 0) return alpha | static_cast<TRC>(newLuminance) * 0x010101U;
    const auto scaledTo = [=](int shift) {
        return static_cast<TRC>(std::min(channel(pixel, shift) * newLuminance / oldLuminance, 255)) << shift;
    };
    return alpha | scaledTo(16) | scaledTo(8) | scaledTo(0);
}

/// Lowers the luminance.
template <>
struct Darker<TRC> : Shade {
    using Pixel = TRC;

    TRC at(TRC old, std::size_t i) const {
        const auto luma = static_cast<int>(luminance(old));
        return relit(old, luma, std::max(luma - change(i, bands.luminanceWeight(luma)), 0));
    }
};

/// Raises the luminance.
template <>
struct Lighter<TRC> : Shade {
    using Pixel = TRC;

    TRC at(TRC old, std::size_t i) const {
        const auto luma = static_cast<int>(luminance(old));
        return relit(old, luma, std::min(luma + change(i, bands.luminanceWeight(luma)), 255));
    }
};

using ShadeRows = RowTable<Darker<L08>, Lighter<L08>, Darker<L12>, Lighter<L12>, Darker<TRC>, Lighter<TRC>>;

extern const Levels<ShadeRows> shadeRows;

}  // namespace omnar
