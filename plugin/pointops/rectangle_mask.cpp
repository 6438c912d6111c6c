#include "pointops/rectangle_mask.h"

#include "picture/host_color.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"
#include "picture/rectangle.h"
#include "pointops/color_boxes.h"
#include "pointops/rectangle_mask_kernels.h"

namespace pxk {

namespace {

constexpr std::uint32_t black = 0x000000;
constexpr std::uint32_t white = 0xFFFFFF;

// Row `top` + k of the rectangle is flagged from row k of the source: the offset of the columns applies, that of the
// rows does not.
void flag(const PictureReader& source, const Rectangle& rectangle, ColorBoxes& boxes) {
    const std::uint32_t channels = colorMask(layoutOf(familyOf(source.format)));
    const auto flagColored = kernels<RectangleMaskKernels>().flagColored;
    constexpr auto wordBits = static_cast<std::int32_t>(BitLines::wordBits);
    const std::int32_t word = rectangle.left / wordBits;
    const std::int32_t firstColumn = word * wordBits;
    const std::uint64_t inside = ~std::uint64_t{0} << (rectangle.left - firstColumn);
    for (std::int32_t y = rectangle.top; y < rectangle.bottom; ++y) {
        std::uint64_t* flags = boxes.flags(static_cast<std::uint32_t>(y)) + word;
        flagColored(source.rowAt(y - rectangle.top) + firstColumn, rectangle.right - firstColumn, channels, flags);
        *flags &= inside;
    }
}

void paint(const ColorBoxes& boxes, PictureWriter& result) {
    const Family family = familyOf(result.format);
    if (family == Family::none) return;
    const FamilyLayout layout = layoutOf(family);
    const auto paintBits = kernels<RectangleMaskKernels>().paintBits;
    for (std::int32_t y = 0; y < result.height; ++y) {
        const std::uint64_t* const unmasked = boxes.unmasked(static_cast<std::uint32_t>(y));
        paintBits(unmasked, result.rowAt(y), result.width, opaqueWord(white, layout), opaqueWord(black, layout));
    }
}

}  // namespace

REALpictureStruct* ExtractColorRectangleMaskPXK(REALpictureStruct* self, int left, int top, int width, int height) {
    PictureReader source;
    ColorBoxes boxes;
    PictureWriter result;
    if (!source.open(self) || !boxes.allocate(source.width, source.height) ||
        !result.NewPictureWriter(source.width, source.height)) {
        return nullptr;
    }
    const Rectangle rectangle =
        clippedRectangle(left, top, width, height, source.width, source.height, WholeExtent::whenNegative);
    if (rectangle.width() > 0) flag(source, rectangle, boxes);
    boxes.mask();
    paint(boxes, result);
    return result.RenderPictureWriter();
}

REALpictureStruct* ExtractColorRectangleMaskPXK2(REALpictureStruct* self) {
    return ExtractColorRectangleMaskPXK(self, 0, 0, -1, -1);
}

}  // namespace pxk
