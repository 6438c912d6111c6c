/// The search for one picture in another, one pixel at a time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

#include "support/pixel_formats.h"

namespace pxk::test {

/// Colours row by row.
struct ColourGrid {
    int width;
    int height;
    std::vector<Colour> colours;

    Colour at(int x, int y) const {
        return colours[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

inline bool matches(Colour a, Colour b, int tolerance) {
    return std::abs(a.red - b.red) < tolerance && std::abs(a.green - b.green) < tolerance &&
           std::abs(a.blue - b.blue) < tolerance;
}

inline bool matchesAt(const ColourGrid& haystack, const ColourGrid& needle, int x, int y, int tolerance) {
    for (int row = 0; row < needle.height; ++row) {
        for (int column = 0; column < needle.width; ++column) {
            if (!matches(haystack.at(x + column, y + row), needle.at(column, row), tolerance)) return false;
        }
    }
    return true;
}

/// The place of the first match in reading order, from the start on.
inline std::optional<std::pair<int, int>> firstMatch(const ColourGrid& haystack, const ColourGrid& needle, int startX,
                                                     int startY, int tolerance) {
    std::int64_t fromX = std::max(startX, 0);
    std::int64_t fromY = std::max(startY, 0);
    if (fromX >= haystack.width) {
        fromX = 0;
        ++fromY;
    }
    for (int y = 0; y <= haystack.height - needle.height; ++y) {
        for (int x = 0; x <= haystack.width - needle.width; ++x) {
            const bool before = y < fromY || (y == fromY && x < fromX);
            if (!before && matchesAt(haystack, needle, x, y, tolerance)) return std::pair{x, y};
        }
    }
    return std::nullopt;
}

}  // namespace pxk::test
