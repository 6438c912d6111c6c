/// Finding one picture inside another.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// Looks for `pic` in `self`, from left to right and from top to bottom, and gives the top-left corner of the first
/// place where every pixel of `pic` matches: red, green and blue each differ by less than `Tolerance`. The tolerance is
/// exclusive: 3 allows differences of 2, and 0 or less never matches anything. Alpha is not compared.
///
/// The search begins at (`StartX`, `StartY`), negative values meaning 0; a `StartX` beyond the right edge means the
/// beginning of the next row. Rows after the first are searched from column 0, so that a search from (x + 1, y) finds
/// the next occurrence. Returns false, with `x` and `y` 0, when there is no match or a picture cannot be read.
bool FindPicture(REALpictureStruct* self, REALpictureStruct* pic, int& x, int& y, int StartX, int StartY,
                 int Tolerance);

}  // namespace pxk
