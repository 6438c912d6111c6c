// The methods added to the host's class "Picture", in their published order.
//
// The tables are written with plain casts, which the compiler turns into data: nothing runs when the library loads.
#include <iterator>

#include "analysis/colorness.h"
#include "analysis/picture_search.h"
#include "analysis/scrolling.h"
#include "analysis/uniformity.h"
#include "channels/color_counting.h"
#include "channels/replace_channel.h"
#include "channels/transform_colors.h"
#include "frame/registration_tables.h"
#include "picture/masks.h"
#include "pointops/exact_colors.h"
#include "pointops/inversion.h"
#include "pointops/rectangle_mask.h"
#include "pointops/saturation.h"
#include "pointops/tone_curves.h"

namespace pxk {

namespace {

constexpr HostWord plain = 0x40000;

REALmethodDefinition pictureMethods[] = {
    {(void*)ColornessPXK, nullptr, "ColornessPXK(threshold as integer = 10) as double", plain},
    {(void*)ScrollVerticalPXK, nullptr,
     "ScrollVerticalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean", plain},
    {(void*)ScrollHorizontalPXK, nullptr,
     "ScrollHorizontalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean", plain},
    {(void*)ScrollPXK, nullptr,
     "ScrollPXK(deltaX as integer, deltaY as integer, wrap as boolean, scrollmask as boolean) as boolean", plain},
    {(void*)PictureHasMask, nullptr, "HasMaskPXK as boolean", plain},
    {(void*)ContrastAbsBrightnessPicture3, nullptr,
     "ChangeContrastBrightnessAbsolutePXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double, "
     "BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as picture",
     plain},
    {(void*)ContrastLinBrightnessPicture3, nullptr,
     "ChangeContrastBrightnessLinearPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double, "
     "BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as picture",
     plain},
    {(void*)ContrastAbsBrightnessPicture1, nullptr,
     "ChangeContrastBrightnessAbsolutePXK(Contrast as double, Brightness as double) as picture", plain},
    {(void*)ContrastLinBrightnessPicture1, nullptr,
     "ChangeContrastBrightnessLinearPXK(Contrast as double, Brightness as double) as picture", plain},
    {(void*)AbsBrightnessPicture3, nullptr,
     "ChangeBrightnessAbsolutePXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
     "picture",
     plain},
    {(void*)LinBrightnessPicture3, nullptr,
     "ChangeBrightnessLinearPXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
     "picture",
     plain},
    {(void*)AbsBrightnessPicture1, nullptr, "ChangeBrightnessAbsolutePXK(Brightness as double) as picture", plain},
    {(void*)LinBrightnessPicture1, nullptr, "ChangeBrightnessLinearPXK(Brightness as double) as picture", plain},
    {(void*)ContrastPicture1, nullptr, "ChangeContrastPXK(Contrast as double) as picture", plain},
    {(void*)ContrastPicture3, nullptr,
     "ChangeContrastPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double) as picture", plain},
    {(void*)TransformPicture1, nullptr, "ChangeCustomPXK(a as double, b as double) as picture", plain},
    {(void*)TransformPicture3, nullptr,
     "ChangeCustomPXK(Ra as double, Rb as double, Ga as double, Gb as double, Ba as double, Bb as double) as picture",
     plain},
    {(void*)InvertPicture, nullptr,
     "InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture", plain},
    {(void*)InvertPicture2, nullptr, "InvertPXK as picture", plain},
    {(void*)InvertGrayPicture, nullptr,
     "InvertGrayPXK(left as integer,top as integer,width as integer,height as integer) as picture", plain},
    {(void*)InvertGrayPicture2, nullptr, "InvertGrayPXK as picture", plain},
    {(void*)ExtractColorRectangleMaskPXK, nullptr,
     "ExtractColorRectangleMaskPXK(left as integer,top as integer,width as integer,height as integer) as picture",
     plain},
    {(void*)ExtractColorRectangleMaskPXK2, nullptr, "ExtractColorRectangleMaskPXK as picture", plain},
    {(void*)GetEmbededMask, (void*)SetEmbededMask, "EmbeddedMaskPXK(swap as boolean) as picture", plain},
    {(void*)CountColorPXK, nullptr, "CountColorPXK(col as color) as integer", plain},
    {(void*)CountColorsPXK, nullptr,
     "CountColorsPXK(byref red as memoryblock, byref blue as memoryblock, byref green as memoryblock, byref count as "
     "integer)",
     plain},
    {(void*)TransformColorsPXK, nullptr,
     "TransformColorsPXK(red as memoryblock, blue as memoryblock, green as memoryblock, dest as picture = nil) as "
     "picture",
     plain},
    {(void*)ReplaceColorPXK, nullptr, "ReplaceColorPXK(SearchColor as color, ReplaceWithColor as color) as picture",
     plain},
    {(void*)ExtractColorPXK, nullptr,
     "ExtractColorPXK(SearchColor as color, ReplaceWithColor as color, BackGroundColor as color) as picture", plain},
    {(void*)SaturationPicture, nullptr, "ChangeSaturationPXK(Amount as integer) as picture", plain},
    {(void*)ReplaceRedChannel, nullptr, "ReplaceRedChannelPXK(RedChannel as picture) as picture", plain},
    {(void*)ReplaceGreenChannel, nullptr, "ReplaceGreenChannelPXK(GreenChannel as picture) as picture", plain},
    {(void*)ReplaceBlueChannel, nullptr, "ReplaceBlueChannelPXK(BlueChannel as picture) as picture", plain},
    {(void*)FindPicture, nullptr,
     "FindPicturePXK(pic as picture, byref x as integer, byref y as integer, StartX as Integer = 0, "
     "StartY as Integer = 0, Tolerance as Integer = 3) as boolean",
     plain},
    {(void*)isWhite2, nullptr, "isWhitePXK as boolean", plain},
    {(void*)isWhite, nullptr,
     "isWhitePXK(left as integer,top as integer,width as integer,height as integer) as boolean", plain},
    {(void*)isBlack2, nullptr, "isBlackPXK as boolean", plain},
    {(void*)isBlack, nullptr,
     "isBlackPXK(left as integer,top as integer,width as integer,height as integer) as boolean", plain},
    {(void*)isGray2, nullptr, "isGrayPXK(tolerance as integer = 0) as boolean", plain},
    {(void*)isGray, nullptr,
     "isGrayPXK(tolerance as integer, left as integer,top as integer,width as integer,height as integer) as boolean",
     plain},
};

}  // namespace

REALclassDefinition pictureClass = {
    .version = 13,
    .name = "Picture",
    .methods = pictureMethods,
    .methodCount = std::size(pictureMethods),
    .flags = 4,
};

}  // namespace pxk
