#include "chain/color_cube.h"

#include <algorithm>
#include <cmath>

namespace pxk::chain {

ColorTriple ColorCube::at(const Point& point) const {
    const std::size_t index = 3 * static_cast<std::size_t>((point[2] * size + point[1]) * size + point[0]);
    return {entries[index], entries[index + 1], entries[index + 2]};
}

ColorTriple ColorCube::operator()(const ColorTriple& color) const {
    Point corner{};
    ColorTriple fraction{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double position = (color[axis] - low[axis]) / (high[axis] - low[axis]) * (size - 1);
        const double inside = std::clamp<double>(position, 0, size - 1);
        corner[axis] = std::min(static_cast<int>(inside), size - 2);
        fraction[axis] = inside - corner[axis];
    }
    // From the lowest corner of the cell to the highest, along the axis of the largest fraction first.
    std::array<std::size_t, 3> axes{0, 1, 2};
    std::stable_sort(axes.begin(), axes.end(), [&](auto a, auto b) { return fraction[a] > fraction[b]; });
    ColorTriple here = at(corner);
    ColorTriple result = here;
    for (const std::size_t axis : axes) {
        ++corner[axis];
        const ColorTriple next = at(corner);
        for (std::size_t x = 0; x < 3; ++x) result[x] += fraction[axis] * (next[x] - here[x]);
        here = next;
    }
    return result;
}

ColorCube identityCube(int size) {
    ColorCube cube;
    cube.size = size;
    cube.entries.reserve(3 * pointCount(size));
    const auto level = [size](int point) { return static_cast<float>(point) / static_cast<float>(size - 1); };
    for (int b = 0; b < size; ++b) {
        for (int g = 0; g < size; ++g) {
            for (int r = 0; r < size; ++r) {
                for (const int point : {r, g, b}) cube.entries.push_back(level(point));
            }
        }
    }
    return cube;
}

}  // namespace pxk::chain
