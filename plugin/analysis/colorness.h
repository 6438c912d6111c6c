/// How colourful a picture is.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// The share of coloured pixels in the whole of `self`, 0.0 to 1.0; 0.0 when `self` cannot be read.
///
/// A pixel is coloured when green differs from red or from blue by more than `threshold`, unless it is near black:
/// every channel below 30. Red and blue are not compared with each other. With a negative threshold every pixel that is
/// not near black counts as coloured. Near-black pixels are part of the whole all the same.
///
/// The number of pixels, width × height, wraps around in 32 bits, so the share of pictures of 2^31 pixels and more
/// means little, and may be negative; it is 0.0 where that number wraps to 0.
double ColornessPXK(REALpictureStruct* self, int threshold);

}  // namespace pxk
