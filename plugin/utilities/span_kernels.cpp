#include "utilities/span_kernels.h"

#include "picture/instruction_sets.h"

namespace pxk {

namespace {

void fillAbove(std::uint32_t* __restrict result, std::ptrdiff_t count, std::int32_t row, const CurveRows& curves,
               const SpanWords& words) {
    const auto [low, high] = curves;
    const auto [fore, back] = words;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const bool inside = (low[x] <= row) | (high[x] <= row);
        result[x] = inside ? fore : back;
    }
}

void fillFrom(std::uint32_t* __restrict result, std::ptrdiff_t count, std::int32_t row, const CurveRows& curves,
              const SpanWords& words) {
    const auto [low, high] = curves;
    const auto [fore, back] = words;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const bool inside = (low[x] > row) | (high[x] > row);
        result[x] = inside ? fore : back;
    }
}

}  // namespace

template <>
const SpanKernels& kernelsFor<SpanKernels, InstructionSet::PXK_INSTRUCTION_SET>() {
    static constexpr SpanKernels kernels = {.aboveCentre = fillAbove, .fromCentre = fillFrom};
    return kernels;
}

}  // namespace pxk
