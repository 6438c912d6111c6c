/// Boxes and frames drawn into pixels.
#pragma once

#include <cstdint>

#include "chain/raster.h"

namespace pxk::tool {

/// Left and top inclusive, right and bottom exclusive.
struct Box {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

/// Fills a box, clipped to the picture. `rgb` is 0xRRGGBB.
void fill(chain::Raster& picture, const Box& box, std::uint32_t rgb);

/// Draws a frame inside the edges of a box, after clipping the box to the picture.
void drawFrame(chain::Raster& picture, const Box& box, std::int32_t thickness, std::uint32_t rgb);

}  // namespace pxk::tool
