/// Scrolling, one row or one pixel at a time, into a picture of its own.
#pragma once

#include <cstdint>
#include <vector>

namespace pxk::test {

/// A picture's rows as words, padding included.
using WordRows = std::vector<std::vector<std::uint32_t>>;

inline constexpr std::uint32_t freed = 0xFFFFFFFF;

/// The place, 0 to `size` - 1, from which a rotation by `delta` moves something to `place`.
inline std::size_t rotationSource(std::int64_t place, std::int64_t delta, std::int64_t size) {
    const std::int64_t source = (place - delta) % size;
    return static_cast<std::size_t>(source < 0 ? source + size : source);
}

inline WordRows scrolledVertically(const WordRows& rows, std::int64_t delta, bool wrap) {
    const auto height = static_cast<std::int64_t>(rows.size());
    WordRows result;
    for (std::int64_t y = 0; y < height; ++y) {
        const std::int64_t from = y - delta;
        if (wrap) {
            result.push_back(rows[rotationSource(y, delta, height)]);
        } else if (from >= 0 && from < height) {
            result.push_back(rows[static_cast<std::size_t>(from)]);
        } else {
            result.emplace_back(rows.front().size(), freed);
        }
    }
    return result;
}

/// The padding after the `width` pixels stays, unless nothing of the picture does.
inline WordRows scrolledHorizontally(const WordRows& rows, std::int64_t width, std::int64_t delta, bool wrap) {
    WordRows result = rows;
    for (std::size_t y = 0; y < rows.size(); ++y) {
        if (!wrap && (delta >= width || delta <= -width)) {
            result[y].assign(rows[y].size(), freed);
            continue;
        }
        for (std::int64_t x = 0; x < width; ++x) {
            const std::int64_t from = x - delta;
            std::uint32_t& word = result[y][static_cast<std::size_t>(x)];
            if (wrap) {
                word = rows[y][rotationSource(x, delta, width)];
            } else {
                word = from >= 0 && from < width ? rows[y][static_cast<std::size_t>(from)] : freed;
            }
        }
    }
    return result;
}

}  // namespace pxk::test
