/// Tone curves in single precision, for as long as they give what double precision gives.
///
/// A channel's new value depends on its old value alone, and there are 256 of those. So whether two ways to compute a
/// curve give the same picture can be seen from 256 pixels, at a small part of what a picture costs.
#pragma once

#include <cmath>
#include <cstdint>

#include "picture/point_kernel.h"
#include "pointops/tone_curves_kernels.h"

namespace pxk {

/// `value * factor + offset`, or some other line where single precision cannot reach its results.
inline QuickLine quickLine(double factor, double offset) {
    constexpr double reach = 1e6;
    // What single precision may be below a whole number that is meant.
    constexpr double slack = 0x1p-15;
    if (!(std::fabs(factor) < reach && std::fabs(offset) < reach)) return {0, 0};
    return {static_cast<float>(factor), static_cast<float>(offset + slack)};
}

inline QuickCurve quickCurve(const ToneCurve& curve) {
    const auto quick = [&](const Line& line) {
        return quickLine(line.factor, line.offset - curve.pivot * line.factor);
    };
    return {quick(curve.red), quick(curve.green), quick(curve.blue)};
}

inline QuickCurve quickCurve(const ToneCurvePair& pair) {
    const auto quick = [&](const Line& first, const Line& second) {
        const double offset = first.offset - pair.first.pivot * first.factor;
        return quickLine(first.factor * second.factor, offset * second.factor + second.offset);
    };
    return {quick(pair.first.red, pair.second.red), quick(pair.first.green, pair.second.green),
            quick(pair.first.blue, pair.second.blue)};
}

/// Whether two kernels that work on each channel by itself give the same for all of its values.
template <class One, class Other>
bool giveTheSame(const PointKernel<One>& kernel, const One& operation, const PointKernel<Other>& otherKernel,
                 const Other& otherOperation) {
    constexpr std::ptrdiff_t values = 256;
    std::uint32_t greys[values];
    std::uint32_t results[values];
    std::uint32_t otherResults[values];
    for (std::uint32_t value = 0; value < values; ++value) greys[value] = value << 16 | value << 8 | value;
    kernel.rows[0][0](greys, results, values, operation);
    otherKernel.rows[0][0](greys, otherResults, values, otherOperation);
    for (std::ptrdiff_t i = 0; i < values; ++i)
        if (results[i] != otherResults[i]) return false;
    return true;
}

}  // namespace pxk
