/// BMP files, read and written without libvips.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "files/read.h"

namespace pxkfiles {

/// Reads a BMP file of 1, 4, 8, 16, 24 or 32 bits a pixel: packed, in run lengths, or with bit masks of any place and
/// width for colours and alpha, and with an ICC profile. libvips has no loader for it that is safe with foreign bytes.
/// @throws FileProblem or std::bad_alloc
void readBmp(std::span<const std::uint8_t> bytes, bool headerOnly, OwnedPicture& picture);

/// Writes 24 bits a pixel, or 32 with alpha, which takes the long header, as an ICC profile does.
std::vector<std::uint8_t> writeBmp(const Picture& picture, bool withAlpha);

}  // namespace pxkfiles
