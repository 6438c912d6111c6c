/// Why a member of the plugin returned nil, as the tool explains it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::HasSubstr;

class NilRun : public testing::Test {
  protected:
    NilRun() {
        folder.writePicture("in.png", colourful(5, 3));
        folder.writePicture("wide.png", colourful(6, 3));
        folder.writePicture("small.png", colourful(5, 2));
    }

    /// The message of a chain that must fail while it runs.
    std::string failure(const std::string& chain) const {
        const CommandResult result = runTool(folder.path(), {"in.png", "-e", chain, "-o", "no.png"});
        EXPECT_EQ(result.exitCode, 1) << chain;
        EXPECT_FALSE(folder.has("no.png"));
        return result.error;
    }

    /// The message for a file that must be refused as a picture.
    std::string unreadable(const std::string& file) const {
        const CommandResult result = runTool(folder.path(), {file, "-o", "no.png"});
        EXPECT_EQ(result.exitCode, 1);
        return result.error;
    }

    PictureFolder folder;
};

TEST_F(NilRun, NamesTheSizesThatMustMatch) {
    EXPECT_EQ(failure("MergePicture(\"wide.png\")"),
              "pxk: in.png: MergePicturePXK: returned nil instead of a picture: the pictures must have the same size, "
              "but source1 is 5 x 3; source2, \"wide.png\", is 6 x 3\n");
    EXPECT_THAT(failure("CombinePictures(pic, \"small.png\", pic)"),
                HasSubstr("but red is 5 x 3; blue, \"small.png\", is 5 x 2; green is 5 x 3\n"));
}

TEST_F(NilRun, NamesAChannelThatIsTooSmall) {
    for (const char* channel : {"Red", "Green", "Blue"}) {
        const std::string member = std::string("Replace") + channel + "Channel";
        EXPECT_EQ(failure(member + "(\"small.png\")"),
                  "pxk: in.png: " + member +
                      "PXK: returned nil instead of a picture: the channel must be at least as " +
                      "large as the picture, but " + channel + "Channel, \"small.png\", is 5 x 2 and the picture is " +
                      "5 x 3\n");
    }
}

TEST_F(NilRun, NamesAnArgumentThatIsNil) {
    EXPECT_THAT(failure("MergePicture(pic, nil)"), HasSubstr("a picture: source2 is nil; give a picture\n"));
    EXPECT_THAT(failure("TintPicture(nil, &c000000, &c000000)"), HasSubstr("source is nil; give a picture\n"));
    EXPECT_EQ(failure("PictureSepia(SourcePicture = nil)"),
              "pxk: in.png: PictureSepiaPXK: Run returned false: SourcePicture is nil; give a picture\n");
}

TEST_F(NilRun, SaysWhatIsWrongWithAWave) {
    folder.writeText("samples", std::string(100, '\x7F'));
    const auto wave = [&](const std::string& arguments) {
        return failure("RenderSamples(\"samples\", " + arguments + ")");
    };
    const std::string colors = ", &c000000, &c000000, &c000000, ";
    EXPECT_THAT(wave("100, 1, 10, 10, 0" + colors + "9"), HasSubstr("Bits is 9; use 7, 8, 15, 16, -32 or -64\n"));
    EXPECT_THAT(wave("100, 1, 32768, 10, 0"), HasSubstr("Width is 32768; the largest is 32767\n"));
    EXPECT_THAT(wave("100, 1, 10, 40000, 0"), HasSubstr("Height is 40000; the largest is 32767\n"));
    folder.writeText("samples", "");
    EXPECT_THAT(wave("0, 1, 10, 10, 0"), HasSubstr("Samples is empty\n"));
    folder.writeText("samples", std::string(40000, '\x7F'));
    EXPECT_THAT(wave("0, 1, 0, 10, 0"), HasSubstr("give a Width from 1 to 32767\n"));
}

TEST_F(NilRun, SaysWhatIsWrongWithABinaryString) {
    EXPECT_THAT(failure("BinaryStringtoPicture(\"in.png\")"),
                HasSubstr("returned nil instead of a picture: a binary string begins with the letters PPIC\n"));
    ASSERT_EQ(runTool(folder.path(), {"in.png", "-o", "good.ppic"}).exitCode, 0);
    const std::string good = folder.readText("good.ppic");
    const auto broken = [&](const std::string& bytes) {
        folder.writeText("bad.ppic", bytes);
        return unreadable("bad.ppic");
    };
    EXPECT_EQ(broken(good.substr(0, 39)),
              "pxk: cannot read binary string \"bad.ppic\": it has 39 bytes; the header alone has 40\n");
    EXPECT_THAT(broken(good + "x"), HasSubstr(": it has 86 bytes; its header states 85\n"));
    std::string noHeight = good;
    noHeight[15] = '\0';
    EXPECT_THAT(broken(noHeight), HasSubstr(": its header states 5 x 0 pixels; each side is 1 to 32767\n"));
    std::string taller = good;
    taller[15] = '\4';
    EXPECT_THAT(broken(taller), HasSubstr("its header states 5 x 4 pixels, which need 100 bytes; it has 85\n"));
}

TEST_F(NilRun, RefusesFilesThatAreNoTable) {
    const auto table = [&](const std::string& bytes) {
        folder.writeText("table", bytes);
        return failure("TransformColors(\"table\", \"table\", \"table\")");
    };
    EXPECT_EQ(table(std::string(100, '\0')),
              "pxk: in.png: TransformColorsPXK: \"table\" has 100 bytes; a table has 256, and a curve begins with the "
              "word curve\n");
    EXPECT_THAT(table(std::string(257, '\0')), HasSubstr("\"table\" has 257 bytes; a table has 256"));
    EXPECT_THAT(table(""), HasSubstr("\"table\" has 0 bytes; a table has 256"));
    EXPECT_EQ(table("# darker\n\ncuvre smooth\n0 0\n255 200\n"),
              "pxk: in.png: TransformColorsPXK: \"table\", line 3: \"cuvre\" is unknown here; did you mean curve?\n");
    EXPECT_THAT(table("some words"), HasSubstr("\"table\" has 10 bytes; a table has 256"));
}

TEST_F(NilRun, TakesEveryTableOf256Bytes) {
    std::string inverse;
    for (int value = 255; value >= 0; --value) inverse += static_cast<char>(value);
    folder.writeText("table", inverse);
    const CommandResult result =
        runTool(folder.path(), {"in.png", "-e", "TransformColors(\"table\", \"table\", \"table\")", "-o", "out.png"});
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(folder.readPicture("out.png"), inverted(colourful(5, 3)));
}

}  // namespace
}  // namespace pxk::tool
