/// Pixels in memory and the layouts they come in.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pxkhost {

/// 0xAARRGGBB with alpha 255 for opaque, whatever the layout behind it.
using Argb = std::uint32_t;

/// The alpha of an opaque pixel, without its colour.
inline constexpr Argb opaqueAlpha = 0xFF000000u;

/// How a 32-bit pixel word is laid out: an alpha-info number of a bitmap context (0 to 7), or libgd's true colour.
enum class PixelLayout : std::uint32_t {
    none = 0,
    premultipliedLast = 1,
    premultipliedFirst = 2,
    last = 3,
    first = 4,
    noneSkipLast = 5,
    noneSkipFirst = 6,
    alphaOnly = 7,
    gd = 8
};

/// Converts between a layout's pixel word and Argb. Channels are copied as they are: premultiplied layouts are neither
/// multiplied nor divided. Layouts that skip alpha read as opaque and are written with 255. libgd's 7-bit transparency
/// is inverted and widened, so that 0 reads as 255 and 127 as 0. `none` and `alphaOnly` have no colour words: both
/// directions throw HostError.
Argb argbFromWord(PixelLayout layout, std::uint32_t word);
std::uint32_t wordFromArgb(PixelLayout layout, Argb pixel);

/// A view of a picture's pixels, valid while the picture lives.
struct Surface {
    PixelLayout layout = PixelLayout::none;
    int width = 0;
    int height = 0;
    std::size_t rowBytes = 0;              ///< from one row to the next, for rows in one block
    std::uint32_t* pixels = nullptr;       ///< row 0, for rows in one block
    std::uint32_t* const* rows = nullptr;  ///< a table of rows instead, as libgd has it

    std::uint32_t* row(int y) const {
        if (rows != nullptr) return rows[y];
        return pixels + static_cast<std::size_t>(y) * (rowBytes / sizeof(std::uint32_t));
    }
    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
    Argb get(int x, int y) const { return argbFromWord(layout, row(y)[x]); }
    void set(int x, int y, Argb pixel) const { row(y)[x] = wordFromArgb(layout, pixel); }
};

/// Copies pixels from one surface to another of the same size, converting the layout.
void copyPixels(const Surface& source, const Surface& target);

}  // namespace pxkhost
