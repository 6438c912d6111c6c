/// Why some members cannot be as fast as their limit.
#pragma once

#include <string>

namespace pxkbench {

/// A clause that explains a row of the table, with its full stop.
std::string reasonFor(const std::string& row);

}  // namespace pxkbench
