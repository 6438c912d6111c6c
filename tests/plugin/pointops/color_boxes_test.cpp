// Boxes around coloured cells.
#include "pointops/color_boxes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "support/allocation_failure.h"
#include "support/definitions/rectangle_mask.h"
#include "support/random.h"

namespace pxk::test {
namespace {

std::vector<bool> maskedBy(int width, int height, const std::vector<bool>& flagged) {
    ColorBoxes boxes;
    EXPECT_TRUE(boxes.allocate(width, height));
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    for (std::uint32_t y = 0; y < rows; ++y) {
        for (std::uint32_t x = 0; x < columns; ++x) {
            if (flagged[std::size_t{y} * columns + x]) boxes.flags(y)[x / 64] |= std::uint64_t{1} << x % 64;
        }
    }
    boxes.mask();
    std::vector<bool> masked;
    masked.reserve(flagged.size());
    for (std::uint32_t y = 0; y < rows; ++y) {
        for (std::uint32_t x = 0; x < columns; ++x) masked.push_back((boxes.unmasked(y)[x / 64] >> x % 64 & 1) == 0);
    }
    return masked;
}

using Pattern = std::function<bool(int x, int y)>;

std::vector<bool> drawn(int width, int height, const Pattern& pattern) {
    std::vector<bool> cells;
    cells.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) cells.push_back(pattern(x, y));
    }
    return cells;
}

struct Adversary {
    const char* name;
    Pattern pattern;
    bool ownBoxes = false;  // the boxes mask what is flagged and nothing else
};

// Patterns of many regions, of long ones, and of regions whose boxes overlap those before them.
std::vector<Adversary> adversaries(int width, int height) {
    const auto fromCentre = [=](int x, int y) { return std::max(std::abs(x - width / 2), std::abs(y - height / 2)); };
    return {
        {"nothing", [](int, int) { return false; }, true},
        {"everything", [](int, int) { return true; }, true},
        {"checkerboard", [](int x, int y) { return (x + y) % 2 == 0; }, true},
        {"dots", [](int x, int y) { return x % 2 == 0 && y % 2 == 0; }, true},
        {"rows", [](int, int y) { return y % 2 == 0; }, true},
        {"columns", [](int x, int) { return x % 2 == 0; }, true},
        {"comb open at the top", [=](int x, int y) { return x % 2 == 0 || y == height - 1; }},
        {"comb open at the bottom", [](int x, int y) { return x % 2 == 0 || y == 0; }},
        {"comb open at the right", [](int x, int y) { return y % 2 == 0 || x == 0; }},
        {"comb open at the left", [=](int x, int y) { return y % 2 == 0 || x == width - 1; }},
        {"nested squares", [=](int x, int y) { return fromCentre(x, y) % 2 == 0; }},
        // Rings, each opened at one cell and joined to the next one beside it.
        {"spiral",
         [=](int x, int y) {
             const int ring = fromCentre(x, y);
             return (ring % 2 == 0) != (ring > 0 && x == width / 2 - ring && y == height / 2 - ring + 1);
         }},
        // Bowls one inside the other, the outer ones begin lower: every box contains all those before it.
        {"nested bowls",
         [=](int x, int y) {
             const int side = std::abs(x - width / 2);
             const int firstFloor = height / 3;
             const int bowls = std::min(width / 4 - 1, (height - 1 - firstFloor) / 2);
             const int wallOf = side / 2;
             const int floorOf = (y - firstFloor) / 2;
             const bool wall = side % 2 == 1 && wallOf < bowls && y >= wallOf && y <= firstFloor + 2 * wallOf;
             const bool floor =
                 y >= firstFloor && y % 2 == firstFloor % 2 && floorOf < bowls && side <= 2 * floorOf + 1;
             return wall || floor;
         }},
        {"diagonal", [](int x, int y) { return x == y; }, true},
        {"stairs", [](int x, int y) { return x == y || x == y + 1; }},
        {"diagonals leaning left", [](int x, int y) { return (x + y) % 4 == 0; }, true},
    };
}

TEST(ColorBoxes, TakeInNoCellThatOnlyTouchesACorner) {
    const std::vector<bool> apart = drawn(6, 6, [](int x, int y) { return (x == 2 && y == 2) || (x == 3 && y == 3); });
    EXPECT_EQ(maskedBy(6, 6, apart), apart);
    const std::vector<bool> touching = drawn(6, 6, [](int x, int y) { return y == 2 && (x == 2 || x == 3); });
    EXPECT_EQ(maskedBy(6, 6, touching), touching);
}

TEST(ColorBoxes, CoverTheBoundsOfARegion) {
    const auto lShape =
        drawn(8, 8, [](int x, int y) { return (x == 2 && y >= 1 && y <= 5) || (y == 5 && x >= 2 && x <= 6); });
    EXPECT_EQ(maskedBy(8, 8, lShape), drawn(8, 8, [](int x, int y) { return x >= 2 && x <= 6 && y >= 1 && y <= 5; }));
}

TEST(ColorBoxes, TakeInACornerCellOnceASideHasGrownBesideIt) {
    // (4, 3) touches the cell (3, 2) at a corner; the box of the row 2 reaches it when (2, 3) has made it grow down.
    const auto cells =
        drawn(8, 8, [](int x, int y) { return (y == 2 && (x == 2 || x == 3)) || (y == 3 && (x == 2 || x == 4)); });
    EXPECT_EQ(maskedBy(8, 8, cells), drawn(8, 8, [](int x, int y) { return x >= 2 && x <= 4 && y >= 2 && y <= 3; }));
}

TEST(ColorBoxes, MayCoverWhatAnEarlierBoxCovered) {
    // A bowl that starts below the top of the dot inside it, and goes around it.
    const auto cells = drawn(9, 9, [](int x, int y) {
        return (x == 4 && y == 1) || ((x == 2 || x == 6) && y >= 2 && y <= 5) || (y == 5 && x >= 2 && x <= 6);
    });
    EXPECT_EQ(maskedBy(9, 9, cells), boxesAround(9, 9, cells));
}

TEST(ColorBoxes, EqualTheirDefinitionOnSmallRandomGrids) {
    Random random(1);
    for (int i = 0; i < 6000; ++i) {
        const int width = random.between(1, 16);
        const int height = random.between(1, 16);
        const int oneIn = random.between(2, 8);
        const auto cells = drawn(width, height, [&](int, int) { return random.between(1, oneIn) == 1; });
        ASSERT_EQ(maskedBy(width, height, cells), boxesAround(width, height, cells)) << width << " x " << height;
    }
}

TEST(ColorBoxes, EqualTheirDefinitionOnEveryGridOfThreeByFour) {
    for (unsigned bits = 0; bits < 1U << 12; ++bits) {
        const auto cells = drawn(3, 4, [=](int x, int y) { return (bits >> (3 * y + x) & 1) != 0; });
        ASSERT_EQ(maskedBy(3, 4, cells), boxesAround(3, 4, cells)) << bits;
    }
}

TEST(ColorBoxes, EqualTheirDefinitionAcrossWordBoundaries) {
    Random random(2);
    for (const int width : {63, 64, 65, 128, 131, 200}) {
        for (const int height : {1, 63, 64, 65, 90}) {
            for (const int oneIn : {4, 6, 12, 60}) {
                const auto cells = drawn(width, height, [&](int, int) { return random.between(1, oneIn) == 1; });
                ASSERT_EQ(maskedBy(width, height, cells), boxesAround(width, height, cells))
                    << width << " x " << height << ", one in " << oneIn;
            }
        }
    }
}

TEST(ColorBoxes, EqualTheirDefinitionOnAdversarialPatterns) {
    for (const auto& [width, height] : {std::pair{70, 66}, {131, 40}, {33, 67}}) {
        for (const Adversary& adversary : adversaries(width, height)) {
            const auto cells = drawn(width, height, adversary.pattern);
            EXPECT_EQ(maskedBy(width, height, cells), boxesAround(width, height, cells))
                << adversary.name << ", " << width << " x " << height;
        }
    }
}

// Searching from the top for each box, or examining every cell of every box, would take hours.
TEST(ColorBoxes, TakeAdversarialPatternsOfTwelveMillionCells) {
    constexpr int width = 4096;
    constexpr int height = 3072;
    constexpr std::size_t words = width / 64;
    for (const Adversary& adversary : adversaries(width, height)) {
        SCOPED_TRACE(adversary.name);
        ColorBoxes boxes;
        ASSERT_TRUE(boxes.allocate(width, height));
        std::vector<std::uint64_t> flagged(words * height);
        for (int y = 0; y < height; ++y) {
            std::uint64_t* row = flagged.data() + words * static_cast<std::size_t>(y);
            for (int x = 0; x < width; ++x) row[x / 64] |= std::uint64_t{adversary.pattern(x, y)} << x % 64;
            std::copy_n(row, words, boxes.flags(static_cast<std::uint32_t>(y)));
        }
        boxes.mask();
        for (std::uint32_t y = 0; y < height; ++y) {
            for (std::size_t w = 0; w < words; ++w) {
                const std::uint64_t masked = ~boxes.unmasked(y)[w];
                const std::uint64_t wanted = flagged[words * y + w];
                ASSERT_EQ(adversary.ownBoxes ? masked : masked & wanted, wanted) << "row " << y << ", word " << w;
            }
        }
    }
}

TEST(ColorBoxes, AreRefusedForHugePictures) {
    ColorBoxes boxes;
    EXPECT_FALSE(boxes.allocate(46340, 46340)) << "46342 * 46342 is more than 2^31 - 1";
    EXPECT_FALSE(boxes.allocate(65534, 65534)) << "65536 * 65536 wraps to 0";
    EXPECT_FALSE(boxes.allocate(92680, 92680)) << "92682 * 92682 wraps to a positive number";
    EXPECT_FALSE(boxes.allocate(0x7FFFFFFF, 1));
    EXPECT_FALSE(boxes.allocate(1, 0x7FFFFFFF));
}

TEST(ColorBoxes, AreRefusedWithoutMemory) {
    EXPECT_GE(failEveryAllocation([] {
                  ColorBoxes boxes;
                  boxes.allocate(10, 10);
              }),
              1U);
    const AllocationFailure failure(0);
    ColorBoxes boxes;
    EXPECT_FALSE(boxes.allocate(10, 10));
}

}  // namespace
}  // namespace pxk::test
