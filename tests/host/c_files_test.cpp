// The C interface's picture files: what passes between host pictures and the module. The formats themselves are tested
// with the module.
#ifdef PXK_WITH_FILES

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "host/host_test_support.h"
#include "host/include/pxkhost.h"

namespace pxktest {
namespace {

using testing::HasSubstr;

class CFilesTest : public ::testing::TestWithParam<pxk_application> {
  protected:
    void SetUp() override {
        const pxk_options options{PXK_DOUBLE_PLUGIN, 2012.5, GetParam()};
        host_ = pxk_open(&options);
        ASSERT_NE(host_, nullptr) << pxk_last_error(nullptr);
        folder_ = std::filesystem::path(testing::TempDir()) / ("pxk_c_files_" + std::to_string(GetParam()));
        std::filesystem::create_directories(folder_);
    }

    void TearDown() override {
        std::filesystem::remove_all(folder_);
        EXPECT_EQ(pxk_close(host_), PXK_OK) << pxk_last_error(nullptr);
    }

    std::string error() const { return pxk_last_error(host_); }
    std::string path(const char* name) const { return (folder_ / name).string(); }

    /// A picture of one row.
    pxk_object* row(const std::vector<std::uint32_t>& pixels) const {
        pxk_object* const picture = pxk_new_picture(host_, static_cast<std::int32_t>(pixels.size()), 1);
        EXPECT_EQ(pxk_set_pixels(host_, picture, pixels.data()), PXK_OK) << error();
        return picture;
    }

    std::vector<std::uint32_t> pixelsOf(pxk_object* picture) const {
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(pxk_picture_width(picture)) *
                                          static_cast<std::size_t>(pxk_picture_height(picture)));
        EXPECT_EQ(pxk_get_pixels(host_, picture, pixels.data()), PXK_OK) << error();
        return pixels;
    }

    /// The bytes of a picture saved to memory.
    std::string saved(pxk_object* picture, const char* name, const pxk_save_options& options = {}) const {
        pxk_object* const block = pxk_save_picture_bytes(host_, picture, name, &options);
        EXPECT_NE(block, nullptr) << error();
        if (block == nullptr) return "";
        std::int32_t size = 0;
        const auto* const bytes = static_cast<const char*>(pxk_bytes(block, &size));
        std::string result(bytes, static_cast<std::size_t>(size));
        pxk_release(block);
        return result;
    }

    pxk_object* loaded(const std::string& bytes, const pxk_load_options& options = {}) const {
        return pxk_load_picture_bytes(host_, bytes.data(), bytes.size(), "the bytes", &options);
    }

    pxk_file_info infoOf(const std::string& bytes) const {
        pxk_file_info info{};
        EXPECT_EQ(pxk_get_file_info_bytes(host_, bytes.data(), bytes.size(), "the bytes", &info), PXK_OK) << error();
        return info;
    }

    pxk_host* host_ = nullptr;
    std::filesystem::path folder_;
};

INSTANTIATE_TEST_SUITE_P(Applications, CFilesTest, ::testing::Values(PXK_CONSOLE, PXK_DESKTOP),
                         [](const auto& each) { return each.param == PXK_CONSOLE ? "console" : "desktop"; });

/// A JPEG with EXIF that holds an orientation and nothing else.
std::string withExif(const std::string& jpeg, char orientation) {
    const std::string exif = std::string("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 24) +
                             std::string({orientation, 0, 0, 0, 0, 0, 0, 0});
    const std::size_t size = exif.size() + 2;
    const std::string marker = {'\xFF', '\xE1', static_cast<char>(size >> 8), static_cast<char>(size)};
    return jpeg.substr(0, 2) + marker + exif + jpeg.substr(2);
}

TEST_P(CFilesTest, OpaquePixelsComeBackExactly) {
    const std::vector<std::uint32_t> pixels = {0xFF102030, 0xFF405060, 0xFFFFFFFF, 0xFF000000};
    pxk_object* const picture = row(pixels);
    ASSERT_EQ(pxk_save_picture(host_, picture, path("a.png").c_str()), PXK_OK) << error();
    pxk_object* const again = pxk_load_picture(host_, path("a.png").c_str());
    ASSERT_NE(again, nullptr) << error();
    EXPECT_EQ(pixelsOf(again), pixels);
    EXPECT_FALSE(reinterpret_cast<Picture*>(again)->hasAlphaChannel());
    EXPECT_EQ(infoOf(saved(again, "a.png")).has_alpha, 0);
    pxk_release(again);
    pxk_release(picture);
}

TEST_P(CFilesTest, TransparentPixelsComeBackAndAConsoleKeepsSevenBitsOfThem) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) pixels.push_back(alpha << 24 | 0x405060);
    // A picture of the desktop holds all of them.
    const Ref<Picture> picture = Picture::desktop(256, 1, {}, true);
    picture->setPixels(pixels);
    pxk_object* const again = loaded(saved(reinterpret_cast<pxk_object*>(picture.get()), "a.png"));
    ASSERT_NE(again, nullptr) << error();
    EXPECT_TRUE(reinterpret_cast<Picture*>(again)->hasAlphaChannel());
    const std::vector<std::uint32_t> read = pixelsOf(again);
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
        const std::uint32_t kept = read[alpha] >> 24;
        EXPECT_EQ(read[alpha] & 0xFFFFFF, 0x405060u);
        if (GetParam() == PXK_DESKTOP) {
            EXPECT_EQ(kept, alpha);
        } else {
            EXPECT_EQ(kept >> 1, alpha >> 1);
        }
    }
    pxk_release(again);
}

TEST_P(CFilesTest, FilesThatCannotBeReadOrWritten) {
    EXPECT_EQ(pxk_load_picture(host_, "/nowhere/picture.png"), nullptr);
    EXPECT_THAT(error(), HasSubstr("\"/nowhere/picture.png\""));
    EXPECT_EQ(pxk_load_picture(host_, nullptr), nullptr);
    EXPECT_EQ(error(), "argument \"path\" is NULL");
    EXPECT_EQ(loaded("no picture"), nullptr);
    EXPECT_THAT(error(), HasSubstr("cannot read picture \"the bytes\": "));
    EXPECT_EQ(pxk_load_picture_bytes(host_, nullptr, 3, "x", nullptr), nullptr);
    EXPECT_EQ(error(), "argument \"bytes\" is NULL");
    EXPECT_EQ(pxk_load_picture_bytes(host_, nullptr, 0, "x", nullptr), nullptr);
    EXPECT_THAT(error(), HasSubstr("it is empty"));
    pxk_object* const picture = row({0xFF000000});
    EXPECT_EQ(pxk_save_picture(host_, picture, "/nowhere/picture.png"), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("\"/nowhere/picture.png\""));
    EXPECT_EQ(pxk_save_picture_bytes(host_, picture, "no extension", nullptr), nullptr);
    EXPECT_THAT(error(), HasSubstr(".png"));
    EXPECT_EQ(pxk_save_picture(host_, nullptr, "x.png"), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"picture\" is NULL");
    pxk_release(picture);
}

TEST_P(CFilesTest, PicturesWithoutPixelsAreNotWritten) {
    const Ref<Picture> palette = Picture::palette(2, 2);
    EXPECT_EQ(pxk_save_picture(host_, reinterpret_cast<pxk_object*>(palette.get()), path("a.png").c_str()), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("has no pixels to write"));
    EXPECT_TRUE(std::filesystem::is_empty(folder_));
}

TEST_P(CFilesTest, SaveOptionsReachTheFile) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t i = 0; i < 3000; ++i) pixels.push_back(0xFF000000u | i * 0x9E3779B1u >> 8);
    pxk_object* const picture = row(pixels);
    pxk_save_options options{};
    options.format = "jpg";
    options.quality = 5;
    EXPECT_LT(saved(picture, "name", options).size(), saved(picture, "a.jpg").size() / 2);

    options = {};
    options.lossless = 1;
    pxk_object* const exact = loaded(saved(picture, "a.webp", options));
    EXPECT_EQ(pixelsOf(exact), pixels);
    pxk_release(exact);

    options = {};
    options.compression = PXK_NO_COMPRESSION;
    EXPECT_GT(saved(picture, "a.png", options).size(), pixels.size() * 3);
    options.compression = -2;
    EXPECT_EQ(pxk_save_picture_with(host_, picture, path("a.png").c_str(), &options), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("PXK_NO_COMPRESSION"));
    options.compression = 10;
    EXPECT_EQ(pxk_save_picture_with(host_, picture, path("a.png").c_str(), &options), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("0 to 9"));
    pxk_release(picture);
}

TEST_P(CFilesTest, MetadataStayWithThePictureAndAreCopiedOnRequest) {
    pxk_object* const plain = row({0xFF102030, 0xFF405060});
    const std::string camera = withExif(saved(plain, "a.jpg"), 6);
    pxk_object* const source = loaded(camera);
    ASSERT_NE(source, nullptr) << error();
    EXPECT_EQ(pxk_picture_width(source), 1);  // upright
    EXPECT_EQ(pxk_picture_height(source), 2);
    EXPECT_THAT(saved(source, "a.jpg"), HasSubstr("Exif"));
    EXPECT_THAT(saved(plain, "a.jpg"), testing::Not(HasSubstr("Exif")));

    EXPECT_EQ(pxk_copy_metadata(host_, source, plain), PXK_OK) << error();
    EXPECT_THAT(saved(plain, "a.jpg"), HasSubstr("Exif"));
    EXPECT_EQ(infoOf(saved(plain, "a.jpg")).orientation, 1);
    pxk_save_options options{};
    options.strip = 1;
    EXPECT_THAT(saved(plain, "a.jpg", options), testing::Not(HasSubstr("Exif")));

    pxk_object* const bare = row({0xFF000000});
    EXPECT_EQ(pxk_copy_metadata(host_, bare, plain), PXK_OK) << error();
    EXPECT_THAT(saved(plain, "a.jpg"), testing::Not(HasSubstr("Exif")));
    EXPECT_EQ(pxk_copy_metadata(host_, nullptr, plain), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"from\" is NULL");
    EXPECT_EQ(pxk_copy_metadata(host_, plain, nullptr), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"to\" is NULL");
    pxk_release(bare);
    pxk_release(source);
    pxk_release(plain);
}

TEST_P(CFilesTest, FilesAreDescribedWithoutTheirPixels) {
    pxk_object* const picture = row({0xFF102030, 0xFF405060, 0xFF000000});
    const std::string camera = withExif(saved(picture, "a.jpg"), 6);
    const pxk_file_info info = infoOf(camera);
    EXPECT_STREQ(info.format, "JPEG");
    EXPECT_EQ(info.width, 1);
    EXPECT_EQ(info.height, 3);
    EXPECT_EQ(info.bits_per_sample, 8);
    EXPECT_EQ(info.has_alpha, 0);
    EXPECT_STREQ(info.profile, "");
    EXPECT_EQ(info.orientation, 6);
    EXPECT_EQ(info.pages, 1);

    std::ofstream(path("a.jpg"), std::ios::binary) << camera;
    pxk_file_info onDisk{};
    EXPECT_EQ(pxk_get_file_info(host_, path("a.jpg").c_str(), &onDisk), PXK_OK) << error();
    EXPECT_EQ(onDisk.height, 3);
    EXPECT_EQ(pxk_get_file_info(host_, path("gone").c_str(), &onDisk), PXK_FAILED);
    EXPECT_THAT(error(), HasSubstr("gone"));
    EXPECT_EQ(pxk_get_file_info(host_, path("a.jpg").c_str(), nullptr), PXK_FAILED);
    EXPECT_EQ(error(), "argument \"info\" is NULL");
    pxk_release(picture);
}

TEST_P(CFilesTest, PagesAreChosenByNumber) {
    pxk_object* const picture = row({0xFF102030});
    const std::string file = saved(picture, "a.tif");
    pxk_object* const first = loaded(file, {1});
    EXPECT_NE(first, nullptr) << error();
    EXPECT_EQ(loaded(file, {2}), nullptr);
    EXPECT_THAT(error(), HasSubstr("page"));
    EXPECT_EQ(loaded(file, {-1}), nullptr);
    pxk_release(first);
    pxk_release(picture);
}

TEST_P(CFilesTest, NothingUnfinishedIsLeftToRemove) {
    pxk_object* const picture = row({0xFF102030});
    ASSERT_EQ(pxk_save_picture(host_, picture, path("a.png").c_str()), PXK_OK) << error();
    pxk_remove_unfinished_files();
    EXPECT_TRUE(std::filesystem::exists(path("a.png")));
    pxk_release(picture);
}

}  // namespace
}  // namespace pxktest

#endif
