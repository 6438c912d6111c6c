/// The commands and options around the chain.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tool/commands/command_run.h"

namespace pxk::tool {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

CommandResult pxk(const std::vector<std::string>& arguments) { return runTool("/", arguments); }

CommandResult trial(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--plugin", PXK_TRIAL_PLUGIN});
    return pxk(arguments);
}

TEST(Version, IsPrinted) {
    const CommandResult result = pxk({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, testing::MatchesRegex("pxk [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Usage, IsShownOnRequest) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"}, {"-h"}, {"help"}}) {
        const CommandResult result = pxk(arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.error, "");
        EXPECT_THAT(result.out, HasSubstr("pxk in.png -e 'InvertPXK(10, 10, 200, 100).InvertGrayPXK' -o out.png"));
        EXPECT_THAT(result.out, HasSubstr("--host-version"));
    }
    EXPECT_THAT(pxk({"help", "list"}).out, HasSubstr("PATTERN"));
}

TEST(Usage, IsAskedForInOneLineAndExitCode2) {
    const std::vector<std::vector<std::string>> mistakes = {{},
                                                            {"--nonsense"},
                                                            {"-e"},
                                                            {"--host-version", "new"},
                                                            {"--host-version", "0", "list"},
                                                            {"--host-version", "nan", "list"},
                                                            {"--host-version", "1e7", "list"},
                                                            {"-e", ""},
                                                            {"--application", "web", "list"},
                                                            {"in.png", "-e", "A", "-f", "b", "-o", "c.png"},
                                                            {"", "-o", "a.png"},
                                                            {"-", "-", "-o", "out/"},
                                                            {"-", "-f", "-", "-o", "a.png"},
                                                            {"-", "-o", "/tmp/"},
                                                            {"a.png", "-o", "-"},
                                                            {"a.png", "b.png", "-o", "-", "--format", "png"},
                                                            {"a.png", "-o", "-", "--format", "png", "--json"},
                                                            {"a.png", "-o", "b.png", "--quality", "0"},
                                                            {"a.png", "-o", "b.png", "--quality", "101"},
                                                            {"a.png", "-o", "b.png", "--compression", "10"},
                                                            {"a.png", "-o", "b.png", "--page", "0"},
                                                            {"a.png", "-e", "isWhite", "--quality", "50"},
                                                            {"info"},
                                                            {"a.png", "-o", ""},
                                                            {"inspect", "more"},
                                                            {"list", "a", "b"}};
    for (const std::vector<std::string>& arguments : mistakes) {
        const CommandResult result = pxk(arguments);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
}

TEST(List, ShowsWhatThePluginOffers) {
    const CommandResult result = pxk({"list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.out, HasSubstr("  InvertPXK as picture\n"));
    EXPECT_THAT(result.out, HasSubstr("  InvertGrayPXK as picture\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("extends")));
}

TEST(List, GroupsMethodsGlobalMethodsAndClasses) {
    const CommandResult result = trial({"list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("Methods of a picture\n  SumPXK(a as integer, b as double = 0.5) as double\n"));
    EXPECT_THAT(result.out, HasSubstr("Global methods\n  PairPXK("));
    EXPECT_THAT(result.out, HasSubstr("Class PictureCopierPXK\n"));
    EXPECT_THAT(result.out, HasSubstr("  BinaryPXK as string  [deprecated: use EchoPXK]\n"));
}

TEST(List, TakesLettersOrAPatternInAnyCase) {
    EXPECT_EQ(trial({"list", "SUM"}).out,
              "Methods of a picture\n  SumPXK(a as integer, b as double = 0.5) as double\n");
    EXPECT_EQ(trial({"list", "answer*"}).out, "Global methods\n  AnswerPXK as integer\n");
    EXPECT_THAT(trial({"list", "copier"}).out, HasSubstr("  Run as boolean\n"));
    const CommandResult none = trial({"list", "zebra"});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(none.error, "pxk: no name matches \"zebra\"\n");
}

TEST(List, GivesOneJsonObjectForEachMember) {
    std::istringstream lines(trial({"list", "--json"}).out);
    std::string line;
    bool foundLevel = false;
    int count = 0;
    for (; std::getline(lines, line); ++count) {
        const auto json = nlohmann::json::parse(line);
        if (json.at("name") != "LevelPXK") continue;
        foundLevel = true;
        EXPECT_EQ(json.at("kind"), "picture method");
        EXPECT_EQ(json.at("owner"), "Picture");
        EXPECT_EQ(json.at("declaration"), "LevelPXK(index as integer) as integer");
        EXPECT_EQ(json.at("assignable"), true);
    }
    EXPECT_TRUE(foundLevel);
    EXPECT_EQ(count, 15 + 3 + 4 + 3);
}

TEST(Help, ExplainsEveryFormOfAMethod) {
    const CommandResult result = pxk({"help", "invert"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, StartsWith("InvertPXK, a method of a picture\n\n"));
    EXPECT_THAT(result.out, HasSubstr("  InvertPXK as picture\n"));
    EXPECT_THAT(result.out, HasSubstr("      left    integer\n      top     integer\n      width   integer\n"));
}

TEST(Help, ShowsDefaultsDeprecationAndWhatIsWrittenBack) {
    EXPECT_THAT(trial({"help", "Sum"}).out, HasSubstr("      a  integer\n      b  double, default 0.5\n"));
    EXPECT_THAT(trial({"help", "Binary"}).out, HasSubstr("      deprecated: use EchoPXK\n"));
    EXPECT_THAT(trial({"help", "Halves"}).out, HasSubstr("      low     integer, written back and printed\n"));
    EXPECT_THAT(trial({"help", "Other"}).out, HasSubstr("      pic  picture, the name of a file in quotes or pic\n"));
    EXPECT_THAT(trial({"help", "Level"}).out, HasSubstr("can also be assigned: LevelPXK(...) = value\n"));
    EXPECT_THAT(trial({"help", "Tone"}).out,
                HasSubstr("In a chain source may be left out: it is then the current picture.\n"));
}

TEST(Help, ExplainsAClassWithWhatItsPropertiesStartWith) {
    const CommandResult result = trial({"help", "picturecopier"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, StartsWith("PictureCopierPXK, a class"));
    EXPECT_THAT(result.out, HasSubstr("  PictureCopierPXK(Times = 0, ...)\n"));
    EXPECT_THAT(result.out, HasSubstr("  SourcePicture as Picture = nil\n"));
    EXPECT_THAT(result.out, HasSubstr("  Ratio as Double = 0.25\n"));
    EXPECT_THAT(result.out, HasSubstr("  Table(index as UInt32) as double\n"));
}

TEST(Help, SuggestsTheNameThatWasMeant) {
    const CommandResult result = pxk({"help", "InvretPXK"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.error, StartsWith("pxk: "));
    EXPECT_THAT(result.error, HasSubstr("InvertPXK"));
}

TEST(Inspect, PrintsEachRecordAsJson) {
    const CommandResult result = pxk({"inspect", "--json"});
    EXPECT_EQ(result.exitCode, 0);
    std::istringstream lines(result.out);
    std::map<std::string, nlohmann::json> records;
    for (std::string line; std::getline(lines, line);) {
        const auto record = nlohmann::json::parse(line);
        records[record.at("record").get<std::string>()] = record;
    }
    EXPECT_TRUE(records.contains("record version 13"));
    const nlohmann::json& sepia = records.at("class PictureSepiaPXK: 29 words");
    EXPECT_EQ(sepia.at("fields").at("name"), "PictureSepiaPXK");
    EXPECT_EQ(sepia.at("fields").at("version"), 13);
    EXPECT_EQ(sepia.at("fields").at("super name"), nullptr);
    EXPECT_EQ(sepia.at("fields").at("constructor"), "set");
    EXPECT_EQ(sepia.at("records").size(), 14u) << "12 properties and 2 methods";
    EXPECT_EQ(sepia.at("records").at(2).at("fields").at("name"), "MaxX");
}

TEST(Inspect, ShowsTheRecordsAsTheHostOfThatVersionGotThem) {
    const CommandResult modules = pxk({"inspect", "--host-version", "2013.04"});
    EXPECT_EQ(modules.exitCode, 0);
    EXPECT_THAT(modules.out, HasSubstr("PicturePictureExtensionPXK"));
    const CommandResult extension = pxk({"--host-version", "2012.5", "inspect"});
    EXPECT_EQ(extension.exitCode, 0);
    EXPECT_THAT(extension.out, Not(HasSubstr("PicturePictureExtensionPXK")));
    EXPECT_THAT(extension.out, HasSubstr("InvertPXK"));
    EXPECT_THAT(extension.out, EndsWith("\n"));
}

TEST(Output, ThatCannotBePrintedIsAFailure) {
    for (const char* arguments : {"list", "help", "help chain", "help list", "help Invert", "inspect", "--version"}) {
        const std::string command = std::string("'") + PXK_TOOL_PATH + "' " + arguments +
                                    " 2>&1 >/dev/full | grep -qx 'pxk: cannot write to standard output.*'";
        EXPECT_EQ(std::system(command.c_str()), 0) << arguments;
        const int status =
            std::system((std::string("'") + PXK_TOOL_PATH + "' " + arguments + " >/dev/full 2>&1").c_str());
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 1) << arguments;
    }
}

TEST(Plugin, ThatCannotBeLoadedIsNamed) {
    const CommandResult result = pxk({"list", "--plugin", "/nowhere/plugin.so"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.error, StartsWith("pxk: "));
    EXPECT_THAT(result.error, HasSubstr("/nowhere/plugin.so"));
}

}  // namespace
}  // namespace pxk::tool
