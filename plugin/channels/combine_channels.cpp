#include "channels/combine_channels.h"

#include "channels/recombination_kernels.h"
#include "picture/isa.h"

namespace pxk {

void combineChannels(const PictureReader& red, const PictureReader& green, const PictureReader& blue,
                     PictureWriter& result) {
    const Family resultFamily = familyOf(result.format);
    if (resultFamily == Family::none) return;
    const CombinedLayouts layouts = {.red = layoutOf(familyOf(red.format)),
                                     .green = layoutOf(familyOf(green.format)),
                                     .blue = layoutOf(familyOf(blue.format)),
                                     .result = layoutOf(resultFamily)};
    const auto combine = kernels<RecombinationKernels>().combine;
    for (std::int32_t y = 0; y < result.height; ++y) {
        combine(red.rowAt(y), green.rowAt(y), blue.rowAt(y), result.rowAt(y), result.width, layouts);
    }
}

}  // namespace pxk
