/// What a family looks like as numbers, for kernels in which several pictures' families meet: a shift that is the same
/// for a whole row costs no more than one fixed in the code, and saves a loop for each combination.
#pragma once

#include <bit>

#include "picture/pixel_families.h"

namespace pxk {

/// A family's channels in a pixel word. A format of no family has masks of 0, so that whatever is read through them is
/// black.
struct FamilyLayout {
    /// The shift of each channel's lowest bit.
    std::int32_t red;
    std::int32_t green;
    std::int32_t blue;
    /// The bits of each channel, in place.
    std::uint32_t redMask;
    std::uint32_t greenMask;
    std::uint32_t blueMask;
    /// The bits outside the channels that make a written pixel opaque.
    std::uint32_t opaque;
};

namespace {

template <class Family>
constexpr FamilyLayout layout() {
    constexpr std::uint32_t black = Family::opaque({0, 0, 0});
    constexpr std::uint32_t redMask = Family::opaque({255, 0, 0}) & ~black;
    constexpr std::uint32_t greenMask = Family::opaque({0, 255, 0}) & ~black;
    constexpr std::uint32_t blueMask = Family::opaque({0, 0, 255}) & ~black;
    return {std::countr_zero(redMask),
            std::countr_zero(greenMask),
            std::countr_zero(blueMask),
            redMask,
            greenMask,
            blueMask,
            black};
}

constexpr FamilyLayout layoutOf(Family family) {
    switch (family) {
        case Family::alphaLast:
            return layout<AlphaLast>();
        case Family::alphaFirst:
            return layout<AlphaFirst>();
        case Family::gd:
            return layout<GdTrueColor>();
        case Family::none:
            break;
    }
    return {};
}

/// The bits of all three channels.
constexpr std::uint32_t colorMask(const FamilyLayout& family) {
    return family.redMask | family.greenMask | family.blueMask;
}

}  // namespace

}  // namespace pxk
