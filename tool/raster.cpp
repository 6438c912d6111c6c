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

void Raster::drawFrame(const Box& box, std::int32_t thickness, std::uint32_t rgb) {
    const Box inside{std::max(box.left, 0), std::max(box.top, 0), std::min(box.right, width),
                     std::min(box.bottom, height)};
    const auto [left, top, right, bottom] = inside;
    fill({left, top, right, std::min(top + thickness, bottom)}, rgb);
    fill({left, std::max(bottom - thickness, top), right, bottom}, rgb);
    fill({left, top, std::min(left + thickness, right), bottom}, rgb);
    fill({std::max(right - thickness, left), top, right, bottom}, rgb);
}

}  // namespace pxk::tool
