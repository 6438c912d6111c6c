/// Tint, one pixel at a time.
#pragma once

#include "support/definitions/whole_numbers.h"
#include "support/pixel_formats.h"

namespace pxk::test {

/// The colour of 0xRRGGBB, whatever the top byte.
inline Colour hostColour(std::uint32_t color) {
    return {static_cast<int>(color / 65536 % 256), static_cast<int>(color / 256 % 256), static_cast<int>(color % 256)};
}

inline Colour tinted(Colour old, std::uint32_t greyBase, std::uint32_t sepiaBase) {
    const Colour weights = hostColour(greyBase);
    const Colour tone = hostColour(sepiaBase);
    const double grey =
        old.red * (weights.red / 255.0) + old.green * (weights.green / 255.0) + old.blue * (weights.blue / 255.0);
    const auto toned = [&](int channel) { return clampedToByte(truncatedToInteger(channel / 255.0 * grey)); };
    return {toned(tone.red), toned(tone.green), toned(tone.blue)};
}

}  // namespace pxk::test
