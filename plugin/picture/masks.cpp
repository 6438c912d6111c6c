#include "picture/masks.h"

#include <algorithm>

#include "picture/isa.h"
#include "picture/masks_kernels.h"
#include "picture/picture_editor.h"

namespace pxk {

namespace {

// What a value is to be combined with: 255 minus a byte is the byte with every bit changed.
std::uint32_t changedBits(signed char swap) { return swap != 0 ? 0xFF : 0; }

}  // namespace

bool PictureHasMask(REALpictureStruct* self) {
    if (self == nullptr) return false;
    return HostReference<REALpictureStruct>(REALGetPictureMask(self, false)) != nullptr;
}

REALpictureStruct* GetEmbededMask(REALpictureStruct* self, signed char swap) {
    PictureReader source;
    PictureWriter result;
    if (!source.open(self) || !result.NewPictureWriter(source.width, source.height)) return nullptr;
    const Family resultFamily = familyOf(result.format);
    if (resultFamily == Family::none) return result.RenderPictureWriter();
    const auto greyFromAlpha = kernels<MaskKernels>().greyFromAlpha[static_cast<int>(familyOf(source.format))];
    const FamilyLayout layout = layoutOf(resultFamily);
    for (std::int32_t y = 0; y < source.height; ++y) {
        greyFromAlpha(source.rowAt(y), result.rowAt(y), source.width, layout, changedBits(swap));
    }
    return result.RenderPictureWriter();
}

void SetEmbededMask(REALpictureStruct* self, signed char swap, REALpictureStruct* value) {
    PictureReader target;
    PictureReader mask;
    if (value == nullptr || !target.open(self) || !mask.open(value)) return;
    const auto storeRed = kernels<MaskKernels>().storeRed;
    const FamilyLayout layout = layoutOf(familyOf(mask.format));
    const std::int32_t columns = std::min(target.width, mask.width);
    for (std::int32_t y = 0; y < target.height; ++y) {
        mask.moveToRow(y);
        storeRed(mask.rowPointer, target.rowAt(y), columns, layout, changedBits(swap));
    }
}

}  // namespace pxk
