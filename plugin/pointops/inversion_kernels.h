#pragma once

#include "picture/point_kernel.h"

namespace pxk {

struct Invert {};
struct InvertGray {};

struct InversionKernels {
    PointKernel<Invert> invert;
    PointKernel<InvertGray> invertGray;
};

}  // namespace pxk
