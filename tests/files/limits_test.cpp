// Sizes beyond reason, files without their end, and passes without number are refused, soon and in little memory.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "files/files_module.h"
#include "files/sample_files.h"
#include "support/sanitizers.h"

namespace pxkfiles::test {

namespace {

long peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

#ifdef PXK_ADDRESS_SANITIZER
// The sanitizer keeps what has been freed, and marks every byte of an array.
constexpr long mostMegabytes = 400;
constexpr std::chrono::milliseconds mostTime(5000);
#else
constexpr long mostMegabytes = 100;
constexpr std::chrono::milliseconds mostTime(500);
#endif

// Refused with certain words, in little time and memory.
void expectRefusedAtOnce(const FileBytes& file, const char* words) {
    readBytes({});
    const long memoryBefore = peakMegabytes();
    const auto start = std::chrono::steady_clock::now();
    const std::string message = readBytes(file).message;
    EXPECT_NE(message, "");
    EXPECT_NE(message.find(words), std::string::npos) << message;
    EXPECT_LT(std::chrono::steady_clock::now() - start, mostTime) << message;
    EXPECT_LT(peakMegabytes() - memoryBefore, mostMegabytes) << message;
}

void put(FileBytes& bytes, std::size_t at, const FileBytes& value) {
    std::copy(value.begin(), value.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

constexpr const char* tooLarge = "too large";
constexpr const char* tooLittle = "too little data";

}  // namespace

TEST(Limits, OfPng) {
    expectRefusedAtOnce(pngFile(32768, 1, 8, 2, {0}), tooLarge);
    expectRefusedAtOnce(pngFile(16385, 16384, 8, 2, {0}), tooLarge);
    expectRefusedAtOnce(pngFile(16000, 16000, 8, 2, {0}), tooLittle);
    expectRefusedAtOnce(pngFile(16000, 16000, 1, 0, {0}), tooLittle);
    EXPECT_NE(readBytes(pngFile(1, 0x7FFFFFFF, 8, 2, {0})).message, "");
    EXPECT_NE(readBytes(pngFile(0, 1, 8, 2, {0})).message, "");
    const Raster line = raster(32767, 1, [](int x, int) { return 0xFF000000 | static_cast<std::uint32_t>(x); });
    EXPECT_EQ(largestDifference(pictureIn(written(line, "png")), line), 0);
}

TEST(Limits, OfJpeg) {
    FileBytes file = written(smoothPicture(), "jpg");
    const std::size_t sizeAt = find(file, "\xFF\xC0") + 5;
    put(file, sizeAt, {0xFF, 0xDC, 0xFF, 0xDC});
    expectRefusedAtOnce(file, tooLarge);
    put(file, sizeAt, {0x7F, 0xFF, 0x7F, 0xFF});
    expectRefusedAtOnce(file, tooLarge);
    put(file, sizeAt, {0x3E, 0x80, 0x3E, 0x80});
    expectRefusedAtOnce(file, tooLittle);
}

TEST(Limits, OfGif) {
    FileBytes file = written(flagPicture(), "gif");
    put(file, 6, {0xFF, 0xFF, 0xFF, 0xFF});
    expectRefusedAtOnce(file, tooLarge);
    put(file, 6, {0x80, 0x3E, 0x80, 0x3E});
    expectRefusedAtOnce(file, tooLittle);
}

TEST(Limits, OfBmp) {
    expectRefusedAtOnce(bmpFile({40, 0x7FFFFFFF, 1, 24, 0, {}}, {}), tooLarge);
    expectRefusedAtOnce(bmpFile({40, 1, INT32_MIN, 24, 0, {}}, {}), tooLarge);
    expectRefusedAtOnce(bmpFile({40, 32767, 32767, 8, 1, {}}, {}), tooLarge);
    expectRefusedAtOnce(bmpFile({40, 16000, 16000, 24, 0, {}}, {}), "cut short");
    expectRefusedAtOnce(bmpFile({40, 16000, 16000, 8, 1, {}}, {0, 1}), tooLittle);
    EXPECT_NE(readBytes(bmpFile({40, -5, 1, 24, 0, {}}, {})).message.find("empty"), std::string::npos);
    EXPECT_NE(readBytes(bmpFile({40, 0, 1, 24, 0, {}}, {})).message.find("empty"), std::string::npos);
}

TEST(Limits, OfWebp) {
    FileBytes file = {'R', 'I', 'F', 'F'};
    appendLittle(file, 22, 4);
    append(file, "WEBPVP8X");
    appendLittle(file, 10, 4);
    appendLittle(file, 0x10, 4);
    appendLittle(file, 0xFFFFFF, 3);
    appendLittle(file, 0x000063, 3);
    expectRefusedAtOnce(file, "");
}

TEST(Limits, OfTiff) {
    const auto file = [](std::uint32_t width, std::uint32_t height, std::uint32_t compression) {
        return tiffFile(
            {{256, width, 4}, {257, height, 4}, {258, 8}, {259, compression}, {262, 1}, {277, 1}, {278, height, 4}},
            {0, 1, 2, 3});
    };
    expectRefusedAtOnce(file(32767, 32767, 1), tooLarge);
    for (const std::uint32_t compression : {1U, 5U, 8U, 32773U})
        expectRefusedAtOnce(file(16000, 16000, compression), "");
    EXPECT_NE(readBytes(file(0xFFFFFFFF, 1, 1)).message, "");
}

TEST(Limits, OfAvif) {
    WriteOptions lossless;
    lossless.lossless = true;
    FileBytes file = written(flagPicture(), "avif", lossless);
    const std::size_t sizeAt = find(file, "ispe") + 8;
    put(file, sizeAt, {0, 0, 0x80, 0, 0, 0, 0, 1});
    expectRefusedAtOnce(file, "");
    put(file, sizeAt, {0, 0, 0x3E, 0x80, 0, 0, 0x3E, 0x80});
    expectRefusedAtOnce(file, "");
}

TEST(Limits, TooManyPassesAreRefused) {
    for (const int scans : {65, 248, 5000}) {
        FileBytes file = {0xFF, 0xD8, 0xFF, 0xC2, 0, 11, 8, 0x10, 0x00, 0x10, 0x00, 1, 1, 0x11, 0};
        for (int scan = 0; scan < scans; ++scan) append(file, FileBytes{0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 0, 0});
        file.resize(file.size() + 100000);
        append(file, FileBytes{0xFF, 0xD9});
        expectRefusedAtOnce(file, "too many passes");
    }
}

TEST(Limits, OfWriting) {
    const Raster line = raster(16384, 1, [](int, int) { return 0xFF000000; });
    const std::string message = messageOfWriting(line, "webp");
    EXPECT_NE(message.find("16383"), std::string::npos) << message;
    for (const char* format : {"png", "jpg", "gif", "bmp", "tif", "avif"})
        EXPECT_EQ(largestDifference(pictureIn(written(line, format)), line), 0) << format;
    Raster empty;
    EXPECT_NE(messageOfWriting(empty, "png").find("empty"), std::string::npos);
    empty.width = 32768;
    empty.height = 1;
    EXPECT_NE(messageOfWriting(empty, "png").find("too large"), std::string::npos);
}

TEST(Limits, FilesCutShortAreRefusedAtEveryLength) {
    testing::internal::CaptureStderr();
    for (const char* format : formats()) {
        for (const bool lossless : {false, true}) {
            WriteOptions options;
            options.lossless = lossless && std::string(format) != "jpg";
            const FileBytes whole = written(lossless ? flagPicture() : smoothPicture(), format, options);
            const std::size_t step = std::max<std::size_t>(1, whole.size() / 300);
            for (std::size_t length = 1; length < whole.size(); length += length < 64 ? 1 : step) {
                const FileBytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
                EXPECT_NE(readBytes(part).message, "") << format << " cut to " << length << " of " << whole.size();
            }
            const FileBytes allButOne(whole.begin(), whole.end() - 1);
            EXPECT_NE(readBytes(allButOne).message, "") << format << " without its last byte";
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Limits, DamagedJpegDataIsRefusedAndStrayBytesAreNot) {
    const FileBytes file = written(noisePicture(), "jpg");
    FileBytes stray = file;
    stray.insert(stray.end() - 2, {1, 2, 3, 4, 5, 6, 7});  // before the end mark
    EXPECT_EQ(largestDifference(pictureIn(file), pictureIn(stray)), 0);

    // The last part of the coded data lost, the end mark kept.
    FileBytes lost = file;
    lost.erase(lost.end() - static_cast<std::ptrdiff_t>(lost.size() / 4), lost.end() - 2);
    const std::string message = readBytes(lost).message;
    EXPECT_NE(message.find("damaged"), std::string::npos) << message;
}

TEST(Limits, MemoryShortageIsCalledSo) {
#ifdef PXK_ADDRESS_SANITIZER
    GTEST_SKIP() << "the address sanitizer reserves memory of its own";
#else
    const FileBytes png = written(raster(4000, 4000, [](int, int) { return 0xFF808080; }), "png");
    ASSERT_EQ(readBytes(png).message, "");
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_DATA, &before), 0);
    const rlimit small{std::min<rlim_t>(before.rlim_max, rlim_t{32} << 20), before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_DATA, &small), 0);
    const std::string message = readBytes(png).message;
    ASSERT_EQ(setrlimit(RLIMIT_DATA, &before), 0);
    EXPECT_NE(message.find("there is not enough memory"), std::string::npos) << message;
#endif
}

}  // namespace pxkfiles::test
