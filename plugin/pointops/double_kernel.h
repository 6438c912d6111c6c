/// Row kernels of point operations that compute in double precision.
///
/// Such an operation is a struct with one static function template, `apply(settings, pixel)`, which serves single
/// pixels and, where the instruction set has them, lanes of several pixels. It starts each channel with a subtraction
/// (of 0 at least), and makes its result with `coloursFrom` out of `toByteClamped` or `toByteWrapped`.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/point_kernel.h"
#include "pointops/double_lanes.h"

namespace pxk {

namespace {

/// A double as a 32-bit integer, towards zero. What does not fit, NaN included, counts as INT_MIN: it gives 0 here,
/// which neither a clamp to 0-255 nor the lowest byte can tell from INT_MIN, and which needs no branch.
inline std::int32_t truncated(double value) {
    constexpr double limit = 2147483648.0;
    return static_cast<std::int32_t>(__builtin_fabs(value) < limit ? value : 0.0);
}

inline std::int32_t clampedToByte(std::int32_t whole) { return whole < 0 ? 0 : whole > 255 ? 255 : whole; }

inline std::int32_t toByteClamped(double value) { return clampedToByte(truncated(value)); }

inline std::int32_t toByteWrapped(double value) { return truncated(value) & 0xFF; }

inline Rgb coloursFrom(std::int32_t red, std::int32_t green, std::int32_t blue) { return {red, green, blue}; }

template <class Settings, class Operation>
Rgb applyToPixel(const Settings& settings, Rgb pixel) {
    return Operation::apply(settings, pixel);
}

#ifdef __AVX2__

inline LaneIntegers toByteClamped(Lanes values) { return truncated(values); }  // storing clamps
inline LaneIntegers toByteWrapped(Lanes values) { return lowByte(truncated(values)); }
inline LaneColours coloursFrom(LaneIntegers red, LaneIntegers green, LaneIntegers blue) { return {red, green, blue}; }

template <class Source, class Result, class Settings, class Operation>
void mapRowInLanes(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
                   const Settings& given) {
    const Settings settings = given;
    std::ptrdiff_t x = 0;
    if (count >= laneCount) {
        // Loading runs one step ahead of the rest, so that the processor has something to do while it waits.
        LanePixels pixels = loadLanes<Source>(source);
        for (; x + 2 * laneCount <= count; x += laneCount) {
            const LanePixels next = loadLanes<Source>(source + x + laneCount);
            storeLanes<Result>(result + x, Operation::apply(settings, pixels));
            pixels = next;
        }
        storeLanes<Result>(result + x, Operation::apply(settings, pixels));
        x += laneCount;
    }
    mapRow<Source, Result, Settings, applyToPixel<Settings, Operation>>(source + x, result + x, count - x, given);
}

template <class Source, class Settings, class Operation>
constexpr void useLanes(PointRow<Settings> (&rows)[writableFamilyCount]) {
    rows[0] = mapRowInLanes<Source, AlphaLast, Settings, Operation>;
    rows[1] = mapRowInLanes<Source, AlphaFirst, Settings, Operation>;
    rows[2] = mapRowInLanes<Source, GdTrueColor, Settings, Operation>;
}

#endif

/// The row loops of an operation in double precision.
template <class Settings, class Operation>
constexpr PointKernel<Settings> doubleKernel() {
    PointKernel<Settings> kernel = pointKernel<Settings, applyToPixel<Settings, Operation>>();
#ifdef __AVX2__
    useLanes<AlphaLast, Settings, Operation>(kernel.rows[0]);
    useLanes<AlphaFirst, Settings, Operation>(kernel.rows[1]);
    useLanes<GdTrueColor, Settings, Operation>(kernel.rows[2]);
#endif
    return kernel;
}

}  // namespace

}  // namespace pxk
