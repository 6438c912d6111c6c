/// Row loops that read alpha as grey, and store grey as alpha.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/family_layout.h"

namespace pxk {

/// `changedBits`, 0 or 255, inverts the values or leaves them.
struct MaskKernels {
    static const MaskKernels baseline, avx2, avx512;

    /// Writes a row of opaque greys, each the alpha of the pixel at the same place; by family of the source. The rows
    /// do not overlap.
    void (*greyFromAlpha[familyCount])(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count,
                                       const FamilyLayout& resultLayout, std::uint32_t changedBits);

    /// Stores the red of each pixel of `mask` in the first byte of the pixel at the same place in `target`. The rows
    /// may be the same.
    void (*storeRed)(const std::uint32_t* mask, std::uint32_t* target, std::ptrdiff_t count, const FamilyLayout& layout,
                     std::uint32_t changedBits);
};

}  // namespace pxk
