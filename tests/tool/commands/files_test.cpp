/// Where results go, and what stays as it was when something goes wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Files : public testing::Test {
  protected:
    Files() { folder.writePicture("in.png", colourful(5, 3)); }

    CommandResult pxk(const std::vector<std::string>& arguments) const { return runTool(folder.path(), arguments); }

    PictureFolder folder;
};

TEST_F(Files, WritesTheResult) {
    const CommandResult result = pxk({"in.png", "-e", "InvertPXK", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out + result.error, "");
    EXPECT_EQ(folder.readPicture("out.png"), inverted(colourful(5, 3)));
    EXPECT_THAT(folder.names(), ElementsAre("in.png", "out.png"));
}

TEST_F(Files, ConvertsWithoutAChain) {
    for (const char* name : {"out.bmp", "out.tif", "out.png"}) {
        EXPECT_EQ(pxk({"in.png", "-o", name}).exitCode, 0) << name;
        EXPECT_EQ(folder.readPicture(name), colourful(5, 3)) << name;
    }
}

TEST_F(Files, MayReplaceItsInput) {
    EXPECT_EQ(pxk({"in.png", "-e", "Invert", "-o", "in.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("in.png"), inverted(colourful(5, 3)));
    EXPECT_THAT(folder.names(), ElementsAre("in.png"));
}

TEST_F(Files, LeavesAnExistingResultAloneWhenTheChainFails) {
    folder.writeText("out.png", "precious");
    folder.writeText("broken.png", "no picture at all");
    EXPECT_EQ(pxk({"broken.png", "-e", "Invert", "-o", "out.png"}).exitCode, 1);
    EXPECT_EQ(pxk({"in.png", "-e", "Invert.Invret", "-o", "out.png"}).exitCode, 2);
    EXPECT_EQ(pxk({"missing.png", "-o", "out.png"}).exitCode, 1);
    EXPECT_EQ(folder.readText("out.png"), "precious");
    EXPECT_THAT(folder.names(), ElementsAre("broken.png", "in.png", "out.png"));
}

TEST_F(Files, SaysInOneLineWhyAnInputCannotBeRead) {
    folder.writePicture("large.png", colourful(300, 300));
    const std::string whole = folder.readText("large.png");
    folder.writeText("cut.png", whole.substr(0, whole.size() / 2));
    folder.writeText("empty.png", "");
    folder.writeText("text.png", "hello");
    for (const char* name : {"cut.png", "empty.png", "text.png", "missing.png", "."}) {
        const CommandResult result = pxk({name, "-e", "Invert", "-o", "out.png"});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_EQ(result.out, "") << name;
        EXPECT_THAT(result.error, StartsWith("pxk: cannot read "));
        EXPECT_THAT(result.error, HasSubstr(std::string("\"") + name + "\": "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
        EXPECT_FALSE(folder.has("out.png")) << name;
    }
}

TEST_F(Files, RefusesAnInputThatClaimsToBeHuge) {
    folder.writePicture("small.bmp", colourful(2, 2));
    std::string bytes = folder.readText("small.bmp");
    const std::string wide("\xFF\xFF\xFF\x7F", 4);
    bytes.replace(18, 4, wide).replace(22, 4, wide);
    folder.writeText("huge.bmp", bytes);
    const CommandResult result = pxk({"huge.bmp", "-e", "Invert", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, StartsWith("pxk: cannot read BMP picture \"huge.bmp\": "));
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    EXPECT_FALSE(folder.has("out.png"));
}

TEST_F(Files, KeepsTheLinkThatItsResultIsNamedBy) {
    folder.writeText("real.txt", "old");
    std::filesystem::create_symlink("real.txt", folder.path("link.txt"));
    const std::vector<std::string> echo = {"in.png",   "-e",       "Echo(\"new\")", "-o",
                                           "link.txt", "--plugin", PXK_TRIAL_PLUGIN};
    EXPECT_EQ(pxk(echo).exitCode, 0);
    EXPECT_EQ(folder.readText("real.txt"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.txt")));
}

TEST_F(Files, SaysWhyAResultCannotBeWritten) {
    folder.writeText("file", "");
    for (const char* name : {"file/out.png", "gone/out.png", "out.unknown", "out"}) {
        const CommandResult result = pxk({"in.png", "-e", "Invert", "-o", name});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_THAT(folder.names(), ElementsAre("file", "in.png"));
}

TEST_F(Files, RefusesADeviceForItsResult) {
    for (const char* name : {"/dev/null", "-"}) {
        const CommandResult result = pxk({"in.png", "-e", "Invert", "-o", name});
        EXPECT_EQ(result.exitCode, 2) << name;
        EXPECT_THAT(result.error, StartsWith("pxk: "));
    }
    struct stat status {};
    ASSERT_EQ(::stat("/dev/null", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST_F(Files, AsksForAPlaceWhenTheChainEndsInAPicture) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"in.png", "-e", "Invert"}, {"in.png", "-e", "Invert", "--json"}}) {
        const CommandResult result = pxk(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.error, "pxk: the chain ends in a picture; say where it goes with -o FILE\n");
    }
}

TEST_F(Files, NamesEveryExtensionWhenItKnowsNoneByThatName) {
    const CommandResult result = pxk({"in.png", "-o", "out.unknown"});
    EXPECT_THAT(result.error, HasSubstr(".png"));
    EXPECT_THAT(result.error, HasSubstr(".ppic"));
    EXPECT_THAT(pxk({"in.png", "-o", "gone/out.png"}).error, Not(HasSubstr(".ppic")));
}

TEST_F(Files, TakesANameThatBeginsWithADashAfterTwoDashes) {
    folder.writePicture("-in.png", colourful(2, 2));
    EXPECT_EQ(pxk({"-e", "Invert", "-o", "out.png", "--", "-in.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), inverted(colourful(2, 2)));
}

TEST_F(Files, TakesAnInputNamedLikeACommand) {
    folder.writeText("list", folder.readText("in.png"));
    EXPECT_EQ(pxk({"-e", "Invert", "-o", "out.png", "./list"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png"), inverted(colourful(5, 3)));
}

TEST_F(Files, KeepsTerminalControlsInNamesFromTheTerminal) {
    const CommandResult result = pxk({"\x1b[2J.png", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, Not(HasSubstr("\x1b")));
    EXPECT_THAT(result.error, HasSubstr("\\x1B[2J.png"));
}

TEST_F(Files, EscapesNamesOnATerminalOnly) {
    folder.writePicture("\x1b[2J.png", colourful(2, 2));
    const std::vector<std::string> arguments = {"\x1b[2J.png", "in.png", "-e", "isWhite"};
    EXPECT_EQ(pxk(arguments).out, "\x1b[2J.png: false\nin.png: false\n");
    EXPECT_EQ(runToolOnTerminal(folder.path(), arguments, Terminal::output).out,
              "\\x1B[2J.png: false\r\nin.png: false\r\n");
}

TEST_F(Files, EscapeEveryControlCharacterInJson) {
    folder.writePicture("\x1b\x7F\xC2\x9B\xC3\xA9.png", colourful(2, 2));
    const CommandResult result = pxk({"\x1b\x7F\xC2\x9B\xC3\xA9.png", "-e", "isWhite", "--json"});
    EXPECT_EQ(result.out, "{\"file\":\"\\u001b\\u007f\\u009b\xC3\xA9.png\",\"result\":false}\n");
    EXPECT_EQ(nlohmann::json::parse(result.out).at("file"), "\x1b\x7F\xC2\x9B\xC3\xA9.png");
}

// ---- several pictures

class SeveralFiles : public Files {
  protected:
    SeveralFiles() {
        folder.writePicture("a.png", colourful(4, 4));
        folder.writePicture("b.bmp", colourful(3, 7));
        folder.writeText("broken.png", "broken");
    }
};

TEST_F(SeveralFiles, GoIntoADirectoryThatIsMadeWhenItIsMissing) {
    const CommandResult result = pxk({"a.png", "b.bmp", "-e", "Invert", "-o", "new/out/"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out + result.error, "");
    EXPECT_EQ(folder.readPicture("new/out/a.png"), inverted(colourful(4, 4)));
    EXPECT_EQ(folder.readPicture("new/out/b.bmp"), inverted(colourful(3, 7)));
    EXPECT_EQ(pxk({"in.png", "-o", "new"}).exitCode, 0);
    EXPECT_TRUE(folder.has("new/in.png"));
}

TEST_F(SeveralFiles, SayWhyTheDirectoryCannotBeMade) {
    const CommandResult result = pxk({"a.png", "b.bmp", "-e", "Invert", "-o", "in.png/out/"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, HasSubstr("\n  a.png: cannot create the directory \"in.png/out/\": Not a directory\n"));
}

TEST_F(SeveralFiles, MakeNoDirectoryWhenNothingIsToGoIntoIt) {
    EXPECT_EQ(pxk({"broken.png", "-o", "out/"}).exitCode, 1);
    EXPECT_FALSE(folder.has("out"));
}

TEST_F(SeveralFiles, TakeTheExtensionThatFormatNames) {
    EXPECT_EQ(pxk({"a.png", "b.bmp", "-o", "out/", "--format", "tif"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out/a.tif"), colourful(4, 4));
    EXPECT_EQ(folder.readPicture("out/b.tif"), colourful(3, 7));
    const CommandResult odd = pxk({"a.png", "-o", "one.png", "--format", "png"});
    EXPECT_EQ(odd.exitCode, 2);
    EXPECT_EQ(odd.error, "pxk: --format needs a directory or - for -o; the name one.png has its own extension\n");
}

TEST_F(SeveralFiles, AreAllTriedAndTheFailuresListedAtTheEnd) {
    const CommandResult result = pxk({"broken.png", "a.png", "gone.png", "b.bmp", "-e", "Invert", "-o", "out/"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.error, StartsWith("pxk: 2 of 4 pictures failed:\n  cannot read picture \"broken.png\": "));
    EXPECT_THAT(result.error, HasSubstr("\n  cannot read picture \"gone.png\": No such file or directory\n"));
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 3);
    EXPECT_TRUE(folder.has("out/a.png") && folder.has("out/b.bmp"));
    EXPECT_FALSE(folder.has("out/broken.png"));
}

TEST_F(SeveralFiles, PrintTheirFailuresAsJsonToo) {
    const CommandResult result = pxk({"a.png", "broken.png", "-e", "Invert", "-o", "out/", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, StartsWith("{\"file\":\"a.png\",\"output\":\"out/a.png\",\"width\":4,\"height\":4}\n"
                                       "{\"file\":\"broken.png\",\"error\":\"cannot read picture "));
}

TEST_F(SeveralFiles, NeedADirectory) {
    const CommandResult result = pxk({"a.png", "b.bmp", "-e", "Invert", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.error, "pxk: several inputs need a directory for their results: -o out.png/\n");
    EXPECT_FALSE(folder.has("out.png"));
}

TEST_F(SeveralFiles, AreNotWrittenOverEachOther) {
    const CommandResult result = pxk({"a.png", "./a.png", "-o", "out/"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.error, "pxk: a.png and ./a.png would both be written to out/a.png\n");
    EXPECT_FALSE(folder.has("out"));
}

TEST_F(SeveralFiles, ShowAProgressBarOnATerminalAndTakeItAway) {
    const CommandResult result =
        runToolOnTerminal(folder.path(), {"a.png", "b.bmp", "in.png", "-e", "Invert", "-o", "out/"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.error, StartsWith("\r[-------------------] 0/3 a.png\x1b[K"));
    EXPECT_THAT(result.error, HasSubstr("\r[######-------------] 1/3 b.bmp\x1b[K"));
    EXPECT_THAT(result.error, HasSubstr("\r[############-------] 2/3 in.png\x1b[K"));
    EXPECT_THAT(result.error, testing::EndsWith("\r\x1b[K"));
}

TEST_F(SeveralFiles, ShowNoProgressBarWhenQuietOrForOnePicture) {
    EXPECT_EQ(runToolOnTerminal(folder.path(), {"a.png", "b.bmp", "-o", "out/", "--quiet"}).error, "");
    EXPECT_EQ(runToolOnTerminal(folder.path(), {"a.png", "-o", "out/"}).error, "");
}

TEST_F(SeveralFiles, TakeTheBarAwayBeforeTheFailuresAreListed) {
    const CommandResult result = runToolOnTerminal(folder.path(), {"a.png", "broken.png", "-o", "out/"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, HasSubstr("\r\x1b[Kpxk: 1 of 2 pictures failed:"));
}

TEST_F(SeveralFiles, AreNotWorkedOnWhenNoneCanSucceed) {
    const auto refused = [&](const std::string& chain, const std::string& format) {
        const CommandResult result = pxk({"a.png", "b.bmp", "-e", chain, "-o", "new/", "--format", format});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_FALSE(folder.has("new"));
        return result.error;
    };
    EXPECT_THAT(refused("Invert", "xyz"), testing::StartsWith("pxk: cannot write picture \"new/a.xyz\": "));
    EXPECT_EQ(refused("Invert.MergePicture(\"none.png\")", "png"),
              "pxk: step 2, MergePicturePXK: cannot read picture \"none.png\": No such file or directory\n");
    folder.writeText("short", "table");
    EXPECT_THAT(refused("TransformColors(\"short\", \"short\", \"short\")", "png"),
                testing::StartsWith("pxk: TransformColorsPXK: \"short\" has 5 bytes"));
}

}  // namespace
}  // namespace pxk::tool
