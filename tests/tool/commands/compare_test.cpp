/// `pxk compare`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class CompareCommand : public testing::Test {
  protected:
    CompareCommand() {
        folder.writePicture("a.png", {2, 2, {0xFF000000U, 0xFF102030U, 0xFFFFFFFFU, 0xFF808080U}});
        folder.writePicture("b.png", {2, 2, {0xFF000000U, 0xFF112030U, 0xFFFFFAFFU, 0xFF80808AU}});
    }

    CommandResult compare(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "compare");
        return runTool(folder.path(), arguments);
    }

    PictureFolder folder;
};

TEST_F(CompareCommand, SaysThatTwoPicturesAreTheSame) {
    folder.writePicture("a.bmp", folder.readPicture("a.png"));
    const CommandResult result = compare({"a.png", "a.bmp"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "the pictures are identical: 2 x 2 pixels\n");
    EXPECT_EQ(result.error, "");
}

TEST_F(CompareCommand, CountsThePixelsThatDifferAndMeasuresEachChannel) {
    for (const std::vector<std::string>& both : {std::vector<std::string>{"a.png", "b.png"}, {"b.png", "a.png"}}) {
        const CommandResult result = compare(both);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "3 of 4 pixels differ\nlargest difference: red 1, green 5, blue 10, alpha 0\n");
        EXPECT_EQ(result.error, "");
    }
}

TEST_F(CompareCommand, LooksAtAlphaToo) {
    folder.writePicture("clear.png", {2, 2, {0xFF000000U, 0xFF102030U, 0xFFFFFFFFU, 0x00808080U}});
    const CommandResult result = compare({"a.png", "clear.png", "-o", "difference.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "1 of 4 pixels differ\nlargest difference: red 0, green 0, blue 0, alpha 255\n");
    EXPECT_EQ(folder.readPicture("difference.png").words,
              (std::vector<std::uint32_t>{0xFF000000U, 0xFF000000U, 0xFF000000U, 0xFFFFFFFFU}));
}

TEST_F(CompareCommand, PrintsJson) {
    EXPECT_EQ(compare({"a.png", "b.png", "--json"}).out,
              "{\"first\":\"a.png\",\"second\":\"b.png\",\"width\":2,\"height\":2,\"different\":3,"
              "\"largest\":{\"red\":1,\"green\":5,\"blue\":10,\"alpha\":0}}\n");
    const CommandResult same = compare({"a.png", "a.png", "--json"});
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_THAT(same.out, testing::HasSubstr("\"different\":0,"));
}

TEST_F(CompareCommand, DrawsTheDifferencesStretched) {
    EXPECT_EQ(compare({"a.png", "b.png", "-o", "difference.png"}).exitCode, 1);
    // 1, 5 and 10 of 10 at most.
    EXPECT_EQ(folder.readPicture("difference.png").words,
              (std::vector<std::uint32_t>{0xFF000000U, 0xFF1A0000U, 0xFF008000U, 0xFF0000FFU}));
    EXPECT_EQ(compare({"a.png", "a.png", "-o", "difference.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("difference.png").words, std::vector<std::uint32_t>(4, 0xFF000000U));
}

TEST_F(CompareCommand, EndsWith2OnAnError) {
    folder.writeText("broken.png", "no picture");
    const std::vector<std::vector<std::string>> mistakes = {{},
                                                            {"a.png"},
                                                            {"a.png", "b.png", "a.png"},
                                                            {"a.png", "broken.png"},
                                                            {"missing.png", "a.png"},
                                                            {"a.png", "b.png", "-o", "-"},
                                                            {"a.png", "b.png", "-o", "gone/d.png"},
                                                            {"a.png", "a.png", "-o", "d.unknown"}};
    for (const std::vector<std::string>& arguments : mistakes) {
        const CommandResult result = compare(arguments);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_THAT(folder.names(), ElementsAre("a.png", "b.png", "broken.png"));
}

TEST_F(CompareCommand, CannotCompareDifferentSizes) {
    folder.writePicture("wide.png", colourful(3, 2));
    const CommandResult result = compare({"a.png", "wide.png", "-o", "difference.png"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.error,
              "pxk: pictures of different sizes cannot be compared: \"a.png\" is 2 x 2, \"wide.png\" is 3 x 2\n");
    EXPECT_FALSE(folder.has("difference.png"));
}

}  // namespace
}  // namespace pxk::tool
