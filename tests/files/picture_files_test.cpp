// Picture files: what is written comes back, formats are told by content, and no file, however broken, does harm.

#include "files/picture_files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using pxkhost::PictureFileError;
using pxkhost::readPictureFile;
using pxkhost::writePictureFile;

using Bytes = std::vector<std::uint8_t>;

struct DestroyPicture {
    void operator()(gdImagePtr picture) const { gdImageDestroy(picture); }
};
using Picture = std::unique_ptr<gdImage, DestroyPicture>;

// A pixel as gd keeps it: 7 bits of alpha, 0 opaque, then red, green and blue.
constexpr int pixelOf(int red, int green, int blue, int alpha = 0) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

Picture makePicture(int width, int height, const std::function<int(int, int)>& pixelAt) {
    Picture picture(gdImageCreateTrueColor(width, height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) picture->tpixels[y][x] = pixelAt(x, y);
    return picture;
}

Picture smoothPicture(int width = 37, int height = 29) {
    return makePicture(width, height, [&](int x, int y) {
        return pixelOf(255 * x / width, 255 * y / height, 128 + 100 * (x - y) / (width + height));
    });
}

Picture noisePicture(int width = 37, int height = 29) {
    std::mt19937 random(7);
    return makePicture(width, height, [&](int, int) { return static_cast<int>(random() & 0xFFFFFF); });
}

// Every alpha that gd knows, over changing colours.
Picture alphaPicture() {
    return makePicture(16, 8, [](int x, int y) { return pixelOf(x * 16, y * 30, 200, x + 16 * y); });
}

Picture flagPicture() {
    constexpr std::array<int, 3> colours = {pixelOf(201, 33, 17), pixelOf(254, 255, 253), pixelOf(3, 60, 141)};
    return makePicture(33, 21, [&](int x, int) { return colours[static_cast<std::size_t>(x) / 11]; });
}

int largestDifference(const gdImage& first, const gdImage& second) {
    EXPECT_EQ(gdImageSX(&first), gdImageSX(&second));
    EXPECT_EQ(gdImageSY(&first), gdImageSY(&second));
    int largest = 0;
    for (int y = 0; y < first.sy; ++y) {
        for (int x = 0; x < first.sx; ++x) {
            for (int shift = 0; shift <= 24; shift += 8) {
                const int one = first.tpixels[y][x] >> shift & 0xFF;
                const int other = second.tpixels[y][x] >> shift & 0xFF;
                largest = std::max(largest, std::abs(one - other));
            }
        }
    }
    return largest;
}

Bytes contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void putContent(const fs::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void appendLittle(Bytes& bytes, std::uint32_t value, int count) {
    for (int index = 0; index < count; ++index) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * index));
}

void appendBig(Bytes& bytes, std::uint32_t value, int count) {
    for (int index = count - 1; index >= 0; --index) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * index));
}

void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

void append(Bytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

// ---- small PNG, BMP and TIFF files by hand, independent of the libraries that read them

std::uint32_t crc32(const Bytes& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

void appendChunk(Bytes& file, std::string_view name, const Bytes& data) {
    Bytes checked;
    append(checked, name);
    append(checked, data);
    appendBig(file, static_cast<std::uint32_t>(data.size()), 4);
    append(file, checked);
    appendBig(file, crc32(checked), 4);
}

// `rows` are the filtered rows, each with its leading filter byte, together less than 64 KiB.
Bytes pngFile(std::uint32_t width, std::uint32_t height, int depth, int colourType, const Bytes& rows,
              const std::vector<std::pair<std::string, Bytes>>& chunks = {}) {
    Bytes header;
    appendBig(header, width, 4);
    appendBig(header, height, 4);
    append(header, Bytes{static_cast<std::uint8_t>(depth), static_cast<std::uint8_t>(colourType), 0, 0, 0});

    Bytes stored = {0x78, 0x01, 0x01};
    appendLittle(stored, static_cast<std::uint32_t>(rows.size()), 2);
    appendLittle(stored, ~static_cast<std::uint32_t>(rows.size()), 2);
    append(stored, rows);
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const std::uint8_t byte : rows) {
        low = (low + byte) % 65521;
        high = (high + low) % 65521;
    }
    appendBig(stored, high << 16 | low, 4);

    Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    appendChunk(file, "IHDR", header);
    for (const auto& [name, data] : chunks) appendChunk(file, name, data);
    appendChunk(file, "IDAT", stored);
    appendChunk(file, "IEND", {});
    return file;
}

struct BmpHeader {
    std::uint32_t headerSize = 40;
    std::int32_t width = 2;
    std::int32_t height = 2;
    std::uint32_t depth = 24;
    std::uint32_t compression = 0;
    Bytes behindHeader{};  // the rest of a long header or the masks, then the palette
};

Bytes bmpFile(const BmpHeader& header, const Bytes& rows) {
    Bytes info;
    appendLittle(info, header.headerSize, 4);
    appendLittle(info, static_cast<std::uint32_t>(header.width), 4);
    appendLittle(info, static_cast<std::uint32_t>(header.height), 4);
    appendLittle(info, 1, 2);
    appendLittle(info, header.depth, 2);
    appendLittle(info, header.compression, 4);
    info.resize(40);
    append(info, header.behindHeader);
    Bytes file = {'B', 'M'};
    appendLittle(file, static_cast<std::uint32_t>(14 + info.size() + rows.size()), 4);
    appendLittle(file, 0, 4);
    appendLittle(file, static_cast<std::uint32_t>(14 + info.size()), 4);
    append(file, info);
    append(file, rows);
    return file;
}

struct TiffTag {
    std::uint32_t tag;
    std::uint32_t value;
    std::uint32_t type = 3;  // 16 bits; 4 is 32 bits
};

// One strip of plain samples behind the directory.
Bytes tiffFile(std::vector<TiffTag> tags, const Bytes& samples) {
    constexpr std::uint32_t stripOffset = 273;
    constexpr std::uint32_t stripSize = 279;
    tags.push_back({stripOffset, 0, 4});
    tags.push_back({stripSize, static_cast<std::uint32_t>(samples.size()), 4});
    std::sort(tags.begin(), tags.end(), [](const TiffTag& one, const TiffTag& other) { return one.tag < other.tag; });
    Bytes file = {'I', 'I', '*', 0, 8, 0, 0, 0};
    const auto samplesAt = static_cast<std::uint32_t>(file.size() + 2 + 12 * tags.size() + 4);
    appendLittle(file, static_cast<std::uint32_t>(tags.size()), 2);
    for (const TiffTag& tag : tags) {
        appendLittle(file, tag.tag, 2);
        appendLittle(file, tag.type, 2);
        appendLittle(file, 1, 4);
        appendLittle(file, tag.tag == stripOffset ? samplesAt : tag.value, 4);
    }
    appendLittle(file, 0, 4);
    append(file, samples);
    return file;
}

Bytes fromHex(std::string_view hex) {
    Bytes bytes;
    for (std::size_t at = 0; at + 1 < hex.size(); at += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(std::string(hex.substr(at, 2)), nullptr, 16)));
    return bytes;
}

// ---- the tests

class PictureFiles : public testing::Test {
  public:
    ~PictureFiles() override { fs::remove_all(folder_); }
    PictureFiles(const PictureFiles&) = delete;
    PictureFiles& operator=(const PictureFiles&) = delete;

  protected:
    PictureFiles() {
        std::string pattern = (fs::temp_directory_path() / "picture-files-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }

    fs::path place(const std::string& name) const { return folder_ / name; }

    Picture roundTrip(const Picture& picture, const std::string& name) const {
        writePictureFile(picture.get(), place(name));
        return Picture(readPictureFile(place(name)));
    }

    Bytes encoded(const Picture& picture, const std::string& ending) const {
        const fs::path path = place("encoded" + ending);
        writePictureFile(picture.get(), path);
        return contentOf(path);
    }

    Picture readBytes(const Bytes& bytes) const {
        putContent(place("bytes"), bytes);
        return Picture(readPictureFile(place("bytes")));
    }

    // The message of reading a file, which must be one line with the file's name and without a full stop.
    static std::string messageOfReading(const fs::path& path) {
        return messageOf(path, [&] { const Picture picture(readPictureFile(path)); });
    }

    std::string messageOfReadingBytes(const Bytes& bytes) const {
        putContent(place("bytes"), bytes);
        return messageOfReading(place("bytes"));
    }

    static std::string messageOfWriting(const Picture& picture, const fs::path& path) {
        return messageOf(path, [&] { writePictureFile(picture.get(), path); });
    }

    std::vector<std::string> filesInFolder() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_)) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

  private:
    static std::string messageOf(const fs::path& path, const std::function<void()>& action) {
        try {
            action();
        } catch (const PictureFileError& error) {
            std::string message = error.what();
            EXPECT_NE(message.find(path.string()), std::string::npos) << message;
            EXPECT_EQ(message.find('\n'), std::string::npos) << message;
            EXPECT_NE(message.back(), '.') << message;
            return message;
        }
        ADD_FAILURE() << path << " raised no error";
        return "";
    }

    fs::path folder_;
};

const std::vector<std::string>& endingsOfFormats() {
    static const std::vector<std::string> endings = {".png", ".jpg", ".gif", ".bmp", ".webp", ".tif", ".avif"};
    return endings;
}

TEST_F(PictureFiles, LosslessFormatsKeepEveryOpaquePixel) {
    for (const std::string ending : {".png", ".bmp", ".webp", ".tif", ".tiff", ".avif"}) {
        EXPECT_EQ(largestDifference(*noisePicture(), *roundTrip(noisePicture(), "noise" + ending)), 0) << ending;
        EXPECT_EQ(largestDifference(*noisePicture(1, 1), *roundTrip(noisePicture(1, 1), "dot" + ending)), 0) << ending;
        EXPECT_EQ(largestDifference(*noisePicture(1, 300), *roundTrip(noisePicture(1, 300), "line" + ending)), 0)
            << ending;
    }
}

TEST_F(PictureFiles, JpegStaysCloseOnSmoothPictures) {
    EXPECT_LE(largestDifference(*smoothPicture(), *roundTrip(smoothPicture(), "smooth.jpg")), 12);
    EXPECT_LE(largestDifference(*smoothPicture(), *roundTrip(smoothPicture(), "smooth.jpeg")), 12);
}

TEST_F(PictureFiles, GifIsExactWhileTheColoursFitOnePalette) {
    EXPECT_EQ(largestDifference(*flagPicture(), *roundTrip(flagPicture(), "flag.gif")), 0);
    const auto colours = [](int count) {
        return makePicture(16, 17, [=](int x, int y) {
            const int index = (x + 16 * y) % count;
            return pixelOf(index & 0xFF, 255 - (index & 0xFF), index >> 8);
        });
    };
    EXPECT_EQ(largestDifference(*colours(256), *roundTrip(colours(256), "256.gif")), 0);
    EXPECT_GT(largestDifference(*colours(257), *roundTrip(colours(257), "257.gif")), 0);
    EXPECT_LE(largestDifference(*smoothPicture(), *roundTrip(smoothPicture(), "smooth.gif")), 64);
}

TEST_F(PictureFiles, GifKnowsSeeThroughAndOpaqueOnly) {
    const Picture read = roundTrip(alphaPicture(), "alpha.gif");
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x)
            EXPECT_EQ(gdTrueColorGetAlpha(read->tpixels[y][x]), x + 16 * y > 63 ? 127 : 0) << x << ", " << y;

    // With more colours than a palette holds, too.
    Picture picture = noisePicture();
    picture->tpixels[3][4] |= 127 << 24;
    const Picture noise = roundTrip(picture, "noise.gif");
    EXPECT_EQ(gdTrueColorGetAlpha(noise->tpixels[3][4]), 127);
    EXPECT_EQ(gdTrueColorGetAlpha(noise->tpixels[4][3]), 0);
}

TEST_F(PictureFiles, AlphaIsKeptInSevenBits) {
    for (const std::string ending : {".png", ".tif", ".avif"})
        EXPECT_EQ(largestDifference(*alphaPicture(), *roundTrip(alphaPicture(), "alpha" + ending)), 0) << ending;

    // WebP may change the colour of what cannot be seen.
    Picture expected = alphaPicture();
    const Picture read = roundTrip(alphaPicture(), "alpha.webp");
    EXPECT_EQ(gdTrueColorGetAlpha(read->tpixels[7][15]), 127);
    expected->tpixels[7][15] = read->tpixels[7][15];
    EXPECT_EQ(largestDifference(*expected, *read), 0);
}

TEST_F(PictureFiles, JpegAndBmpLeaveAlphaOut) {
    for (const std::string ending : {".jpg", ".bmp"}) {
        const Picture read = roundTrip(alphaPicture(), "alpha" + ending);
        for (int x = 0; x < 16; ++x) EXPECT_EQ(gdTrueColorGetAlpha(read->tpixels[7][x]), 0) << ending;
    }
}

TEST_F(PictureFiles, OpaquePicturesAreWrittenWithoutAnAlphaChannel) {
    constexpr std::size_t colourTypeAt = 25;
    EXPECT_EQ(encoded(noisePicture(), ".png")[colourTypeAt], 2);
    EXPECT_EQ(encoded(alphaPicture(), ".png")[colourTypeAt], 6);
}

TEST_F(PictureFiles, WritingLeavesThePictureAsItWas) {
    Picture picture = alphaPicture();
    picture->interlace = 1;
    picture->saveAlphaFlag = 0;
    for (const std::string& ending : endingsOfFormats()) writePictureFile(picture.get(), place("kept" + ending));
    EXPECT_EQ(picture->interlace, 1);
    EXPECT_EQ(picture->saveAlphaFlag, 0);
    EXPECT_EQ(largestDifference(*picture, *alphaPicture()), 0);
}

TEST_F(PictureFiles, ContentTellsTheFormatWhenRead) {
    const Picture flag = flagPicture();
    for (const std::string& ending : endingsOfFormats()) {
        for (const std::string name : {"misnamed.png", "misnamed.jpg", "misnamed.txt", "noending"}) {
            putContent(place(name), encoded(flag, ending));
            const Picture read(readPictureFile(place(name)));
            EXPECT_LE(largestDifference(*flag, *read), ending == ".jpg" ? 80 : 0) << ending << " as " << name;
        }
    }
}

TEST_F(PictureFiles, EndingsWorkInAnyLetterCase) {
    for (const std::string ending : {".PNG", ".Jpg", ".JPEG", ".GiF", ".bMP", ".WebP", ".TIF", ".TIFF", ".AVIF"})
        EXPECT_LE(largestDifference(*smoothPicture(), *roundTrip(smoothPicture(), "case" + ending)), 64) << ending;
    EXPECT_EQ(contentOf(place("case.PNG"))[1], 'P');
    EXPECT_EQ(contentOf(place("case.bMP"))[1], 'M');
}

TEST_F(PictureFiles, UnknownEndingsAreRefusedWithTheList) {
    for (const std::string name : {"picture.jp2", "picture", "png", "picture.png.bak", "picture."}) {
        const std::string message = messageOfWriting(smoothPicture(), place(name));
        EXPECT_NE(message.find(".png, .jpg, .jpeg, .gif, .bmp, .webp, .tif, .tiff or .avif"), std::string::npos)
            << message;
    }
    EXPECT_TRUE(filesInFolder().empty());
}

TEST_F(PictureFiles, PalettePicturesBecomeTrueColour) {
    const Bytes rows = {0, 0x1B};  // four pixels of two bits: 0, 1, 2, 3
    const Bytes palette = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120};
    const Picture opaque = readBytes(pngFile(4, 1, 2, 3, rows, {{"PLTE", palette}}));
    ASSERT_TRUE(gdImageTrueColor(opaque.get()));
    EXPECT_EQ(opaque->tpixels[0][0], pixelOf(10, 20, 30));
    EXPECT_EQ(opaque->tpixels[0][3], pixelOf(100, 110, 120));

    const Picture alpha = readBytes(pngFile(4, 1, 2, 3, rows, {{"PLTE", palette}, {"tRNS", {255, 128, 1}}}));
    EXPECT_EQ(alpha->tpixels[0][0], pixelOf(10, 20, 30));
    EXPECT_EQ(alpha->tpixels[0][1], pixelOf(40, 50, 60, 63));
    EXPECT_EQ(alpha->tpixels[0][2], pixelOf(70, 80, 90, 127));
    EXPECT_EQ(alpha->tpixels[0][3], pixelOf(100, 110, 120));
}

TEST_F(PictureFiles, GreyPicturesBecomeTrueColour) {
    const Picture grey = readBytes(pngFile(3, 1, 8, 0, {0, 7, 128, 255}));
    ASSERT_TRUE(gdImageTrueColor(grey.get()));
    EXPECT_EQ(grey->tpixels[0][0], pixelOf(7, 7, 7));
    EXPECT_EQ(grey->tpixels[0][2], pixelOf(255, 255, 255));

    const Picture twoLevels = readBytes(pngFile(2, 1, 1, 0, {0, 0x40}));
    EXPECT_EQ(twoLevels->tpixels[0][0], pixelOf(0, 0, 0));
    EXPECT_EQ(twoLevels->tpixels[0][1], pixelOf(255, 255, 255));

    const Picture withAlpha = readBytes(pngFile(2, 1, 8, 4, {0, 9, 255, 200, 101}));
    EXPECT_EQ(withAlpha->tpixels[0][0], pixelOf(9, 9, 9));
    EXPECT_EQ(withAlpha->tpixels[0][1], pixelOf(200, 200, 200, 77));
}

TEST_F(PictureFiles, SixteenBitSamplesKeepTheUpperEight) {
    const Picture colour = readBytes(pngFile(1, 1, 16, 2, {0, 0x12, 0xFF, 0x34, 0x00, 0x56, 0x80}));
    EXPECT_EQ(colour->tpixels[0][0], pixelOf(0x12, 0x34, 0x56));
    const Picture grey = readBytes(pngFile(2, 1, 16, 0, {0, 0xAB, 0xCD, 0x01, 0x02}));
    EXPECT_EQ(grey->tpixels[0][0], pixelOf(0xAB, 0xAB, 0xAB));
    EXPECT_EQ(grey->tpixels[0][1], pixelOf(1, 1, 1));
}

TEST_F(PictureFiles, APngsTransparentColourBecomesAlpha) {
    const Bytes rows = {0, 1, 2, 3, 4, 5, 6};
    const Picture read = readBytes(pngFile(2, 1, 8, 2, rows, {{"tRNS", {0, 4, 0, 5, 0, 6}}}));
    EXPECT_EQ(read->tpixels[0][0], pixelOf(1, 2, 3));
    EXPECT_EQ(read->tpixels[0][1], pixelOf(4, 5, 6, 127));
}

TEST_F(PictureFiles, BmpHeadersOfAllLengthsMeanTheSame) {
    const Bytes palette = {30, 20, 10, 0, 60, 50, 40, 0};
    for (const std::uint32_t headerSize : {40U, 52U, 56U, 108U, 124U}) {
        Bytes behind(headerSize - 40, 0xEE);
        append(behind, palette);
        behind.resize(behind.size() + std::size_t{254} * 4);
        const Bytes rows = {1, 0, 0, 0, 0, 1, 0, 0};  // from the bottom up
        const Picture read = readBytes(bmpFile({headerSize, 2, 2, 8, 0, behind}, rows));
        EXPECT_EQ(read->tpixels[1][0], pixelOf(40, 50, 60)) << headerSize;
        EXPECT_EQ(read->tpixels[0][0], pixelOf(10, 20, 30)) << headerSize;
        EXPECT_EQ(read->tpixels[0][1], pixelOf(40, 50, 60)) << headerSize;
    }
}

TEST_F(PictureFiles, BmpBitMasksAreReadWhenTheyAreTheUsualOnes) {
    Bytes masks;
    for (const std::uint32_t mask : {0xFF0000U, 0xFF00U, 0xFFU}) appendLittle(masks, mask, 4);
    const Picture read = readBytes(bmpFile({40, 1, -2, 32, 3, masks}, {3, 2, 1, 0, 6, 5, 4, 0}));
    EXPECT_EQ(read->tpixels[0][0], pixelOf(1, 2, 3));
    EXPECT_EQ(read->tpixels[1][0], pixelOf(4, 5, 6));

    std::reverse(masks.begin(), masks.end());
    const std::string message = messageOfReadingBytes(bmpFile({40, 1, 1, 32, 3, masks}, {3, 2, 1, 0}));
    EXPECT_NE(message.find("usual bit masks"), std::string::npos) << message;
}

TEST_F(PictureFiles, TwoLevelTiffsAreReadTheRightWayRound) {
    for (const std::uint32_t whiteIsZero : {1U, 0U}) {  // 0: white is zero, 1: black is zero
        const Picture read = readBytes(
            tiffFile({{256, 8}, {257, 1}, {258, 1}, {259, 1}, {262, whiteIsZero}, {277, 1}, {278, 1}}, {0xF0}));
        const int bitSet = whiteIsZero == 1 ? 255 : 0;
        EXPECT_EQ(read->tpixels[0][0], pixelOf(bitSet, bitSet, bitSet));
        EXPECT_EQ(read->tpixels[0][7], pixelOf(255 - bitSet, 255 - bitSet, 255 - bitSet));
    }
}

TEST_F(PictureFiles, BothKindsOfTiffAlphaGiveTheSamePicture) {
    constexpr std::uint32_t extraSamples = 338;
    const auto file = [&](std::uint32_t kind, const Bytes& samples) {
        return tiffFile({{256, 2}, {257, 1}, {258, 8}, {259, 1}, {262, 1}, {277, 2}, {278, 1}, {extraSamples, kind}},
                        samples);
    };
    const Picture separate = readBytes(file(2, {200, 101, 30, 255}));
    EXPECT_EQ(separate->tpixels[0][0], pixelOf(200, 200, 200, 77));
    EXPECT_EQ(separate->tpixels[0][1], pixelOf(30, 30, 30));
    const Picture multipliedIn = readBytes(file(1, {79, 101, 30, 255}));
    EXPECT_EQ(multipliedIn->tpixels[0][0], pixelOf(199, 199, 199, 77));
    EXPECT_EQ(multipliedIn->tpixels[0][1], pixelOf(30, 30, 30));
}

TEST_F(PictureFiles, CmykJpegsBecomeRgb) {
    // Four by two pixels of cyan 0, magenta 100, yellow 200 and black 50, stored the other way round as usual.
    const Picture read = readBytes(
        fromHex("ffd8ffee000e41646f626500640000000000ffdb00430001010101010101010101010101010101010101010101010101"
                "010101010101010101010101010101010101010101010101010101010101010101010101010101ffc000140800020004"
                "044311004d11005911004b1100ffc4001500010100000000000000000000000000000a08ffc400141001000000000000"
                "00000000000000000000ffda000e0443004d0059004b00003f007f0b606dc9a1ffd9"));
    ASSERT_EQ(gdImageSX(read.get()), 4);
    EXPECT_EQ(read->tpixels[1][3], pixelOf(205, 124, 44));
}

TEST_F(PictureFiles, AGifsFirstFrameIsRead) {
    Bytes file = encoded(flagPicture(), ".gif");
    const Bytes frame(file.begin() + static_cast<std::ptrdiff_t>(file.size()) - 20, file.end());
    EXPECT_EQ(file.back(), ';');
    file.pop_back();
    append(file, Bytes{',', 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 2, 0x44, 0x01, 0, ';'});
    EXPECT_EQ(largestDifference(*flagPicture(), *readBytes(file)), 0);
}

TEST_F(PictureFiles, FilesThatHoldNoPictureAreRefusedWithClearWords) {
    putContent(place("empty.png"), {});
    EXPECT_NE(messageOfReading(place("empty.png")).find("empty"), std::string::npos);
    EXPECT_NE(messageOfReading(place("missing.png")).find("No such file"), std::string::npos);
    fs::create_directory(place("folder.png"));
    EXPECT_NE(messageOfReading(place("folder.png")).find("folder"), std::string::npos);
    const std::string foreign = messageOfReadingBytes({'h', 'e', 'l', 'l', 'o'});
    EXPECT_NE(foreign.find("PNG, JPEG, GIF, BMP, WebP, TIFF or AVIF"), std::string::npos) << foreign;
    EXPECT_NE(messageOfReading("/dev/zero").find("no ordinary file"), std::string::npos);
    ASSERT_EQ(mkfifo(place("pipe.png").c_str(), 0600), 0);
    EXPECT_NE(messageOfReading(place("pipe.png")).find("no ordinary file"), std::string::npos);
    const fs::path strange = place("two\nlines.png");
    try {
        const Picture picture(readPictureFile(strange));
        ADD_FAILURE() << "a missing file was read";
    } catch (const PictureFileError& error) {
        EXPECT_NE(std::string(error.what()).find("two?lines.png\""), std::string::npos) << error.what();
    }
}

// The superuser may read and write everything, so what permissions forbid is tried as another user.
class AsOrdinaryUser {
  public:
    AsOrdinaryUser() : before_(geteuid()) {
        constexpr uid_t nobody = 65534;
        if (before_ == 0 && seteuid(nobody) != 0) ADD_FAILURE() << "cannot become an ordinary user";
    }
    ~AsOrdinaryUser() { EXPECT_EQ(seteuid(before_), 0); }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

  private:
    uid_t before_;
};

TEST_F(PictureFiles, PermissionsAreRespected) {
    const Bytes old = encoded(flagPicture(), ".png");
    putContent(place("locked.png"), old);
    fs::permissions(place("locked.png"), fs::perms::none);
    putContent(place("fixed.png"), old);
    fs::permissions(place("fixed.png"), fs::perms::owner_read | fs::perms::others_read);
    fs::create_directory(place("closed"));
    fs::permissions(place("closed"), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_exec);
    fs::permissions(place(""), fs::perms::all);
    {
        const AsOrdinaryUser user;
        EXPECT_NE(messageOfReading(place("locked.png")).find("Permission denied"), std::string::npos);
        EXPECT_NE(messageOfWriting(flagPicture(), place("fixed.png")).find("Permission denied"), std::string::npos);
        EXPECT_NE(messageOfWriting(flagPicture(), place("closed") / "a.png").find("Permission denied"),
                  std::string::npos);
    }
    EXPECT_EQ(contentOf(place("fixed.png")), old);
    EXPECT_TRUE(fs::is_empty(place("closed")));
}

// ---- broken files

TEST_F(PictureFiles, FilesCutShortAreRefusedAtEveryLength) {
    testing::internal::CaptureStderr();
    for (const std::string& ending : endingsOfFormats()) {
        const Bytes whole = encoded(smoothPicture(), ending);
        const std::size_t step = std::max<std::size_t>(1, whole.size() / 400);
        for (std::size_t length = 1; length < whole.size(); length += length < 64 ? 1 : step) {
            const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_NE(messageOfReadingBytes(part), "") << ending << " cut to " << length << " of " << whole.size();
        }
        const Bytes allButOne(whole.begin(), whole.end() - 1);
        EXPECT_NE(messageOfReadingBytes(allButOne), "") << ending;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// A picture of an acceptable size or a message; never a crash, and never a word on stderr.
class DamagedFiles : public PictureFiles {
  protected:
    void expectHarmless(const Bytes& bytes) {
        putContent(place("damaged"), bytes);
        try {
            const Picture picture(readPictureFile(place("damaged")));
            EXPECT_TRUE(gdImageTrueColor(picture.get()));
            EXPECT_GT(gdImageSX(picture.get()), 0);
            EXPECT_LE(gdImageSX(picture.get()), 32767);
        } catch (const PictureFileError& error) {
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
        }
    }
};

TEST_F(DamagedFiles, DoNoHarmWithChangedBytes) {
    testing::internal::CaptureStderr();
    for (const std::string& ending : endingsOfFormats()) {
        for (const Picture& picture : {smoothPicture(), alphaPicture(), flagPicture()}) {
            const Bytes whole = encoded(picture, ending);
            std::mt19937 random(static_cast<unsigned>(whole.size()));
            for (int round = 0; round < 200; ++round) {
                Bytes bytes = whole;
                const std::size_t reach = round % 2 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 64);
                for (auto changes = 1 + random() % 4; changes > 0; --changes)
                    bytes[random() % reach] = static_cast<std::uint8_t>(random());
                expectHarmless(bytes);
            }
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DamagedFiles, DoNoHarmWithExtremeHeaderBytes) {
    testing::internal::CaptureStderr();
    for (const std::string& ending : endingsOfFormats()) {
        const Bytes whole = encoded(flagPicture(), ending);
        for (std::size_t at = 0; at < std::min<std::size_t>(whole.size(), 128); ++at) {
            for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
                Bytes bytes = whole;
                bytes[at] = static_cast<std::uint8_t>(value);
                expectHarmless(bytes);
            }
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DamagedFiles, DoNoHarmWithNoiseBehindASignature) {
    std::mt19937 random(11);
    for (const std::string& ending : endingsOfFormats()) {
        const Bytes whole = encoded(flagPicture(), ending);
        for (int round = 0; round < 100; ++round) {
            Bytes bytes(whole.begin(), whole.begin() + 16);
            for (auto count = random() % 600; count > 0; --count) bytes.push_back(static_cast<std::uint8_t>(random()));
            expectHarmless(bytes);
        }
    }
}

TEST_F(PictureFiles, DamagedJpegDataIsRefusedAndStrayBytesAreNot) {
    Bytes file = encoded(smoothPicture(), ".jpg");
    Bytes stray = file;
    stray.insert(stray.end() - 2, {1, 2, 3, 4, 5, 6, 7});  // before the end mark
    EXPECT_EQ(largestDifference(*readBytes(file), *readBytes(stray)), 0);

    // The last half of the coded data lost, the end mark kept.
    file.erase(file.end() - static_cast<std::ptrdiff_t>(file.size() / 4), file.end() - 2);
    const std::string message = messageOfReadingBytes(file);
    EXPECT_NE(message.find("damaged"), std::string::npos) << message;
}

// ---- sizes beyond reason

class HugeHeaders : public PictureFiles {
  protected:
    // Refused by the header alone: in well under the time that so many pixels would take.
    void expectRefusedAtOnce(const Bytes& bytes) {
        const auto start = std::chrono::steady_clock::now();
        const std::string message = messageOfReadingBytes(bytes);
        EXPECT_NE(message.find("too large"), std::string::npos) << message;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500)) << message;
    }

    static void put(Bytes& bytes, std::size_t at, const Bytes& value) {
        std::copy(value.begin(), value.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }

    static std::size_t find(const Bytes& bytes, std::string_view text) {
        const auto sameByte = [](std::uint8_t byte, char c) { return byte == static_cast<std::uint8_t>(c); };
        const auto found = std::search(bytes.begin(), bytes.end(), text.begin(), text.end(), sameByte);
        EXPECT_NE(found, bytes.end()) << text;
        return static_cast<std::size_t>(found - bytes.begin());
    }
};

TEST_F(HugeHeaders, OfPngAreRefused) {
    expectRefusedAtOnce(pngFile(32768, 1, 8, 2, {0}));
    expectRefusedAtOnce(pngFile(1, 0x7FFFFFFF, 8, 2, {0}));
    expectRefusedAtOnce(pngFile(16385, 16384, 8, 2, {0}));
    // An acceptable size, but so little data that it cannot be true.
    EXPECT_NE(messageOfReadingBytes(pngFile(16384, 16384, 8, 2, {0})).find("too little data"), std::string::npos);
}

TEST_F(HugeHeaders, OfJpegAreRefused) {
    Bytes file = encoded(smoothPicture(), ".jpg");
    put(file, find(file, "\xFF\xC0") + 5, {0xFF, 0xFF, 0xFF, 0xFF});
    expectRefusedAtOnce(file);
    put(file, find(file, "\xFF\xC0") + 5, {0x7F, 0xFF, 0x7F, 0xFF});
    expectRefusedAtOnce(file);
}

TEST_F(HugeHeaders, OfGifAreRefused) {
    Bytes file = encoded(flagPicture(), ".gif");
    put(file, 6, {0xFF, 0xFF, 0xFF, 0xFF});
    expectRefusedAtOnce(file);
}

TEST_F(HugeHeaders, OfBmpAreRefused) {
    expectRefusedAtOnce(bmpFile({40, 0x7FFFFFFF, 1, 24, 0, {}}, {}));
    expectRefusedAtOnce(bmpFile({40, 1, INT32_MIN, 24, 0, {}}, {}));
    expectRefusedAtOnce(bmpFile({40, 32767, 32767, 8, 1, {}}, {}));
}

TEST_F(HugeHeaders, OfWebpAreRefused) {
    Bytes file = {'R', 'I', 'F', 'F'};
    appendLittle(file, 22, 4);
    append(file, "WEBPVP8X");
    appendLittle(file, 10, 4);
    appendLittle(file, 0x10, 4);
    appendLittle(file, 0xFFFFFF, 3);
    appendLittle(file, 0x000063, 3);
    expectRefusedAtOnce(file);
}

TEST_F(HugeHeaders, OfTiffAreRefused) {
    const auto file = [](std::uint32_t width, std::uint32_t height) {
        return tiffFile({{256, width, 4}, {257, height, 4}, {258, 8}, {259, 1}, {262, 1}, {277, 1}, {278, 1}}, {0});
    };
    expectRefusedAtOnce(file(0xFFFFFFFF, 1));
    expectRefusedAtOnce(file(32767, 32767));
}

TEST_F(HugeHeaders, OfAvifAreRefused) {
    Bytes file = encoded(flagPicture(), ".avif");
    const std::size_t sizeAt = find(file, "ispe") + 8;
    put(file, sizeAt, {0, 0, 0x80, 0, 0, 0, 0, 1});
    EXPECT_NE(messageOfReadingBytes(file), "");
    put(file, sizeAt, {0, 0, 0x7F, 0xFF, 0, 0, 0x7F, 0xFF});
    EXPECT_NE(messageOfReadingBytes(file), "");
}

TEST_F(HugeHeaders, ThousandsOfPassesAreRefused) {
    // A frame of the largest size, then scans of no data.
    Bytes file = {0xFF, 0xD8, 0xFF, 0xC2, 0, 11, 8, 0x40, 0x00, 0x3F, 0xFF, 1, 1, 0x11, 0};
    for (int scan = 0; scan < 5000; ++scan) append(file, Bytes{0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 0, 0});
    append(file, Bytes{0xFF, 0xD9});
    const std::string message = messageOfReadingBytes(file);
    EXPECT_NE(message.find("too many passes"), std::string::npos) << message;
}

// ---- writing

TEST_F(PictureFiles, WritingReplacesAFileAndKeepsItsPermissions) {
    putContent(place("old.png"), {'o', 'l', 'd'});
    fs::permissions(place("old.png"), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(largestDifference(*flagPicture(), *roundTrip(flagPicture(), "old.png")), 0);
    EXPECT_EQ(fs::status(place("old.png")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"old.png"});
}

TEST_F(PictureFiles, NewFilesFollowTheUsersMask) {
    const mode_t before = umask(027);
    writePictureFile(flagPicture().get(), place("new.png"));
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(place("new.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(PictureFiles, WritingFollowsASymbolicLink) {
    fs::create_directory(place("deep"));
    putContent(place("deep") / "target.png", {'o', 'l', 'd'});
    fs::create_symlink(place("deep") / "target.png", place("link.png"));
    writePictureFile(flagPicture().get(), place("link.png"));
    EXPECT_TRUE(fs::is_symlink(place("link.png")));
    const Picture read(readPictureFile(place("deep") / "target.png"));
    EXPECT_EQ(largestDifference(*flagPicture(), *read), 0);
}

TEST_F(PictureFiles, PlacesThatCannotBeWrittenAreRefused) {
    EXPECT_NE(messageOfWriting(flagPicture(), place("none") / "a.png").find("No such file"), std::string::npos);
    fs::create_directory(place("folder.png"));
    EXPECT_NE(messageOfWriting(flagPicture(), place("folder.png")).find("folder"), std::string::npos);
    EXPECT_TRUE(fs::is_directory(place("folder.png")));
    putContent(place("file"), {'x'});
    EXPECT_NE(messageOfWriting(flagPicture(), place("file") / "a.png").find("Not a directory"), std::string::npos);
    ASSERT_EQ(mkfifo(place("pipe.png").c_str(), 0600), 0);
    EXPECT_NE(messageOfWriting(flagPicture(), place("pipe.png")).find("no ordinary file"), std::string::npos);
    EXPECT_EQ(filesInFolder(), (std::vector<std::string>{"file", "folder.png", "pipe.png"}));
}

TEST_F(PictureFiles, AFailedWriteLeavesTheOldFileAndNothingElse) {
    const Bytes old = encoded(flagPicture(), ".png");
    putContent(place("kept.png"), old);
    fs::remove(place("encoded.png"));

    // The system stops the file at 4 KiB; the noise takes more.
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handlerBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string message;
    try {
        writePictureFile(noisePicture(200, 200).get(), place("kept.png"));
    } catch (const PictureFileError& error) {
        message = error.what();
    }
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handlerBefore);

    EXPECT_NE(message.find("File too large"), std::string::npos) << message;
    EXPECT_EQ(contentOf(place("kept.png")), old);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"kept.png"});
}

TEST_F(PictureFiles, APictureTooLongForItsFormatIsRefused) {
    const Picture line = makePicture(16384, 1, [](int, int) { return 0; });
    const std::string message = messageOfWriting(line, place("line.webp"));
    EXPECT_NE(message.find("16383"), std::string::npos) << message;
    EXPECT_EQ(largestDifference(*line, *roundTrip(line, "line.png")), 0);
    EXPECT_TRUE(!fs::exists(place("line.webp")));
}

TEST_F(PictureFiles, APaletteOrMissingPictureIsRefused) {
    EXPECT_NE(messageOfWriting(nullptr, place("nil.png")).find("true-colour"), std::string::npos);
    const Picture palette(gdImageCreate(3, 3));
    EXPECT_NE(messageOfWriting(palette, place("palette.png")).find("true-colour"), std::string::npos);
    EXPECT_TRUE(filesInFolder().empty());
}

}  // namespace
