/// Row loops that tint, in double precision.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

/// A colour's channels, 0 to 1.
struct ColorShares {
    double red;
    double green;
    double blue;
};

struct Tint {
    ColorShares weights;
    ColorShares tone;
};

struct TintKernels {
    static const TintKernels baseline, avx2, avx512;

    PointKernel<Tint> tint;
};

}  // namespace pxk
