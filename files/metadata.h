/// ICC profiles and EXIF, as far as their bytes have to be understood.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace pxkfiles {

/// EXIF without the letters that stand before it in a JPEG, or nothing when it is not EXIF.
std::span<const std::uint8_t> plainExif(std::span<const std::uint8_t> exif);

/// The orientation that plain EXIF states, 1 to 8, or 1.
int exifOrientation(std::span<const std::uint8_t> exif);

/// Plain EXIF for an upright picture of a size. The thumbnail, which would show something else, is left out; every
/// other byte stays as it is.
std::vector<std::uint8_t> updatedExif(std::span<const std::uint8_t> exif, int width, int height);

/// Whether an ICC profile describes RGB, as the pixels that are handed out do.
bool isRgbProfile(std::span<const std::uint8_t> profile);

/// The English description in an ICC profile, or "".
std::string profileName(std::span<const std::uint8_t> profile);

}  // namespace pxkfiles
