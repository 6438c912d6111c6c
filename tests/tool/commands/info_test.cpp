/// `pxk info`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::HasSubstr;

class Info : public testing::Test {
  protected:
    Info() { folder.writePicture("in.png", colourful(5, 3)); }

    CommandResult pxk(const std::vector<std::string>& arguments) const { return runTool(folder.path(), arguments); }

    PictureFolder folder;
};

TEST_F(Info, PrintsALineForEachFile) {
    EXPECT_EQ(pxk({"in.png", "-o", "b.gif"}).exitCode, 0);
    const CommandResult result = pxk({"info", "in.png", "b.gif"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.out,
              "in.png: PNG, 5 x 3, 8 bits, no alpha, no profile, orientation 1, 1 page\n"
              "b.gif: GIF, 5 x 3, 8 bits, no alpha, no profile, orientation 1, 1 page\n");
}

TEST_F(Info, PrintsJson) {
    const auto record = nlohmann::json::parse(pxk({"info", "in.png", "--json"}).out);
    const nlohmann::json expected = {{"file", "in.png"},   {"format", "PNG"},  {"width", 5},
                                     {"height", 3},        {"bits", 8},        {"alpha", false},
                                     {"profile", nullptr}, {"orientation", 1}, {"pages", 1}};
    EXPECT_EQ(record, expected);
}

TEST_F(Info, KnowsBinaryStrings) {
    EXPECT_EQ(pxk({"in.png", "-o", "in.ppic"}).exitCode, 0);
    EXPECT_EQ(pxk({"info", "in.ppic"}).out,
              "in.ppic: PPIC, 5 x 3, 8 bits, no alpha, no profile, orientation 1, 1 page\n");
}

TEST_F(Info, ReportsWhatItCannotReadAndGoesOn) {
    folder.writeText("text", "hello");
    const CommandResult result = pxk({"info", "gone.png", "text", "in.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, testing::StartsWith("in.png: PNG"));
    EXPECT_THAT(result.error, HasSubstr("pxk: cannot read picture \"gone.png\": No such file or directory\n"));
    EXPECT_THAT(result.error, HasSubstr("pxk: cannot read picture \"text\": "));
    const CommandResult json = pxk({"info", "gone.png", "--json"});
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(json.out).at("file"), "gone.png");
    EXPECT_TRUE(nlohmann::json::parse(json.out).contains("error"));
}

}  // namespace
}  // namespace pxk::tool
