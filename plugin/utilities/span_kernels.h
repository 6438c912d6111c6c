/// Row loops that fill a waveform's columns.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pxk {

/// Where the two curves of a waveform run, as a row for each column; rows outside the picture are allowed.
struct CurveRows {
    const std::int32_t* low;
    const std::int32_t* high;
};

/// The pixel words that a waveform is filled with.
struct SpanWords {
    std::uint32_t fore;
    std::uint32_t back;
};

/// Fills row `row` of a waveform, `count` columns: the fore colour between the centre line and either curve, the back
/// colour elsewhere.
using FillSpans = void (*)(std::uint32_t* result, std::ptrdiff_t count, std::int32_t row, const CurveRows& curves,
                           const SpanWords& words);

struct SpanKernels {
    static const SpanKernels baseline, avx2, avx512;

    /// For rows above the centre line: a curve's span holds the row that the curve is on and those below it.
    FillSpans aboveCentre;
    /// For the centre line and the rows below it: a curve's span holds the rows above the one that the curve is on.
    FillSpans fromCentre;
};

}  // namespace pxk
