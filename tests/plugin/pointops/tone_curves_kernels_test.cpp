// The loops of tone curves, compared with their definitions.
#include "pointops/tone_curves_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/whole_numbers.h"
#include "support/extreme_numbers.h"
#include "support/isa_tests.h"
#include "support/point_kernel_check.h"

namespace pxk::test {
namespace {

double along(const Line& line, double value) { return value * line.factor + line.offset; }

// Calls `check` with curves whose channels differ, every extreme number being a factor and an offset of each.
template <class Check>
void forExtremeCurves(Check check) {
    constexpr std::size_t count = extremeDoubles.size();
    const auto number = [](std::size_t i) { return extremeDoubles[i % count]; };
    for (std::size_t i = 0; i < count; ++i) {
        SCOPED_TRACE(extremeDoubles[i]);
        const double pivot = i % 2 == 0 ? 127.0 : 0.0;
        check(ToneCurve{pivot, {number(i), 127.0}, {number(i + 5), number(i + 2)}, {0.75, number(i + 7)}});
        check(ToneCurve{pivot, {1.0, number(i)}, {number(i + 3), -20.0}, {number(i + 11), number(i)}});
    }
}

TEST(ToneCurveKernels, ClampedEqualsItsDefinition) {
    forEveryIsa<ToneCurveKernels>([](const ToneCurveKernels& kernels) {
        forExtremeCurves([&](const ToneCurve& curve) {
            const auto channel = [&](const Line& line, int value) {
                return clampedToByte(truncatedToInteger(along(line, value - curve.pivot)));
            };
            checkPointKernel(kernels.clamped, curve, [&](Colour old) -> Colour {
                return {channel(curve.red, old.red), channel(curve.green, old.green), channel(curve.blue, old.blue)};
            });
        });
    });
}

TEST(ToneCurveKernels, WrappedEqualsItsDefinition) {
    forEveryIsa<ToneCurveKernels>([](const ToneCurveKernels& kernels) {
        forExtremeCurves([&](const ToneCurve& curve) {
            const auto channel = [&](const Line& line, int value) {
                return truncatedToInteger(along(line, value - curve.pivot)) & 255;
            };
            checkPointKernel(kernels.wrapped, curve, [&](Colour old) -> Colour {
                return {channel(curve.red, old.red), channel(curve.green, old.green), channel(curve.blue, old.blue)};
            });
        });
    });
}

TEST(ToneCurveKernels, ClampedPairEqualsItsDefinition) {
    forEveryIsa<ToneCurveKernels>([](const ToneCurveKernels& kernels) {
        const ToneCurve plain = {0.0, {0.6, 100.0}, {0.999, -3.5}, {1.0, 0.25}};
        forExtremeCurves([&](const ToneCurve& curve) {
            for (const ToneCurvePair& pair : {ToneCurvePair{curve, plain}, ToneCurvePair{plain, curve}}) {
                const auto channel = [&](const Line& first, const Line& second, int value) {
                    const double between = along(first, value - pair.first.pivot);
                    return clampedToByte(truncatedToInteger(along(second, between)));
                };
                checkPointKernel(kernels.clampedPair, pair, [&](Colour old) -> Colour {
                    return {channel(pair.first.red, pair.second.red, old.red),
                            channel(pair.first.green, pair.second.green, old.green),
                            channel(pair.first.blue, pair.second.blue, old.blue)};
                });
            }
        });
    });
}

}  // namespace
}  // namespace pxk::test
