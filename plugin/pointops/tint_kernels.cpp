#include "pointops/tint_kernels.h"

#include "pointops/double_kernel.h"

namespace pxk {

namespace {

struct Tinted {
    template <class Pixel>
    static auto apply(const Tint& tint, Pixel old) {
        const auto grey = (old.red - 0.0) * tint.weights.red + (old.green - 0.0) * tint.weights.green +
                          (old.blue - 0.0) * tint.weights.blue;
        return coloursFrom(toByteClamped(grey * tint.tone.red), toByteClamped(grey * tint.tone.green),
                           toByteClamped(grey * tint.tone.blue));
    }
};

constexpr TintKernels table = {.tint = doubleKernel<Tint, Tinted>()};

}  // namespace

constinit const TintKernels TintKernels::PXK_ISA = table;

}  // namespace pxk
