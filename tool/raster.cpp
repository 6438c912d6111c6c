#include "raster.h"

#include <algorithm>

namespace pxk::tool {

Raster Raster::filled(std::int32_t width, std::int32_t height, std::uint32_t rgb) {
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return {width, height, std::vector<std::uint32_t>(count, opaque(rgb))};
}

void Raster::fill(const Box& box, std::uint32_t rgb) {
    const std::int32_t right = std::min(box.right, width);
    const std::int32_t bottom = std::min(box.bottom, height);
    for (std::int32_t y = std::max(box.top, 0); y < bottom; ++y) {
        for (std::int32_t x = std::max(box.left, 0); x < right; ++x) at(x, y) = opaque(rgb);
    }
}

}  // namespace pxk::tool
