// The loops that invert, compared with their definitions.
#include "pointops/inversion_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/inversion.h"
#include "support/isa_tests.h"
#include "support/point_kernel_check.h"

namespace pxk::test {
namespace {

TEST(InversionKernels, EqualTheirDefinitions) {
    forEveryIsa<InversionKernels>([](const InversionKernels& kernels) {
        checkPointKernel(kernels.invert, Invert{}, inverted);
        checkPointKernel(kernels.invertGray, InvertGray{}, greyInverted);
    });
}

}  // namespace
}  // namespace pxk::test
