#include "pointops/tone_curves.h"

#include <algorithm>
#include <cmath>

#include "picture/isa.h"
#include "pointops/map_picture.h"
#include "pointops/quick_curves.h"
#include "pointops/tone_curves_kernels.h"
#include "pointops/whole_offsets_kernels.h"

namespace pxk {

namespace {

constexpr double contrastPivot = 127.0;

Line contrastLine(double contrast) { return {contrast + 1.0, contrastPivot}; }
Line linearLine(double brightness) { return {(255.0 - std::fabs(brightness)) / 255.0, std::max(brightness, 0.0)}; }
// A factor of 1 changes no bit of any value.
Line absoluteLine(double brightness) { return {1.0, brightness}; }

ToneCurve contrastCurve(double red, double green, double blue) {
    return {contrastPivot, contrastLine(red), contrastLine(green), contrastLine(blue)};
}
ToneCurve linearCurve(double red, double green, double blue) {
    return {0.0, linearLine(red), linearLine(green), linearLine(blue)};
}
ToneCurve absoluteCurve(double red, double green, double blue) {
    return {0.0, absoluteLine(red), absoluteLine(green), absoluteLine(blue)};
}

// With fewer pixels, checking for a quicker way takes longer than it saves.
constexpr std::int64_t fewPixels = 1024;

template <class Curve>
REALpictureStruct* mapClamped(REALpictureStruct* self, const PointKernel<Curve>& kernel, const Curve& curve) {
    PictureReader source;
    PictureWriter result;
    if (!source.open(self) || !result.NewPictureWriter(source)) return nullptr;
    const Rectangle whole = wholeRectangle(source.width, source.height);
    const PointKernel<QuickCurve>& quickKernel = kernels<ToneCurveKernels>().quickClamped;
    const QuickCurve quick = quickCurve(curve);
    if (std::int64_t{source.width} * source.height >= fewPixels && resultsMatch(kernel, curve, quickKernel, quick)) {
        mapPixels(source, result, whole, quickKernel, quick);
    } else {
        mapPixels(source, result, whole, kernel, curve);
    }
    return result.RenderPictureWriter();
}

REALpictureStruct* mapClamped(REALpictureStruct* self, const ToneCurve& curve) {
    return mapClamped(self, kernels<ToneCurveKernels>().clamped, curve);
}
REALpictureStruct* mapClamped(REALpictureStruct* self, const ToneCurvePair& pair) {
    return mapClamped(self, kernels<ToneCurveKernels>().clampedPair, pair);
}
REALpictureStruct* mapWrapped(REALpictureStruct* self, const ToneCurve& curve) {
    return mapPicture(self, kernels<ToneCurveKernels>().wrapped, curve);
}

// Added to a byte, whole numbers are exact in any precision.
bool isWholeOffset(double brightness) { return std::fabs(brightness) <= 255.0 && std::trunc(brightness) == brightness; }

}  // namespace

REALpictureStruct* ContrastPicture1(REALpictureStruct* self, double contrast) {
    return ContrastPicture3(self, contrast, contrast, contrast);
}

REALpictureStruct* ContrastPicture3(REALpictureStruct* self, double contrastRed, double contrastGreen,
                                    double contrastBlue) {
    return mapClamped(self, contrastCurve(contrastRed, contrastGreen, contrastBlue));
}

REALpictureStruct* LinBrightnessPicture1(REALpictureStruct* self, double brightness) {
    return LinBrightnessPicture3(self, brightness, brightness, brightness);
}

REALpictureStruct* LinBrightnessPicture3(REALpictureStruct* self, double brightnessRed, double brightnessGreen,
                                         double brightnessBlue) {
    const ToneCurve curve = linearCurve(brightnessRed, brightnessGreen, brightnessBlue);
    // With nothing to wrap, the loop that clamps gives the same results, and is quicker.
    const bool fitsAByte =
        std::max({std::fabs(brightnessRed), std::fabs(brightnessGreen), std::fabs(brightnessBlue)}) <= 255.0;
    return fitsAByte ? mapClamped(self, curve) : mapWrapped(self, curve);
}

REALpictureStruct* AbsBrightnessPicture1(REALpictureStruct* self, double brightness) {
    return AbsBrightnessPicture3(self, brightness, brightness, brightness);
}

REALpictureStruct* AbsBrightnessPicture3(REALpictureStruct* self, double brightnessRed, double brightnessGreen,
                                         double brightnessBlue) {
    if (isWholeOffset(brightnessRed) && isWholeOffset(brightnessGreen) && isWholeOffset(brightnessBlue)) {
        return mapPicture(
            self, kernels<WholeOffsetsKernels>().add,
            WholeOffsets{static_cast<std::int32_t>(brightnessRed), static_cast<std::int32_t>(brightnessGreen),
                         static_cast<std::int32_t>(brightnessBlue)});
    }
    return mapClamped(self, absoluteCurve(brightnessRed, brightnessGreen, brightnessBlue));
}

REALpictureStruct* TransformPicture1(REALpictureStruct* self, double a, double b) {
    return TransformPicture3(self, a, b, a, b, a, b);
}

REALpictureStruct* TransformPicture3(REALpictureStruct* self, double ra, double rb, double /*ga*/, double gb, double ba,
                                     double bb) {
    return mapClamped(self, ToneCurve{0.0, {ra, rb}, {ra, gb}, {ba, bb}});
}

REALpictureStruct* ContrastLinBrightnessPicture1(REALpictureStruct* self, double contrast, double brightness) {
    return ContrastLinBrightnessPicture3(self, contrast, contrast, contrast, brightness, brightness, brightness);
}

REALpictureStruct* ContrastLinBrightnessPicture3(REALpictureStruct* self, double contrastRed, double contrastGreen,
                                                 double contrastBlue, double brightnessRed, double brightnessGreen,
                                                 double brightnessBlue) {
    return mapClamped(self, ToneCurvePair{contrastCurve(contrastRed, contrastGreen, contrastBlue),
                                          linearCurve(brightnessRed, brightnessGreen, brightnessBlue)});
}

REALpictureStruct* ContrastAbsBrightnessPicture1(REALpictureStruct* self, double contrast, double brightness) {
    return ContrastAbsBrightnessPicture3(self, contrast, contrast, contrast, brightness, brightness, brightness);
}

REALpictureStruct* ContrastAbsBrightnessPicture3(REALpictureStruct* self, double contrastRed, double contrastGreen,
                                                 double contrastBlue, double brightnessRed, double brightnessGreen,
                                                 double brightnessBlue) {
    return mapClamped(self, ToneCurvePair{contrastCurve(contrastRed, contrastGreen, contrastBlue),
                                          absoluteCurve(brightnessRed, brightnessGreen, brightnessBlue)});
}

}  // namespace pxk
