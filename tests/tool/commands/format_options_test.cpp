/// How pictures are written, what they hand on, and the module that does it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class FormatOptions : public testing::Test {
  protected:
    FormatOptions() { folder.writePicture("in.png", colourful(60, 50)); }

    CommandResult pxk(const std::vector<std::string>& arguments) const { return runTool(folder.path(), arguments); }

    /// The size of the file that in.png becomes.
    std::size_t sizeOf(const std::string& name, std::vector<std::string> options) const {
        options.insert(options.begin(), {"in.png", "-o", name});
        EXPECT_EQ(pxk(options).error, "");
        return folder.readText(name).size();
    }

    PictureFolder folder;
};

/// A JPEG with EXIF that holds an orientation and nothing else.
std::string withOrientation(const std::string& jpeg, char orientation) {
    const std::string exif = std::string("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 24) +
                             std::string({orientation, 0, 0, 0, 0, 0, 0, 0});
    const std::size_t size = exif.size() + 2;
    const std::string marker = {'\xFF', '\xE1', static_cast<char>(size >> 8U), static_cast<char>(size)};
    return jpeg.substr(0, 2) + marker + exif + jpeg.substr(2);
}

TEST_F(FormatOptions, CopiesKeepEveryAlphaExactly) {
    Pixels pixels = colourful(16, 16);
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) pixels.words[alpha] = alpha << 24U | 0x204060U;
    folder.writePicture("alpha.png", pixels);
    EXPECT_EQ(pxk({"alpha.png", "-o", "copy.tif"}).error, "");
    EXPECT_EQ(folder.readPicture("copy.tif"), pixels);
    EXPECT_EQ(pxk({"compare", "alpha.png", "copy.tif"}).exitCode, 0);

    pixels.words[100] += 0x01000000U;
    folder.writePicture("other.png", pixels);
    EXPECT_EQ(pxk({"compare", "alpha.png", "other.png"}).exitCode, 1);
    EXPECT_EQ(pxk({"alpha.png", "-o", "console.tif", "--application", "console"}).error, "");
    EXPECT_NE(folder.readPicture("console.tif"), folder.readPicture("copy.tif"));
}

TEST_F(FormatOptions, ChooseTheQuality) {
    for (const char* name : {"a.jpg", "a.webp", "a.avif"}) {
        EXPECT_LT(sizeOf(name, {"--quality", "5"}), sizeOf(name, {"--quality", "95"})) << name;
    }
    EXPECT_THAT(pxk({"in.png", "-o", "out.png", "--quality", "5"}).error, HasSubstr("the format has no quality"));
    EXPECT_THAT(pxk({"in.png", "-o", "out.ppic", "--quality", "5"}).error, HasSubstr("no quality and no compression"));
    EXPECT_FALSE(folder.has("out.png") || folder.has("out.ppic"));
}

TEST_F(FormatOptions, ChooseTheCompression) {
    EXPECT_GT(sizeOf("none.png", {"--compression", "0"}), 60U * 50U * 3U);
    EXPECT_LT(sizeOf("most.png", {"--compression", "9"}), sizeOf("none.png", {"--compression", "0"}));
    EXPECT_EQ(folder.readPicture("none.png"), colourful(60, 50));
}

TEST_F(FormatOptions, KeepEveryPixelWhenLossless) {
    for (const char* name : {"a.webp", "a.avif", "a.png"}) {
        EXPECT_EQ(pxk({"in.png", "-o", name, "--lossless"}).error, "");
        EXPECT_EQ(folder.readPicture(name), colourful(60, 50)) << name;
    }
    EXPECT_EQ(pxk({"in.png", "-o", "a.jpg", "--lossless"}).exitCode, 1);
    EXPECT_FALSE(folder.has("a.jpg"));
}

TEST_F(FormatOptions, HandOnMetadataAndPixelsUpright) {
    EXPECT_EQ(pxk({"in.png", "-o", "flat.jpg"}).exitCode, 0);
    folder.writeText("camera.jpg", withOrientation(folder.readText("flat.jpg"), 6));
    EXPECT_EQ(pxk({"camera.jpg", "-e", "Invert", "-o", "out.jpg"}).error, "");
    EXPECT_THAT(folder.readText("out.jpg"), HasSubstr("Exif"));
    EXPECT_EQ(pxk({"info", "out.jpg"}).out,
              "out.jpg: JPEG, 50 x 60, 8 bits, no alpha, no profile, orientation 1, 1 page\n");
    EXPECT_EQ(pxk({"camera.jpg", "-e", "Invert", "-o", "bare.jpg", "--strip"}).error, "");
    EXPECT_THAT(folder.readText("bare.jpg"), Not(HasSubstr("Exif")));
    EXPECT_EQ(pxk({"flat.jpg", "-e", "MergePicture(\"flat.jpg\")", "-o", "none.jpg"}).error, "");
    EXPECT_THAT(folder.readText("none.jpg"), Not(HasSubstr("Exif")));
}

TEST_F(FormatOptions, ReadThePageThatIsNamed) {
    folder.writePicture("one.png", {2, 2, std::vector<std::uint32_t>(4, 0xFF102030U)});
    EXPECT_EQ(pxk({"one.png", "-o", "one.gif"}).exitCode, 0);
    EXPECT_EQ(pxk({"one.gif", "-o", "out.png", "--page", "1"}).error, "");
    EXPECT_EQ(folder.readPicture("out.png"), folder.readPicture("one.png"));
    EXPECT_THAT(pxk({"one.gif", "-o", "out2.png", "--page", "2"}).error, HasSubstr("page"));
    EXPECT_EQ(pxk({"in.png", "-o", "in.ppic"}).exitCode, 0);
    EXPECT_EQ(pxk({"in.ppic", "-o", "out3.png", "--page", "1"}).exitCode, 0);
    EXPECT_THAT(pxk({"in.ppic", "-o", "out2.png", "--page", "2"}).error, HasSubstr("it has one page"));
    EXPECT_FALSE(folder.has("out2.png"));
}

// ---- standard input and output

TEST_F(FormatOptions, ReadStandardInputAndWriteStandardOutput) {
    const std::string png = folder.readText("in.png");
    const CommandResult piped = runTool(folder.path(), {"-", "-e", "Invert", "-o", "-", "--format", "bmp"}, png);
    EXPECT_EQ(piped.exitCode, 0);
    EXPECT_EQ(piped.error, "");
    folder.writeText("out.bmp", piped.out);
    EXPECT_EQ(folder.readPicture("out.bmp"), inverted(colourful(60, 50)));
    EXPECT_EQ(runTool(folder.path(), {"-", "-e", "isWhite"}, png).out, "false\n");
}

TEST_F(FormatOptions, PassBinaryStringsThroughPipesToo) {
    const CommandResult written = pxk({"in.png", "-o", "-", "--format", "ppic"});
    EXPECT_THAT(written.out, testing::StartsWith("PPIC"));
    EXPECT_EQ(runTool(folder.path(), {"-", "-o", "out.png"}, written.out).error, "");
    EXPECT_EQ(folder.readPicture("out.png"), colourful(60, 50));
    EXPECT_EQ(pxk({"in.png", "-e", "PicturetoBinaryString", "-o", "-"}).out, written.out);
}

TEST_F(FormatOptions, SayWhatIsWrongWithAPipe) {
    EXPECT_EQ(runTool(folder.path(), {"-", "-o", "out.png"}).error,
              "pxk: cannot read picture \"standard input\": it is empty; a picture file is needed\n");
    EXPECT_THAT(pxk({"in.png", "-o", "-"}).error, HasSubstr("choose the format with --format"));
    const CommandResult unknown = pxk({"in.png", "-o", "-", "--format", "xyz"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.out, "");
    EXPECT_THAT(unknown.error, HasSubstr("\"standard output\""));
    EXPECT_THAT(unknown.error, HasSubstr(".ppic stores a binary string"));
    const CommandResult shown =
        runToolOnTerminal(folder.path(), {"in.png", "-o", "-", "--format", "png"}, Terminal::output);
    EXPECT_EQ(shown.exitCode, 2);
    EXPECT_EQ(shown.out, "");
    EXPECT_THAT(folder.names(), ElementsAre("in.png"));
}

// ---- the module

class FilesModule : public testing::Test {
  protected:
    FilesModule() {
        namespace fs = std::filesystem;
        const fs::path built = fs::path(PXK_TOOL_PATH).parent_path();
        for (const fs::directory_entry& each : fs::directory_iterator(built)) {
            const std::string name = each.path().filename().string();
            const bool isNeeded = name == "pxk" || name.starts_with("libpxkhost") || name.starts_with("PicturePXK.");
            if (isNeeded) fs::copy_file(each.path(), folder.path(name));
        }
        folder.writePicture("in.png", colourful(3, 2));
    }

    CommandResult pxk(const std::vector<std::string>& arguments) const {
        return runProgram(folder.path("pxk"), folder.path(), arguments);
    }

    PictureFolder folder;
};

TEST_F(FilesModule, IsNotNeededWithoutAPictureFile) {
    EXPECT_EQ(pxk({"help", "Invert"}).exitCode, 0);
    EXPECT_EQ(pxk({"list"}).exitCode, 0);
}

TEST_F(FilesModule, IsNamedWhenItIsMissing) {
    const CommandResult result = pxk({"in.png", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, HasSubstr("picture files need the module \"" + folder.path("pxkfiles")));
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
}

TEST_F(FilesModule, SaysWhatToInstallWhenItCannotBeLoaded) {
    folder.writeText("pxkfiles.so", "no library");
    const CommandResult result = pxk({"in.png", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, HasSubstr("picture files need libvips: apt install libvips42"));
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
}

}  // namespace
}  // namespace pxk::tool
