// The row loops of masks, compared with their definitions.
#include "picture/masks_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/masks.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

// Pixels of no known format have the alpha 0.
TEST(MaskKernels, GreyFromAlphaEqualsItsDefinition) {
    forEveryIsa<MaskKernels>([](const MaskKernels& kernels) {
        Random random(1);
        for (const Family sourceFamily : anyFamily) {
            for (const Family resultFamily : writableFamilies) {
                for (const bool swap : {false, true}) {
                    for (int width = 0; width <= widestRow; ++width) {
                        const SourceRow source(sourceFamily, width, random);
                        ResultRow result(resultFamily, width);
                        kernels.greyFromAlpha[static_cast<int>(sourceFamily)](source.words(), result.words(), width,
                                                                              layoutOf(resultFamily), swap ? 255 : 0);
                        result.expect(
                            [&](int x) { return maskColour(formatOf(sourceFamily), source.words()[x], swap); });
                    }
                }
            }
        }
    });
}

// Pixels of no known format are black, so that they store 0, or 255 swapped.
TEST(MaskKernels, StoreRedEqualsItsDefinition) {
    forEveryIsa<MaskKernels>([](const MaskKernels& kernels) {
        Random random(2);
        for (const Family family : anyFamily) {
            for (const bool swap : {false, true}) {
                for (int width = 0; width <= widestRow; ++width) {
                    const SourceRow mask(family, width, random);
                    std::vector<std::uint32_t> target = random.pixelWords(static_cast<std::size_t>(width) + 1);
                    const std::vector<std::uint32_t> old = target;
                    kernels.storeRed(mask.words(), target.data(), width, layoutOf(family), swap ? 255 : 0);
                    for (int x = 0; x < width; ++x) {
                        const auto i = static_cast<std::size_t>(x);
                        ASSERT_EQ(target[i], withFirstByte(old[i], mask.colour(x), swap))
                            << "format " << formatOf(family) << ", width " << width << ", pixel " << x;
                    }
                    ASSERT_EQ(target.back(), old.back());
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
