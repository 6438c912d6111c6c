/// The rectangle mask.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// A black box around each coloured region of a rectangle of the picture, on white. A pixel is coloured unless its
/// channels are exactly equal; how a box grows around a region, `ColorBoxes` says. Only a negative width or height
/// means the picture's; 0 is an empty rectangle, and gives a white picture.
///
/// The rectangle's columns are examined where they are, but its rows are taken from the top of the picture: row 0
/// decides about the first row of the rectangle, row 1 about the next one. This is deliberate, kept for compatibility.
///
/// Returns a new picture of `self`'s size, opaque and without alpha channel, which the caller owns; or nil when `self`
/// cannot be read or the result not made, as when a side is longer than 32767.
REALpictureStruct* ExtractColorRectangleMaskPXK(REALpictureStruct* self, int left, int top, int width, int height);

/// The rectangle mask of the whole picture.
REALpictureStruct* ExtractColorRectangleMaskPXK2(REALpictureStruct* self);

}  // namespace pxk
