// The loop that counts coloured pixels, compared with its definition.
#include "analysis/colorness_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/uniformity.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

TEST(ColornessKernels, EqualTheirDefinition) {
    forEveryIsa<ColornessKernels>([](const ColornessKernels& kernels) {
        Random random(1);
        for (const Family family : anyFamily) {
            for (int width = 0; width <= 3 * widestRow; ++width) {
                const SourceRow row(family, width, random);
                for (const int threshold : {-1, 0, 10, 100, 254, 255}) {
                    std::uint32_t expected = 0;
                    for (int x = 0; x < width; ++x) expected += coloured(row.colour(x), threshold) ? 1U : 0U;
                    ASSERT_EQ(kernels.countColoured(row.words(), width, layoutOf(family), threshold), expected)
                        << "format " << formatOf(family) << ", width " << width << ", threshold " << threshold;
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
