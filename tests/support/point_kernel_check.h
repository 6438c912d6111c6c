/// Compares a point kernel with its definition for one pixel.
#pragma once

#include <gtest/gtest.h>

#include "picture/point_kernel.h"
#include "support/pixel_formats.h"
#include "support/random.h"

namespace pxk::test {

/// Checks every row loop of `kernel` against `definition`, a function from the old colour to the new one: all pairs of
/// families, widths 0 to 130, rows at random offsets, and no word touched outside the row.
template <class Operation, class Definition>
void checkPointKernel(const PointKernel<Operation>& kernel, const Operation& operation, Definition definition) {
    constexpr int familyFormats[] = {1, 2, 8, 0};
    constexpr std::uint32_t untouched = 0xDEADBEEF;
    constexpr int widest = 130;
    Random random(1);
    for (int sourceFamily = 0; sourceFamily < familyCount; ++sourceFamily) {
        for (int resultFamily = 0; resultFamily < writableFamilyCount; ++resultFamily) {
            for (int width = 0; width <= widest; ++width) {
                const auto offset = static_cast<std::size_t>(random.between(0, 7));
                const auto count = static_cast<std::size_t>(width);
                const std::vector<std::uint32_t> source = random.pixelWords(offset + count);
                std::vector<std::uint32_t> result(count + 2, untouched);
                kernel.rows[sourceFamily][resultFamily](source.data() + offset, result.data() + 1, width, operation);
                ASSERT_EQ(result.front(), untouched);
                ASSERT_EQ(result.back(), untouched);
                for (std::size_t x = 0; x < count; ++x) {
                    const Colour old = readColour(familyFormats[sourceFamily], source[offset + x]);
                    ASSERT_EQ(result[x + 1], opaqueWord(familyFormats[resultFamily], definition(old)))
                        << "families " << sourceFamily << " to " << resultFamily << ", width " << width << ", pixel "
                        << x << ", source word " << std::hex << source[offset + x];
                }
            }
        }
    }
}

}  // namespace pxk::test
