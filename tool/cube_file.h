/// .cube files.
#pragma once

#include <string>
#include <string_view>

#include "color_cube.h"

namespace pxk::tool {

/// Reads a 3D table: LUT_3D_SIZE from 2 to 256, then a row of three numbers for each point. TITLE, DOMAIN_MIN,
/// DOMAIN_MAX, comments, blank lines and both kinds of line ends are understood, keywords in any letter case. Throws
/// WorkError with the file, the line, and what would be right there.
ColorCube readCube(const std::string& path);

/// The text of a .cube file, six digits behind the point. `title` holds no quote.
std::string cubeText(const ColorCube& cube, std::string_view title);

}  // namespace pxk::tool
