/// New pictures from several: one channel of each, or the lightest of each channel.
///
/// The pictures must be of one size. Each member returns a new picture of that size, opaque, which the caller owns; or
/// nil, silently, when a picture is nil or cannot be read, when the sizes differ or the result cannot be made.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// The red of `red`, the green of `green` and the blue of `blue`. Mind the order: blue comes second.
REALpictureStruct* CombinePicturesPXK(REALpictureStruct* red, REALpictureStruct* blue, REALpictureStruct* green);

/// The larger value of each channel, each on its own.
REALpictureStruct* MergePicture(REALpictureStruct* source1, REALpictureStruct* source2);

}  // namespace pxk
