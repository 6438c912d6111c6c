/// Why some members cannot be as fast as moving their bytes.
#pragma once

#include <string>

namespace pxkbench {

/// A sentence for a row of the table.
std::string reasonFor(const std::string& row);

/// Why the C library or another one does a row's work sooner.
std::string whySlower(const std::string& row);

}  // namespace pxkbench
