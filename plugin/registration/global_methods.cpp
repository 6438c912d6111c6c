// The global methods, in their published order.
#include <span>

#include "channels/combine_pictures.h"
#include "frame/registration_tables.h"
#include "pointops/tint.h"
#include "utilities/binary_string.h"
#include "utilities/waveform.h"

namespace pxk {

namespace {

constexpr HostWord plain = 0x40000;

// The value is itself a text in quotes.
constexpr REALattribute DeprecatedAttributes[] = {{"Deprecated", "\"PNG format\""}};

REALmethodDefinition globalMethods[] = {
    {(void*)BinaryStringtoPicture, nullptr, "BinaryStringtoPicturePXK(data as String) as Picture", plain, 1,
     DeprecatedAttributes},
    {(void*)PicturetoBinaryString, nullptr, "PicturetoBinaryStringPXK(p as picture) as string", plain, 1,
     DeprecatedAttributes},
    {(void*)CombinePicturesPXK, nullptr,
     "CombinePicturesPXK(red as picture, blue as picture, green as picture) as picture", plain},
    {(void*)MergePicture, nullptr, "MergePicturePXK(source1 as picture, source2 as picture) as picture", plain},
    {(void*)TintPicture, nullptr, "TintPicturePXK(source as picture, GreyBase as color, SepiaBase as color) as picture",
     plain},
    {(void*)RenderSamples, nullptr,
     "RenderSamplesPXK(Samples as memoryblock, SampleCount as integer, Smooth as integer, Width as integer, Height as "
     "integer, outlinewidth as integer, BackColor as color=&c88B5C4, ForeColor as color=&c274C5A, OutLineColor as "
     "color=&c203F4E, Bits as Integer = 8, AutoScale as boolean = false) as Picture",
     plain},
};

}  // namespace

std::span<REALmethodDefinition> pluginGlobalMethods() { return globalMethods; }

}  // namespace pxk
