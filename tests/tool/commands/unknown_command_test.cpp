/// Words that are neither a command nor a file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

std::string refusalOf(const PictureFolder& folder, const std::vector<std::string>& arguments) {
    const CommandResult result = runTool(folder.path(), arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    return result.error;
}

TEST(UnknownCommand, SuggestsTheNearestOne) {
    const PictureFolder folder;
    EXPECT_EQ(refusalOf(folder, {"lst"}), "pxk: there is no file and no command \"lst\"; did you mean list?\n");
    EXPECT_EQ(refusalOf(folder, {"LIST"}), "pxk: there is no file and no command \"LIST\"; did you mean list?\n");
    EXPECT_EQ(refusalOf(folder, {"hlep", "Invert"}),
              "pxk: there is no file and no command \"hlep\"; did you mean help?\n");
    EXPECT_EQ(refusalOf(folder, {"histogramm"}),
              "pxk: there is no file and no command \"histogramm\"; did you mean histogram?\n");
    EXPECT_EQ(refusalOf(folder, {"version"}),
              "pxk: there is no file and no command \"version\"; did you mean --version?\n");
}

TEST(UnknownCommand, SuggestsNothingFarAway) {
    const PictureFolder folder;
    EXPECT_EQ(refusalOf(folder, {"x.png"}), "pxk: there is no file and no command \"x.png\"\n");
    EXPECT_EQ(refusalOf(folder, {"photograph"}), "pxk: there is no file and no command \"photograph\"\n");
    EXPECT_EQ(refusalOf(folder, {"a"}), "pxk: there is no file and no command \"a\"\n");
}

TEST(UnknownCommand, IsNotAFileThatExists) {
    const PictureFolder folder;
    folder.writeText("lst", "");
    EXPECT_EQ(refusalOf(folder, {"lst"}),
              "pxk: there is nothing to do; give a chain with -e, or say where to write the picture with -o\n");
}

TEST(UnknownCommand, IsAnInputWhenThereIsWorkForIt) {
    const PictureFolder folder;
    const CommandResult result = runTool(folder.path(), {"lst", "-e", "Invert", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "pxk: cannot read picture \"lst\": No such file or directory\n");
}

TEST(UnknownOption, IsSuggestedFromThoseOfTheCommand) {
    const PictureFolder folder;
    const auto error = [&](const std::vector<std::string>& arguments) {
        const CommandResult result = runTool(folder.path(), arguments);
        EXPECT_EQ(result.exitCode, 2);
        return result.error;
    };
    EXPECT_THAT(error({"in.png", "--outptu", "x.png"}), testing::HasSubstr("; did you mean --output?; see pxk --help"));
    EXPECT_THAT(error({"in.png", "--outptu=x.png"}), testing::HasSubstr("did you mean --output?"));
    EXPECT_THAT(error({"find", "--tolerence", "3", "a", "b"}), testing::HasSubstr("did you mean --tolerance?"));
    EXPECT_THAT(error({"in.png", "--zzzzzzzz"}), testing::Not(testing::HasSubstr("did you mean")));
}

TEST(UnknownTopic, IsSuggestedByHelp) {
    const PictureFolder folder;
    EXPECT_EQ(runTool(folder.path(), {"help", "histgoram"}).error,
              "pxk: there is no member and no command \"histgoram\"; did you mean histogram?\n");
    EXPECT_THAT(runTool(folder.path(), {"help", "chian"}).error, testing::HasSubstr("did you mean chain?"));
    EXPECT_THAT(runTool(folder.path(), {"help", "Inverrt"}).error, testing::HasSubstr("did you mean InvertPXK?"));
}

}  // namespace
}  // namespace pxk::tool
