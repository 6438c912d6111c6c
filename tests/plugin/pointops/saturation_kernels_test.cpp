// The loop that changes the saturation, compared with its definition.
#include "pointops/saturation_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/saturation.h"
#include "support/extreme_numbers.h"
#include "support/isa_tests.h"
#include "support/point_kernel_check.h"

namespace pxk::test {
namespace {

Saturate settingsFor(std::int32_t amount) { return {static_cast<std::uint32_t>(amount) + 255}; }

TEST(SaturationKernels, EqualTheirDefinition) {
    forEveryIsa<SaturationKernels>([](const SaturationKernels& kernels) {
        for (const std::int32_t amount : extremeIntegers) {
            SCOPED_TRACE(amount);
            checkPointKernel(kernels.saturate, settingsFor(amount), [=](Colour old) { return saturated(old, amount); });
        }
    });
}

// The kernel divides by multiplying in floating point, which has to be exact for every quotient that is not clamped.
TEST(SaturationKernels, DivideExactlyWhateverTheAmount) {
    constexpr int gd = 8;
    Random random(1);
    std::vector<std::uint32_t> source;
    for (int distance = -255; distance <= 255; ++distance) {
        const int grey = distance < 0 ? -distance : 0;
        source.push_back(opaqueWord(gd, {grey + distance, grey, grey}));
        source.push_back(opaqueWord(gd, {grey, grey, grey + distance}));
        source.push_back(opaqueWord(gd, {random.between(0, 255), random.between(0, 255), random.between(0, 255)}));
    }
    std::vector<std::int32_t> amounts;
    for (std::int32_t amount = -2000; amount <= 2000; ++amount) amounts.push_back(amount);
    for (int i = 0; i < 1000; ++i) amounts.push_back(static_cast<std::int32_t>(random.word()));
    forEveryIsa<SaturationKernels>([&](const SaturationKernels& kernels) {
        std::vector<std::uint32_t> result(source.size());
        const auto row = kernels.saturate.rows[static_cast<int>(Family::gd)][static_cast<int>(Family::gd)];
        for (const std::int32_t amount : amounts) {
            row(source.data(), result.data(), static_cast<std::ptrdiff_t>(source.size()), settingsFor(amount));
            for (std::size_t i = 0; i < source.size(); ++i) {
                ASSERT_EQ(result[i], opaqueWord(gd, saturated(readColour(gd, source[i]), amount)))
                    << "amount " << amount << ", source word " << std::hex << source[i];
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
