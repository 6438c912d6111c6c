/// Why some members cannot be as fast as moving their bytes.
#pragma once

#include <string>

namespace pxkbench {

/// A sentence for a row of the table.
std::string reasonFor(const std::string& row);

}  // namespace pxkbench
