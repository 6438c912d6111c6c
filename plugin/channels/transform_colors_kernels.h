/// Row loops that look up each channel in a table.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/pixel_families.h"

namespace pxk {

/// The tables of the three colour bytes of a source word, lowest byte first, and where their results go.
struct ColorTables {
    static constexpr int channels = 3;
    static constexpr int values = 256;

    /// The results as they are, and each one's shift in the result word.
    unsigned char bytes[channels][values];
    std::int32_t resultShift[channels];

    /// The bits that make a written pixel opaque.
    std::uint32_t opaque;

    /// The results in place in an opaque result word.
    std::uint32_t placed[channels][values];
};

struct TransformColorsKernels {
    static const TransformColorsKernels baseline, avx2, avx512;

    /// Computes `count` pixels of a row, by the family of the source. The result may be the source row itself;
    /// otherwise they do not overlap.
    void (*transform[writableFamilyCount])(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count,
                                           const ColorTables& tables);
};

}  // namespace pxk
