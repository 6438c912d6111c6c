#include "picture/masks_kernels.h"

namespace pxk {

namespace {

template <class Source>
void greyFromAlpha(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
                   const FamilyLayout& resultLayout, std::uint32_t changedBits) {
    const FamilyLayout layout = resultLayout;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const std::uint32_t value = static_cast<std::uint32_t>(Source::alpha(source[x])) ^ changedBits;
        result[x] = value << layout.red | value << layout.green | value << layout.blue | layout.opaque;
    }
}

void storeRed(const std::uint32_t* mask, std::uint32_t* target, std::ptrdiff_t count, const FamilyLayout& maskLayout,
              std::uint32_t changedBits) {
    const FamilyLayout layout = maskLayout;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const std::uint32_t red = (mask[x] & layout.redMask) >> layout.red;
        target[x] = (target[x] & 0xFFFFFF00) | (red ^ changedBits);
    }
}

constexpr MaskKernels table = {.greyFromAlpha = {greyFromAlpha<AlphaLast>, greyFromAlpha<AlphaFirst>,
                                                 greyFromAlpha<GdTrueColor>, greyFromAlpha<NoFamily>},
                               .storeRed = storeRed};

}  // namespace

constinit const MaskKernels MaskKernels::PXK_ISA = table;

}  // namespace pxk
