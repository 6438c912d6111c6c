/// Pixels outside the host: to look at, and to draw into.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pxk::tool {

/// Left and top inside, right and bottom just outside.
struct Box {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

/// Rows of 0xAARRGGBB, alpha 255 opaque.
struct Raster {
    std::int32_t width;
    std::int32_t height;
    std::vector<std::uint32_t> words;

    /// All pixels the same colour, opaque. `rgb` is 0xRRGGBB.
    static Raster filled(std::int32_t width, std::int32_t height, std::uint32_t rgb);

    std::uint32_t& at(std::int32_t x, std::int32_t y) { return words[index(x, y)]; }
    std::uint32_t at(std::int32_t x, std::int32_t y) const { return words[index(x, y)]; }

    /// Paints the part of the box that lies inside.
    void fill(const Box& box, std::uint32_t rgb);

    /// Paints the inner edge of the box, after moving its sides in to where they show.
    void drawFrame(const Box& box, std::int32_t thickness, std::uint32_t rgb);

  private:
    std::size_t index(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

constexpr std::uint32_t opaque(std::uint32_t rgb) { return 0xFF000000U | rgb; }

}  // namespace pxk::tool
