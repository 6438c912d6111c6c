/// A file's size and faults, before it is decoded.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

#include "files/picture_format.h"

namespace pxkhost {

/// What is wrong with a picture file's bytes, or why a picture cannot be encoded; the file's name is added by whoever
/// knows it.
class BadPicture : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

inline constexpr std::int64_t longestSide = 32767;
inline constexpr std::int64_t mostPixels = std::int64_t{1} << 28;

/// Refuses a stated size that is empty, has a side beyond `longestSide` or more than `mostPixels` pixels, so that no
/// decoder reserves memory for it.
/// @throws BadPicture
void checkStatedSize(std::int64_t width, std::int64_t height);

/// Walks the structure of a PNG, JPEG, GIF, BMP or WebP file before any decoder sees it: the stated size must be
/// acceptable, and the file must go on to the end that its own structure names. The decoders of TIFF and AVIF tell
/// both themselves, so those two formats pass.
/// @throws BadPicture
void checkStructure(PictureFormat format, std::span<const std::uint8_t> bytes);

/// Rewrites a BMP file's header in its plainest form, which means the same: headers of 52 bytes and more shrink to 40,
/// and bit masks that only say what the depth says anyway are dropped. gd takes the bytes behind the first 40 of any
/// header for the palette, and refuses all masks.
/// @throws BadPicture for a file too short to have a header.
void simplifyBmpHeader(std::vector<std::uint8_t>& bytes);

}  // namespace pxkhost
