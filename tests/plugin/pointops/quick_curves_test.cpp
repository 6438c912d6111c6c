// Tone curves in single precision, used only where the results are the same.
#include "pointops/quick_curves.h"

#include <gtest/gtest.h>

#include <limits>

#include "picture/isa.h"
#include "support/definitions/tone_curves.h"
#include "support/extreme_numbers.h"
#include "support/isa_tests.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

ToneCurve customCurve(double factor, double offset) {
    const Line line = {factor, offset};
    return {0.0, line, line, line};
}

bool isQuick(const ToneCurveKernels& kernels, const ToneCurve& curve) {
    return resultsMatch(kernels.clamped, curve, kernels.quickClamped, quickCurve(curve));
}

TEST(QuickCurves, AgreeForOrdinaryNumbers) {
    forEveryIsa<ToneCurveKernels>([](const ToneCurveKernels& kernels) {
        EXPECT_TRUE(isQuick(kernels, customCurve(1.0, 0.0)));
        EXPECT_TRUE(isQuick(kernels, customCurve(0.9, 8.0)));
        EXPECT_TRUE(isQuick(kernels, customCurve(-1.0, 255.0)));
        EXPECT_TRUE(isQuick(kernels, customCurve(1.5, -63.5)));
    });
}

// 0.7 and its multiples are rounded down slightly, and only double precision shows by how much.
TEST(QuickCurves, AreNotUsedWhereSinglePrecisionFallsShort) {
    forEveryIsa<ToneCurveKernels>(
        [](const ToneCurveKernels& kernels) { EXPECT_FALSE(isQuick(kernels, customCurve(0.7, 5.0))); });
}

TEST(QuickCurves, ADifferenceInOneValueOfOneChannelIsSeen) {
    forEveryIsa<ToneCurveKernels>([](const ToneCurveKernels& kernels) {
        // Exactly 255 instead of just below it, for the value 255 alone.
        const ToneCurve exact = {0.0, {1.0, 0.0}, {1.0, 0.0}, {254.99999999999997 / 255, 0.0}};
        EXPECT_FALSE(resultsMatch(kernels.clamped, exact, kernels.clamped, customCurve(1.0, 0.0)));
        EXPECT_TRUE(resultsMatch(kernels.clamped, exact, kernels.clamped, exact));
    });
}

TEST(QuickCurves, StayWithinReachOfSinglePrecision) {
    for (const double number : extremeDoubles) {
        for (const double other : extremeDoubles) {
            const QuickLine line = quickLine(number, other);
            EXPECT_LT(std::fabs(line.factor * 255 + line.offset), 1e9F) << number << " and " << other;
        }
    }
}

// Large enough for single precision to be tried.
Ref<Picture> largePicture(const Setting& setting) {
    constexpr int width = 48;
    std::vector<Colour> colours;
    for (int i = 0; i < width * width; ++i) colours.push_back({i % 256, i * 7 % 256, 255 - i % 256});
    return pictureOf(setting, width, colours);
}

std::vector<double> numbers() {
    std::vector<double> all(extremeDoubles.begin(), extremeDoubles.end());
    for (const double number : {0.7, 0.9, 0.3, -0.2, 1.1, 2.55, 10.0, -20.0, 63.5, 0.1 + 0.2, 1.0 / 3}) {
        all.push_back(number);
    }
    return all;
}

TEST(QuickCurves, LargePicturesBecomeWhatTheFormulasSay) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = largePicture(setting);
        const auto expect = [&](const Ref<Picture>& result, const std::function<int(int)>& curve) {
            expectPoints(setting, *self, result, [&](Colour old) -> Colour {
                return {curve(old.red), curve(old.green), curve(old.blue)};
            });
        };
        for (const double a : numbers()) {
            SCOPED_TRACE(a);
            expect(host.invoke<Ref<Picture>>("ChangeContrastPXK(Contrast as double) as picture", self, a),
                   [=](int value) { return contrast(value, a); });
            expect(host.invoke<Ref<Picture>>("ChangeBrightnessLinearPXK(Brightness as double) as picture", self, a),
                   [=](int value) { return linearBrightness(value, a); });
            expect(host.invoke<Ref<Picture>>("ChangeBrightnessAbsolutePXK(Brightness as double) as picture", self, a),
                   [=](int value) { return absoluteBrightness(value, a); });
            for (const double b : {0.0, 5.0, -0.5, 0.7, 1e12}) {
                SCOPED_TRACE(b);
                expect(host.invoke<Ref<Picture>>("ChangeCustomPXK(a as double, b as double) as picture", self, a, b),
                       [=](int value) { return customLine(value, a, b); });
                expect(host.invoke<Ref<Picture>>(
                           "ChangeContrastBrightnessLinearPXK(Contrast as double, Brightness as double) as picture",
                           self, a, b),
                       [=](int value) { return contrastAndLinearBrightness(value, a, b); });
                expect(host.invoke<Ref<Picture>>(
                           "ChangeContrastBrightnessAbsolutePXK(Contrast as double, Brightness as double) as picture",
                           self, a, b),
                       [=](int value) { return contrastAndAbsoluteBrightness(value, a, b); });
            }
        }
    });
}

TEST(QuickCurves, HoldInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        const Ref<Picture> self = largePicture(setting);
        for (const double a : {0.9, 0.7}) {
            expectPoints(
                setting, *self,
                host.invoke<Ref<Picture>>("ChangeCustomPXK(a as double, b as double) as picture", self, a, 5.0),
                [=](Colour old) -> Colour {
                    return {customLine(old.red, a, 5.0), customLine(old.green, a, 5.0), customLine(old.blue, a, 5.0)};
                });
        }
        expectPoints(
            setting, *self,
            host.invoke<Ref<Picture>>("ChangeBrightnessAbsolutePXK(BrightnessRed as double, BrightnessGreen as double, "
                                      "BrightnessBlue as double) as picture",
                                      self, 20.0, -30.0, 255.0),
            [](Colour old) -> Colour {
                return {absoluteBrightness(old.red, 20), absoluteBrightness(old.green, -30), 255};
            });
    });
}

}  // namespace
}  // namespace pxk::test
