/// How two pictures of one size differ.
#pragma once

#include <array>
#include <cstdint>

#include "raster.h"

namespace pxk::tool {

struct Difference {
    std::uint64_t pixels = 0;               ///< how many differ
    std::array<std::uint8_t, 4> largest{};  ///< in any pixel: red, green, blue, alpha
};

/// Both are to be of the same size.
Difference differenceOf(const Raster& first, const Raster& second);

/// Each channel's difference in every pixel, that of alpha shown as grey where it is larger. All are stretched alike,
/// so that the largest is white: small differences show too.
Raster drawDifference(const Raster& first, const Raster& second);

}  // namespace pxk::tool
