/// Every channel through a table.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// Writes each pixel of `self` with its red, green and blue looked up in the block of that name: byte i, of the first
/// 256, is the result for the value i. Mind the order: blue comes second.
/// The result goes into the top-left part of `dest`, which stays as it is elsewhere and may be `self`; or, when `dest`
/// is nil, smaller than `self` or cannot be written, into a new opaque picture. Either way what is returned carries a
/// reference for the caller.
/// Raises a "NilObjectException" when `self`, `red`, `green` or `blue` is nil, checked in this order. Nil
/// silently when a block has no bytes or fewer than 256, or when `self` cannot be read or a new picture not made.
REALpictureStruct* TransformColorsPXK(REALpictureStruct* self, REALmemoryBlockStruct* red, REALmemoryBlockStruct* blue,
                                      REALmemoryBlockStruct* green, REALpictureStruct* dest);

}  // namespace pxk
