/// The walk over a source and a result together.
#pragma once

#include "picture/picture_editor.h"
#include "picture/point_kernel.h"
#include "picture/rectangle.h"

namespace pxk {

/// Writes the pixels of `rectangle` in `result`, each from the pixel at the same place in `source`. Both pictures hold
/// the rectangle. A result whose format is of no family is left as it is.
template <class Operation>
void mapPixels(PictureReader& source, PictureWriter& result, const Rectangle& rectangle,
               const PointKernel<Operation>& kernel, const Operation& operation) {
    const Family resultFamily = familyOf(result.format);
    if (resultFamily == Family::none) return;
    const auto row = kernel.rows[static_cast<int>(familyOf(source.format))][static_cast<int>(resultFamily)];
    for (std::int32_t y = rectangle.top; y < rectangle.bottom; ++y) {
        source.moveToRow(y);
        result.moveToRow(y);
        row(source.rowPointer + rectangle.left, result.rowPointer + rectangle.left, rectangle.width(), operation);
    }
}

}  // namespace pxk
