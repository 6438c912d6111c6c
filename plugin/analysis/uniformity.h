/// Whether a picture is all white, all black or all grey. Alpha is never looked at, and nothing is changed.
///
/// Each test answers for a rectangle of `self`; only a negative width or height means "to the picture's edge", 0 is an
/// empty rectangle. The first pixel that fails ends the test with false. An empty rectangle passes every test, a
/// picture that cannot be read passes none. The short forms test the whole picture.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// Every pixel is white: red, green and blue are 255. A picture of an unknown format is never white.
bool isWhite(REALpictureStruct* self, int left, int top, int width, int height);
bool isWhite2(REALpictureStruct* self);

/// Every pixel is black: red, green and blue are 0. A picture of an unknown format is always black.
bool isBlack(REALpictureStruct* self, int left, int top, int width, int height);
bool isBlack2(REALpictureStruct* self);

/// Every pixel is grey: no two of its channels differ by more than |`tolerance`|. A picture of an unknown format is
/// always grey.
bool isGray(REALpictureStruct* self, int tolerance, int left, int top, int width, int height);
bool isGray2(REALpictureStruct* self, int tolerance);

}  // namespace pxk
