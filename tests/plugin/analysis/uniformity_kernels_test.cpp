// The loops that test for one colour and for grey, compared with their definitions.
#include "analysis/uniformity_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/uniformity.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

TEST(UniformityKernels, EqualWordsAreEqualInTheBitsOfTheMask) {
    forEveryIsa<UniformityKernels>([](const UniformityKernels& kernels) {
        for (int width = 0; width <= 300; ++width) {
            const auto count = static_cast<std::size_t>(width);
            std::vector<std::uint32_t> row(count, 0xAB123456);
            ASSERT_TRUE(kernels.allEqual(row.data(), width, 0x00FFFFFF, 0x00123456)) << width;
            ASSERT_EQ(kernels.allEqual(row.data(), width, 0xFFFFFFFF, 0x00123456), width == 0);
            if (width == 0) continue;
            row[count - 1] ^= 0x00800000;
            ASSERT_FALSE(kernels.allEqual(row.data(), width, 0x00FFFFFF, 0x00123456)) << width;
        }
    });
}

// A pixel of no known format has no bits to look at: it is never white, but black and grey always.
TEST(UniformityKernels, PixelsOfNoFamilyEqualZeroAlone) {
    forEveryIsa<UniformityKernels>([](const UniformityKernels& kernels) {
        Random random(1);
        const std::vector<std::uint32_t> row = random.pixelWords(50);
        const FamilyLayout none = layoutOf(Family::none);
        EXPECT_FALSE(kernels.allEqual(row.data(), 50, colorMask(none), 1));
        EXPECT_TRUE(kernels.allEqual(row.data(), 50, colorMask(none), 0));
        for (const int tolerance : {0, 1, 255}) EXPECT_TRUE(kernels.allGrey(row.data(), 50, none, tolerance));
    });
}

TEST(UniformityKernels, GreyEqualsItsDefinition) {
    forEveryIsa<UniformityKernels>([](const UniformityKernels& kernels) {
        Random random(2);
        for (const Family family : anyFamily) {
            for (int width = 0; width <= 600; ++width) {
                // Greys with a little colour in a few words.
                std::vector<std::uint32_t> row(static_cast<std::size_t>(width));
                for (std::uint32_t& word : row) word = (random.word() >> 24) * 0x01010101U;
                const int spread = random.between(0, 3);
                if (width > 0) {
                    row[static_cast<std::size_t>(random.between(0, width - 1))] ^= 0x01020100U << spread;
                }
                for (const int tolerance : {0, 1, 2, 3, 6, 254, 255}) {
                    bool expected = true;
                    for (const std::uint32_t word : row) {
                        expected = expected && greyWithin(readColour(formatOf(family), word), tolerance);
                    }
                    ASSERT_EQ(kernels.allGrey(row.data(), width, layoutOf(family), tolerance), expected)
                        << "format " << formatOf(family) << ", width " << width << ", tolerance " << tolerance;
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
