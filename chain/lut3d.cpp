#include "chain/lut3d.h"

namespace pxk::chain {

Lut3d resampled(const ColorCube& cube) {
    constexpr double white = 255;
    const auto level = [](std::uint32_t point) { return point / static_cast<double>(Lut3d::points - 1); };
    Lut3d table;
    for (std::uint32_t r = 0; r < Lut3d::points; ++r) {
        for (std::uint32_t g = 0; g < Lut3d::points; ++g) {
            for (std::uint32_t b = 0; b < Lut3d::points; ++b) {
                for (const double each : cube({level(r), level(g), level(b)})) {
                    table.entries.push_back(each * white + 0.5);
                }
            }
        }
    }
    return table;
}

}  // namespace pxk::chain
