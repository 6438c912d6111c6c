/// Waveforms: sound samples as a picture.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// Draws the samples of a memory block as a new picture, which the caller owns, in which time runs to the right:
/// columns in `ForeColor` around a horizontal centre line at row Height / 2, on `BackColor`. Negative samples lie above
/// the centre line and the others below it. Colours are 0xRRGGBB.
///
/// @param Samples       the samples, in the format that `Bits` names (utilities/envelope.h): 7, 8, 15, 16, -32 or -64.
/// @param SampleCount   how many to draw. Below 1: the block's size divided by (Bits + 7) / 8, which for -32 and -64 is
///                      negative and leaves no samples, so pass the count of floats and doubles. Samples beyond the
///                      block's end count as silence. Where the host does not tell the size, the count is trusted,
///                      and one below 1 is 0.
/// @param Smooth        1 draws every column as it is, larger numbers smooth over about so many columns; see
///                      `Envelope::smooth` for what numbers below 1 do.
/// @param Width, Height the picture's size, 1 to 32767 each. A width below 1 becomes the sample count, a height below 1
///                      becomes 500.
/// @param outlinewidth  below 1 no outline; 1 an outline of smooth lines (utilities/wu_line.h); above 1 lines that the
///                      host draws with a pen of this size, its middle on the curve. Without graphics of the host such
///                      a picture stays without outline.
/// @param AutoScale     0: full scale is what the format can hold. Otherwise twice the envelope's peak; silence, which
///                      has none, is drawn as the centre line.
///
/// Nil with a "NilObjectException" when `Samples` is nil. Nil without one when `Bits` is none of the above, when the
/// block's bytes cannot be reached, when a side is out of range, when there is no memory or the host makes no picture.
///
/// Infinite samples reach past the picture's edge, where they are clipped; a column whose envelope is NaN lies on the
/// centre line; rows are clamped to 2^30 above and below row 0. Nothing is read outside the block or written outside
/// the picture.
REALpictureStruct* RenderSamples(REALmemoryBlockStruct* Samples, int SampleCount, int Smooth, int Width, int Height,
                                 int outlinewidth, unsigned BackColor, unsigned ForeColor, unsigned OutLineColor,
                                 int Bits, signed char AutoScale);

}  // namespace pxk
