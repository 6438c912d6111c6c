/// Files that stand where a memory block is wanted.
#pragma once

#include <string>

namespace pxk::tool {

/// The bytes for a memory block: the table of 256 bytes when the file holds a curve, otherwise the file's bytes as they
/// are. Throws WorkError.
std::string readMemoryBlock(const std::string& path);

}  // namespace pxk::tool
