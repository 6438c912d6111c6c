/// `pxk histogram`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// The layout of the chart.
constexpr int chartWidth = 800;
constexpr int chartHeight = 368;
constexpr int plotLeft = 16;
constexpr int plotBottom = 336;
constexpr int plotHeight = 320;
constexpr int barWidth = 3;

class HistogramCommand : public testing::Test {
  protected:
    CommandResult histogram(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "histogram");
        return runTool(folder.path(), arguments);
    }

    /// How many pixels of the column for a value are lit in the channel at `shift`.
    static int columnHeight(const Pixels& chart, int value, unsigned shift) {
        int height = 0;
        for (int y = plotBottom - 1; y >= plotBottom - plotHeight; --y) {
            const auto index = static_cast<std::size_t>(y * chartWidth + plotLeft + value * barWidth);
            if ((chart.words[index] >> shift & 0xFFU) < 0xE0U) break;
            ++height;
        }
        return height;
    }

    PictureFolder folder;
};

TEST_F(HistogramCommand, WritesTheCountersAsNumbers) {
    folder.writePicture("in.png", {3, 1, {0xFF0A141EU, 0xFF0AFF00U, 0xFF0A1400U}});
    EXPECT_EQ(histogram({"in.png", "-o", "table.CSV"}).error, "");
    std::istringstream lines(folder.readText("table.CSV"));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "value,red,green,blue");
    int total = 0;
    for (int value = 0; std::getline(lines, line); ++value) {
        std::string expected = std::to_string(value);
        expected.append(value == 10 ? ",3" : ",0");
        expected.append(value == 20 ? ",2" : value == 255 ? ",1" : ",0");
        expected.append(value == 0 ? ",2" : value == 30 ? ",1" : ",0");
        EXPECT_EQ(line, expected);
        ++total;
    }
    EXPECT_EQ(total, 256);
}

TEST_F(HistogramCommand, PrintsTheNumbersWhenNoFileIsNamed) {
    folder.writePicture("in.png", colourful(5, 3));
    EXPECT_EQ(histogram({"in.png", "-o", "table.csv"}).exitCode, 0);
    const CommandResult result = histogram({"in.png"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, folder.readText("table.csv"));
}

TEST_F(HistogramCommand, DrawsColumnsToOneScale) {
    // Red: 100 four times and 200 twice. Green: 50 once and 255 five times. Blue: 0 six times.
    folder.writePicture("in.png",
                        {6, 1, {0xFF643200U, 0xFF64FF00U, 0xFF64FF00U, 0xFF64FF00U, 0xFFC8FF00U, 0xFFC8FF00U}});
    const CommandResult result = histogram({"in.png", "-o", "chart.png"});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    const Pixels chart = folder.readPicture("chart.png");
    ASSERT_EQ(chart.width, chartWidth);
    ASSERT_EQ(chart.height, chartHeight);
    EXPECT_EQ(columnHeight(chart, 100, 16), plotHeight);
    EXPECT_EQ(columnHeight(chart, 200, 16), plotHeight / 2);
    EXPECT_EQ(columnHeight(chart, 50, 8), plotHeight / 4);
    EXPECT_EQ(columnHeight(chart, 255, 8), plotHeight) << "five of them, cut off at the top";
    EXPECT_EQ(columnHeight(chart, 0, 0), plotHeight) << "six of them, cut off at the top";
    EXPECT_EQ(columnHeight(chart, 100, 0), 0);
    EXPECT_EQ(columnHeight(chart, 99, 16), 0);
    EXPECT_EQ(columnHeight(chart, 101, 16), 0);
}

TEST_F(HistogramCommand, ShowsEveryValueThatOccurs) {
    Pixels pixels{100, 100, std::vector<std::uint32_t>(10000, 0xFF808080U)};
    pixels.words[5000] = 0xFF404040U;
    folder.writePicture("in.png", pixels);
    EXPECT_EQ(histogram({"in.png", "-o", "chart.png"}).exitCode, 0);
    const Pixels chart = folder.readPicture("chart.png");
    for (const unsigned shift : {0U, 8U, 16U}) {
        EXPECT_EQ(columnHeight(chart, 0x80, shift), plotHeight);
        EXPECT_EQ(columnHeight(chart, 0x40, shift), 1);
    }
}

TEST_F(HistogramCommand, DrawsBlackAndWhiteToTheirOwnScaleWhenThereIsNothingElse) {
    folder.writePicture("in.png", {4, 1, {0xFF000000U, 0xFFFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFFFU}});
    EXPECT_EQ(histogram({"in.png", "-o", "chart.png"}).exitCode, 0);
    const Pixels chart = folder.readPicture("chart.png");
    EXPECT_EQ(columnHeight(chart, 255, 0), plotHeight);
    EXPECT_EQ(columnHeight(chart, 0, 0), (plotHeight + 1) / 3);
}

TEST_F(HistogramCommand, SaysInOneLineWhatWentWrong) {
    folder.writePicture("in.png", colourful(5, 3));
    folder.writeText("broken.png", "no picture");
    const std::vector<std::pair<std::vector<std::string>, int>> mistakes = {{{}, 2},
                                                                            {{"in.png", "more.png"}, 2},
                                                                            {{"in.png", "-o", ""}, 2},
                                                                            {{"in.png", "-o", "-"}, 2},
                                                                            {{"in.png", "-o", "."}, 2},
                                                                            {{"in.png", "-o", "/dev/null"}, 2},
                                                                            {{"in.png", "-o", "chart.unknown"}, 1},
                                                                            {{"in.png", "-o", "gone/chart.png"}, 1},
                                                                            {{"in.png", "-o", "gone/table.csv"}, 1},
                                                                            {{"broken.png", "-o", "chart.png"}, 1},
                                                                            {{"missing.png"}, 1}};
    for (const auto& [arguments, exitCode] : mistakes) {
        const CommandResult result = histogram(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_THAT(folder.names(), testing::ElementsAre("broken.png", "in.png"));
}

TEST_F(HistogramCommand, NeedsAPluginThatCounts) {
    folder.writePicture("in.png", colourful(5, 3));
    const CommandResult result = histogram({"in.png", "--plugin", PXK_TRIAL_PLUGIN});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, HasSubstr("CountColorsPXK"));
}

TEST_F(HistogramCommand, PrintsTheNumbersAsJson) {
    folder.writePicture("in.png", {3, 1, {0xFF010203U, 0xFF01FF03U, 0xFFFF0203U}});
    const CommandResult result = histogram({"in.png", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json.at("picture"), "in.png");
    for (const char* channel : {"red", "green", "blue"}) EXPECT_EQ(json.at(channel).size(), 256u);
    EXPECT_EQ(json["red"][1], 2);
    EXPECT_EQ(json["red"][255], 1);
    EXPECT_EQ(json["green"][255], 1);
    EXPECT_EQ(json["blue"][3], 3);
    EXPECT_EQ(json["blue"][0], 0);
    EXPECT_EQ(histogram({"in.png", "--json", "-o", "table.csv"}).exitCode, 2);
}

}  // namespace
}  // namespace pxk::tool
