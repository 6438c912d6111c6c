// Rows copied backwards.
#include "analysis/row_copy_kernels.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "support/isa_tests.h"

namespace pxk::test {
namespace {

TEST(RowCopyKernels, CopyTheRowAndNothingBeside) {
    forEveryIsa<RowCopyKernels>([](const RowCopyKernels& kernels) {
        constexpr unsigned char untouched = 0xEE;
        for (std::size_t bytes = 0; bytes <= 700; ++bytes) {
            const std::size_t offset = bytes % 7;
            std::vector<unsigned char> from(offset + bytes + 1);
            std::iota(from.begin(), from.end(), static_cast<unsigned char>(bytes));
            std::vector<unsigned char> to(bytes + 2, untouched);
            kernels.backwards(from.data() + offset, to.data() + 1, bytes);
            ASSERT_EQ(to.front(), untouched);
            ASSERT_EQ(to.back(), untouched);
            ASSERT_TRUE(std::equal(from.data() + offset, from.data() + offset + bytes, to.data() + 1)) << bytes;
        }
    });
}

}  // namespace
}  // namespace pxk::test
