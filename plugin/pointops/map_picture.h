/// The frame of the members that compute every pixel of a picture from the pixel at the same place.
#pragma once

#include "picture/map_pixels.h"

namespace pxk {

/// A new picture of `self`'s size, with an alpha channel when `self` has one, from an operation on every pixel. The
/// caller owns it; nil when `self` cannot be read or the result not made.
template <class Operation>
REALpictureStruct* mapPicture(REALpictureStruct* self, const PointKernel<Operation>& kernel,
                              const Operation& operation) {
    PictureReader source;
    PictureWriter result;
    if (!source.open(self) || !result.NewPictureWriter(source)) return nullptr;
    mapPixels(source, result, wholeRectangle(source.width, source.height), kernel, operation);
    return result.RenderPictureWriter();
}

}  // namespace pxk
