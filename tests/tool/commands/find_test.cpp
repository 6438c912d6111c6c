/// `pxk find`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::uint32_t frame = 0xFFFF0080U;

std::uint32_t& at(Pixels& pixels, int x, int y) { return pixels.words[static_cast<std::size_t>(y * pixels.width + x)]; }

/// A picture with another in it, at these places.
Pixels with(Pixels pixels, const Pixels& piece, const std::vector<std::pair<int, int>>& places) {
    Pixels copy = piece;
    for (const auto& [left, top] : places) {
        for (int y = 0; y < piece.height; ++y) {
            for (int x = 0; x < piece.width; ++x) at(pixels, left + x, top + y) = at(copy, x, y);
        }
    }
    return pixels;
}

Pixels grey(int width, int height) {
    return {width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width * height), 0xFF808080U)};
}

class FindCommand : public testing::Test {
  protected:
    FindCommand() {
        folder.writePicture("needle.png", colourful(3, 2));
        folder.writePicture("haystack.png", with(grey(20, 10), colourful(3, 2), {{17, 0}, {4, 1}, {0, 8}, {17, 8}}));
    }

    CommandResult find(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "find");
        return runTool(folder.path(), arguments);
    }

    PictureFolder folder;
};

TEST_F(FindCommand, PrintsTheFirstPlace) {
    const CommandResult result = find({"needle.png", "haystack.png"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "17 0\n");
    EXPECT_EQ(result.error, "");
}

TEST_F(FindCommand, PrintsEveryPlaceInReadingOrder) {
    const CommandResult result = find({"needle.png", "haystack.png", "--all"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "17 0\n4 1\n0 8\n17 8\n");
}

TEST_F(FindCommand, FindsPlacesThatOverlap) {
    folder.writePicture("needle.png", grey(2, 2));
    folder.writePicture("haystack.png", grey(4, 3));
    EXPECT_EQ(find({"needle.png", "haystack.png", "--all"}).out, "0 0\n1 0\n2 0\n0 1\n1 1\n2 1\n");
}

TEST_F(FindCommand, FindsAPictureInItself) { EXPECT_EQ(find({"haystack.png", "haystack.png", "--all"}).out, "0 0\n"); }

TEST_F(FindCommand, SaysThatNothingWasFound) {
    folder.writePicture("other.png", {1, 1, {0xFF010203U}});
    const CommandResult result = find({"other.png", "haystack.png", "--all", "--mark", "marked.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, "pxk: \"other.png\" was not found in \"haystack.png\"\n");
    EXPECT_FALSE(folder.has("marked.png"));
    EXPECT_EQ(find({"haystack.png", "needle.png"}).exitCode, 1) << "too large";
}

TEST_F(FindCommand, TakesATolerance) {
    folder.writePicture("needle.png", {1, 1, {0xFF868686U}});
    EXPECT_EQ(find({"needle.png", "haystack.png"}).exitCode, 1);
    EXPECT_EQ(find({"needle.png", "haystack.png", "--tolerance", "6"}).error,
              "pxk: \"needle.png\" was not found in \"haystack.png\" (each channel may differ by less than 6)\n");
    EXPECT_EQ(find({"needle.png", "haystack.png", "--tolerance", "7"}).out, "0 0\n");
    EXPECT_EQ(find({"haystack.png", "haystack.png", "--tolerance", "1"}).out, "0 0\n");
    EXPECT_EQ(find({"haystack.png", "haystack.png", "--tolerance", "0"}).exitCode, 1);
    EXPECT_EQ(find({"haystack.png", "haystack.png", "--tolerance", "-5"}).exitCode, 1);
}

TEST_F(FindCommand, PrintsJson) {
    const CommandResult result = find({"needle.png", "haystack.png", "--all", "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "{\"needle\":\"needle.png\",\"haystack\":\"haystack.png\",\"width\":3,\"height\":2,\"complete\":true,"
              "\"found\":["
              "{\"x\":17,\"y\":0},{\"x\":4,\"y\":1},{\"x\":0,\"y\":8},{\"x\":17,\"y\":8}]}\n");
    const CommandResult none = find({"haystack.png", "needle.png", "--json"});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(none.out).at("found"), nlohmann::json::array());
}

TEST_F(FindCommand, StopsAtALimitAndSaysSo) {
    folder.writePicture("flat.png", grey(60, 40));
    folder.writePicture("patch.png", grey(3, 2));
    const CommandResult flat = find({"patch.png", "flat.png", "--all"});
    EXPECT_EQ(flat.exitCode, 0);
    EXPECT_EQ(std::count(flat.out.begin(), flat.out.end(), '\n'), 1000);
    EXPECT_EQ(flat.error, "pxk: stopped after 1000 positions; there are more (see --limit)\n");
    const CommandResult three = find({"patch.png", "flat.png", "--all", "--limit", "3", "--json"});
    EXPECT_EQ(nlohmann::json::parse(three.out).at("found").size(), 3u);
    EXPECT_EQ(nlohmann::json::parse(three.out).at("complete"), false);
    EXPECT_EQ(find({"needle.png", "haystack.png", "--all", "--limit", "4"}).error, "") << "there are no more than 4";
    EXPECT_EQ(find({"patch.png", "flat.png", "--all", "--limit", "0"}).exitCode, 2);
    EXPECT_EQ(find({"patch.png", "flat.png"}).out, "0 0\n");
}

TEST_F(FindCommand, DrawsFramesAroundThePlaces) {
    EXPECT_EQ(find({"needle.png", "haystack.png", "--mark", "marked.png"}).exitCode, 0);
    Pixels first = folder.readPicture("marked.png");
    EXPECT_EQ(at(first, 15, 2), frame);
    EXPECT_EQ(at(first, 8, 2), 0xFF808080U) << "beside the second place, which was not asked for";

    folder.writePicture("haystack.png", with(grey(20, 10), colourful(3, 2), {{8, 4}}));
    EXPECT_EQ(find({"needle.png", "haystack.png", "--all", "--mark", "marked.png"}).exitCode, 0);
    Pixels expected = folder.readPicture("haystack.png");
    for (int y = 2; y < 8; ++y) {
        for (int x = 6; x < 13; ++x) {
            if (y < 4 || y >= 6 || x < 8 || x >= 11) at(expected, x, y) = frame;
        }
    }
    EXPECT_EQ(folder.readPicture("marked.png"), expected);
}

TEST_F(FindCommand, DrawsFramesOnTheEdgeWhereThereIsNoRoom) {
    EXPECT_EQ(find({"haystack.png", "haystack.png", "--mark", "marked.png"}).exitCode, 0);
    Pixels expected = folder.readPicture("haystack.png");
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x) {
            if (y < 2 || y >= 8 || x < 2 || x >= 18) at(expected, x, y) = frame;
        }
    }
    EXPECT_EQ(folder.readPicture("marked.png"), expected);
}

TEST_F(FindCommand, ShowsHowFarItIsOnATerminal) {
    const CommandResult result = runToolOnTerminal(folder.path(), {"find", "needle.png", "haystack.png", "--all"});
    EXPECT_EQ(result.out, "17 0\n4 1\n0 8\n17 8\n");
    EXPECT_THAT(result.error, HasSubstr("]  0/10 rows, 1 found"));
    EXPECT_THAT(result.error, HasSubstr("]  8/10 rows, 3 found"));
    EXPECT_THAT(result.error, testing::EndsWith("\r\x1b[K"));
    EXPECT_EQ(runToolOnTerminal(folder.path(), {"find", "needle.png", "haystack.png"}).error, "");
}

TEST_F(FindCommand, EndsWith2OnAnError) {
    folder.writeText("broken.png", "no picture");
    const std::vector<std::vector<std::string>> mistakes = {{},
                                                            {"needle.png"},
                                                            {"needle.png", "haystack.png", "more.png"},
                                                            {"broken.png", "haystack.png"},
                                                            {"needle.png", "broken.png"},
                                                            {"needle.png", "missing.png"},
                                                            {"needle.png", "haystack.png", "--tolerance", "some"},
                                                            {"needle.png", "haystack.png", "--mark", ""},
                                                            {"needle.png", "haystack.png", "--mark", "."},
                                                            {"needle.png", "haystack.png", "--mark", "gone/m.png"},
                                                            {"needle.png", "haystack.png", "--mark", "m.unknown"},
                                                            {"needle.png", "haystack.png", "--plugin", "none.so"}};
    for (const std::vector<std::string>& arguments : mistakes) {
        const CommandResult result = find(arguments);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_THAT(folder.names(), ElementsAre("broken.png", "haystack.png", "needle.png"));
}

}  // namespace
}  // namespace pxk::tool
