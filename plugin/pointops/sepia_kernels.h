/// Row loops that tone in sepia, in fixed-point arithmetic.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

/// Weights in 1024ths, and what is added to each channel: signed numbers, kept unsigned so that sums and products wrap.
struct Sepia {
    std::uint32_t redWeight;
    std::uint32_t greenWeight;
    std::uint32_t blueWeight;
    std::uint32_t red;
    std::uint32_t green;
    std::uint32_t blue;
};

struct SepiaKernels {
    static const SepiaKernels baseline, avx2, avx512;

    PointKernel<Sepia> sepia;
};

}  // namespace pxk
