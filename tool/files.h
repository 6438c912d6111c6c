/// Whole files.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pxk::tool {

/// The bytes of a file; "-" is standard input when `dashIsInput`. Throws WorkError.
std::string readFile(const std::string& path, bool dashIsInput = false);

/// The first bytes of an ordinary file, as many as there are up to `count`; none when it cannot be read.
std::string startOfFile(const std::string& path, std::size_t count);

/// Writes a file beside its place and renames it, so that a failure leaves what was there before. Throws WorkError.
void writeFile(const std::string& path, std::string_view bytes);

}  // namespace pxk::tool
