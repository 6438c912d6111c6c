/// Row loops that change the saturation.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

/// `factor` 255 changes nothing. Unsigned, so that products wrap around.
struct Saturate {
    std::uint32_t factor;
};

struct SaturationKernels {
    static const SaturationKernels baseline, avx2, avx512;

    PointKernel<Saturate> saturate;
};

}  // namespace pxk
