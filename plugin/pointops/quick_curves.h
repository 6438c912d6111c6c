/// Tone curves in single precision, used where their results match those in double precision.
///
/// A channel's new value depends on its old value alone, and there are 256 of those. So 256 pixels show whether two
/// ways to compute a curve give the same picture, at a small part of the cost of a picture.
#pragma once

#include <cmath>
#include <cstdint>

#include "picture/point_kernel.h"
#include "pointops/tone_curves_kernels.h"

namespace pxk {

/// `value * factor + offset`, or some other line where single precision cannot reach its results.
inline QuickLine quickLine(double factor, double offset) {
    constexpr double reach = 1e6;
    // How far single precision may end up below an exact whole number.
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

/// Whether two kernels that treat each channel on its own give the same results for all of its values.
template <class One, class Other>
bool resultsMatch(const PointKernel<One>& kernel, const One& operation, const PointKernel<Other>& otherKernel,
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
