/// The host's colours, 0xRRGGBB, in a picture's layout. The top byte never counts.
#pragma once

#include "picture/family_layout.h"

namespace pxk {

namespace {

constexpr Rgb rgbOf(std::uint32_t color) { return {byteOf(color, 16), byteOf(color, 8), byteOf(color, 0)}; }

/// The colour in the channel bits of a pixel word, the other bits 0. In a picture of no family, where every pixel reads
/// as black, only black gives the 0 that a word masked with `colorMask` is there.
constexpr std::uint32_t channelBits(std::uint32_t color, const FamilyLayout& layout) {
    const Rgb rgb = rgbOf(color);
    return byteAt(rgb.red, layout.red) | byteAt(rgb.green, layout.green) | byteAt(rgb.blue, layout.blue);
}

/// The colour as an opaque pixel word.
constexpr std::uint32_t opaqueWord(std::uint32_t color, const FamilyLayout& layout) {
    return channelBits(color, layout) | layout.opaque;
}

}  // namespace

}  // namespace pxk
