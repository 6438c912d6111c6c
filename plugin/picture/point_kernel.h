/// Row kernels of point operations: one new pixel from one old pixel.
///
/// A point operation is a small struct of its settings, and in its kernel file a function from that struct and the old
/// colour to the new one. `pointKernel` makes the row loops from it, one for each pair of families.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/pixel_families.h"

namespace pxk {

/// Computes `count` pixels of a row. Source and result do not overlap.
template <class Operation>
using PointRow = void (*)(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count,
                          const Operation& operation);

/// The row loops of one operation, by the family of the source and of the result.
template <class Operation>
struct PointKernel {
    PointRow<Operation> rows[familyCount][writableFamilyCount];
};

namespace {

template <class Source, class Result, class Operation, Rgb (*apply)(const Operation&, Rgb)>
void mapRow(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
            const Operation& operation) {
    const Operation settings = operation;  // a copy that no store into the result can change
    for (std::ptrdiff_t x = 0; x < count; ++x) result[x] = Result::opaque(apply(settings, Source::read(source[x])));
}

template <class Operation, Rgb (*apply)(const Operation&, Rgb)>
constexpr PointKernel<Operation> pointKernel() {
    return {{{mapRow<AlphaLast, AlphaLast, Operation, apply>, mapRow<AlphaLast, AlphaFirst, Operation, apply>,
              mapRow<AlphaLast, GdTrueColor, Operation, apply>},
             {mapRow<AlphaFirst, AlphaLast, Operation, apply>, mapRow<AlphaFirst, AlphaFirst, Operation, apply>,
              mapRow<AlphaFirst, GdTrueColor, Operation, apply>},
             {mapRow<GdTrueColor, AlphaLast, Operation, apply>, mapRow<GdTrueColor, AlphaFirst, Operation, apply>,
              mapRow<GdTrueColor, GdTrueColor, Operation, apply>},
             {mapRow<NoFamily, AlphaLast, Operation, apply>, mapRow<NoFamily, AlphaFirst, Operation, apply>,
              mapRow<NoFamily, GdTrueColor, Operation, apply>}}};
}

/// The same with row loops of the operation's own where source and result are of one family.
template <class Operation, Rgb (*apply)(const Operation&, Rgb)>
constexpr PointKernel<Operation> pointKernel(PointRow<Operation> alphaLast, PointRow<Operation> alphaFirst,
                                             PointRow<Operation> gd) {
    PointKernel<Operation> kernel = pointKernel<Operation, apply>();
    kernel.rows[0][0] = alphaLast;
    kernel.rows[1][1] = alphaFirst;
    kernel.rows[2][2] = gd;
    return kernel;
}

}  // namespace

}  // namespace pxk
