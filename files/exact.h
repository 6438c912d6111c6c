/// Formats that libvips cannot write exactly: GIF with its own palette, and lossless AVIF.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "files/pxkfiles.h"

namespace pxkfiles {

/// A GIF with every pixel exact, alpha aside, which is transparent below 128 and opaque from there on; nothing when the
/// picture has more than 256 colours. libvips' own goes up to 255 and through a quantiser.
std::optional<std::vector<std::uint8_t>> exactGif(const Picture& picture);

/// An AVIF with every pixel exact; libvips' own loses a little on the way to luma and chroma. `exif` is plain EXIF for
/// the picture as it is.
/// @throws FileProblem or std::bad_alloc
std::vector<std::uint8_t> exactAvif(const Picture& picture, bool withAlpha, std::span<const std::uint8_t> exif);

}  // namespace pxkfiles
