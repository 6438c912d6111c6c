/// 3D colour lookup tables, as .cube files hold them.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace pxk::chain {

/// Red, green and blue, where 0 is black and 1 is white; other values are allowed.
using ColorTriple = std::array<double, 3>;

/// A colour for each point of a grid over all colours.
struct ColorCube {
    static constexpr int smallest = 2;
    static constexpr int largest = 256;

    int size = 0;                ///< the number of points along each axis
    ColorTriple low{0, 0, 0};    ///< the colour at the first point of all axes
    ColorTriple high{1, 1, 1};   ///< the colour at the last point of all axes
    std::vector<float> entries;  ///< three numbers for each point; red varies fastest, then green

    /// The cube's colour for a colour, by tetrahedral interpolation between the points around it. Colours outside the
    /// domain are clamped to it.
    ColorTriple operator()(const ColorTriple& color) const;

  private:
    using Point = std::array<int, 3>;
    ColorTriple at(const Point& point) const;
};

/// How many points a cube of this size has.
constexpr std::size_t pointCount(int size) {
    const auto points = static_cast<std::size_t>(size);
    return points * points * points;
}

/// A cube that maps every colour to itself.
ColorCube identityCube(int size);

}  // namespace pxk::chain
