// Pictures that say how they are to be turned come upright, whichever format says it.
#include <gtest/gtest.h>

#include <utility>

#include "files/files_module.h"
#include "files/sample_files.h"

namespace pxkfiles::test {

namespace {

// Where the upright picture's pixel lies in the stored one, by the definition of each orientation.
std::pair<int, int> storedPlace(int orientation, int x, int y, int width, int height) {
    switch (orientation) {
        case 2:
            return {width - 1 - x, y};
        case 3:
            return {width - 1 - x, height - 1 - y};
        case 4:
            return {x, height - 1 - y};
        case 5:
            return {y, x};
        case 6:
            return {y, height - 1 - x};
        case 7:
            return {width - 1 - y, height - 1 - x};
        case 8:
            return {width - 1 - y, x};
        default:
            return {x, y};
    }
}

Raster upright(const Raster& stored, int orientation) {
    const bool transposed = orientation >= 5;
    const int width = transposed ? stored.height : stored.width;
    const int height = transposed ? stored.width : stored.height;
    return raster(width, height, [&](int x, int y) {
        const auto [storedX, storedY] = storedPlace(orientation, x, y, stored.width, stored.height);
        return stored.at(storedX, storedY);
    });
}

constexpr int turnedWidth = 70;  // more than one block, strip and tile
constexpr int turnedHeight = 130;

void expectUpright(const FileBytes& file, const Raster& stored, int orientation, bool statesIt, const char* format) {
    const Reading reading = readBytes(file);
    EXPECT_EQ(reading.message, "") << format << " " << orientation;
    EXPECT_EQ(largestDifference(reading.picture, upright(stored, orientation)), 0) << format << " " << orientation;
    EXPECT_EQ(reading.orientation, statesIt ? orientation : 1) << format;
    ReadOptions headerOnly;
    headerOnly.headerOnly = true;
    EXPECT_EQ(readBytes(file, headerOnly).picture.width, reading.picture.width) << format << " " << orientation;
}

}  // namespace

TEST(Orientation, TurnsEveryFormat) {
    WriteOptions lossless;
    lossless.lossless = true;
    const Raster picture = noisePicture(turnedWidth, turnedHeight);
    const FileBytes jpeg = written(smoothPicture(turnedWidth, turnedHeight), "jpg");
    const Raster jpegPicture = pictureIn(jpeg);
    const FileBytes webp = written(picture, "webp", lossless);
    FileBytes rows;
    FileBytes samples;
    for (int y = 0; y < turnedHeight; ++y) {
        rows.push_back(0);
        for (int x = 0; x < turnedWidth; ++x) {
            appendBig(rows, picture.at(x, y) & 0xFFFFFF, 3);
            appendBig(samples, picture.at(x, y) & 0xFFFFFF, 3);
        }
    }
    for (int orientation = 1; orientation <= 8; ++orientation) {
        for (const bool bigEndian : {false, true}) {
            const FileBytes exif = exifWith(orientation, bigEndian);
            expectUpright(jpegWithExif(jpeg, exif), jpegPicture, orientation, true, "JPEG");
            expectUpright(webpWithExif(webp, exif, turnedWidth, turnedHeight), picture, orientation, true, "WebP");
            expectUpright(pngFile(turnedWidth, turnedHeight, 8, 2, rows, {{"eXIf", exif}}), picture, orientation, true,
                          "PNG");
            expectUpright(pngFile(turnedWidth, turnedHeight, 8, 2, rows, {}, {{"eXIf", exif}}), picture, orientation,
                          true, "PNG with late EXIF");
        }
        const auto turn = static_cast<std::uint32_t>(orientation);
        expectUpright(tiffFile({{256, turnedWidth},
                                {257, turnedHeight},
                                {258, 8},
                                {259, 1},
                                {262, 2},
                                {274, turn},
                                {277, 3},
                                {278, turnedHeight}},
                               samples),
                      picture, orientation, true, "TIFF");
        expectUpright(turnedAvif(picture, orientation), picture, orientation, false, "AVIF");
    }
}

TEST(Orientation, OutOfRangeIsIgnored) {
    const FileBytes jpeg = written(smoothPicture(), "jpg");
    for (const int orientation : {0, 9, 65535}) {
        const Reading reading = readBytes(jpegWithExif(jpeg, exifWith(orientation)));
        EXPECT_EQ(reading.orientation, 1);
        EXPECT_EQ(reading.picture.width, 37);
    }
}

TEST(Orientation, IsResetWhenWritten) {
    Raster picture = smoothPicture();
    picture.exif = exifWith(6);
    for (const char* format : {"png", "jpg", "webp", "avif"}) {
        const Reading reading = readBytes(written(picture, format));
        EXPECT_EQ(reading.orientation, 1) << format;
        EXPECT_EQ(reading.picture.width, 37) << format;
        EXPECT_FALSE(reading.picture.exif.empty()) << format;
    }
    EXPECT_EQ(readBytes(written(picture, "tif")).orientation, 1);
}

}  // namespace pxkfiles::test
