/// The plugin's published interface: every declaration in its order.
#pragma once

#include <array>
#include <string_view>

namespace pxk::test {

inline constexpr std::array<std::string_view, 40> publishedPictureMethods = {
    "ColornessPXK(threshold as integer = 10) as double",
    "ScrollVerticalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean",
    "ScrollHorizontalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean",
    "ScrollPXK(deltaX as integer, deltaY as integer, wrap as boolean, scrollmask as boolean) as boolean",
    "HasMaskPXK as boolean",
    "ChangeContrastBrightnessAbsolutePXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double, "
    "BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as picture",
    "ChangeContrastBrightnessLinearPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double, "
    "BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as picture",
    "ChangeContrastBrightnessAbsolutePXK(Contrast as double, Brightness as double) as picture",
    "ChangeContrastBrightnessLinearPXK(Contrast as double, Brightness as double) as picture",
    "ChangeBrightnessAbsolutePXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
    "picture",
    "ChangeBrightnessLinearPXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
    "picture",
    "ChangeBrightnessAbsolutePXK(Brightness as double) as picture",
    "ChangeBrightnessLinearPXK(Brightness as double) as picture",
    "ChangeContrastPXK(Contrast as double) as picture",
    "ChangeContrastPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double) as picture",
    "ChangeCustomPXK(a as double, b as double) as picture",
    "ChangeCustomPXK(Ra as double, Rb as double, Ga as double, Gb as double, Ba as double, Bb as double) as picture",
    "InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture",
    "InvertPXK as picture",
    "InvertGrayPXK(left as integer,top as integer,width as integer,height as integer) as picture",
    "InvertGrayPXK as picture",
    "ExtractColorRectangleMaskPXK(left as integer,top as integer,width as integer,height as integer) as picture",
    "ExtractColorRectangleMaskPXK as picture",
    "EmbeddedMaskPXK(swap as boolean) as picture",
    "CountColorPXK(col as color) as integer",
    "CountColorsPXK(byref red as memoryblock, byref blue as memoryblock, byref green as memoryblock, byref count as "
    "integer)",
    "TransformColorsPXK(red as memoryblock, blue as memoryblock, green as memoryblock, dest as picture = nil) as "
    "picture",
    "ReplaceColorPXK(SearchColor as color, ReplaceWithColor as color) as picture",
    "ExtractColorPXK(SearchColor as color, ReplaceWithColor as color, BackGroundColor as color) as picture",
    "ChangeSaturationPXK(Amount as integer) as picture",
    "ReplaceRedChannelPXK(RedChannel as picture) as picture",
    "ReplaceGreenChannelPXK(GreenChannel as picture) as picture",
    "ReplaceBlueChannelPXK(BlueChannel as picture) as picture",
    "FindPicturePXK(pic as picture, byref x as integer, byref y as integer, StartX as Integer = 0, StartY as Integer = "
    "0, Tolerance as Integer = 3) as boolean",
    "isWhitePXK as boolean",
    "isWhitePXK(left as integer,top as integer,width as integer,height as integer) as boolean",
    "isBlackPXK as boolean",
    "isBlackPXK(left as integer,top as integer,width as integer,height as integer) as boolean",
    "isGrayPXK(tolerance as integer = 0) as boolean",
    "isGrayPXK(tolerance as integer, left as integer,top as integer,width as integer,height as integer) as boolean",
};

/// The one picture method that can also be assigned.
inline constexpr std::string_view publishedPictureProperty = "EmbeddedMaskPXK(swap as boolean) as picture";

inline constexpr std::array<std::string_view, 6> publishedGlobalMethods = {
    "BinaryStringtoPicturePXK(data as String) as Picture",
    "PicturetoBinaryStringPXK(p as picture) as string",
    "CombinePicturesPXK(red as picture, blue as picture, green as picture) as picture",
    "MergePicturePXK(source1 as picture, source2 as picture) as picture",
    "TintPicturePXK(source as picture, GreyBase as color, SepiaBase as color) as picture",
    "RenderSamplesPXK(Samples as memoryblock, SampleCount as integer, Smooth as integer, Width as integer, Height as "
    "integer, outlinewidth as integer, BackColor as color=&c88B5C4, ForeColor as color=&c274C5A, OutLineColor as "
    "color=&c203F4E, Bits as Integer = 8, AutoScale as boolean = false) as Picture",
};

/// How many of the first global methods carry the attribute that names what to use instead.
inline constexpr std::size_t deprecatedGlobalMethods = 2;

struct PublishedProperty {
    std::string_view name;
    std::string_view type;
    int flags;
    bool isField;
};

inline constexpr std::array<PublishedProperty, 12> publishedSepiaProperties = {{
    {"SourcePicture", "Picture", 0x40002, true},
    {"DestinationPicture", "Picture", 0x40002, true},
    {"MaxX", "Integer", 6, true},
    {"MinX", "Integer", 6, true},
    {"MaxY", "Integer", 6, true},
    {"MinY", "Integer", 6, true},
    {"SepiaRed", "Integer", 6, true},
    {"SepiaGreen", "Integer", 6, true},
    {"SepiaBlue", "Integer", 6, true},
    {"FactorRed", "Double", 6, false},
    {"FactorBlue", "Double", 6, false},
    {"FactorGreen", "Double", 6, false},
}};

inline constexpr std::array<PublishedProperty, 6> publishedLut3DProperties = {{
    {"SourcePicture", "Picture", 0x40000, true},
    {"DestinationPicture", "Picture", 0x40000, true},
    {"MaxX", "Integer", 0x40000, true},
    {"MinX", "Integer", 0x40000, true},
    {"MaxY", "Integer", 0x40000, true},
    {"MinY", "Integer", 0x40000, true},
}};

}  // namespace pxk::test
