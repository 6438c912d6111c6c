/// The pixels of a picture, copied out of the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pxk::chain {

constexpr std::uint32_t opaque(std::uint32_t rgb) { return 0xFF000000U | rgb; }

/// Rows of 0xAARRGGBB, alpha 255 opaque.
struct Raster {
    std::int32_t width;
    std::int32_t height;
    std::vector<std::uint32_t> words;

    /// All pixels the same colour, opaque. `rgb` is 0xRRGGBB.
    static Raster filled(std::int32_t width, std::int32_t height, std::uint32_t rgb) {
        const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        return {width, height, std::vector<std::uint32_t>(count, opaque(rgb))};
    }

    std::uint32_t& at(std::int32_t x, std::int32_t y) { return words[index(x, y)]; }
    std::uint32_t at(std::int32_t x, std::int32_t y) const { return words[index(x, y)]; }

  private:
    std::size_t index(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

}  // namespace pxk::chain
