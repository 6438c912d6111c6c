#include "pointops/saturation_kernels.h"

namespace pxk {

namespace {

std::int32_t clamped(std::int32_t value) { return value < 0 ? 0 : value > 255 ? 255 : value; }

// value / 255, towards zero, wherever the quotient is below 512; elsewhere something beyond 511 with the same sign,
// which the clamp makes the same. For the factor is 2^-22 too high, relatively: enough that no product of a multiple of
// 255 rounds to below the whole number, too little to lift the others, 1/255 below one at least, up to it.
std::int32_t dividedBy255(std::int32_t value) {
    constexpr float oneBy255 = 0x1.010104p-8F;
    return static_cast<std::int32_t>(static_cast<float>(value) * oneBy255);
}

std::int32_t moved(std::int32_t channel, std::int32_t grey, std::uint32_t factor) {
    const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(channel - grey) * factor);
    return clamped(grey + dividedBy255(product));
}

Rgb saturate(const Saturate& operation, Rgb old) {
    const std::int32_t grey = (old.red + 2 * old.green + old.blue) >> 2;
    return {moved(old.red, grey, operation.factor), moved(old.green, grey, operation.factor),
            moved(old.blue, grey, operation.factor)};
}

constexpr SaturationKernels table = {.saturate = pointKernel<Saturate, saturate>()};

}  // namespace

constinit const SaturationKernels SaturationKernels::PXK_ISA = table;

}  // namespace pxk
