/// The lookup tables that are applied to pictures.
#pragma once

#include <cmath>
#include <cstdint>

namespace pxkbench {

/// An entry of a channel's table (0 red, 1 green, 2 blue). The three tables differ, and none is monotonic.
inline std::uint8_t tableEntry(int channel, int value) {
    return static_cast<std::uint8_t>((value + 1) * (2 * channel + 3));
}

/// Grid points along each axis of the 3D lookup table; the last two are never used.
inline constexpr std::uint32_t lookPoints = 18;

/// The value of a channel at grid point (r, g, b): each output channel is a curve of two input channels.
inline double lookEntry(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t channel) {
    const double inputs[] = {r / 17.0, g / 17.0, b / 17.0};
    return 250 * std::pow(0.7 * inputs[channel] + 0.3 * inputs[(channel + 1) % 3], 1.4);
}

}  // namespace pxkbench
