/// Counting colours.
#pragma once

#include <cstdint>

#include "frame/host_records.h"

namespace pxk {

/// The number of pixels whose red, green and blue are those of `col` (0xRRGGBB; the top byte does not count), whatever
/// their alpha; 0 when `self` cannot be read.
std::int32_t CountColorPXK(REALpictureStruct* self, std::uint32_t col);

/// Adds the histograms of red, green and blue, in this order, to the three blocks, each of 256 counters of 32 bits (or
/// larger, its rest left alone), and sets `count` to the number of pixels. The published names of the second and third
/// parameter are crossed, deliberately and for compatibility: `blue` receives green, `green` receives blue. Counters
/// are not cleared first; the same block may be given more than once. A variable that holds nil receives a new block,
/// which the caller owns. `count` becomes -1, and no counter changes, when a block cannot be made, is shorter than 1024
/// bytes or has no bytes, or when `self` cannot be read.
void CountColorsPXK(REALpictureStruct* self, REALmemoryBlockStruct** red, REALmemoryBlockStruct** blue,
                    REALmemoryBlockStruct** green, std::int32_t* count);

}  // namespace pxk
