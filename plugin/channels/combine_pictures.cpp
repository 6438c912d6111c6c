#include "channels/combine_pictures.h"

#include "channels/combine_channels.h"
#include "channels/recombination_kernels.h"
#include "picture/isa.h"

namespace pxk {

namespace {

bool sameSize(const PictureReader& a, const PictureReader& b) { return a.width == b.width && a.height == b.height; }

void merge(const PictureReader& first, const PictureReader& second, PictureWriter& result) {
    const Family resultFamily = familyOf(result.format);
    if (resultFamily == Family::none) return;
    const MergedLayouts layouts = {.first = layoutOf(familyOf(first.format)),
                                   .second = layoutOf(familyOf(second.format)),
                                   .result = layoutOf(resultFamily)};
    const auto mergeRow = kernels<RecombinationKernels>().merge;
    for (std::int32_t y = 0; y < result.height; ++y) {
        mergeRow(first.rowAt(y), second.rowAt(y), result.rowAt(y), result.width, layouts);
    }
}

}  // namespace

REALpictureStruct* CombinePicturesPXK(REALpictureStruct* red, REALpictureStruct* blue, REALpictureStruct* green) {
    PictureReader redSource;
    PictureReader greenSource;
    PictureReader blueSource;
    PictureWriter result;
    if (!redSource.open(red) || !greenSource.open(green) || !blueSource.open(blue)) return nullptr;
    if (!sameSize(redSource, greenSource) || !sameSize(redSource, blueSource)) return nullptr;
    if (!result.NewPictureWriter(redSource.width, redSource.height)) return nullptr;
    combineChannels(redSource, greenSource, blueSource, result);
    return result.RenderPictureWriter();
}

REALpictureStruct* MergePicture(REALpictureStruct* source1, REALpictureStruct* source2) {
    PictureReader first;
    PictureReader second;
    PictureWriter result;
    if (!first.open(source1) || !second.open(source2) || !sameSize(first, second)) return nullptr;
    if (!result.NewPictureWriter(first.width, first.height)) return nullptr;
    merge(first, second, result);
    return result.RenderPictureWriter();
}

}  // namespace pxk
