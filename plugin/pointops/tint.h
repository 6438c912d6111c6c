/// Tint.
#pragma once

#include <cstdint>

#include "frame/host_records.h"

namespace pxk {

/// A picture in tones of one colour: `sepiaBase`, times the grey that the channels of `greyBase` weigh, 255 counting
/// fully; with a white `greyBase` the grey of white is 765, so that the tones saturate early. Colours are 0xRRGGBB, the
/// top byte does not count. Returns a new picture of `source`'s size, every pixel opaque, which the caller owns; or nil
/// when `source` cannot be read or the result not made.
REALpictureStruct* TintPicture(REALpictureStruct* source, std::uint32_t greyBase, std::uint32_t sepiaBase);

}  // namespace pxk
