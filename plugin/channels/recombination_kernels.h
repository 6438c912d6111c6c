/// Row loops that take channels from several pictures.
#pragma once

#include <cstddef>

#include "picture/family_layout.h"

namespace pxk {

/// The layouts of the pictures that give one channel each, and of the result.
struct CombinedLayouts {
    FamilyLayout red;
    FamilyLayout green;
    FamilyLayout blue;
    FamilyLayout result;
};

/// The layouts of two pictures to be merged, and of the result.
struct MergedLayouts {
    FamilyLayout first;
    FamilyLayout second;
    FamilyLayout result;
};

struct RecombinationKernels {
    static const RecombinationKernels baseline, avx2, avx512;

    /// Computes `count` opaque pixels of red from one row, green from another and blue from a third. These may be the
    /// same row; the result overlaps none of them.
    void (*combine)(const std::uint32_t* red, const std::uint32_t* green, const std::uint32_t* blue,
                    std::uint32_t* result, std::ptrdiff_t count, const CombinedLayouts& layouts);

    /// Computes `count` opaque pixels of the larger value of each channel. The sources may be the same row; the result
    /// overlaps neither.
    void (*merge)(const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* result, std::ptrdiff_t count,
                  const MergedLayouts& layouts);
};

}  // namespace pxk
