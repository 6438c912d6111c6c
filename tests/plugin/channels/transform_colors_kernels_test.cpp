// The loops that look up channels in tables, compared with their definition.
#include "channels/transform_colors_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/transform_colors.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

struct Places {
    int red;
    int green;
    int blue;
};

// Which colour byte of a word each channel is, counted from the lowest.
Places placesIn(Family family) { return family == Family::gd ? Places{2, 1, 0} : Places{0, 1, 2}; }

// The tables that lead from one family to another.
ColorTables prepared(const ChannelTables& tables, Family source, Family result) {
    const Places from = placesIn(source);
    const Places to = placesIn(result);
    const int lowest = result == Family::alphaFirst ? 8 : 0;
    ColorTables prepared{};
    prepared.opaque = opaqueWord(formatOf(result), {0, 0, 0});
    const auto fill = [&](int place, int resultPlace, const ChannelTable& table) {
        prepared.resultShift[place] = lowest + 8 * resultPlace;
        for (std::size_t i = 0; i < table.size(); ++i) {
            prepared.bytes[place][i] = table[i];
            prepared.placed[place][i] = std::uint32_t{table[i]} << prepared.resultShift[place] | prepared.opaque;
        }
    };
    fill(from.red, to.red, tables.red);
    fill(from.green, to.green, tables.green);
    fill(from.blue, to.blue, tables.blue);
    return prepared;
}

TEST(TransformColorsKernels, EqualTheirDefinition) {
    forEveryIsa<TransformColorsKernels>([](const TransformColorsKernels& kernels) {
        Random random(1);
        for (const Family source : writableFamilies) {
            for (const Family result : writableFamilies) {
                const ChannelTables tables = randomTables(random);
                const ColorTables leading = prepared(tables, source, result);
                for (int width = 0; width <= widestRow; ++width) {
                    const SourceRow from(source, width, random);
                    ResultRow row(result, width);
                    kernels.transform[static_cast<int>(source)](from.words(), row.words(), width, leading);
                    row.expect([&](int x) { return tables(from.colour(x)); });
                }
            }
        }
    });
}

TEST(TransformColorsKernels, WorkInPlace) {
    forEveryIsa<TransformColorsKernels>([](const TransformColorsKernels& kernels) {
        Random random(2);
        for (const Family family : writableFamilies) {
            const ChannelTables tables = randomTables(random);
            const ColorTables leading = prepared(tables, family, family);
            for (int width = 0; width <= widestRow; ++width) {
                const std::vector<std::uint32_t> before = random.pixelWords(static_cast<std::size_t>(width));
                std::vector<std::uint32_t> words = before;
                kernels.transform[static_cast<int>(family)](words.data(), words.data(), width, leading);
                for (std::size_t x = 0; x < words.size(); ++x) {
                    const int format = formatOf(family);
                    ASSERT_EQ(words[x], opaqueWord(format, tables(readColour(format, before[x]))));
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
