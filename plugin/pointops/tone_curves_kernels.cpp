#include "pointops/tone_curves_kernels.h"

#include "pointops/double_kernel.h"

namespace pxk {

namespace {

template <class Value>
Value along(const Line& line, Value value) {
    return value * line.factor + line.offset;
}

struct Clamped {
    template <class Pixel>
    static auto apply(const ToneCurve& curve, Pixel old) {
        return coloursFrom(toByteClamped(along(curve.red, old.red - curve.pivot)),
                           toByteClamped(along(curve.green, old.green - curve.pivot)),
                           toByteClamped(along(curve.blue, old.blue - curve.pivot)));
    }
};

struct Wrapped {
    template <class Pixel>
    static auto apply(const ToneCurve& curve, Pixel old) {
        return coloursFrom(toByteWrapped(along(curve.red, old.red - curve.pivot)),
                           toByteWrapped(along(curve.green, old.green - curve.pivot)),
                           toByteWrapped(along(curve.blue, old.blue - curve.pivot)));
    }
};

struct ClampedPair {
    template <class Pixel>
    static auto apply(const ToneCurvePair& pair, Pixel old) {
        const auto& [pivot, red, green, blue] = pair.first;
        return coloursFrom(toByteClamped(along(pair.second.red, along(red, old.red - pivot))),
                           toByteClamped(along(pair.second.green, along(green, old.green - pivot))),
                           toByteClamped(along(pair.second.blue, along(blue, old.blue - pivot))));
    }
};

std::int32_t quickly(const QuickLine& line, std::int32_t value) {
    return clampedToByte(static_cast<std::int32_t>(static_cast<float>(value) * line.factor + line.offset));
}

Rgb quicklyClamped(const QuickCurve& curve, Rgb old) {
    return {quickly(curve.red, old.red), quickly(curve.green, old.green), quickly(curve.blue, old.blue)};
}

constexpr ToneCurveKernels table = {.clamped = doubleKernel<ToneCurve, Clamped>(),
                                    .wrapped = doubleKernel<ToneCurve, Wrapped>(),
                                    .clampedPair = doubleKernel<ToneCurvePair, ClampedPair>(),
                                    .quickClamped = pointKernel<QuickCurve, quicklyClamped>()};

}  // namespace

constinit const ToneCurveKernels ToneCurveKernels::PXK_ISA = table;

}  // namespace pxk
