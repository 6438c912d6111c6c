/// Saturation.
#pragma once

#include <cstdint>

#include "frame/host_records.h"

namespace pxk {

/// Moves each channel from the pixel's grey, (r + 2g + b) / 4, to (amount + 255) / 255 times its distance from it, in
/// wrapping 32-bit arithmetic with divisions that truncate towards zero. -255 gives grey, 0 changes nothing, 255
/// doubles the distance, less than -255 gives complementary colours. Returns a new picture of `self`'s size, every
/// pixel opaque, which the caller owns; or nil when `self` cannot be read or the result not made.
REALpictureStruct* SaturationPicture(REALpictureStruct* self, std::int32_t amount);

}  // namespace pxk
