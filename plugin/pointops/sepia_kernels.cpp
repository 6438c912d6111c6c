#include "pointops/sepia_kernels.h"

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

constexpr SepiaKernels table = {.sepia = pointKernel<Sepia, inSepia>()};

}  // namespace

constinit const SepiaKernels SepiaKernels::PXK_ISA = table;

}  // namespace pxk
