/// Row loops that replace or extract one exact colour.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

/// A pixel word of the source is of the colour when `word & mask == wanted`. `found` and `background` are words of the
/// result.
struct ExactColor {
    std::uint32_t mask;
    std::uint32_t wanted;
    std::uint32_t found;
    std::uint32_t background;
};

struct ExactColorKernels {
    static const ExactColorKernels baseline, avx2, avx512;

    /// Pixels that are not of the colour keep their own.
    PointKernel<ExactColor> replace;
    PointKernel<ExactColor> extract;
};

}  // namespace pxk
