/// .cube files.
#pragma once

#include <string>
#include <string_view>

#include "chain/color_cube.h"

namespace pxk::chain {

/// Reads a 3D LUT: LUT_3D_SIZE from 2 to 256, then a row of three numbers for each point. TITLE, DOMAIN_MIN,
/// DOMAIN_MAX, comments, blank lines and both kinds of line ends are understood, keywords in any letter case. `text` is
/// what the file `path` holds. Throws WorkError with the file, the line, and what would be right there.
ColorCube parseCube(const std::string& path, std::string_view text);

/// The text of a .cube file, with six decimals. `title` must not contain a quote.
std::string cubeText(const ColorCube& cube, std::string_view title);

}  // namespace pxk::chain
