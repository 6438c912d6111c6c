/// Row loops that add whole numbers to channels.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

/// Whole numbers that are added to the channels, each -255 to 255; sums end at 0 and 255.
struct WholeOffsets {
    std::int32_t red;
    std::int32_t green;
    std::int32_t blue;
};

struct WholeOffsetsKernels {
    static const WholeOffsetsKernels baseline, avx2, avx512;

    PointKernel<WholeOffsets> add;
};

}  // namespace pxk
