// The counting loops, compared with their definitions.
#include "channels/color_counting_kernels.h"

#include <gtest/gtest.h>

#include "picture/host_color.h"
#include "support/definitions/color_counting.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

TEST(ColorCountingKernels, CountAColourAsItsDefinitionDoes) {
    forEveryIsa<ColorCountingKernels>([](const ColorCountingKernels& kernels) {
        Random random(1);
        for (const Family family : anyFamily) {
            const FamilyLayout layout = layoutOf(family);
            for (int width = 0; width <= widestRow; ++width) {
                const SourceRow source(family, width, random);
                const Colour wanted = width > 0 ? source.colour(random.between(0, width - 1)) : Colour{1, 2, 3};
                const auto word = static_cast<std::uint32_t>(wanted.red << 16 | wanted.green << 8 | wanted.blue);
                std::uint32_t expected = 0;
                for (int x = 0; x < width; ++x) expected += source.colour(x) == wanted ? 1U : 0U;
                ASSERT_EQ(kernels.countColor(source.words(), width, colorMask(layout), channelBits(word, layout)),
                          expected);
            }
        }
    });
}

std::uint32_t total(const ByteCounts& counts, int channel, int value) {
    std::uint32_t sum = 0;
    for (const auto& copy : counts.counts) sum += copy[channel][value];
    return sum;
}

// Expects the counts of the colour bytes, lowest first, to be those of the words.
void expectCounts(const ByteCounts& counts, const std::vector<std::uint32_t>& words, int firstByte) {
    std::uint32_t expected[3][256] = {};
    for (const std::uint32_t word : words) {
        const auto bytes = bytesOf(word);
        for (int i = 0; i < 3; ++i) ++expected[i][bytes.at(static_cast<unsigned>(firstByte + i))];
    }
    for (int i = 0; i < 3; ++i) {
        for (int value = 0; value < 256; ++value) ASSERT_EQ(total(counts, i, value), expected[i][value]);
    }
}

TEST(ColorCountingKernels, CountEveryByteOfNoiseAndOfRuns) {
    forEveryIsa<ColorCountingKernels>([](const ColorCountingKernels& kernels) {
        Random random(2);
        for (const Family family : writableFamilies) {
            const int firstByte = family == Family::alphaFirst ? 1 : 0;
            for (int width = 0; width <= widestRow; ++width) {
                std::vector<std::uint32_t> words = random.pixelWords(static_cast<std::size_t>(width));
                for (std::size_t x = 1; x < words.size(); ++x) {
                    if (random.between(0, 3) != 0) words[x] = words[x - 1];
                }
                ByteCounts counts{};
                kernels.countBytes[static_cast<int>(family)](words.data(), width, counts);
                expectCounts(counts, words, firstByte);
            }
        }
    });
}

TEST(ColorCountingKernels, AddToWhatIsCountedAlready) {
    forEveryIsa<ColorCountingKernels>([](const ColorCountingKernels& kernels) {
        const std::uint32_t words[] = {0x01020304, 0x01020304, 0x01020304, 0x01020304, 0x05060708};
        ByteCounts counts{};
        for (int i = 0; i < 3; ++i) kernels.countBytes[static_cast<int>(Family::gd)](words, 5, counts);
        EXPECT_EQ(total(counts, 0, 0x04), 12U);
        EXPECT_EQ(total(counts, 1, 0x03), 12U);
        EXPECT_EQ(total(counts, 2, 0x02), 12U);
        EXPECT_EQ(total(counts, 0, 0x08), 3U);
    });
}

}  // namespace
}  // namespace pxk::test
