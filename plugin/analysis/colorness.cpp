#include "analysis/colorness.h"

#include <algorithm>

#include "analysis/colorness_kernels.h"
#include "picture/family_layout.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"

namespace pxk {

double ColornessPXK(REALpictureStruct* self, int threshold) {
    PictureReader reader;
    if (!reader.open(self)) return 0.0;
    const auto countColoured = kernels<ColornessKernels>().countColoured;
    const FamilyLayout layout = layoutOf(familyOf(reader.format));
    const std::int32_t limit = std::clamp(threshold, -1, 255);
    std::int64_t coloured = 0;
    for (std::int32_t y = 0; y < reader.height; ++y) {
        coloured += countColoured(reader.rowAt(y), reader.width, layout, limit);
    }
    const auto pixels =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(reader.width) * static_cast<std::uint32_t>(reader.height));
    return pixels == 0 ? 0.0 : static_cast<double>(coloured) / pixels;
}

}  // namespace pxk
