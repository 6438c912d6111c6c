/// Inversion: the negative of a picture, or of its grey pixels only.
///
/// Each member returns a new picture of `self`'s size, which the caller owns, in which the rectangle holds the result,
/// opaque, and the rest is as the host makes a new picture; or nil when `self` cannot be read or the result not made.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// Inverts every pixel of the rectangle. A width or height of 0 or less means "to the picture's edge".
REALpictureStruct* InvertPicture(REALpictureStruct* self, int left, int top, int width, int height);

/// Inverts the whole picture.
REALpictureStruct* InvertPicture2(REALpictureStruct* self);

/// Inverts the pixels of the rectangle whose channels are exactly equal, and copies the others. Only a negative width
/// or height means "to the picture's edge"; 0 is an empty rectangle.
REALpictureStruct* InvertGrayPicture(REALpictureStruct* self, int left, int top, int width, int height);

/// Inverts the grey pixels of the whole picture.
REALpictureStruct* InvertGrayPicture2(REALpictureStruct* self);

}  // namespace pxk
