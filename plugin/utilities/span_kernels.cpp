#include "utilities/span_kernels.h"

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

constexpr SpanKernels table = {.aboveCentre = fillAbove, .fromCentre = fillFrom};

}  // namespace

constinit const SpanKernels SpanKernels::PXK_ISA = table;

}  // namespace pxk
