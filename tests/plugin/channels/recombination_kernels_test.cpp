// The loops that combine and merge channels, compared with their definitions.
#include "channels/recombination_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/recombination.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

TEST(RecombinationKernels, CombineEqualsItsDefinition) {
    forEveryIsa<RecombinationKernels>([](const RecombinationKernels& kernels) {
        Random random(1);
        for (const Family red : anyFamily) {
            for (const Family green : anyFamily) {
                for (const Family blue : anyFamily) {
                    for (const Family result : writableFamilies) {
                        const CombinedLayouts layouts = {layoutOf(red), layoutOf(green), layoutOf(blue),
                                                         layoutOf(result)};
                        for (int width = 0; width <= widestRow; width += random.between(1, 3)) {
                            const SourceRow reds(red, width, random);
                            const SourceRow greens(green, width, random);
                            const SourceRow blues(blue, width, random);
                            ResultRow row(result, width);
                            kernels.combine(reds.words(), greens.words(), blues.words(), row.words(), width, layouts);
                            row.expect(
                                [&](int x) { return combined(reds.colour(x), greens.colour(x), blues.colour(x)); });
                        }
                    }
                }
            }
        }
    });
}

TEST(RecombinationKernels, CombineTakesOneRowForAll) {
    forEveryIsa<RecombinationKernels>([](const RecombinationKernels& kernels) {
        Random random(2);
        for (const Family family : writableFamilies) {
            const FamilyLayout layout = layoutOf(family);
            const SourceRow source(family, 37, random);
            ResultRow row(family, 37);
            kernels.combine(source.words(), source.words(), source.words(), row.words(), 37,
                            {layout, layout, layout, layout});
            row.expect([&](int x) { return source.colour(x); });
        }
    });
}

TEST(RecombinationKernels, MergeEqualsItsDefinition) {
    forEveryIsa<RecombinationKernels>([](const RecombinationKernels& kernels) {
        Random random(3);
        for (const Family first : anyFamily) {
            for (const Family second : anyFamily) {
                for (const Family result : writableFamilies) {
                    const MergedLayouts layouts = {layoutOf(first), layoutOf(second), layoutOf(result)};
                    for (int width = 0; width <= widestRow; ++width) {
                        const SourceRow a(first, width, random);
                        const SourceRow b(second, width, random);
                        ResultRow row(result, width);
                        kernels.merge(a.words(), b.words(), row.words(), width, layouts);
                        row.expect([&](int x) { return lightest(a.colour(x), b.colour(x)); });
                    }
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
