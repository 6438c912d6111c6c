/// The table of the class PictureLut3DPXK.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "chain/color_cube.h"

namespace pxk::chain {

/// What goes into Table(r, g, b, x), each of r, g and b from 0 to 15 standing for the channel value 17 times as large.
struct Lut3d {
    static constexpr std::uint32_t points = 16;

    std::vector<double> entries;

    double at(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x) const {
        return entries[((std::size_t{r} * points + g) * points + b) * 3 + x];
    }
};

/// Resamples a cube to the table's points by tetrahedral interpolation. An entry is the channel's value plus a half:
/// the class truncates, so that with the half its results are rounded, and an identity cube leaves a picture unchanged.
Lut3d resampled(const ColorCube& cube);

}  // namespace pxk::chain
