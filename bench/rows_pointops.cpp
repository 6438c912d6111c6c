// The rows of point operations; their limit is a copy of the picture.
#include "bench/calls.h"

namespace pxkbench {
namespace {

using pxk::Isa;

// For operations with considerable arithmetic. The baseline instruction set has no threshold.
Thresholds largeThresholds(Isa isa, double avx2, double avx512) {
    switch (isa) {
        case Isa::avx512:
            return {0, avx512};
        case Isa::avx2:
            return {0, avx2};
        case Isa::baseline:
            break;
    }
    return noThresholds;
}

Call tint(const Workspace& work) {
    const auto member = work.host.member<PictureResult(pxkhost::Picture*, std::uint32_t, std::uint32_t)>(
        "TintPicturePXK(source as picture, GreyBase as color, SepiaBase as color) as picture");
    return [=, source = &work.source()](Outcome* outcome) { callOnce(outcome, member, source, 0x555555U, 0xFFCC88U); };
}

void chooseSepia(const pxkhost::Host& host, pxkhost::Instance& instance) {
    const auto set = [&](const char* name, int value) {
        pxkhost::setProperty(instance, host.members().property("PictureSepiaPXK", name),
                             pxkhost::Value::ofInteger(value));
    };
    set("SepiaRed", 40);
    set("SepiaGreen", 20);
    set("SepiaBlue", -20);
}

constexpr Thresholds inversionThresholds = {2.0, 1.3};
constexpr Thresholds exactColourThresholds = {0, 1.3};
constexpr std::uint32_t green = 0x20A040;

}  // namespace

std::vector<Row> pointOperationRows(Isa isa) {
    const auto picture = []<class... Arguments>(const char* declaration, Arguments... arguments) {
        return method<PictureResult>(declaration, arguments...);
    };
    const Thresholds integer = largeThresholds(isa, 4.0, 2.0);
    const Thresholds curve = largeThresholds(isa, 4.0, 2.5);
    return {
        {"InvertPXK", picture("InvertPXK as picture"), &copyLimit, Makes::picture, inversionThresholds},
        {"InvertGrayPXK", picture("InvertGrayPXK as picture"), &copyLimit, Makes::picture, inversionThresholds},
        {"ChangeBrightnessAbsolutePXK(10)",
         picture("ChangeBrightnessAbsolutePXK(Brightness as double) as picture", 10.0), &copyLimit, Makes::picture,
         curve},
        {"ChangeBrightnessLinearPXK(10)", picture("ChangeBrightnessLinearPXK(Brightness as double) as picture", 10.0),
         &copyLimit, Makes::picture, curve},
        {"ChangeContrastPXK(0.5)", picture("ChangeContrastPXK(Contrast as double) as picture", 0.5), &copyLimit,
         Makes::picture, curve},
        {"ChangeContrastBrightnessAbsolutePXK(0.5, 10)",
         picture("ChangeContrastBrightnessAbsolutePXK(Contrast as double, Brightness as double) as picture", 0.5, 10.0),
         &copyLimit, Makes::picture, curve},
        {"ChangeContrastBrightnessLinearPXK(0.5, 10)",
         picture("ChangeContrastBrightnessLinearPXK(Contrast as double, Brightness as double) as picture", 0.5, 10.0),
         &copyLimit, Makes::picture, curve},
        {"ChangeCustomPXK(0.9, 8)", picture("ChangeCustomPXK(a as double, b as double) as picture", 0.9, 8.0),
         &copyLimit, Makes::picture, curve},
        {"ChangeCustomPXK(0.9, 8, 0.8, 9, 0.7, 5)",
         picture("ChangeCustomPXK(Ra as double, Rb as double, Ga as double, Gb as double, Ba as double, Bb as double) "
                 "as picture",
                 0.9, 8.0, 0.8, 9.0, 0.7, 5.0),
         &copyLimit, Makes::picture, curve},
        {"ChangeSaturationPXK(100)", picture("ChangeSaturationPXK(Amount as integer) as picture", 100), &copyLimit,
         Makes::picture, integer},
        {"TintPicturePXK", tint, &copyLimit, Makes::picture, integer},
        {"PictureSepiaPXK.Run", runOf("PictureSepiaPXK", chooseSepia), &copyLimit, Makes::picture, integer},
        {"ReplaceColorPXK",
         picture("ReplaceColorPXK(SearchColor as color, ReplaceWithColor as color) as picture", blobColour, green),
         &copyLimit,
         Makes::picture,
         exactColourThresholds,
         {Content::blobs}},
        {"ExtractColorPXK",
         picture(
             "ExtractColorPXK(SearchColor as color, ReplaceWithColor as color, BackGroundColor as color) as picture",
             blobColour, green, 0xFFFFFFU),
         &copyLimit,
         Makes::picture,
         exactColourThresholds,
         {Content::blobs}},
        {"ExtractColorRectangleMaskPXK",
         picture("ExtractColorRectangleMaskPXK as picture"),
         &copyLimit,
         Makes::picture,
         {0, 4.0},
         {Content::blobs}},
    };
}

}  // namespace pxkbench
