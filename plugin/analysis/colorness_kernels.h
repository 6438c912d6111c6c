/// Row loop that counts coloured pixels.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/family_layout.h"

namespace pxk {

struct ColornessKernels {
    static const ColornessKernels baseline, avx2, avx512;

    /// The number of pixels, among `count`, that are not near black (some channel is 30 or more) and in which green
    /// differs from red or blue by more than `threshold`, -1 to 255. Pixels of no family are black.
    std::uint32_t (*countColoured)(const std::uint32_t* row, std::ptrdiff_t count, const FamilyLayout& layout,
                                   std::int32_t threshold);
};

}  // namespace pxk
