/// Pictures become files of every format.
#pragma once

#include <cstdint>
#include <vector>

#include "files/formats.h"
#include "files/pxkfiles.h"

namespace pxkfiles {

/// The bytes of a file with a picture. `options.format` does not matter here.
/// @throws FileProblem or std::bad_alloc
std::vector<std::uint8_t> writePicture(const Picture& picture, Format format, const WriteOptions& options);

}  // namespace pxkfiles
