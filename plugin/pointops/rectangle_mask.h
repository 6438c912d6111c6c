/// The rectangle mask.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// A black box around each coloured region of a rectangle of the picture, on white. A pixel is coloured unless its
/// channels are exactly equal; how a box grows around a region, `ColorBoxes` says. Only a negative width or height
/// means the picture's; 0 is an empty rectangle, and gives a white picture.
///
/// The rectangle's columns are looked at where they are, but its rows are taken from the top of the picture: the first
/// row of the rectangle is decided by row 0, the next one by row 1. Programs rely on it.
///
/// Returns a new picture of `self`'s size, opaque and without alpha channel, which the caller owns; or nil when `self`
/// cannot be read or the result not made, and when (width + 2) * (height + 2) of the picture is 2^31 or more.
REALpictureStruct* ExtractColorRectangleMaskPXK(REALpictureStruct* self, int left, int top, int width, int height);

/// The rectangle mask of the whole picture.
REALpictureStruct* ExtractColorRectangleMaskPXK2(REALpictureStruct* self);

}  // namespace pxk
