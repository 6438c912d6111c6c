/// Conversions to whole numbers, as members define them.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace pxk::test {

/// A double truncated to a 32-bit integer. What does not fit, or is not a number, becomes the most negative integer.
inline std::int32_t truncatedToInteger(double value) {
    const double whole = std::trunc(value);
    if (std::isnan(whole) || whole < std::numeric_limits<std::int32_t>::min() ||
        whole > std::numeric_limits<std::int32_t>::max()) {
        return std::numeric_limits<std::int32_t>::min();
    }
    return static_cast<std::int32_t>(whole);
}

/// The 32-bit integer that a wider one becomes by dropping its upper bits.
inline std::int32_t wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

inline int clampedToByte(std::int64_t value) {
    if (value < 0) return 0;
    if (value > 255) return 255;
    return static_cast<int>(value);
}

}  // namespace pxk::test
