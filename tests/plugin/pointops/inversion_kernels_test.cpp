#include "pointops/inversion_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/inversion.h"
#include "support/instruction_set_tests.h"
#include "support/point_kernel_check.h"

namespace pxk::test {
namespace {

TEST(InversionKernels, EqualTheirDefinitions) {
    forEveryInstructionSet<InversionKernels>([](const InversionKernels& kernels) {
        checkPointKernel(kernels.invert, Invert{}, inverted);
        checkPointKernel(kernels.invertGray, InvertGray{}, greyInverted);
    });
}

}  // namespace
}  // namespace pxk::test
