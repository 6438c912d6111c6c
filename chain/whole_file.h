/// Whole files on disk.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pxk::chain {

/// The bytes of a file; "-" is standard input when `dashIsInput`. Throws WorkError.
std::string readFile(const std::string& path, bool dashIsInput = false);

/// The first bytes of an ordinary file, as many as there are up to `count`; empty when it cannot be read.
std::string startOfFile(const std::string& path, std::size_t count);

/// Replaces a file at once: writes a temporary file beside it and renames that, so that a failure changes nothing.
/// Throws WorkError.
void writeFile(const std::string& path, std::string_view bytes);

/// Deletes the temporary file that is being written at this moment, if any. Async-signal-safe.
void removeUnfinishedFile();

}  // namespace pxk::chain
