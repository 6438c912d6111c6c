/// Lines of one pixel with smooth edges, after Xiaolin Wu, "An Efficient Antialiasing Technique" (SIGGRAPH 1991).
#pragma once

#include <cstdint>

#include "picture/picture_editor.h"

namespace pxk {

/// The colour that `DrawPixel` and `DrawWuLine` draw in, each channel 0 to 255: one for the process, set by each
/// waveform before it draws.
extern std::int32_t gOutLineColorR;
extern std::int32_t gOutLineColorG;
extern std::int32_t gOutLineColorB;

/// Blends one pixel towards the outline colour and leaves it opaque: `weight` 0 gives the outline colour, 255 the old
/// pixel with its green and blue exchanged, and every weight between exchanges them too. A point outside the picture,
/// and a picture whose format is of no family, is left alone.
void DrawPixel(PictureWriter& picture, std::int64_t x, std::int64_t y, std::int32_t weight);

/// Draws a line between two points, both included, which may lie anywhere: only the part inside the picture takes time.
/// Horizontal, vertical and diagonal lines are drawn in the outline colour; of any other line, each inner step blends
/// the two pixels that it passes between.
void DrawWuLine(PictureWriter& picture, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1);

}  // namespace pxk
