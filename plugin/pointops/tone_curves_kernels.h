/// Row loops of tone curves, in double and in single precision.
#pragma once

#include "picture/point_kernel.h"

namespace pxk {

/// value * factor + offset: two roundings, never fused.
struct Line {
    double factor;
    double offset;
};

/// One line a channel, through the distance of the channel from the pivot.
struct ToneCurve {
    double pivot;
    Line red;
    Line green;
    Line blue;
};

/// A tone curve, and on what it gives, neither clamped nor truncated, another one with pivot 0.
struct ToneCurvePair {
    ToneCurve first;
    ToneCurve second;
};

/// A line in single precision, through the value itself: no result may be beyond 32 bits.
struct QuickLine {
    float factor;
    float offset;
};

struct QuickCurve {
    QuickLine red;
    QuickLine green;
    QuickLine blue;
};

struct ToneCurveKernels {
    static const ToneCurveKernels baseline, avx2, avx512;

    PointKernel<ToneCurve> clamped;
    PointKernel<ToneCurve> wrapped;
    PointKernel<ToneCurvePair> clampedPair;
    PointKernel<QuickCurve> quickClamped;
};

}  // namespace pxk
