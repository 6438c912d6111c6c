#include "pointops/inversion_kernels.h"

#include "picture/instruction_sets.h"

namespace pxk {

namespace {

Rgb invert(const Invert&, Rgb pixel) { return {255 - pixel.red, 255 - pixel.green, 255 - pixel.blue}; }

Rgb invertGray(const InvertGray&, Rgb pixel) { return isGrey(pixel) ? invert({}, pixel) : pixel; }

}  // namespace

template <>
const InversionKernels& kernelsFor<InversionKernels, InstructionSet::PXK_INSTRUCTION_SET>() {
    static constexpr InversionKernels kernels = {.invert = pointKernel<Invert, invert>(),
                                                 .invertGray = pointKernel<InvertGray, invertGray>()};
    return kernels;
}

}  // namespace pxk
