/// A picture from the channels of others.
#pragma once

#include "picture/picture_editor.h"

namespace pxk {

/// Fills `result`, opaque, with the red of one picture, the green of another and the blue of a third, which may be the
/// same. Each of them is at least as large as the result; what lies to the right of it or below it is not used.
void combineChannels(const PictureReader& red, const PictureReader& green, const PictureReader& blue,
                     PictureWriter& result);

}  // namespace pxk
