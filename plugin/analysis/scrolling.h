/// Moving the content of a picture in place.
///
/// A shift fills what comes free with bytes of 255 (opaque white in bitmaps, transparent white in libgd images); a
/// rotation brings what leaves at one edge back at the other. A positive delta moves down or to the right. Whole rows
/// are moved and filled with their padding.
#pragma once

#include <cstdint>

#include "frame/host_records.h"

namespace pxk {

/// Scrolls `self` by `delta` rows, as a rotation when `wrap` is set; with `scrollmask` its mask first, if it has one.
/// False when a picture cannot be opened for writing, or for a rotation when there is no memory or the rows to be put
/// aside make 2^31 bytes or more; that picture is then as it was. A mask that fails keeps `self` from being scrolled; a
/// mask that was scrolled stays so when `self` fails. A delta of 0 succeeds without opening anything.
bool ScrollVerticalPXK(REALpictureStruct* self, int delta, signed char wrap, signed char scrollmask);

/// The same by `delta` columns; but failures go unnoticed, and the result is always true.
bool ScrollHorizontalPXK(REALpictureStruct* self, int delta, signed char wrap, signed char scrollmask);

/// Scrolls horizontally, then vertically; the result is that of the vertical scroll.
bool ScrollPXK(REALpictureStruct* self, int deltaX, int deltaY, signed char wrap, signed char scrollmask);

}  // namespace pxk
