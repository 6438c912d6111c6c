/// Embedded masks, one pixel at a time.
#pragma once

#include "support/pixel_formats.h"

namespace pxk::test {

/// The alpha of a pixel as 0 to 255; 0 when the format is not known.
inline int alphaOf(int format, std::uint32_t word) {
    const auto bytes = bytesOf(word);
    if (alphaIsLast(format)) return bytes[3];
    if (alphaIsFirst(format)) return bytes[0];
    if (format != 8) return 0;
    const int seven = bytes[3] % 128;
    return seven * 2 + seven % 2;
}

/// The bits of a word that hold no colour, in a known format.
inline std::uint32_t alphaBits(int format) {
    return alphaIsFirst(format) ? wordOf({255, 0, 0, 0}) : wordOf({0, 0, 0, 255});
}

inline Colour maskColour(int format, std::uint32_t word, bool swap) {
    const int value = swap ? 255 - alphaOf(format, word) : alphaOf(format, word);
    return {value, value, value};
}

/// A pixel after the red of a mask's pixel has been stored in it.
inline std::uint32_t withFirstByte(std::uint32_t word, Colour mask, bool swap) {
    auto bytes = bytesOf(word);
    bytes[0] = static_cast<std::uint8_t>(swap ? 255 - mask.red : mask.red);
    return wordOf(bytes);
}

}  // namespace pxk::test
