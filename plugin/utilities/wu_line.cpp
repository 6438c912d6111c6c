#include "utilities/wu_line.h"

#include <algorithm>
#include <utility>

#include "picture/single_pixel.h"

namespace pxk {

std::int32_t gOutLineColorR = 0;
std::int32_t gOutLineColorG = 0;
std::int32_t gOutLineColorB = 0;

namespace {

std::int32_t blend(std::int32_t old, std::int32_t outline, std::int32_t weight) {
    return (old * weight + outline * (255 - weight)) / 255;
}

struct Steps {
    std::int64_t first;
    std::int64_t last;
};

// The inner steps of a walk of `count` steps from `start`, 1 to count - 1, that lie in 0 to size - 1.
Steps visibleSteps(std::int64_t start, std::int64_t direction, std::int64_t count, std::int64_t size) {
    const std::int64_t enter = direction > 0 ? -start : start - (size - 1);
    const std::int64_t leave = direction > 0 ? size - 1 - start : start;
    return {std::max<std::int64_t>(1, enter), std::min(count - 1, leave)};
}

}  // namespace

void DrawPixel(PictureWriter& picture, std::int64_t x, std::int64_t y, std::int32_t weight) {
    if (x < 0 || x >= picture.width || y < 0 || y >= picture.height) return;
    const Family family = familyOf(picture.format);
    if (family == Family::none) return;
    const FamilyLayout layout = layoutOf(family);
    std::uint32_t& word = picture.rowAt(static_cast<std::int32_t>(y))[x];
    const Rgb old = readPixel(layout, word);
    // Green and blue of the old pixel trade places: deliberate, kept for compatibility.
    word = opaquePixel(layout, {blend(old.red, gOutLineColorR, weight), blend(old.blue, gOutLineColorG, weight),
                                blend(old.green, gOutLineColorB, weight)});
}

void DrawWuLine(PictureWriter& picture, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    if (y0 > y1) {
        std::swap(x0, x1);
        std::swap(y0, y1);
    }
    const std::int64_t right = x1 < x0 ? -1 : 1;
    const std::int64_t width = (std::int64_t{x1} - x0) * right;
    const std::int64_t height = std::int64_t{y1} - y0;
    const bool alongX = width > height;
    const std::int64_t length = std::max(width, height);
    const std::int64_t drift = std::min(width, height);
    const bool straight = drift == 0 || drift == length;
    // How far each step moves across the line's main direction, in units of 1 / 65536 pixel.
    const std::int64_t advance = length == 0 ? 0 : (drift << 16) / length;

    DrawPixel(picture, x0, y0, 0);
    const Steps visible =
        alongX ? visibleSteps(x0, right, length, picture.width) : visibleSteps(y0, 1, length, picture.height);
    for (std::int64_t step = visible.first; step <= visible.last; ++step) {
        const std::int64_t moved = step * advance;
        const std::int64_t across = moved >> 16;
        const auto weight = static_cast<std::int32_t>((moved & 0xFFFF) >> 8);
        const std::int64_t x = x0 + right * (alongX ? step : across);
        const std::int64_t y = y0 + (alongX ? across : step);
        DrawPixel(picture, x, y, weight);
        if (straight) continue;
        if (alongX) {
            DrawPixel(picture, x, y + 1, weight ^ 255);
        } else {
            DrawPixel(picture, x + right, y, 255 - weight);
        }
    }
    DrawPixel(picture, x1, y1, 0);
}

}  // namespace pxk
