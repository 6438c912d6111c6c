/// Looks: .cube files as a step of a chain, and the command that writes them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string examples = PXK_EXAMPLES;

class Look : public testing::Test {
  protected:
    CommandResult pxk(const std::vector<std::string>& arguments) const { return runTool(folder.path(), arguments); }

    /// The picture after a chain that is expected to succeed.
    Pixels after(const std::string& chain, const std::string& input = "in.png") const {
        const CommandResult result = pxk({input, "-e", chain, "-o", "out.png"});
        EXPECT_EQ(result.exitCode, 0) << result.error;
        return folder.readPicture("out.png");
    }

    void writeCube(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "cube");
        const CommandResult result = pxk(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.error;
        EXPECT_EQ(result.out + result.error, "");
    }

    PictureFolder folder;
};

/// Every grey, and as many colours.
Pixels greysAndColours() {
    Pixels pixels = colourful(256, 2);
    for (std::uint32_t v = 0; v < 256; ++v) pixels.words[v] = 0xFF000000U | v * 0x010101U;
    return pixels;
}

int channelOf(std::uint32_t word, unsigned shift) { return static_cast<int>(word >> shift & 0xFFU); }

// ---- the step

TEST_F(Look, LeavesAPictureAsItIsWhenItIsTheIdentity) {
    folder.writePicture("in.png", greysAndColours());
    for (const char* size : {"2", "16", "17", "33"}) {
        writeCube({"-o", "start.cube", "--size", size});
        EXPECT_EQ(after("PictureLut3D(\"start.cube\")"), greysAndColours()) << size;
    }
}

TEST_F(Look, KnowsWhichChannelIsWhich) {
    folder.writePicture("in.png", {2, 1, {0xFFFF8000U, 0xFF1040FFU}});
    folder.writeText("turn.cube",
                     "# red becomes green, green becomes blue, blue becomes red\nLUT_3D_SIZE 2\n"
                     "0 0 0\n0 1 0\n0 0 1\n0 1 1\n1 0 0\n1 1 0\n1 0 1\n1 1 1\n");
    EXPECT_EQ(after("PictureLut3DPXK(\"turn.cube\")").words, (std::vector<std::uint32_t>{0xFF00FF80U, 0xFFFF1040U}));
}

TEST_F(Look, HoldsBrighterThanWhiteAndDarkerThanBlack) {
    folder.writePicture("in.png", {3, 1, {0xFF000000U, 0xFF808080U, 0xFFFFFFFFU}});
    folder.writeText("wide.cube",
                     "LUT_3D_SIZE 2\n-1 -1 -1\n2 -1 -1\n-1 2 -1\n2 2 -1\n-1 -1 2\n2 -1 2\n-1 2 2\n2 2 2\n");
    // 128 / 255 * 3 - 1 of 255 is 129.
    EXPECT_EQ(after("PictureLut3D(\"wide.cube\")").words,
              (std::vector<std::uint32_t>{0xFF000000U, 0xFF818181U, 0xFFFFFFFFU}));
}

TEST_F(Look, TakesSettingsByNameBesideIt) {
    folder.writePicture("in.png", {2, 1, {0xFF102030U, 0xFF405060U}});
    writeCube({"-e", "Invert", "-o", "invert.cube"});
    EXPECT_EQ(after("PictureLut3D(\"invert.cube\", MaxX = 1)").words,
              (std::vector<std::uint32_t>{0xFFEFDFCFU, 0xFF000000U}));
    EXPECT_EQ(after("PictureLut3D(\"invert.cube\", Table(0, 0, 0, 0) = 0)").height, 1);
}

TEST_F(Look, IsReadOnceForSeveralPictures) {
    folder.writePicture("a.png", colourful(3, 3));
    folder.writePicture("b.png", colourful(4, 4));
    writeCube({"-e", "Invert", "-o", "invert.cube"});
    EXPECT_EQ(pxk({"a.png", "b.png", "-e", "PictureLut3D(\"invert.cube\")", "-o", "out/"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out/b.png"), inverted(colourful(4, 4)));
    const CommandResult result = pxk({"a.png", "b.png", "-e", "PictureLut3D(\"none.cube\")", "-o", "out2/"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "pxk: cannot read \"none.cube\": No such file or directory\n");
}

TEST_F(Look, IsRefusedWithFileAndLine) {
    folder.writePicture("in.png", colourful(3, 3));
    folder.writeText("bad.cube", "LUT_3D_SIZE 2\n0 0 0\n0 zero 0\n");
    const CommandResult result = pxk({"in.png", "-e", "PictureLut3D(\"bad.cube\")", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "pxk: \"bad.cube\", line 3: \"zero\" is not a number\n");
    EXPECT_FALSE(folder.has("out.png"));
}

TEST_F(Look, IsOneFileNameForAClassWithATable) {
    folder.writePicture("in.png", colourful(3, 3));
    const auto refused = [&](const std::string& chain) {
        const CommandResult result = pxk({"in.png", "-e", chain, "-o", "out.png"});
        EXPECT_EQ(result.exitCode, 2);
        return result.error;
    };
    EXPECT_THAT(
        refused("PictureLut3D(3)"),
        HasSubstr("column 14: PictureLut3DPXK takes its properties by name, after the name of one .cube file in "
                  "quotes: Name = value; its properties are SourcePicture"));
    EXPECT_THAT(refused("PictureLut3D(\"a.cube\", \"b.cube\")"), HasSubstr("column 14"));
    EXPECT_THAT(refused("PictureSepia(\"a.cube\")"), HasSubstr("takes its properties by name: Name = value"));
}

TEST_F(Look, IsInTheHelpOfTheClass) {
    EXPECT_THAT(pxk({"help", "PictureLut3D"}).out, HasSubstr("  PictureLut3DPXK(\"look.cube\", ...)"));
    EXPECT_THAT(pxk({"help", "PictureSepia"}).out, testing::Not(HasSubstr(".cube")));
}

// ---- compared with another implementation

class LookBesideFfmpeg : public Look {
  protected:
    void SetUp() override {
        if (std::system("ffmpeg -version >/dev/null 2>&1") != 0) GTEST_SKIP() << "ffmpeg is not installed";
    }

    /// The bytes of red, green and blue of a picture after its filters.
    std::string filtered(const std::string& input, const std::string& filters) const {
        const std::string command = "cd '" + folder.path() + "' && ffmpeg -v error -y -i '" + input + "' -vf '" +
                                    filters + ",format=rgb24' -f rawvideo filtered.rgb";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return folder.readText("filtered.rgb");
    }

    /// The largest difference of a channel.
    static int largestDifference(const Pixels& pixels, const std::string& bytes) {
        EXPECT_EQ(bytes.size(), 3 * pixels.words.size());
        int largest = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const int channel = channelOf(pixels.words[i / 3], 16 - 8 * static_cast<unsigned>(i % 3));
            largest = std::max(largest, std::abs(channel - static_cast<unsigned char>(bytes[i])));
        }
        return largest;
    }

    void expectAlike(const std::string& input) const {
        const std::string other = filtered(input, "format=gbrp,lut3d=file=look.cube:interp=tetrahedral");
        const Pixels ours = after("PictureLut3D(\"look.cube\")", input);
        EXPECT_LE(largestDifference(ours, other), 1);
        // What is compared is no untouched picture.
        EXPECT_GT(largestDifference(folder.readPicture(input), other), 20);
    }
};

TEST_F(LookBesideFfmpeg, GivesTheSamplePictureTheSameLook) {
    folder.writeText("sample.png", folder.readText(examples + "/sample.png"));
    folder.writeText("look.cube", folder.readText(examples + "/dusk.cube"));
    expectAlike("sample.png");
}

TEST_F(LookBesideFfmpeg, GivesEveryColourTheSameLook) {
    folder.writePicture("in.png", colourful(512, 300));
    folder.writeText("look.cube", folder.readText(examples + "/dusk.cube"));
    expectAlike("in.png");
}

// Their points are among those of the class, so that resampling adds nothing to the difference.
TEST_F(LookBesideFfmpeg, ResamplesCoarserCubes) {
    folder.writePicture("in.png", colourful(512, 300));
    for (const char* size : {"2", "4", "6"}) {
        writeCube({"-e", "ChangeSaturation(-90).ChangeContrast(0.5).TintPicture(&c808020, &cFFA060)", "-o", "look.cube",
                   "--size", size});
        expectAlike("in.png");
    }
}

// The other implementation takes no notice of DOMAIN_MIN.
TEST_F(LookBesideFfmpeg, UnderstandsTheEndOfTheDomainAlike) {
    folder.writePicture("in.png", colourful(512, 300));
    writeCube({"-e", "Invert", "-o", "look.cube", "--size", "2"});
    std::string cube = folder.readText("look.cube");
    cube.insert(cube.find("1.000000"), "DOMAIN_MAX 1.0 2.0 3.0\n");
    folder.writeText("look.cube", cube);
    expectAlike("in.png");
}

// ---- the command

TEST_F(Look, IsWrittenFromAChain) {
    writeCube({"-e", "Invert", "-o", "invert.cube", "--size", "4"});
    EXPECT_THAT(
        folder.readText("invert.cube"),
        StartsWith("TITLE \"invert\"\nLUT_3D_SIZE 4\n1.000000 1.000000 1.000000\n0.666667 1.000000 1.000000\n"));
    folder.writePicture("in.png", greysAndColours());
    EXPECT_EQ(after("PictureLut3D(\"invert.cube\")"), inverted(greysAndColours()));
}

TEST_F(Look, IsWrittenInTheOrderOfTheFormat) {
    writeCube({"-o", "start.cube", "--size", "2"});
    EXPECT_EQ(folder.readText("start.cube"),
              "TITLE \"start\"\nLUT_3D_SIZE 2\n"
              "0.000000 0.000000 0.000000\n1.000000 0.000000 0.000000\n0.000000 1.000000 0.000000\n"
              "1.000000 1.000000 0.000000\n0.000000 0.000000 1.000000\n1.000000 0.000000 1.000000\n"
              "0.000000 1.000000 1.000000\n1.000000 1.000000 1.000000\n");
}

TEST_F(Look, IsWrittenForAllColours) {
    writeCube({"-e", "Invert.Invert", "-o", "same.cube", "--size", "52"});
    writeCube({"-o", "start.cube", "--size", "52"});
    EXPECT_EQ(folder.readText("same.cube").substr(12), folder.readText("start.cube").substr(13));
}

TEST_F(Look, OfTheExamplesComesFromItsChain) {
    const CommandResult result =
        runTool(examples + "/..", {"cube", "-f", "examples/dusk.chain", "-o", folder.path("dusk.cube")});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(folder.readText("dusk.cube"), folder.readText(examples + "/dusk.cube"));
}

TEST_F(Look, IsNotWrittenForStepsThatDependOnThePlace) {
    folder.writePicture("small.png", colourful(2, 2));
    struct Mistake {
        const char* chain;
        const char* message;
        const char* caret;
    };
    const std::string otherPicture = "MergePicture(pic, \"small.png\")";
    const Mistake mistakes[] = {
        {"InvertGray(3, 3, 5, 5)", "the result of InvertGrayPXK depends on where a pixel is (left)", "^"},
        {"Invert(0, 0, 20000, 20000)", "depends on where a pixel is (width)", "^"},
        {"Invert.PictureSepia(MinX = 3, MaxX = 4)", "PictureSepiaPXK depends on where a pixel is (MinX)", "       ^"},
        {"PictureSepia(MaxY = 30000)", "depends on where a pixel is (MaxY)", "^"},
        {"MergePicture(pic, pic.Invert(1, 0, 2, 2))", "InvertPXK depends on where a pixel is (left)",
         "                      ^"},
        {"Invert.ExtractColorRectangleMask", "ExtractColorRectangleMaskPXK makes different colours of one colour",
         "       ^"},
        {"Invert.EmbeddedMask(true).Invert", "EmbeddedMaskPXK works on the mask", "       ^"},
        {"EmbeddedMask(false) = pic", "EmbeddedMaskPXK works on the mask", "^"},
        {otherPicture.c_str(), "depends on where a pixel is, since it uses \"small.png\"", "^"},
        {"TransformColors(nil,nil,nil,\"small.png\")", "since it uses \"small.png\"", "^"},
        {"PictureSepia(SourcePicture=\"small.png\")", "since it uses \"small.png\"", "^"}};
    for (const Mistake& each : mistakes) {
        const CommandResult result = pxk({"cube", "-e", each.chain, "-o", "look.cube"});
        EXPECT_EQ(result.exitCode, 2) << each.chain;
        EXPECT_THAT(result.error, StartsWith("pxk: the chain, column "));
        EXPECT_THAT(result.error, HasSubstr(each.message));
        EXPECT_THAT(result.error, HasSubstr("a cube can hold only steps that map each colour to another\n"));
        EXPECT_THAT(result.error, testing::EndsWith(std::string("\n  ") + each.chain + "\n  " + each.caret + "\n"));
    }
    EXPECT_FALSE(folder.has("look.cube"));
    folder.writeText("scroll.chain", "Invert\nScrollHorizontal(1, true, false)\nInvert\n");
    EXPECT_THAT(pxk({"cube", "-f", "scroll.chain", "-o", "look.cube"}).error,
                StartsWith("pxk: scroll.chain, line 2, column 1: the result of ScrollHorizontalPXK depends on where"));
}

TEST_F(Look, IsWrittenForStepsThatOnlyLookAsIfTheyDependedOnThePlace) {
    writeCube({"-e", "MergePicture(pic, pic.Invert)", "-o", "merged.cube"});
    writeCube({"-e", "PictureSepia(MinX = 0, MaxX = 0)", "-o", "sepia.cube"});
    writeCube({"-e", "PictureSepia", "-o", "plain.cube"});
    EXPECT_EQ(folder.readText("sepia.cube").substr(13), folder.readText("plain.cube").substr(13));
}

TEST_F(Look, IsNotWrittenWhenSomethingIsWrong) {
    folder.writePicture("small.png", colourful(2, 2));
    const std::vector<std::pair<std::vector<std::string>, int>> mistakes = {
        {{}, 2},
        {{"-o", ""}, 2},
        {{"-o", "-"}, 2},
        {{"-o", "look.cube", "--size", "1"}, 2},
        {{"-o", "look.cube", "--size", "257"}, 2},
        {{"-o", "look.cube", "--size", "many"}, 2},
        {{"-o", "look.cube", "-e", "Invert", "--size", "33"}, 2},
        {{"-o", "look.cube", "-e", "isWhite"}, 2},
        {{"-o", "look.cube", "-e", ""}, 2},
        {{"-o", "look.cube", "-e", "BinaryStringtoPicture(\"\")"}, 1},
        {{"-o", "look.cube", "-f", "none.chain"}, 1},
        {{"-o", "gone/look.cube"}, 1}};
    for (auto [arguments, exitCode] : mistakes) {
        arguments.insert(arguments.begin(), "cube");
        const CommandResult result = pxk(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << testing::PrintToString(arguments);
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_THAT(folder.names(), testing::ElementsAre("small.png"));
}

}  // namespace
}  // namespace pxk::tool
