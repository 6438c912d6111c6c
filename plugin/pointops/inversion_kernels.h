/// Row loops that invert every pixel, or grey ones only.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

struct Invert {};
struct InvertGray {};

struct InversionKernels {
    static const InversionKernels baseline, avx2, avx512;

    PointKernel<Invert> invert;
    PointKernel<InvertGray> invertGray;
};

}  // namespace pxk
