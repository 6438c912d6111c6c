/// Tetrahedral interpolation in a three-dimensional colour table, row by row.
#pragma once

#include <cstddef>

#include "picture/family_layout.h"

namespace pxk {

/// A colour for each point of a grid, by red, green and blue, in that order. Point k of an axis stands for the channel
/// value 17 * k; the last two points of each axis can be stored and are never looked at.
struct Lut3DTable {
    static constexpr int points = 18;
    static constexpr int channels = 3;

    double entries[points][points][points][channels];
};

struct Lut3DKernels {
    static const Lut3DKernels baseline, avx2, avx512;

    /// Looks `count` pixels of a row up, by tetrahedral interpolation. The result does not overlap the source.
    void (*lookUp)(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count, const Lut3DTable& table,
                   const FamilyLayout& sourceLayout, const FamilyLayout& resultLayout);
};

}  // namespace pxk
