// Smooth lines of one pixel, compared with their definition.
#include "utilities/wu_line.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/definitions/wu_line.h"
#include "support/random.h"

namespace pxk::test {
namespace {

constexpr int noFormat = 7;

void setOutline(Colour colour) {
    gOutLineColorR = colour.red;
    gOutLineColorG = colour.green;
    gOutLineColorB = colour.blue;
}

// A writer over words of the test's own, with rows that are padded, or as libgd has them, not in order.
class WritableCanvas {
  public:
    explicit WritableCanvas(const Canvas& canvas) : canvas_(canvas), stride_(canvas.width + 3) {
        words_.assign(static_cast<std::size_t>(stride_ * (canvas.height + 1)), untouched);
        for (int y = 0; y < canvas.height; ++y) rows_.push_back(reinterpret_cast<int*>(rowWords(y)));
        for (int y = 0; y < canvas.height; ++y) {
            std::copy_n(&canvas_.at(0, y), canvas.width, rowWords(y));
        }
        writer_.format = canvas.format;
        writer_.width = canvas.width;
        writer_.height = canvas.height;
        writer_.rowBytes = stride_ * 4;
        writer_.pixels = rowWords(0);
        writer_.gdRows = rows_.data();
    }

    PictureWriter& writer() { return writer_; }

    // What was drawn; fails when a word beside the pixels was touched.
    std::vector<std::uint32_t> pixels() {
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < canvas_.height; ++y) {
            pixels.insert(pixels.end(), rowWords(y), rowWords(y) + canvas_.width);
            for (int x = canvas_.width; x < stride_; ++x) EXPECT_EQ(rowWords(y)[x], untouched);
        }
        return pixels;
    }

  private:
    static constexpr std::uint32_t untouched = 0xDEADBEEF;

    std::uint32_t* rowWords(int y) {
        const int place = canvas_.format == 8 ? canvas_.height - y : y;
        return words_.data() + static_cast<std::ptrdiff_t>(place) * stride_;
    }

    Canvas canvas_;
    int stride_;
    std::vector<std::uint32_t> words_;
    std::vector<int*> rows_;
    PictureWriter writer_;
};

Canvas randomCanvas(int format, int width, int height, Random& random) {
    Canvas canvas(format, width, height);
    for (std::uint32_t& word : canvas.words) word = random.word();
    return canvas;
}

Canvas plainCanvas(int width, int height, Colour colour) {
    Canvas canvas(8, width, height);
    for (std::uint32_t& word : canvas.words) word = opaqueWord(8, colour);
    return canvas;
}

// Draws a line into a plain picture and gives the colours.
std::vector<Colour> drawn(const Canvas& canvas, int x0, int y0, int x1, int y1) {
    WritableCanvas target(canvas);
    DrawWuLine(target.writer(), x0, y0, x1, y1);
    std::vector<Colour> colours;
    for (const std::uint32_t word : target.pixels()) colours.push_back(readColour(canvas.format, word));
    return colours;
}

constexpr Colour lineColour = {200, 100, 50};
constexpr Colour fill = {10, 60, 90};
constexpr Colour exchanged = {10, 90, 60};

TEST(DrawPixel, ExchangesGreenAndBlueOfTheOldPixel) {
    setOutline(lineColour);
    const Canvas canvas = plainCanvas(1, 1, fill);
    const auto after = [&](int weight) {
        WritableCanvas target(canvas);
        DrawPixel(target.writer(), 0, 0, weight);
        return readColour(8, target.pixels()[0]);
    };
    EXPECT_EQ(after(255), exchanged);
    EXPECT_EQ(after(0), lineColour);
    const Colour half = {(10 * 128 + 200 * 127) / 255, (90 * 128 + 100 * 127) / 255, (60 * 128 + 50 * 127) / 255};
    EXPECT_EQ(after(128), half);
}

TEST(DrawPixel, LeavesPointsOutsideThePictureAlone) {
    setOutline(lineColour);
    WritableCanvas target(plainCanvas(3, 2, fill));
    for (const auto& [x, y] : {std::pair{-1, 0}, {3, 0}, {0, -1}, {0, 2}, {INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}}) {
        DrawPixel(target.writer(), x, y, 0);
    }
    EXPECT_EQ(target.pixels(), plainCanvas(3, 2, fill).words);
}

TEST(DrawPixel, WritesNothingInAFormatOfNoFamily) {
    setOutline(lineColour);
    Random random(1);
    const Canvas canvas = randomCanvas(noFormat, 3, 3, random);
    WritableCanvas target(canvas);
    DrawPixel(target.writer(), 1, 1, 100);
    DrawWuLine(target.writer(), 0, 0, 2, 2);
    EXPECT_EQ(target.pixels(), canvas.words);
}

TEST(DrawPixel, EqualsItsDefinitionInEveryFormat) {
    Random random(2);
    for (const int format : formats) {
        for (int weight = 0; weight <= 255; ++weight) {
            const Colour colour = {random.between(0, 255), random.between(0, 255), random.between(0, 255)};
            setOutline(colour);
            Canvas canvas = randomCanvas(format, 3, 2, random);
            WritableCanvas target(canvas);
            DrawPixel(target.writer(), 1, 1, weight);
            drawPixel(canvas, 1, 1, weight, colour);
            ASSERT_EQ(target.pixels(), canvas.words) << "format " << format << ", weight " << weight;
        }
    }
}

TEST(DrawWuLine, IsPlainWhereItIsHorizontalVerticalOrDiagonal) {
    setOutline(lineColour);
    const Canvas canvas = plainCanvas(4, 4, fill);
    const auto row = drawn(canvas, 3, 1, 0, 1);
    const auto column = drawn(canvas, 2, 3, 2, 0);
    const auto falling = drawn(canvas, 0, 0, 3, 3);
    const auto rising = drawn(canvas, 0, 3, 3, 0);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            const auto place = static_cast<std::size_t>(y * 4 + x);
            EXPECT_EQ(row[place], y == 1 ? lineColour : fill);
            EXPECT_EQ(column[place], x == 2 ? lineColour : fill);
            EXPECT_EQ(falling[place], x == y ? lineColour : fill);
            EXPECT_EQ(rising[place], x == 3 - y ? lineColour : fill);
        }
    }
}

TEST(DrawWuLine, OfOnePointIsThatPoint) {
    setOutline(lineColour);
    const auto colours = drawn(plainCanvas(3, 1, fill), 1, 0, 1, 0);
    EXPECT_EQ(colours, (std::vector<Colour>{fill, lineColour, fill}));
}

TEST(DrawWuLine, StepsOnePixelDownOverTwoColumns) {
    setOutline(lineColour);
    // The one inner column lies half-way between both rows: weight 128 above, 127 below.
    const auto colours = drawn(plainCanvas(3, 2, fill), 0, 0, 2, 1);
    const Colour above = {(10 * 128 + 200 * 127) / 255, (90 * 128 + 100 * 127) / 255, (60 * 128 + 50 * 127) / 255};
    const Colour below = {(10 * 127 + 200 * 128) / 255, (90 * 127 + 100 * 128) / 255, (60 * 127 + 50 * 128) / 255};
    EXPECT_EQ(colours, (std::vector<Colour>{lineColour, above, fill, fill, below, lineColour}));
}

TEST(DrawWuLine, EqualsItsDefinitionAroundThePicture) {
    Random random(3);
    for (const int format : formats) {
        for (int i = 0; i < 400; ++i) {
            const Colour colour = {random.between(0, 255), random.between(0, 255), random.between(0, 255)};
            setOutline(colour);
            const int reach = i % 4 == 0 ? 3000 : 30;
            const int x0 = random.between(-reach, reach), y0 = random.between(-reach, reach);
            const int x1 = i % 5 == 0 ? x0 : random.between(-reach, reach);
            const int y1 = i % 7 == 0 ? y0 : i % 11 == 0 ? y0 + x1 - x0 : random.between(-reach, reach);
            Canvas canvas = randomCanvas(format, random.between(1, 24), random.between(1, 24), random);
            WritableCanvas target(canvas);
            DrawWuLine(target.writer(), x0, y0, x1, y1);
            drawWuLine(canvas, x0, y0, x1, y1, colour);
            ASSERT_EQ(target.pixels(), canvas.words)
                << "format " << format << ", (" << x0 << ", " << y0 << ") to (" << x1 << ", " << y1 << ")";
        }
    }
}

TEST(DrawWuLine, MovesOverOnceInASteepLineOfManyRows) {
    Random random(4);
    setOutline(lineColour);
    for (const int rows : {65535, 65536, 65537, 200000}) {
        Canvas canvas = randomCanvas(8, 3, 9, random);
        for (const int top : {-rows + 4, -rows / 2, 0}) {
            WritableCanvas target(canvas);
            Canvas expected = canvas;
            DrawWuLine(target.writer(), 0, top, 1, top + rows);
            drawWuLine(expected, 0, top, 1, top + rows, lineColour);
            ASSERT_EQ(target.pixels(), expected.words) << rows << " rows from " << top;
        }
    }
}

TEST(DrawWuLine, BetweenTheFarthestPointsCostsOnlyWhatIsSeen) {
    setOutline(lineColour);
    const Canvas canvas = plainCanvas(4, 3, fill);
    EXPECT_EQ(drawn(canvas, INT_MIN, 1, INT_MAX, 1), drawn(canvas, 0, 1, 3, 1));
    EXPECT_EQ(drawn(canvas, 2, INT_MAX, 2, INT_MIN), drawn(canvas, 2, 0, 2, 2));
    // The diagonal from corner to corner of the number range passes through (0, 0).
    EXPECT_EQ(drawn(canvas, INT_MIN, INT_MIN, INT_MAX, INT_MAX), drawn(canvas, 0, 0, 2, 2));
    EXPECT_EQ(drawn(canvas, INT_MIN, INT_MAX, INT_MAX, INT_MAX), drawn(canvas, -1, -1, -1, -1));
    // So steep that it stays in its first column, with a neighbour of weight 255.
    const auto steep = drawn(canvas, 1, INT_MIN, 2, INT_MAX);
    for (std::size_t y = 0; y < 3; ++y) {
        EXPECT_EQ(steep[y * 4], fill);
        EXPECT_EQ(steep[y * 4 + 1], lineColour);
        EXPECT_EQ(steep[y * 4 + 2], exchanged);
        EXPECT_EQ(steep[y * 4 + 3], fill);
    }
}

}  // namespace
}  // namespace pxk::test
