#include "pointops/tint.h"

#include "picture/host_color.h"
#include "picture/isa.h"
#include "pointops/map_picture.h"
#include "pointops/tint_kernels.h"

namespace pxk {

namespace {

ColorShares sharesOf(std::uint32_t color) {
    const Rgb rgb = rgbOf(color);
    return {rgb.red / 255.0, rgb.green / 255.0, rgb.blue / 255.0};
}

}  // namespace

REALpictureStruct* TintPicture(REALpictureStruct* source, std::uint32_t greyBase, std::uint32_t sepiaBase) {
    return mapPicture(source, kernels<TintKernels>().tint, Tint{sharesOf(greyBase), sharesOf(sepiaBase)});
}

}  // namespace pxk
