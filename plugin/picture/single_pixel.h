/// A single pixel of an open picture, for work that goes from pixel to pixel rather than along rows.
#pragma once

#include "picture/family_layout.h"

namespace pxk {

namespace {

/// The colour of a word; black in a format of no family.
inline Rgb readPixel(const FamilyLayout& family, std::uint32_t word) {
    return {static_cast<std::int32_t>((word & family.redMask) >> family.red),
            static_cast<std::int32_t>((word & family.greenMask) >> family.green),
            static_cast<std::int32_t>((word & family.blueMask) >> family.blue)};
}

/// The opaque word of a colour, each channel 0 to 255, in a format that can be written.
inline std::uint32_t opaquePixel(const FamilyLayout& family, Rgb pixel) {
    return byteAt(pixel.red, family.red) | byteAt(pixel.green, family.green) | byteAt(pixel.blue, family.blue) |
           family.opaque;
}

}  // namespace

}  // namespace pxk
