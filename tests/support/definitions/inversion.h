/// Inversion, one pixel at a time.
#pragma once

#include "support/pixel_formats.h"

namespace pxk::test {

inline Colour inverted(Colour colour) { return {255 - colour.red, 255 - colour.green, 255 - colour.blue}; }

inline Colour greyInverted(Colour colour) {
    const bool grey = colour.red == colour.green && colour.green == colour.blue;
    return grey ? inverted(colour) : colour;
}

}  // namespace pxk::test
