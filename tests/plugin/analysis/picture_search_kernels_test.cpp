// The comparisons of the picture search, compared with their definition.
#include "analysis/picture_search_kernels.h"

#include <gtest/gtest.h>

#include "support/definitions/picture_search.h"
#include "support/family_rows.h"
#include "support/isa_tests.h"

namespace pxk::test {
namespace {

// A picture of a family, its rows in one block with a gap or in a table, from the last to the first in memory.
class FamilyPicture {
  public:
    FamilyPicture(Family family, int width, int height, bool withTable, Random& random)
        : family_(family), width_(width), height_(height), withTable_(withTable) {
        words_ = random.pixelWords(rowWords() * static_cast<std::size_t>(height));
        for (std::uint32_t& word : words_) word &= 0x03030303;
        for (int y = 0; y < height; ++y) table_.push_back(reinterpret_cast<int*>(row(y)));
    }

    std::uint32_t* row(int y) {
        return words_.data() + rowWords() * static_cast<std::size_t>(withTable_ ? height_ - 1 - y : y);
    }

    SearchPicture asSearched() {
        return {.layout = layoutOf(family_),
                .start = withTable_ ? nullptr : reinterpret_cast<const unsigned char*>(words_.data()),
                .rowBytes = withTable_ ? 0 : static_cast<std::ptrdiff_t>(rowWords() * 4),
                .rowTable = withTable_ ? table_.data() : nullptr,
                .width = width_,
                .height = height_};
    }

    ColourGrid grid() {
        ColourGrid result{width_, height_, {}};
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) result.colours.push_back(readColour(formatOf(family_), row(y)[x]));
        }
        return result;
    }

  private:
    std::size_t rowWords() const { return static_cast<std::size_t>(width_) + 3; }

    Family family_;
    int width_;
    int height_;
    bool withTable_;
    std::vector<std::uint32_t> words_;
    std::vector<int*> table_;
};

TEST(PictureSearchKernels, EqualTheirDefinitionForAllPairsOfFamilies) {
    forEveryIsa<PictureSearchKernels>([](const PictureSearchKernels& kernels) {
        Random random(1);
        for (const Family haystackFamily : anyFamily) {
            for (const Family needleFamily : anyFamily) {
                for (int i = 0; i < 300; ++i) {
                    const int needleWidth = random.between(1, random.between(1, 70));
                    FamilyPicture haystack(haystackFamily, needleWidth + random.between(0, 150), 5, i % 2 == 0, random);
                    FamilyPicture needle(needleFamily, needleWidth, random.between(1, 3), i % 3 == 0, random);
                    const int difference = random.between(0, 4);
                    const SearchSettings settings = {.haystack = haystack.asSearched(),
                                                     .needle = needle.asSearched(),
                                                     .largestDifference = difference == 4 ? 255 : difference};
                    const int candidates = settings.haystack.width - needleWidth + 1;
                    const int from = random.between(0, candidates);
                    const int y = random.between(0, 2);
                    const ColourGrid haystackColours = haystack.grid();
                    const ColourGrid needleColours = needle.grid();
                    int expected = from;
                    while (expected < candidates &&
                           !matchesAt(haystackColours, needleColours, expected, y, settings.largestDifference + 1)) {
                        ++expected;
                    }
                    ASSERT_EQ(kernels.findInRow(settings, y, from, candidates), expected)
                        << "formats " << formatOf(haystackFamily) << " and " << formatOf(needleFamily) << ", width "
                        << needleWidth << " in " << settings.haystack.width << ", difference " << difference;
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
