// Samples of every width and kind become 8 bits of red, green, blue and alpha.
#include <gtest/gtest.h>
#include <vips/vips.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "files/files_module.h"
#include "files/sample_files.h"

namespace pxkfiles::test {

namespace {

constexpr std::uint32_t grey(std::uint32_t value) { return 0xFF000000 | value * 0x10101; }

FileBytes fromHex(std::string_view hex) {
    FileBytes bytes;
    for (std::size_t at = 0; at + 1 < hex.size(); at += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(std::string(hex.substr(at, 2)), nullptr, 16)));
    return bytes;
}

}  // namespace

TEST(Samples, PalettesBecomeTrueColour) {
    const FileBytes rows = {0, 0x1B};  // four pixels of two bits: 0, 1, 2, 3
    const FileBytes palette = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120};
    const Reading opaque = readBytes(pngFile(4, 1, 2, 3, rows, {{"PLTE", palette}}));
    EXPECT_EQ(opaque.picture.at(0, 0), 0xFF0A141EU);
    EXPECT_EQ(opaque.picture.at(3, 0), 0xFF646E78U);
    EXPECT_FALSE(opaque.picture.hasAlpha);
    EXPECT_EQ(opaque.bitsPerSample, 2);

    const Raster alpha = pictureIn(pngFile(4, 1, 2, 3, rows, {{"PLTE", palette}, {"tRNS", {255, 128, 1}}}));
    EXPECT_TRUE(alpha.hasAlpha);
    EXPECT_EQ(alpha.at(0, 0), 0xFF0A141EU);
    EXPECT_EQ(alpha.at(1, 0), 0x8028323CU);
    EXPECT_EQ(alpha.at(2, 0), 0x0146505AU);
    EXPECT_EQ(alpha.at(3, 0), 0xFF646E78U);
}

TEST(Samples, GreyBecomesTrueColour) {
    const Raster eightBits = pictureIn(pngFile(3, 1, 8, 0, {0, 7, 128, 255}));
    EXPECT_EQ(eightBits.at(0, 0), grey(7));
    EXPECT_EQ(eightBits.at(2, 0), grey(255));

    const Reading twoLevels = readBytes(pngFile(2, 1, 1, 0, {0, 0x40}));
    EXPECT_EQ(twoLevels.picture.at(0, 0), grey(0));
    EXPECT_EQ(twoLevels.picture.at(1, 0), grey(255));
    EXPECT_EQ(twoLevels.bitsPerSample, 1);

    const Raster withAlpha = pictureIn(pngFile(2, 1, 8, 4, {0, 9, 255, 200, 101}));
    EXPECT_EQ(withAlpha.at(0, 0), grey(9));
    EXPECT_EQ(withAlpha.at(1, 0), (grey(200) & 0xFFFFFF) | 101U << 24);
}

TEST(Samples, SixteenBitsAreRounded) {
    constexpr int width = 4096;
    FileBytes rows = {0};
    FileBytes samples;
    for (std::uint32_t x = 0; x < width; ++x) {
        const std::uint32_t sample = x * 16 + x % 16;
        appendBig(rows, sample, 2);
        appendLittle(samples, sample, 2);
    }
    const Reading png = readBytes(pngFile(width, 1, 16, 0, rows));
    EXPECT_EQ(png.bitsPerSample, 16);
    const Raster tiff =
        pictureIn(tiffFile({{256, width}, {257, 1}, {258, 16}, {259, 1}, {262, 1}, {277, 1}, {278, 1}}, samples));
    for (int x = 0; x < width; ++x) {
        const auto expected = static_cast<std::uint32_t>(std::lround((x * 16 + x % 16) / 65535.0 * 255));
        ASSERT_EQ(png.picture.at(x, 0), grey(expected)) << x;
        ASSERT_EQ(tiff.at(x, 0), grey(expected)) << x;
    }
    // Colour and alpha, too: 0.5 below and above what 8 bits hold.
    const Raster colour = pictureIn(pngFile(1, 1, 16, 6, {0, 0x12, 0xFF, 0x34, 0x00, 0xFF, 0x80, 0x80, 0xFF}));
    EXPECT_EQ(colour.at(0, 0), 0x801334FFU);
}

TEST(Samples, ATransparentColourBecomesAlpha) {
    const Raster read = pictureIn(pngFile(2, 1, 8, 2, {0, 1, 2, 3, 4, 5, 6}, {{"tRNS", {0, 4, 0, 5, 0, 6}}}));
    EXPECT_EQ(read.at(0, 0), 0xFF010203U);
    EXPECT_EQ(read.at(1, 0), 0x00040506U);
}

TEST(Samples, TwoLevelTiffsAreReadTheRightWayRound) {
    for (const std::uint32_t whiteIsZero : {1U, 0U}) {  // 0: white is zero, 1: black is zero
        const Raster read = pictureIn(
            tiffFile({{256, 8}, {257, 1}, {258, 1}, {259, 1}, {262, whiteIsZero}, {277, 1}, {278, 1}}, {0xF0}));
        const std::uint32_t bitSet = whiteIsZero == 1 ? 255 : 0;
        EXPECT_EQ(read.at(0, 0), grey(bitSet));
        EXPECT_EQ(read.at(7, 0), grey(255 - bitSet));
    }
}

TEST(Samples, BothKindsOfTiffAlphaGiveTheSamePicture) {
    constexpr std::uint32_t extraSamples = 338;
    const auto file = [&](std::uint32_t kind, const FileBytes& samples) {
        return tiffFile({{256, 2}, {257, 1}, {258, 8}, {259, 1}, {262, 1}, {277, 2}, {278, 1}, {extraSamples, kind}},
                        samples);
    };
    const Raster separate = pictureIn(file(2, {200, 101, 30, 255}));
    EXPECT_EQ(separate.at(0, 0), (grey(200) & 0xFFFFFF) | 101U << 24);
    EXPECT_EQ(separate.at(1, 0), grey(30));
    const Raster multipliedIn = pictureIn(file(1, {79, 101, 30, 255}));
    EXPECT_EQ(multipliedIn.at(0, 0), (grey(199) & 0xFFFFFF) | 101U << 24);
    EXPECT_EQ(multipliedIn.at(1, 0), grey(30));
}

TEST(Samples, CmykBecomesSrgb) {
    // Four by two pixels of cyan 0, magenta 100, yellow 200 and black 50, stored the other way round as usual.
    const Reading read = readBytes(
        fromHex("ffd8ffee000e41646f626500640000000000ffdb00430001010101010101010101010101010101010101010101010101"
                "010101010101010101010101010101010101010101010101010101010101010101010101010101ffc000140800020004"
                "044311004d11005911004b1100ffc4001500010100000000000000000000000000000a08ffc400141001000000000000"
                "00000000000000000000ffda000e0443004d0059004b00003f007f0b606dc9a1ffd9"));
    ASSERT_EQ(read.message, "");
    ASSERT_EQ(read.picture.width, 4);
    EXPECT_FALSE(read.picture.hasAlpha);
    // An orange, as inks of a usual press make it.
    const std::uint32_t pixel = read.picture.at(3, 1);
    EXPECT_NEAR(pixel >> 16 & 255, 205, 25);
    EXPECT_NEAR(pixel >> 8 & 255, 124, 25);
    EXPECT_NEAR(pixel & 255, 44, 25);
    for (const std::uint32_t other : read.picture.pixels) EXPECT_EQ(other, pixel);
}

TEST(Samples, CmykTiffsBecomeSrgb) {
    FileBytes samples = {0, 0, 0, 0, 0, 0, 0, 255};
    const Raster read =
        pictureIn(tiffFile({{256, 2}, {257, 1}, {258, 8}, {259, 1}, {262, 5}, {277, 4}, {278, 1}, {332, 1}}, samples));
    EXPECT_FALSE(read.hasAlpha);
    for (int shift = 0; shift < 24; shift += 8) {
        EXPECT_GE(read.at(0, 0) >> shift & 255, 250U);  // paper
        EXPECT_LE(read.at(1, 0) >> shift & 255, 60U);   // black ink
    }
}

TEST(Samples, OfUnsupportedKindsAreCalledSo) {
    constexpr std::uint32_t sampleFormat = 339;
    const FileBytes floats(16, 0);
    const std::string message =
        readBytes(tiffFile({{256, 2}, {257, 2}, {258, 32}, {259, 1}, {262, 1}, {277, 1}, {278, 2}, {sampleFormat, 3}},
                           floats))
            .message;
    EXPECT_NE(message.find("not supported"), std::string::npos) << message;
    EXPECT_EQ(message.find("damaged"), std::string::npos) << message;
    const std::string compressed =
        readBytes(tiffFile({{256, 2}, {257, 2}, {258, 8}, {259, 34887}, {262, 1}, {277, 1}, {278, 2}}, floats)).message;
    EXPECT_EQ(compressed.find('\n'), std::string::npos) << compressed;
    EXPECT_NE(compressed, "");
}

TEST(Samples, HeicIsRead) {
    ASSERT_EQ(readBytes(written(flagPicture(), "avif")).message, "");  // starts libvips with its AVIF and HEIC part
    VipsImage* black = nullptr;
    VipsImage* image = nullptr;
    ASSERT_EQ(vips_black(&black, 64, 48, "bands", 3, nullptr), 0);
    ASSERT_EQ(vips_copy(black, &image, "interpretation", VIPS_INTERPRETATION_sRGB, nullptr), 0);
    VipsImage* drawn = vips_image_copy_memory(image);
    double orange[] = {255, 128, 0};
    ASSERT_EQ(vips_draw_rect(drawn, orange, 3, 0, 0, 64, 48, "fill", TRUE, nullptr), 0);
    void* data = nullptr;
    std::size_t size = 0;
    const int failed =
        vips_heifsave_buffer(drawn, &data, &size, "compression", VIPS_FOREIGN_HEIF_COMPRESSION_HEVC, "Q", 100, nullptr);
    const FileBytes file(static_cast<std::uint8_t*>(data), static_cast<std::uint8_t*>(data) + size);
    g_free(data);
    for (VipsImage* used : {black, image, drawn}) g_object_unref(used);
    if (failed != 0) GTEST_SKIP() << "libheif has no encoder for HEIC here";

    const Reading reading = readBytes(file);
    ASSERT_EQ(reading.message, "");
    EXPECT_EQ(reading.format, "HEIC");
    EXPECT_EQ(reading.bitsPerSample, 8);
    EXPECT_LE(largestDifference(reading.picture, raster(64, 48, [](int, int) { return 0xFFFF8000; })), 4);
    for (std::size_t length = 1; length < file.size(); length += 7)
        EXPECT_NE(readBytes(FileBytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length))).message, "");
}

TEST(Samples, TenAndTwelveBitsOfAvifAreRounded) {
    for (const int bits : {10, 12}) {
        const int largest = (1 << bits) - 1;
        const Reading reading = readBytes(deepAvif(bits));
        ASSERT_EQ(reading.message, "");
        EXPECT_EQ(reading.bitsPerSample, bits);
        for (int x = 0; x < reading.picture.width; ++x) {
            const auto sample = static_cast<double>(std::min(x * 5, largest));
            ASSERT_EQ(reading.picture.at(x, 0), grey(static_cast<std::uint32_t>(std::lround(sample / largest * 255))))
                << x;
        }
    }
}

}  // namespace pxkfiles::test
