// Tetrahedral interpolation, compared with its definition.
#include "channels/lut3d_kernels.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "support/definitions/lut3d.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

struct BothTables {
    std::unique_ptr<Lut3DTable> table = std::make_unique<Lut3DTable>();
    ColourCube cube;
};

// The same entries twice, for the kernels and for the definition.
template <class Entry>
BothTables tablesOf(Entry entry) {
    BothTables both;
    for (int r = 0; r < ColourCube::points; ++r) {
        for (int g = 0; g < ColourCube::points; ++g) {
            for (int b = 0; b < ColourCube::points; ++b) {
                for (int x = 0; x < 3; ++x) both.cube.at(r, g, b, x) = both.table->entries[r][g][b][x] = entry();
            }
        }
    }
    return both;
}

double realBetween(Random& random, double low, double high) {
    return low + (high - low) * random.word() / static_cast<double>(std::numeric_limits<std::uint32_t>::max());
}

// Every pair of positions within a cell, and both ends of the axes.
constexpr int telling[] = {0, 1, 5, 8, 9, 16, 17, 18, 33, 34, 57, 124, 238, 239, 246, 247, 253, 254, 255};

void expectAllOfTheTelling(const Lut3DKernels& kernels, const BothTables& both) {
    const FamilyLayout layout = layoutOf(Family::gd);
    std::vector<std::uint32_t> words;
    for (const int red : telling) {
        for (const int green : telling) {
            for (const int blue : telling) words.push_back(static_cast<std::uint32_t>(red << 16 | green << 8 | blue));
        }
    }
    std::vector<std::uint32_t> result(words.size());
    kernels.lookUp(words.data(), result.data(), static_cast<std::ptrdiff_t>(words.size()), *both.table, layout, layout);
    for (std::size_t i = 0; i < words.size(); ++i) {
        ASSERT_EQ(result[i], opaqueWord(8, both.cube(readColour(8, words[i])))) << std::hex << words[i];
    }
}

TEST(Lut3DKernels, EqualTheirDefinition) {
    forEveryIsa<Lut3DKernels>([](const Lut3DKernels& kernels) {
        Random random(1);
        const BothTables both = tablesOf([&] { return realBetween(random, -20, 280); });
        for (const Family source : anyFamily) {
            for (const Family result : writableFamilies) {
                for (int width = 0; width <= widestRow; ++width) {
                    const SourceRow from(source, width, random);
                    ResultRow row(result, width);
                    kernels.lookUp(from.words(), row.words(), width, *both.table, layoutOf(source), layoutOf(result));
                    row.expect([&](int x) { return both.cube(from.colour(x)); });
                }
            }
        }
        expectAllOfTheTelling(kernels, both);
    });
}

// Times a weight of 0, an infinity or NaN is NaN, which shows the corner that has this weight.
TEST(Lut3DKernels, ChooseTheTetrahedronOfEqualFractionsByTheStatedComparisons) {
    forEveryIsa<Lut3DKernels>([](const Lut3DKernels& kernels) {
        Random random(2);
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double odd[] = {infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e308, -1e308};
        for (int i = 0; i < 8; ++i) {
            const BothTables both = tablesOf(
                [&] { return random.between(0, 2) == 0 ? odd[random.between(0, 4)] : realBetween(random, 0, 255); });
            expectAllOfTheTelling(kernels, both);
        }
    });
}

}  // namespace
}  // namespace pxk::test
