/// Channels of several pictures, one pixel at a time.
#pragma once

#include <algorithm>

#include "support/pixel_formats.h"

namespace pxk::test {

inline Colour combined(Colour red, Colour green, Colour blue) { return {red.red, green.green, blue.blue}; }

inline Colour lightest(Colour a, Colour b) {
    return {std::max(a.red, b.red), std::max(a.green, b.green), std::max(a.blue, b.blue)};
}

}  // namespace pxk::test
