// BMP files of every header, width, mask and run length.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "files/files_module.h"
#include "files/sample_files.h"

namespace pxkfiles::test {

namespace {

FileBytes masks(std::initializer_list<std::uint32_t> values, std::size_t room = 0) {
    FileBytes bytes;
    for (const std::uint32_t value : values) appendLittle(bytes, value, 4);
    bytes.resize(std::max(bytes.size(), room));
    return bytes;
}

const FileBytes fourColours = {30, 20, 10, 0, 60, 50, 40, 0, 90, 80, 70, 0, 120, 110, 100, 0};
constexpr std::uint32_t colour0 = 0xFF0A141E;
constexpr std::uint32_t colour1 = 0xFF28323C;
constexpr std::uint32_t colour2 = 0xFF46505A;

FileBytes paletteOf(std::size_t count) {
    FileBytes palette = fourColours;
    palette.resize(count * 4);
    return palette;
}

}  // namespace

TEST(Bmp, HeadersOfAllLengthsMeanTheSame) {
    for (const std::uint32_t headerSize : {40U, 52U, 56U, 64U, 108U, 124U}) {
        FileBytes behind(headerSize - 40, 0xEE);
        append(behind, paletteOf(256));
        const Raster read = pictureIn(bmpFile({headerSize, 2, 2, 8, 0, behind}, {1, 0, 0, 0, 0, 1, 0, 0}));
        EXPECT_EQ(read.at(0, 1), colour1) << headerSize;
        EXPECT_EQ(read.at(0, 0), colour0) << headerSize;
        EXPECT_EQ(read.at(1, 0), colour1) << headerSize;
        EXPECT_FALSE(read.hasAlpha);
    }
    EXPECT_NE(readBytes(bmpFile({41, 2, 2, 8, 0, {}}, {0})).message.find("no known kind"), std::string::npos);
}

TEST(Bmp, TheOldestHeaderIsRead) {
    FileBytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 0, 0, 12, 0, 0, 0, 3, 0, 1, 0, 1, 0, 1, 0};
    append(file, FileBytes{30, 20, 10, 60, 50, 40, 0xA0, 0, 0, 0});
    const Raster read = pictureIn(file);
    EXPECT_EQ(read.at(0, 0), colour1);
    EXPECT_EQ(read.at(1, 0), colour0);
    EXPECT_EQ(read.at(2, 0), colour1);
}

TEST(Bmp, NarrowIndicesAreRead) {
    const Raster one = pictureIn(bmpFile({40, 9, 1, 1, 0, paletteOf(2)}, {0x81, 0x80, 0, 0}));
    for (int x = 0; x < 9; ++x) EXPECT_EQ(one.at(x, 0), x % 7 == 0 || x == 8 ? colour1 : colour0) << x;
    const Raster four = pictureIn(bmpFile({40, 3, 1, 4, 0, paletteOf(16)}, {0x01, 0x20, 0, 0}));
    EXPECT_EQ(four.at(0, 0), colour0);
    EXPECT_EQ(four.at(1, 0), colour1);
    EXPECT_EQ(four.at(2, 0), colour2);
}

TEST(Bmp, FiveAndSixBitsFillTheRange) {
    // 555 without masks, and 565 with them: white is white.
    const Raster five = pictureIn(bmpFile({40, 2, 1, 16, 0, {}}, {0xFF, 0x7F, 0x01, 0x00}));
    EXPECT_EQ(five.at(0, 0), 0xFFFFFFFFU);
    EXPECT_EQ(five.at(1, 0), 0xFF000008U);  // 1 / 31
    FileBytes rows;
    for (const std::uint32_t value : {0xFFFFU, 0xF800U, 0x07E0U, 0x001FU, 0x0821U, 0x7BEFU})
        appendLittle(rows, value, 2);
    const Reading six = readBytes(bmpFile({40, 6, 1, 16, 3, masks({0xF800, 0x7E0, 0x1F})}, rows));
    ASSERT_EQ(six.message, "");
    EXPECT_EQ(six.bitsPerSample, 6);
    EXPECT_EQ(six.picture.at(0, 0), 0xFFFFFFFFU);
    EXPECT_EQ(six.picture.at(1, 0), 0xFFFF0000U);
    EXPECT_EQ(six.picture.at(2, 0), 0xFF00FF00U);
    EXPECT_EQ(six.picture.at(3, 0), 0xFF0000FFU);
    EXPECT_EQ(six.picture.at(4, 0), 0xFF080408U);  // 1 / 31, 1 / 63
    EXPECT_EQ(six.picture.at(5, 0), 0xFF7B7D7BU);  // 15 / 31, 31 / 63
}

TEST(Bmp, MasksOfAnyPlaceAndWidthAreRead) {
    const Raster swapped = pictureIn(bmpFile({40, 1, 1, 32, 3, masks({0xFF, 0xFF00, 0xFF0000})}, {1, 2, 3, 0xEE}));
    EXPECT_EQ(swapped.at(0, 0), 0xFF010203U);
    const Raster tenBits =
        pictureIn(bmpFile({40, 1, 1, 32, 3, masks({0x3FF00000, 0xFFC00, 0x3FF})}, {0x00, 0xFC, 0xFF, 0x3F}));
    EXPECT_EQ(tenBits.at(0, 0), 0xFFFFFF00U);
    const std::string gaps =
        readBytes(bmpFile({40, 1, 1, 32, 3, masks({0xF0F, 0xF000, 0xFF0000})}, {0, 0, 0, 0})).message;
    EXPECT_NE(gaps.find("side by side"), std::string::npos) << gaps;
}

TEST(Bmp, AlphaIsReadWhereAMaskNamesIt) {
    const FileBytes rows = {3, 2, 1, 77};
    const FileBytes usual = masks({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    for (const std::uint32_t headerSize : {56U, 108U, 124U}) {
        FileBytes behind = usual;
        behind.resize(headerSize - 40);
        const Raster read = pictureIn(bmpFile({headerSize, 1, 1, 32, 3, behind}, rows));
        EXPECT_TRUE(read.hasAlpha) << headerSize;
        EXPECT_EQ(read.at(0, 0), 0x4D010203U) << headerSize;
    }
    EXPECT_EQ(pictureIn(bmpFile({40, 1, 1, 32, 6, usual}, rows)).at(0, 0), 0x4D010203U);
    const Raster unnamed = pictureIn(bmpFile({40, 1, 1, 32, 0, {}}, rows));
    EXPECT_FALSE(unnamed.hasAlpha);
    EXPECT_EQ(unnamed.at(0, 0), 0xFF010203U);
}

TEST(Bmp, AlphaIsWrittenWithTheLongHeader) {
    constexpr std::size_t headerSizeAt = 14;
    EXPECT_EQ(written(alphaPicture(), "bmp")[headerSizeAt], 124);
    EXPECT_EQ(written(noisePicture(), "bmp")[headerSizeAt], 40);
}

TEST(Bmp, RowsMayComeFromTheTop) {
    const Raster read = pictureIn(bmpFile({40, 1, -2, 24, 0, {}}, {3, 2, 1, 0, 6, 5, 4, 0}));
    EXPECT_EQ(read.at(0, 0), 0xFF010203U);
    EXPECT_EQ(read.at(0, 1), 0xFF040506U);
}

TEST(Bmp, RunLengthsOfEightBitsAreRead) {
    // A run, a row's end, colours one by one with padding, a jump over a pixel, the end.
    const FileBytes runs = {3, 1, 0, 0, 0, 3, 2, 1, 2, 0, 0, 0, 0, 2, 1, 0, 1, 2, 0, 1};
    const Raster read = pictureIn(bmpFile({40, 3, 3, 8, 1, paletteOf(256)}, runs));
    EXPECT_EQ(read.at(0, 2), colour1);
    EXPECT_EQ(read.at(2, 2), colour1);
    EXPECT_EQ(read.at(0, 1), colour2);
    EXPECT_EQ(read.at(1, 1), colour1);
    EXPECT_EQ(read.at(2, 1), colour2);
    EXPECT_EQ(read.at(0, 0), colour0);
    EXPECT_EQ(read.at(1, 0), colour2);
    EXPECT_EQ(read.at(2, 0), colour0);
}

TEST(Bmp, RunLengthsOfFourBitsAreRead) {
    const FileBytes runs = {3, 0x12, 0, 0, 0, 3, 0x21, 0x20, 0, 1};
    const Raster read = pictureIn(bmpFile({40, 3, 2, 4, 2, paletteOf(16)}, runs));
    EXPECT_EQ(read.at(0, 1), colour1);
    EXPECT_EQ(read.at(1, 1), colour2);
    EXPECT_EQ(read.at(2, 1), colour1);
    EXPECT_EQ(read.at(0, 0), colour2);
    EXPECT_EQ(read.at(1, 0), colour1);
    EXPECT_EQ(read.at(2, 0), colour2);
}

TEST(Bmp, RunsThatLeadAstrayAreRefused) {
    for (const FileBytes& runs : {FileBytes{4, 1, 0, 1}, FileBytes{0, 2, 0, 200, 1, 1, 0, 1}, FileBytes{3, 1, 1, 1},
                                  FileBytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 1}})
        EXPECT_NE(readBytes(bmpFile({40, 3, 2, 8, 1, paletteOf(256)}, runs)).message.find("out of the picture"),
                  std::string::npos);
    EXPECT_NE(readBytes(bmpFile({40, 3, 2, 8, 1, paletteOf(256)}, {3, 1})).message.find("cut short"),
              std::string::npos);
}

TEST(Bmp, IndicesBeyondThePaletteAreBlack) {
    const Raster read = pictureIn(bmpFile({40, 2, 1, 8, 0, fourColours}, {2, 200, 0, 0}));
    EXPECT_EQ(read.at(0, 0), colour2);
    EXPECT_EQ(read.at(1, 0), 0xFF000000U);
}

TEST(Bmp, UnknownCompressionIsCalledUnsupported) {
    for (const std::uint32_t compression : {4U, 5U, 7U, 11U})
        EXPECT_NE(
            readBytes(bmpFile({40, 2, 1, 24, compression, {}}, {1, 2, 3, 4, 5, 6, 0, 0})).message.find("not supported"),
            std::string::npos);
}

}  // namespace pxkfiles::test
