#include "tool/charts/drawing.h"

#include <algorithm>

namespace pxk::tool {
namespace {

Box clipped(const Box& box, const chain::Raster& picture) {
    return {std::max(box.left, 0), std::max(box.top, 0), std::min(box.right, picture.width),
            std::min(box.bottom, picture.height)};
}

}  // namespace

void fill(chain::Raster& picture, const Box& box, std::uint32_t rgb) {
    const auto [left, top, right, bottom] = clipped(box, picture);
    for (std::int32_t y = top; y < bottom; ++y) {
        for (std::int32_t x = left; x < right; ++x) picture.at(x, y) = chain::opaque(rgb);
    }
}

void drawFrame(chain::Raster& picture, const Box& box, std::int32_t thickness, std::uint32_t rgb) {
    const auto [left, top, right, bottom] = clipped(box, picture);
    fill(picture, {left, top, right, std::min(top + thickness, bottom)}, rgb);
    fill(picture, {left, std::max(bottom - thickness, top), right, bottom}, rgb);
    fill(picture, {left, top, std::min(left + thickness, right), bottom}, rgb);
    fill(picture, {std::max(right - thickness, left), top, right, bottom}, rgb);
}

}  // namespace pxk::tool
