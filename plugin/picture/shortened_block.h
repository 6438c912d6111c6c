/// The block of a picture that the plugin's own classes work on.
#pragma once

#include <algorithm>
#include <cstdint>

#include "picture/rectangle.h"

namespace pxk {

/// The limits as a program sets them, in pixels; 0 where it sets none.
struct BlockLimits {
    std::int32_t minX;
    std::int32_t minY;
    std::int32_t maxX;
    std::int32_t maxY;
};

namespace shortened_block_detail {

inline std::int32_t count(std::int32_t min, std::int32_t max, std::int32_t size) {
    const std::int64_t end = min < max && max < size ? max : size;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(end - min, 0, size));
}

}  // namespace shortened_block_detail

/// The block always starts at the picture's top-left corner: the limits shorten it and never move it. It has as many
/// columns as lie between minX and the end, which is maxX where minX < maxX < width, else the width; and likewise rows.
/// A negative start lengthens the block, up to the picture's edges.
inline Rectangle shortenedBlock(const BlockLimits& limits, std::int32_t width, std::int32_t height) {
    return {0, 0, shortened_block_detail::count(limits.minX, limits.maxX, width),
            shortened_block_detail::count(limits.minY, limits.maxY, height)};
}

}  // namespace pxk
