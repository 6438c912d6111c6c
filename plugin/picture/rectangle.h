/// The rectangle that a member works on.
#pragma once

#include <algorithm>
#include <cstdint>

namespace pxk {

/// Which widths and heights mean "to the picture's edge".
enum class WholeExtent : unsigned char { whenNegative, whenNotPositive };

/// Columns `left` to before `right` of rows `top` to before `bottom`, inside a picture; possibly none.
struct Rectangle {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;

    std::int32_t width() const { return std::max(right - left, 0); }
};

namespace rectangle_detail {

struct Span {
    std::int32_t begin;
    std::int32_t end;
};

// The end is computed from the start as given, before that is moved into the picture. In 64 bits, so that a start and
// an extent near the limits of their type reach the edge instead of wrapping around.
inline Span clippedSpan(std::int32_t start, std::int32_t extent, std::int32_t size, WholeExtent whole) {
    const bool toTheEdge = whole == WholeExtent::whenNotPositive ? extent <= 0 : extent < 0;
    const std::int64_t end = std::int64_t{start} + (toTheEdge ? size : extent);
    return {std::clamp(start, 0, size), static_cast<std::int32_t>(std::clamp<std::int64_t>(end, 0, size))};
}

}  // namespace rectangle_detail

/// The part of a rectangle, as a program gave it, that lies in a picture of the given size.
inline Rectangle clippedRectangle(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                                  std::int32_t pictureWidth, std::int32_t pictureHeight, WholeExtent whole) {
    const auto columns = rectangle_detail::clippedSpan(left, width, pictureWidth, whole);
    const auto rows = rectangle_detail::clippedSpan(top, height, pictureHeight, whole);
    return {columns.begin, rows.begin, columns.end, rows.end};
}

/// A whole picture.
inline Rectangle wholeRectangle(std::int32_t pictureWidth, std::int32_t pictureHeight) {
    return {0, 0, pictureWidth, pictureHeight};
}

}  // namespace pxk
