// Files with several pictures: the first on its full canvas, or the one that is asked for.
#include <gtest/gtest.h>
#include <vips/vips.h>

#include <string>

#include "files/files_module.h"
#include "files/sample_files.h"

namespace pxkfiles::test {

namespace {

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;

ReadOptions pageOf(int page) {
    ReadOptions options;
    options.page = page;
    return options;
}

// A screen of 4 x 3 with frames given as left, top, width, height and one index for all pixels; 0 red, 1 green.
struct Frame {
    std::uint8_t left, top, width, height, index;
};

FileBytes gifFile(const std::vector<Frame>& frames, bool transparent) {
    FileBytes file;
    append(file, "GIF89a");
    append(file, FileBytes{4, 0, 3, 0, 0x80, 0, 0, 255, 0, 0, 0, 255, 0});
    for (const Frame& frame : frames) {
        if (transparent) append(file, FileBytes{'!', 0xF9, 4, 5, 10, 0, 3, 0});
        append(file, FileBytes{',', frame.left, 0, frame.top, 0, frame.width, 0, frame.height, 0, 0, 2});
        // Codes of 3 bits: clear, then each pixel behind a clear of its own, so that codes never grow; the end.
        std::uint32_t bits = 0;
        int count = 0;
        FileBytes data;
        const auto put = [&](std::uint32_t code) {
            bits |= code << count;
            for (count += 3; count >= 8; count -= 8, bits >>= 8) data.push_back(static_cast<std::uint8_t>(bits));
        };
        for (int pixel = 0; pixel < frame.width * frame.height; ++pixel) {
            put(4);
            put(frame.index);
        }
        put(5);
        if (count > 0) data.push_back(static_cast<std::uint8_t>(bits));
        file.push_back(static_cast<std::uint8_t>(data.size()));
        append(file, data);
        file.push_back(0);
    }
    file.push_back(';');
    return file;
}

FileBytes tiffWithPages() {
    // Two directories of one pixel each, the first linked to the second.
    FileBytes first = tiffFile({{256, 1}, {257, 1}, {258, 8}, {259, 1}, {262, 1}, {277, 1}, {278, 1}}, {10});
    FileBytes second = tiffFile({{256, 2}, {257, 1}, {258, 8}, {259, 1}, {262, 1}, {277, 1}, {278, 1}}, {20, 30});
    first.resize((first.size() + 1) / 2 * 2);
    const auto secondAt = static_cast<std::uint32_t>(first.size());
    const std::size_t linkAt = 8 + 2 + 9 * 12;
    FileBytes link;
    appendLittle(link, secondAt, 4);
    std::copy(link.begin(), link.end(), first.begin() + static_cast<std::ptrdiff_t>(linkAt));
    // The second one's strip moves along with it: tag 273 is the sixth entry.
    FileBytes strip;
    appendLittle(strip, secondAt - 8 + static_cast<std::uint32_t>(second.size()) - 2, 4);
    std::copy(strip.begin(), strip.end(), second.begin() + 78);
    first.insert(first.end(), second.begin() + 8, second.end());
    return first;
}

}  // namespace

TEST(Pages, OfAGifAreFramesOnTheFullCanvas) {
    const FileBytes file = gifFile({{0, 0, 4, 3, 0}, {1, 1, 2, 1, 1}}, false);
    const Reading first = readBytes(file);
    ASSERT_EQ(first.message, "");
    EXPECT_EQ(first.pages, 2);
    EXPECT_EQ(largestDifference(first.picture, raster(4, 3, [](int, int) { return red; })), 0);
    EXPECT_EQ(largestDifference(pictureIn(file, pageOf(1)), first.picture), 0);
    const Raster second = pictureIn(file, pageOf(2));
    EXPECT_EQ(largestDifference(second,
                                raster(4, 3, [](int x, int y) { return y == 1 && (x == 1 || x == 2) ? green : red; })),
              0);
}

TEST(Pages, AFrameSmallerThanItsCanvasLeavesTheRestTransparent) {
    const auto expected = [](int page) {
        return raster(4, 3, [=](int x, int y) {
            if (page == 2 && y == 2) return red;
            return y == 1 && (x == 1 || x == 2) ? green : 0;
        });
    };
    for (const bool transparent : {true, false}) {
        const FileBytes file = gifFile({{1, 1, 2, 1, 1}, {0, 2, 4, 1, 0}}, transparent);
        for (const int page : {1, 2}) {
            const Raster read = pictureIn(file, pageOf(page));
            EXPECT_TRUE(read.hasAlpha);
            EXPECT_EQ(largestDifference(read, expected(page)), 0) << transparent << " " << page;
        }
        // The file's canvas counts even where no frame reaches its edge.
        const Raster alone = pictureIn(gifFile({{1, 1, 2, 1, 1}}, transparent));
        EXPECT_EQ(largestDifference(alone, expected(1)), 0) << transparent;
    }
}

TEST(Pages, OfAnAnimatedWebpAreFramesOnTheFullCanvas) {
    ASSERT_EQ(readBytes(written(flagPicture(), "png")).message, "");  // starts libvips
    VipsImage* black = nullptr;
    VipsImage* image = nullptr;
    ASSERT_EQ(vips_black(&black, 20, 30, "bands", 3, nullptr), 0);
    ASSERT_EQ(vips_copy(black, &image, "interpretation", VIPS_INTERPRETATION_sRGB, nullptr), 0);
    VipsImage* drawn = vips_image_copy_memory(image);
    double white[] = {255, 255, 255};
    ASSERT_EQ(vips_draw_rect(drawn, white, 3, 0, 15, 20, 15, "fill", TRUE, nullptr), 0);
    void* data = nullptr;
    std::size_t size = 0;
    ASSERT_EQ(vips_webpsave_buffer(drawn, &data, &size, "page_height", 15, "lossless", TRUE, nullptr), 0);
    const FileBytes file(static_cast<std::uint8_t*>(data), static_cast<std::uint8_t*>(data) + size);
    g_free(data);
    for (VipsImage* used : {black, image, drawn}) g_object_unref(used);

    const Reading first = readBytes(file);
    ASSERT_EQ(first.message, "");
    EXPECT_EQ(first.pages, 2);
    EXPECT_EQ(largestDifference(first.picture, raster(20, 15, [](int, int) { return 0xFF000000; })), 0);
    EXPECT_EQ(largestDifference(pictureIn(file, pageOf(2)), raster(20, 15, [](int, int) { return 0xFFFFFFFF; })), 0);
}

TEST(Pages, OfATiffMayHaveSizesOfTheirOwn) {
    const Reading first = readBytes(tiffWithPages());
    ASSERT_EQ(first.message, "");
    EXPECT_EQ(first.pages, 2);
    EXPECT_EQ(first.picture.width, 1);
    EXPECT_EQ(first.picture.at(0, 0), 0xFF0A0A0AU);
    const Raster second = pictureIn(tiffWithPages(), pageOf(2));
    EXPECT_EQ(second.width, 2);
    EXPECT_EQ(second.at(0, 0), 0xFF141414U);
    EXPECT_EQ(second.at(1, 0), 0xFF1E1E1EU);
}

TEST(Pages, ThatAreNotThereAreRefusedWithTheirNumber) {
    EXPECT_NE(readBytes(tiffWithPages(), pageOf(3)).message.find("there is no page 3; the file has 2"),
              std::string::npos);
    EXPECT_NE(readBytes(gifFile({{0, 0, 4, 3, 0}}, false), pageOf(2)).message.find("the file has 1"),
              std::string::npos);
    for (const char* format : formats()) {
        const FileBytes file = written(flagPicture(), format);
        EXPECT_EQ(readBytes(file, pageOf(1)).message, "") << format;
        EXPECT_NE(readBytes(file, pageOf(2)).message.find("there is no page 2; the file has 1"), std::string::npos)
            << format;
        EXPECT_NE(readBytes(file, pageOf(-1)).message.find("no page -1"), std::string::npos) << format;
        EXPECT_NE(readBytes(file, pageOf(1000000)).message.find("the file has 1"), std::string::npos) << format;
    }
}

}  // namespace pxkfiles::test
