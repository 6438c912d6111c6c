#include "analysis/uniformity.h"

#include <algorithm>

#include "analysis/uniformity_kernels.h"
#include "picture/family_layout.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"
#include "picture/rectangle.h"

namespace pxk {

namespace {

// `rowPasses` is given the layout of the picture's format, a row and the number of its pixels, which may be 0.
template <class RowTest>
bool everyRowPasses(REALpictureStruct* self, int left, int top, int width, int height, RowTest rowPasses) {
    PictureReader reader;
    if (!reader.open(self)) return false;
    const FamilyLayout layout = layoutOf(familyOf(reader.format));
    const Rectangle rectangle =
        clippedRectangle(left, top, width, height, reader.width, reader.height, WholeExtent::whenNegative);
    for (std::int32_t y = rectangle.top; y < rectangle.bottom; ++y) {
        if (!rowPasses(layout, reader.rowAt(y) + rectangle.left, rectangle.width())) return false;
    }
    return true;
}

// 255 is as good as anything above it; so |INT_MIN|, which is no int, is no special case.
std::int32_t greyTolerance(int tolerance) { return tolerance < -255 ? 255 : std::min(std::abs(tolerance), 255); }

}  // namespace

bool isWhite(REALpictureStruct* self, int left, int top, int width, int height) {
    const auto allEqual = kernels<UniformityKernels>().allEqual;
    return everyRowPasses(self, left, top, width, height,
                          [=](const FamilyLayout& layout, const std::uint32_t* row, std::int32_t count) {
                              // With no colour bits to look at, an unknown format is given a value that it never has.
                              const std::uint32_t mask = colorMask(layout);
                              return allEqual(row, count, mask, mask != 0 ? mask : 1);
                          });
}

bool isWhite2(REALpictureStruct* self) { return isWhite(self, 0, 0, -1, -1); }

bool isBlack(REALpictureStruct* self, int left, int top, int width, int height) {
    const auto allEqual = kernels<UniformityKernels>().allEqual;
    return everyRowPasses(self, left, top, width, height,
                          [=](const FamilyLayout& layout, const std::uint32_t* row, std::int32_t count) {
                              return allEqual(row, count, colorMask(layout), 0);
                          });
}

bool isBlack2(REALpictureStruct* self) { return isBlack(self, 0, 0, -1, -1); }

bool isGray(REALpictureStruct* self, int tolerance, int left, int top, int width, int height) {
    const auto allGrey = kernels<UniformityKernels>().allGrey;
    return everyRowPasses(self, left, top, width, height,
                          [=](const FamilyLayout& layout, const std::uint32_t* row, std::int32_t count) {
                              return allGrey(row, count, layout, greyTolerance(tolerance));
                          });
}

bool isGray2(REALpictureStruct* self, int tolerance) { return isGray(self, tolerance, 0, 0, -1, -1); }

}  // namespace pxk
