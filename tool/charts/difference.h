/// How two pictures of one size differ.
#pragma once

#include <array>
#include <cstdint>

#include "chain/raster.h"

namespace pxk::tool {

struct Difference {
    std::uint64_t pixels = 0;               ///< how many differ
    std::array<std::uint8_t, 4> largest{};  ///< in any pixel: red, green, blue, alpha
};

/// Both must have the same size.
Difference differenceOf(const chain::Raster& first, const chain::Raster& second);

/// The difference of each channel in every pixel; that of alpha is shown as grey where it is larger. All are scaled
/// alike, so that the largest becomes 255 and small differences are visible.
chain::Raster drawDifference(const chain::Raster& first, const chain::Raster& second);

}  // namespace pxk::tool
