/// A look, as the class PictureLut3DPXK takes it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pxk::tool {

/// What goes into Table(r, g, b, x), each of r, g and b from 0 to 15 standing for the channel value 17 times as large.
struct LookTable {
    static constexpr std::uint32_t points = 16;

    std::vector<double> entries;

    double at(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x) const {
        return entries[((std::size_t{r} * points + g) * points + b) * 3 + x];
    }
};

/// Resamples a .cube file to the table's points, tetrahedrally. An entry is the channel's value and a half: the class
/// cuts fractions off, so that with the half its results are rounded, and a cube that changes nothing leaves a picture
/// as it is. Throws WorkError.
LookTable readLook(const std::string& cubePath);

}  // namespace pxk::tool
