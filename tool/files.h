/// Whole files.
#pragma once

#include <string>
#include <string_view>

namespace pxk::tool {

/// The bytes of a file; "-" is standard input when `dashIsInput`. Throws WorkError.
std::string readFile(const std::string& path, bool dashIsInput = false);

/// Writes a file beside its place and renames it, so that a failure leaves what was there before. Throws WorkError.
void writeFile(const std::string& path, std::string_view bytes);

}  // namespace pxk::tool
