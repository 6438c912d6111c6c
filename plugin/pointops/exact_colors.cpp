#include "pointops/exact_colors.h"

#include "picture/host_color.h"
#include "picture/isa.h"
#include "pointops/exact_colors_kernels.h"
#include "pointops/map_picture.h"

namespace pxk {

namespace {

ExactColor prepared(const PictureReader& source, const PictureWriter& result, std::uint32_t search, std::uint32_t found,
                    std::uint32_t background) {
    const FamilyLayout sourceLayout = layoutOf(familyOf(source.format));
    const FamilyLayout resultLayout = layoutOf(familyOf(result.format));
    return {colorMask(sourceLayout), channelBits(search, sourceLayout), opaqueWord(found, resultLayout),
            opaqueWord(background, resultLayout)};
}

}  // namespace

REALpictureStruct* ReplaceColorPXK(REALpictureStruct* self, std::uint32_t searchColor, std::uint32_t replaceWithColor) {
    PictureReader source;
    PictureWriter result;
    if (!source.open(self) || !result.NewPictureWriter(source)) return nullptr;
    constexpr std::uint32_t noBackground = 0;
    mapPixels(source, result, wholeRectangle(source.width, source.height), kernels<ExactColorKernels>().replace,
              prepared(source, result, searchColor, replaceWithColor, noBackground));
    return result.RenderPictureWriter();
}

REALpictureStruct* ExtractColorPXK(REALpictureStruct* self, std::uint32_t searchColor, std::uint32_t replaceWithColor,
                                   std::uint32_t backGroundColor) {
    PictureReader source;
    PictureWriter result;
    if (!source.open(self) || !result.NewPictureWriter(source.width, source.height)) return nullptr;
    mapPixels(source, result, wholeRectangle(source.width, source.height), kernels<ExactColorKernels>().extract,
              prepared(source, result, searchColor, replaceWithColor, backGroundColor));
    return result.RenderPictureWriter();
}

}  // namespace pxk
