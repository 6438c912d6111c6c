/// Replacement of one channel by the same channel of another picture.
///
/// Each member returns a new picture of `self`'s size, opaque, which the caller owns. The channel picture may be larger
/// than `self`: its top-left part of that size counts. Only its channel of the same name is used, not a grey value. A
/// nil channel picture raises a "NilObjectException"; a smaller one, or a picture that cannot be read or made, gives
/// nil silently.
#pragma once

#include "frame/host_records.h"

namespace pxk {

REALpictureStruct* ReplaceRedChannel(REALpictureStruct* self, REALpictureStruct* redChannel);
REALpictureStruct* ReplaceGreenChannel(REALpictureStruct* self, REALpictureStruct* greenChannel);
REALpictureStruct* ReplaceBlueChannel(REALpictureStruct* self, REALpictureStruct* blueChannel);

}  // namespace pxk
