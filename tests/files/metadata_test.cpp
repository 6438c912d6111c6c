// Profile, EXIF and XMP go from the file that is read to the one that is written.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "files/files_module.h"
#include "files/sample_files.h"

namespace pxkfiles::test {

namespace {

FileBytes xmp() {
    FileBytes bytes;
    append(bytes, "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF/></x:xmpmeta>");
    return bytes;
}

Raster describedPicture() {
    Raster picture = flagPicture();
    picture.profile = rgbProfile("The tests' own RGB");
    picture.exif = exifWith(1);
    picture.xmp = xmp();
    return picture;
}

bool contains(const FileBytes& bytes, std::string_view text) {
    return std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()).find(text) !=
           std::string_view::npos;
}

WriteOptions optionsOf(const std::string& format) {
    WriteOptions options;
    options.lossless = format == "avif";
    return options;
}

}  // namespace

TEST(Metadata, ProfilesAreKeptByteForByte) {
    for (const char* format : {"png", "jpg", "bmp", "webp", "tif", "avif"}) {
        for (const WriteOptions& options : {WriteOptions{}, optionsOf(format)}) {
            const Reading reading = readBytes(written(describedPicture(), format, options));
            EXPECT_EQ(reading.picture.profile, describedPicture().profile) << format;
            EXPECT_EQ(reading.profileName, "The tests' own RGB") << format;
        }
    }
}

TEST(Metadata, ProfilesLeaveThePixelsAlone) {
    for (const char* format : {"png", "bmp", "tif"})
        EXPECT_EQ(largestDifference(flagPicture(), pictureIn(written(describedPicture(), format))), 0) << format;
}

TEST(Metadata, XmpIsKeptByteForByte) {
    for (const char* format : {"png", "jpg", "webp", "tif", "avif"})
        for (const WriteOptions& options : {WriteOptions{}, optionsOf(format)})
            EXPECT_EQ(readBytes(written(describedPicture(), format, options)).picture.xmp, xmp()) << format;
}

TEST(Metadata, ExifIsKeptWithTheNewSize) {
    for (const char* format : {"png", "jpg", "webp", "avif"}) {
        for (const WriteOptions& options : {WriteOptions{}, optionsOf(format)}) {
            const FileBytes exif = readBytes(written(describedPicture(), format, options)).picture.exif;
            EXPECT_TRUE(contains(exif, "Test camera 1")) << format;
            EXPECT_TRUE(exif.size() > 2 && exif[0] == 'I' && exif[1] == 'I') << format;
            // The picture's width and height, as 16 bits or 32, in place of 4000 and 3000.
            const auto value = [&](std::uint32_t tag) {
                FileBytes start;
                appendLittle(start, tag, 2);
                const std::size_t at = find(exif, {reinterpret_cast<const char*>(start.data()), 2});
                return exif.size() > at + 9 ? exif[at + 8] + exif[at + 9] * 256 : -1;
            };
            EXPECT_EQ(value(0xA002), 33) << format;
            EXPECT_EQ(value(0xA003), 21) << format;
        }
    }
}

TEST(Metadata, ExifIsReadAsItIsStored) {
    const FileBytes jpeg = written(smoothPicture(), "jpg");
    for (const bool bigEndian : {false, true})
        EXPECT_EQ(readBytes(jpegWithExif(jpeg, exifWith(6, bigEndian))).picture.exif, exifWith(6, bigEndian));
}

TEST(Metadata, TheThumbnailIsLeftOut) {
    // A second directory, which describes a thumbnail.
    FileBytes exif = exifWith(1);
    const std::size_t linkAt = 8 + 2 + 3 * 12;
    const auto secondAt = static_cast<std::uint8_t>(exif.size());
    exif[linkAt] = secondAt;
    append(exif, FileBytes{1, 0, 0x03, 0x01, 3, 0, 1, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0});
    Raster picture = flagPicture();
    picture.exif = exif;
    WriteOptions lossless;
    lossless.lossless = true;
    const FileBytes kept = readBytes(written(picture, "avif", lossless)).picture.exif;
    ASSERT_EQ(kept.size(), exif.size());
    EXPECT_EQ(kept[linkAt], 0);
    EXPECT_NE(readBytes(written(picture, "jpg")).picture.exif, FileBytes());
}

TEST(Metadata, StripLeavesEverythingOut) {
    WriteOptions options;
    options.strip = true;
    for (const char* format : formats()) {
        const Reading reading = readBytes(written(describedPicture(), format, options));
        EXPECT_EQ(reading.picture.profile, FileBytes()) << format;
        EXPECT_EQ(reading.picture.exif, FileBytes()) << format;
        EXPECT_EQ(reading.picture.xmp, FileBytes()) << format;
        EXPECT_EQ(reading.profileName, "") << format;
    }
}

TEST(Metadata, NothingIsMadeUp) {
    for (const char* format : formats()) {
        const Reading reading = readBytes(written(flagPicture(), format));
        EXPECT_EQ(reading.picture.profile, FileBytes()) << format;
        EXPECT_EQ(reading.picture.exif, FileBytes()) << format;
        EXPECT_EQ(reading.picture.xmp, FileBytes()) << format;
    }
}

TEST(Metadata, ForeignBytesInItDoNotStopWriting) {
    Raster picture = flagPicture();
    picture.profile = {1, 2, 3};
    picture.exif = {'n', 'o', ' ', 'E', 'X', 'I', 'F'};
    picture.xmp = {0, 1, 2, 0};
    for (const char* format : formats()) EXPECT_LE(largestDifference(picture, pictureIn(written(picture, format))), 80);
    picture.exif = exifWith(1);
    picture.exif.resize(20);
    for (const char* format : formats()) EXPECT_LE(largestDifference(picture, pictureIn(written(picture, format))), 80);
    picture.exif = exifWith(1);
    picture.exif.resize(std::size_t{3} << 20);
    picture.xmp.assign(std::size_t{3} << 20, 'x');
    for (const char* format : formats()) EXPECT_LE(largestDifference(picture, pictureIn(written(picture, format))), 80);
}

TEST(Metadata, DensityIsKept) {
    Raster picture = flagPicture();
    picture.horizontalDensity = 300 / 25.4;
    picture.verticalDensity = 150 / 25.4;
    for (const char* format : {"png", "bmp", "tif"}) {
        const Raster read = pictureIn(written(picture, format));
        EXPECT_NEAR(read.horizontalDensity, picture.horizontalDensity, 0.001) << format;
        EXPECT_NEAR(read.verticalDensity, picture.verticalDensity, 0.001) << format;
    }
}

}  // namespace pxkfiles::test
