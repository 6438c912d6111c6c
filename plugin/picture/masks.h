/// A picture's mask, and the mask that its own alpha bytes are.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// Whether the host keeps a mask for `self`; false for nil.
bool PictureHasMask(REALpictureStruct* self);

/// The alpha of `self` as a new grey picture of the same size, without alpha channel, which the caller owns; or nil
/// when `self` cannot be read or the picture not made. `swap` inverts it. The 7-bit transparency of
/// libgd is widened to 0-255 and not inverted: 0 is opaque there.
REALpictureStruct* GetEmbededMask(REALpictureStruct* self, signed char swap);

/// Stores the red of `value`'s pixels, inverted when `swap` is set, into the first byte of `self`'s pixels: that is
/// alpha only in the formats whose alpha comes first, red in those whose alpha comes last, and blue in libgd images.
/// Rows below `value` take its first row; columns to the right of `value` stay as they are.
///
/// `self` is opened for reading only, so the host's cached rendering stays, and nothing is stored in a picture that
/// cannot be locked: both are deliberate, kept for compatibility. Does nothing when either picture is nil or cannot be
/// opened.
void SetEmbededMask(REALpictureStruct* self, signed char swap, REALpictureStruct* value);

}  // namespace pxk
