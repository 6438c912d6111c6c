#include "pointops/inversion.h"

#include "picture/isa.h"
#include "picture/map_pixels.h"
#include "pointops/inversion_kernels.h"

namespace pxk {

namespace {

template <class Operation>
REALpictureStruct* mapRectangle(REALpictureStruct* self, int left, int top, int width, int height, WholeExtent whole,
                                const PointKernel<Operation>& kernel) {
    PictureReader source;
    PictureWriter result;
    if (!source.open(self) || !result.NewPictureWriter(source)) return nullptr;
    mapPixels(source, result, clippedRectangle(left, top, width, height, source.width, source.height, whole), kernel,
              Operation{});
    return result.RenderPictureWriter();
}

}  // namespace

REALpictureStruct* InvertPicture(REALpictureStruct* self, int left, int top, int width, int height) {
    return mapRectangle(self, left, top, width, height, WholeExtent::whenNotPositive,
                        kernels<InversionKernels>().invert);
}

REALpictureStruct* InvertPicture2(REALpictureStruct* self) { return InvertPicture(self, 0, 0, -1, -1); }

// Unlike in `InvertPicture`, a width or height of 0 is an empty rectangle. Both are kept for compatibility.
REALpictureStruct* InvertGrayPicture(REALpictureStruct* self, int left, int top, int width, int height) {
    return mapRectangle(self, left, top, width, height, WholeExtent::whenNegative,
                        kernels<InversionKernels>().invertGray);
}

REALpictureStruct* InvertGrayPicture2(REALpictureStruct* self) { return InvertGrayPicture(self, 0, 0, -1, -1); }

}  // namespace pxk
