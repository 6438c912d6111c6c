#include "analysis/picture_search.h"

#include <algorithm>

#include "analysis/picture_search_kernels.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"

namespace pxk {

namespace {

SearchPicture searchPicture(const PictureReader& reader) {
    return {.layout = layoutOf(familyOf(reader.format)),
            .start = reinterpret_cast<const unsigned char*>(reader.pixels),
            .rowBytes = reader.rowBytes,
            .rowTable = reader.format == gdFormat ? reader.gdRows : nullptr,
            .width = reader.width,
            .height = reader.height};
}

}  // namespace

bool FindPicture(REALpictureStruct* self, REALpictureStruct* pic, int& x, int& y, int StartX, int StartY,
                 int Tolerance) {
    x = 0;
    y = 0;
    PictureReader haystack;
    if (!haystack.open(self)) return false;
    std::int32_t startX = std::max(StartX, 0);
    std::int32_t startY = std::max(StartY, 0);
    if (startY >= haystack.height) return false;
    if (startX >= haystack.width) {
        startX = 0;
        if (++startY >= haystack.height) return false;
    }
    PictureReader needle;
    if (!needle.open(pic) || needle.width < 1 || needle.height < 1 || Tolerance <= 0) return false;

    // Channels differ by 255 at most, so 256 allows everything.
    const SearchSettings settings = {.haystack = searchPicture(haystack),
                                     .needle = searchPicture(needle),
                                     .largestDifference = std::min(Tolerance, 256) - 1};
    const auto findInRow = kernels<PictureSearchKernels>().findInRow;
    const std::int32_t candidates = haystack.width - needle.width + 1;
    for (std::int32_t row = startY; row <= haystack.height - needle.height; ++row, startX = 0) {
        const std::int32_t column = findInRow(settings, row, startX, candidates);
        if (column < candidates) {
            x = column;
            y = row;
            return true;
        }
    }
    return false;
}

}  // namespace pxk
