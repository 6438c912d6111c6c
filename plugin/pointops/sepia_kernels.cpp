#include "pointops/sepia_kernels.h"

#include "picture/instruction_sets.h"

namespace pxk {

namespace {

std::int32_t clampedSum(std::int32_t grey, std::uint32_t added) {
    const auto sum = static_cast<std::int32_t>(static_cast<std::uint32_t>(grey) + added);
    return sum < 0 ? 0 : sum > 255 ? 255 : sum;
}

Rgb inSepia(const Sepia& operation, Rgb old) {
    const std::uint32_t weighed = static_cast<std::uint32_t>(old.red) * operation.redWeight +
                                  static_cast<std::uint32_t>(old.green) * operation.greenWeight +
                                  static_cast<std::uint32_t>(old.blue) * operation.blueWeight;
    const std::int32_t grey = static_cast<std::int32_t>(weighed) / 1024;
    return {clampedSum(grey, operation.red), clampedSum(grey, operation.green), clampedSum(grey, operation.blue)};
}

}  // namespace

template <>
const SepiaKernels& kernelsFor<SepiaKernels, InstructionSet::PXK_INSTRUCTION_SET>() {
    static constexpr SepiaKernels kernels = {.sepia = pointKernel<Sepia, inSepia>()};
    return kernels;
}

}  // namespace pxk
