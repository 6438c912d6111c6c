// The loops that add whole numbers, compared with their definition.
#include "pointops/whole_offsets_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/tone_curves.h"
#include "support/isa_tests.h"
#include "support/point_kernel_check.h"

namespace pxk::test {
namespace {

TEST(WholeOffsetsKernels, EqualTheirDefinition) {
    forEveryIsa<WholeOffsetsKernels>([](const WholeOffsetsKernels& kernels) {
        for (const WholeOffsets& offsets : {WholeOffsets{0, 0, 0}, WholeOffsets{1, -1, 0}, WholeOffsets{10, 20, 30},
                                            WholeOffsets{-127, 128, -128}, WholeOffsets{255, -255, 254}}) {
            SCOPED_TRACE(offsets.red);
            checkPointKernel(kernels.add, offsets, [&](Colour old) -> Colour {
                return {absoluteBrightness(old.red, offsets.red), absoluteBrightness(old.green, offsets.green),
                        absoluteBrightness(old.blue, offsets.blue)};
            });
        }
    });
}

}  // namespace
}  // namespace pxk::test
