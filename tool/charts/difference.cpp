#include "tool/charts/difference.h"

#include <algorithm>
#include <cstdlib>

namespace pxk::tool {
namespace {

/// The places of red, green, blue and alpha in a word.
constexpr std::array<unsigned, 4> channelShifts{16, 8, 0, 24};

std::array<std::uint8_t, 4> channelDifferences(std::uint32_t first, std::uint32_t second) {
    std::array<std::uint8_t, 4> result{};
    for (std::size_t x = 0; x < channelShifts.size(); ++x) {
        const auto a = static_cast<int>(first >> channelShifts[x] & 0xFFU);
        const auto b = static_cast<int>(second >> channelShifts[x] & 0xFFU);
        result[x] = static_cast<std::uint8_t>(std::abs(a - b));
    }
    return result;
}

}  // namespace

Difference differenceOf(const chain::Raster& first, const chain::Raster& second) {
    Difference difference;
    for (std::size_t i = 0; i < first.words.size(); ++i) {
        if (first.words[i] == second.words[i]) continue;
        ++difference.pixels;
        const auto channels = channelDifferences(first.words[i], second.words[i]);
        for (std::size_t x = 0; x < channels.size(); ++x) {
            difference.largest[x] = std::max(difference.largest[x], channels[x]);
        }
    }
    return difference;
}

chain::Raster drawDifference(const chain::Raster& first, const chain::Raster& second) {
    const auto largest = differenceOf(first, second).largest;
    const std::uint32_t scale = std::max<std::uint32_t>(1, *std::max_element(largest.begin(), largest.end()));
    chain::Raster drawn = chain::Raster::filled(first.width, first.height, 0);
    for (std::size_t i = 0; i < first.words.size(); ++i) {
        const auto channels = channelDifferences(first.words[i], second.words[i]);
        for (std::size_t x = 0; x < 3; ++x) {
            const std::uint32_t value = std::max(channels[x], channels[3]);
            drawn.words[i] |= (value * 255 + scale / 2) / scale << channelShifts[x];
        }
    }
    return drawn;
}

}  // namespace pxk::tool
