/// Drawing one host picture into another.
#pragma once

#include "frame/host_services.h"

namespace pxk {

/// Draws `src` into `dest` at (0, 0): through `dest`'s graphics object, or, where the host offers no such drawing and
/// the size stays the same, by copying the rows of two libgd images of equal size. Otherwise `dest` stays as it is.
/// `x`, `y`, `sx` and `sy` are always 0: they are part of the host's drawing call, which passes them so.
void GraphicsDrawPicture(REALpictureStruct* dest, REALpictureStruct* src, int x, int y, int w, int h, int sx, int sy,
                         int sw, int sh);

}  // namespace pxk
