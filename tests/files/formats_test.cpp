// Each format: what is written comes back, in the way that the options say.
#include <gtest/gtest.h>

#include <string>

#include "files/files_module.h"
#include "files/sample_files.h"

namespace pxkfiles::test {

namespace {

WriteOptions lossless() {
    WriteOptions options;
    options.lossless = true;
    return options;
}

WriteOptions qualityOf(int quality) {
    WriteOptions options;
    options.quality = quality;
    return options;
}

WriteOptions compressionOf(int compression) {
    WriteOptions options;
    options.compression = compression;
    return options;
}

Raster colours(int count) {
    return raster(16, 17, [=](int x, int y) {
        const int index = (x + 16 * y) % count;
        return 0xFF000000 | static_cast<std::uint32_t>((index & 0xFF) << 16 | (255 - (index & 0xFF)) << 8 | index >> 8);
    });
}

}  // namespace

TEST(Formats, LosslessOnesKeepEveryOpaquePixel) {
    for (const char* format : {"png", "bmp", "webp", "tif", "tiff", "avif"}) {
        for (const Raster& picture :
             {noisePicture(), noisePicture(1, 1), noisePicture(1, 300), noisePicture(300, 1), noisePicture(64, 200)}) {
            const Reading reading = readBytes(written(picture, format, lossless()));
            EXPECT_EQ(largestDifference(picture, reading.picture), 0) << format << " " << picture.width;
            EXPECT_FALSE(reading.picture.hasAlpha) << format;
        }
    }
    for (const char* format : {"png", "bmp", "tif"})
        EXPECT_EQ(largestDifference(noisePicture(), pictureIn(written(noisePicture(), format))), 0) << format;
}

TEST(Formats, LossyOnesStayCloseOnSmoothPictures) {
    for (const char* format : {"jpg", "jpeg", "webp", "avif"})
        EXPECT_LE(largestDifference(smoothPicture(), pictureIn(written(smoothPicture(), format))), 24) << format;
}

TEST(Formats, AlphaIsKeptInEightBits) {
    for (const char* format : {"png", "tif", "avif", "bmp"}) {
        const Raster read = pictureIn(written(alphaPicture(), format, lossless()));
        EXPECT_TRUE(read.hasAlpha) << format;
        EXPECT_EQ(largestDifference(alphaPicture(), read), 0) << format;
    }
    // WebP may change the colour of what cannot be seen.
    Raster read = pictureIn(written(alphaPicture(), "webp", lossless()));
    EXPECT_EQ(read.at(0, 0) >> 24, 0U);
    read.at(0, 0) = alphaPicture().at(0, 0);
    EXPECT_EQ(largestDifference(alphaPicture(), read), 0);
}

TEST(Formats, JpegLeavesAlphaOutAndKeepsTheColours) {
    Raster picture = smoothPicture();
    for (std::uint32_t& pixel : picture.pixels) pixel &= 0x00FFFFFF;
    picture.hasAlpha = true;
    const Raster read = pictureIn(written(picture, "jpg"));
    EXPECT_FALSE(read.hasAlpha);
    EXPECT_LE(largestDifference(smoothPicture(), read), 24);
}

TEST(Formats, OpaquePicturesAreWrittenWithoutAnAlphaChannel) {
    constexpr std::size_t colourTypeAt = 25;
    Raster opaque = noisePicture();
    opaque.hasAlpha = true;
    EXPECT_EQ(written(opaque, "png")[colourTypeAt], 2);
    EXPECT_EQ(written(alphaPicture(), "png")[colourTypeAt], 6);
    Raster withoutAlpha = alphaPicture();
    withoutAlpha.hasAlpha = false;
    EXPECT_EQ(written(withoutAlpha, "png")[colourTypeAt], 2);
}

TEST(Formats, GifIsExactUpTo256Colours) {
    EXPECT_EQ(largestDifference(flagPicture(), pictureIn(written(flagPicture(), "gif"))), 0);
    for (const int count : {1, 2, 3, 4, 5, 16, 17, 255, 256})
        EXPECT_EQ(largestDifference(colours(count), pictureIn(written(colours(count), "gif", lossless()))), 0) << count;
    EXPECT_GT(largestDifference(colours(257), pictureIn(written(colours(257), "gif"))), 0);
    EXPECT_LE(largestDifference(smoothPicture(), pictureIn(written(smoothPicture(), "gif"))), 64);
    EXPECT_NE(messageOfWriting(colours(257), "gif", lossless()).find("more than 256 colours"), std::string::npos);
}

TEST(Formats, GifKnowsTransparentAndOpaqueOnly) {
    const Raster read = pictureIn(written(alphaPicture(), "gif"));
    EXPECT_TRUE(read.hasAlpha);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) EXPECT_EQ(read.at(x, y) >> 24, x + 16 * y < 128 ? 0U : 255U) << x << ", " << y;

    Raster exact = flagPicture();
    exact.at(3, 4) = 0x00FFFFFF;
    exact.hasAlpha = true;
    const Raster flag = pictureIn(written(exact, "gif"));
    EXPECT_EQ(flag.at(3, 4) >> 24, 0U);
    EXPECT_EQ(flag.at(4, 3), exact.at(4, 3));
    EXPECT_EQ(flag.at(32, 20), exact.at(32, 20));
}

TEST(Formats, AreDetectedFromTheContent) {
    const std::vector<std::string> names = {"PNG", "JPEG", "GIF", "BMP", "WebP", "TIFF", "AVIF"};
    for (std::size_t index = 0; index < formats().size(); ++index) {
        const Reading reading = readBytes(written(flagPicture(), formats()[index]));
        EXPECT_EQ(reading.format, names[index]);
        EXPECT_EQ(reading.message, "");
        EXPECT_EQ(reading.bitsPerSample, 8);
        EXPECT_EQ(reading.pages, 1);
    }
}

TEST(Formats, ExtensionsWorkInAnyLetterCase) {
    for (const char* extension : {"PNG", ".Png", "Jpg", ".JPEG", "GiF", "bMP", "WebP", "TIF", "TIFF", "AVIF"})
        EXPECT_LE(largestDifference(smoothPicture(), pictureIn(written(smoothPicture(), extension))), 64) << extension;
}

TEST(Formats, UnknownOnesAreRefusedWithTheList) {
    for (const char* format : {"jp2", "heic", "", ".", "png.bak"})
        EXPECT_NE(messageOfWriting(smoothPicture(), format)
                      .find(".png, .jpg, .jpeg, .gif, .bmp, .webp, .tif, .tiff or .avif"),
                  std::string::npos)
            << format;
    EXPECT_NE(readBytes({'h', 'e', 'l', 'l', 'o'}).message.find("PNG, JPEG, GIF, BMP, WebP, TIFF, AVIF or HEIC"),
              std::string::npos);
    EXPECT_NE(readBytes({}).message.find("empty"), std::string::npos);
}

TEST(Formats, HeaderOnlyLeavesThePixelsOut) {
    ReadOptions options;
    options.headerOnly = true;
    for (const char* format : formats()) {
        const Reading reading = readBytes(written(flagPicture(), format), options);
        EXPECT_EQ(reading.message, "") << format;
        EXPECT_EQ(reading.picture.width, 33) << format;
        EXPECT_EQ(reading.picture.height, 21) << format;
        EXPECT_TRUE(reading.picture.pixels.empty()) << format;
    }
}

TEST(WriteOptions, QualityTradesSizeForLikeness) {
    for (const char* format : {"jpg", "webp", "avif"}) {
        const FileBytes worst = written(noisePicture(), format, qualityOf(1));
        const FileBytes best = written(noisePicture(), format, qualityOf(100));
        const FileBytes usual = written(noisePicture(), format);
        EXPECT_LT(worst.size(), usual.size()) << format;
        EXPECT_LT(usual.size(), best.size()) << format;
        EXPECT_LT(largestDifference(noisePicture(), pictureIn(best)),
                  largestDifference(noisePicture(), pictureIn(worst)))
            << format;
    }
}

TEST(WriteOptions, EveryQualityAndOddSizeWorks) {
    for (const char* format : {"jpg", "webp", "avif"})
        for (int quality = 1; quality <= 100; quality += quality < 85 ? 12 : 1)
            for (const Raster& picture : {alphaPicture(), smoothPicture(3, 5), flagPicture()})
                EXPECT_EQ(pictureIn(written(picture, format, qualityOf(quality))).width, picture.width) << format;
}

TEST(WriteOptions, QualityHasAStatedDefault) {
    EXPECT_EQ(written(noisePicture(), "jpg"), written(noisePicture(), "jpg", qualityOf(90)));
    EXPECT_EQ(written(noisePicture(), "webp"), written(noisePicture(), "webp", qualityOf(80)));
    EXPECT_EQ(written(noisePicture(), "avif"), written(noisePicture(), "avif", qualityOf(60)));
}

TEST(WriteOptions, CompressionTradesTimeForSize) {
    const Raster picture = smoothPicture(300, 200);
    EXPECT_LT(written(picture, "png", compressionOf(9)).size(), written(picture, "png", compressionOf(1)).size());
    EXPECT_GT(written(picture, "png", compressionOf(0)).size(), std::size_t{180000});
    EXPECT_GT(written(picture, "tif", compressionOf(0)).size(), std::size_t{180000});
    EXPECT_LT(written(picture, "tif").size(), std::size_t{180000} / 2);
    for (int compression = 0; compression <= 9; ++compression)
        for (const char* format : {"png", "tif"})
            EXPECT_EQ(largestDifference(picture, pictureIn(written(picture, format, compressionOf(compression)))), 0);
}

TEST(WriteOptions, ThatAreOutOfRangeOrDoNotBelongAreRefused) {
    const auto refusal = [](const char* format, const WriteOptions& options) {
        return messageOfWriting(flagPicture(), format, options);
    };
    EXPECT_NE(refusal("jpg", qualityOf(101)).find("1 to 100"), std::string::npos);
    EXPECT_NE(refusal("jpg", qualityOf(-1)).find("1 to 100"), std::string::npos);
    EXPECT_NE(refusal("png", compressionOf(10)).find("0 to 9"), std::string::npos);
    EXPECT_NE(refusal("png", compressionOf(-2)).find("0 to 9"), std::string::npos);
    for (const char* format : {"png", "gif", "bmp", "tif"})
        EXPECT_NE(refusal(format, qualityOf(50)).find("JPEG, WebP and AVIF"), std::string::npos) << format;
    for (const char* format : {"jpg", "gif", "bmp", "webp", "avif"})
        EXPECT_NE(refusal(format, compressionOf(5)).find("PNG and TIFF"), std::string::npos) << format;
    EXPECT_NE(refusal("jpg", lossless()).find("never lossless"), std::string::npos);
    WriteOptions both = lossless();
    both.quality = 50;
    EXPECT_NE(refusal("webp", both).find("no quality"), std::string::npos);
}

}  // namespace pxkfiles::test
