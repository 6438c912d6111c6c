/// Counting colours, one pixel at a time.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "support/pixel_formats.h"

namespace pxk::test {

struct Histograms {
    using Counters = std::array<std::uint32_t, 256>;

    Counters red{};
    Counters green{};
    Counters blue{};

    void add(Colour colour) {
        ++red[static_cast<std::size_t>(colour.red)];
        ++green[static_cast<std::size_t>(colour.green)];
        ++blue[static_cast<std::size_t>(colour.blue)];
    }
};

inline Histograms histogramsOf(const std::vector<Colour>& colours) {
    Histograms histograms;
    for (const Colour& colour : colours) histograms.add(colour);
    return histograms;
}

/// A host colour, 0xRRGGBB below an ignored byte.
inline Colour colourOf(std::uint32_t hostColour) {
    return {static_cast<int>(hostColour >> 16 & 0xFF), static_cast<int>(hostColour >> 8 & 0xFF),
            static_cast<int>(hostColour & 0xFF)};
}

}  // namespace pxk::test
