/// White, black, grey and coloured pixels, one at a time.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "support/pixel_formats.h"

namespace pxk::test {

inline bool white(Colour colour) { return colour == Colour{255, 255, 255}; }

inline bool black(Colour colour) { return colour == Colour{0, 0, 0}; }

/// No two channels differ by more than |tolerance|.
inline bool greyWithin(Colour colour, std::int64_t tolerance) {
    const std::int64_t allowed = tolerance < 0 ? -tolerance : tolerance;
    return std::abs(colour.green - colour.blue) <= allowed && std::abs(colour.red - colour.blue) <= allowed &&
           std::abs(colour.red - colour.green) <= allowed;
}

/// Not near black, and green differs from red or from blue by more than the threshold as given.
inline bool coloured(Colour colour, std::int64_t threshold) {
    const auto beyond = [=](int difference) { return difference < -threshold || difference > threshold; };
    const bool nearBlack = colour.red <= 29 && colour.green <= 29 && colour.blue < 30;
    return !nearBlack && (beyond(colour.green - colour.red) || beyond(colour.green - colour.blue));
}

}  // namespace pxk::test
