/// The tables that pictures are sent through.
#pragma once

#include <cmath>
#include <cstdint>

namespace pxkbench {

/// A channel's table (0 red, 1 green, 2 blue): no two alike, in no order.
inline std::uint8_t tableEntry(int channel, int value) {
    return static_cast<std::uint8_t>((value + 1) * (2 * channel + 3));
}

/// Points along each side of the three-dimensional table; the last two lie beyond the last colour.
inline constexpr std::uint32_t lookPoints = 18;

/// What a channel of the table's point (r, g, b) is: some look in which each channel depends on two others, in a curve.
inline double lookEntry(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t channel) {
    const double shares[] = {r / 17.0, g / 17.0, b / 17.0};
    return 250 * std::pow(0.7 * shares[channel] + 0.3 * shares[(channel + 1) % 3], 1.4);
}

}  // namespace pxkbench
