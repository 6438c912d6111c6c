// The loops that fill a waveform's columns, compared with their definition.
#include "utilities/span_kernels.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/isa_tests.h"
#include "support/random.h"

namespace pxk::test {
namespace {

constexpr SpanWords spanWords = {.fore = 0x11223344, .back = 0xAABBCCDD};
constexpr std::uint32_t untouchedWord = 0xDEADBEEF;
constexpr int centreRow = 10;

// A curve's span holds the rows from the smaller to before the larger of its own and the centre's.
bool inSpan(int row, int curve) { return row >= std::min(curve, centreRow) && row < std::max(curve, centreRow); }

TEST(SpanKernels, EqualTheirDefinition) {
    forEveryIsa<SpanKernels>([](const SpanKernels& kernels) {
        Random random(1);
        for (std::size_t width = 0; width <= 130; ++width) {
            std::vector<std::int32_t> low(width);
            std::vector<std::int32_t> high(width);
            for (std::size_t x = 0; x < width; ++x) {
                low[x] = x % 9 == 0 ? INT_MIN : x % 10 == 0 ? INT_MAX : random.between(-5, 25);
                high[x] = x % 11 == 0 ? INT_MAX : x % 12 == 0 ? INT_MIN : random.between(-5, 25);
            }
            for (int row = 0; row < 20; ++row) {
                std::vector<std::uint32_t> result(width + 2, untouchedWord);
                const auto fill = row < centreRow ? kernels.aboveCentre : kernels.fromCentre;
                fill(result.data() + 1, static_cast<std::ptrdiff_t>(width), row, {low.data(), high.data()}, spanWords);
                ASSERT_EQ(result.front(), untouchedWord);
                ASSERT_EQ(result.back(), untouchedWord);
                for (std::size_t x = 0; x < width; ++x) {
                    ASSERT_EQ(result[x + 1],
                              inSpan(row, low[x]) || inSpan(row, high[x]) ? spanWords.fore : spanWords.back)
                        << "column " << x << " of " << width << ", row " << row;
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
