/// Pixels of one exact colour.
///
/// A pixel is of a colour when its red, green and blue are; its alpha does not count. Colours are 0xRRGGBB, the top
/// byte does not count. Each member returns a new picture of `self`'s size, every pixel opaque, which the caller owns;
/// or nil when `self` cannot be read or the result not made.
#pragma once

#include <cstdint>

#include "frame/host_records.h"

namespace pxk {

/// The pixels of `searchColor` become `replaceWithColor`; the others keep their colour.
REALpictureStruct* ReplaceColorPXK(REALpictureStruct* self, std::uint32_t searchColor, std::uint32_t replaceWithColor);

/// The pixels of `searchColor` become `replaceWithColor`, all others `backGroundColor`. The result has no alpha
/// channel, so it is refused for sides above 32767.
REALpictureStruct* ExtractColorPXK(REALpictureStruct* self, std::uint32_t searchColor, std::uint32_t replaceWithColor,
                                   std::uint32_t backGroundColor);

}  // namespace pxk
