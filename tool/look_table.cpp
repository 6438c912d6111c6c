#include "look_table.h"

#include "cube_file.h"

namespace pxk::tool {

LookTable readLook(const std::string& cubePath) {
    constexpr double white = 255;
    const ColorCube cube = readCube(cubePath);
    const auto level = [](std::uint32_t point) { return point / static_cast<double>(LookTable::points - 1); };
    LookTable table;
    for (std::uint32_t r = 0; r < LookTable::points; ++r) {
        for (std::uint32_t g = 0; g < LookTable::points; ++g) {
            for (std::uint32_t b = 0; b < LookTable::points; ++b) {
                for (const double each : cube({level(r), level(g), level(b)})) {
                    table.entries.push_back(each * white + 0.5);
                }
            }
        }
    }
    return table;
}

}  // namespace pxk::tool
