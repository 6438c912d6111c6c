/// Tone curves, and the tables made from them.
#include "chain/curve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "chain/error.h"

namespace pxk::chain {
namespace {

int entryAt(const std::string& table, int in) {
    return static_cast<unsigned char>(table.at(static_cast<std::size_t>(in)));
}

/// The message for a curve that is refused.
std::string curveRefusal(const std::string& text) {
    try {
        tableOfCurve("my.curve", text);
    } catch (const WorkError& error) {
        return error.what();
    }
    return "nothing";
}

TEST(Curve, IsDetectedFromItsFirstWord) {
    EXPECT_TRUE(isCurve("curve linear\n"));
    EXPECT_TRUE(isCurve("\n# mine\n  CURVE # no more"));
    EXPECT_TRUE(
        isCurve("\xEF\xBB\xBF"
                "curve smooth\r\n"));
    EXPECT_FALSE(isCurve(""));
    EXPECT_FALSE(isCurve("0 0\n255 255\n"));
    EXPECT_FALSE(isCurve("curves"));
    EXPECT_FALSE(isCurve(std::string(256, '\0')));
    EXPECT_FALSE(isCurve(std::string(256, 'c')));
}

TEST(Curve, IsStraightBetweenItsPoints) {
    const std::string table = tableOfCurve("", "curve linear\n0 0\n255 255");
    ASSERT_EQ(table.size(), 256U);
    for (int in = 0; in <= 255; ++in) EXPECT_EQ(entryAt(table, in), in);
    const std::string bent = tableOfCurve("", "curve linear\n0 255\n100 55\n255 55");
    EXPECT_EQ(entryAt(bent, 0), 255);
    EXPECT_EQ(entryAt(bent, 50), 155);
    EXPECT_EQ(entryAt(bent, 100), 55);
    EXPECT_EQ(entryAt(bent, 255), 55);
}

TEST(Curve, RoundsToTheNearest) {
    const std::string table = tableOfCurve("", "curve linear\n0 0.4\n100 100.4\n101 1.5\n255 1.5");
    EXPECT_EQ(entryAt(table, 50), 50);
    EXPECT_EQ(entryAt(table, 200), 2);
}

TEST(Curve, IsLevelOutsideItsPoints) {
    const std::string table = tableOfCurve("", "curve smooth\n10.5 20\n20 200.25\n");
    EXPECT_EQ(entryAt(table, 0), 20);
    EXPECT_EQ(entryAt(table, 10), 20);
    EXPECT_EQ(entryAt(table, 20), 200);
    EXPECT_EQ(entryAt(table, 255), 200);
}

TEST(Curve, IsAStraightLineThroughPointsOnOneEvenWhereSmooth) {
    const std::string table = tableOfCurve("", "curve smooth\n0 0\n17 17\n80 80\n255 255");
    for (int in = 0; in <= 255; ++in) EXPECT_EQ(entryAt(table, in), in);
}

// The cubic between (0, 0) and (100, 100) with the slopes 1 and 2 * 1 * 0.2 / (1 + 0.2) = 1/3, by hand.
TEST(Curve, IsTheMonotoneCubicWhereSmooth) {
    const std::string table = tableOfCurve("", "curve smooth\n0 0\n100 100\n200 120\n");
    for (const int in : {10, 25, 50, 75, 90}) {
        const double t = in / 100.0;
        const double expected = 100 * (t * t * (3 - 2 * t) + t * (1 - t) * (1 - t) - t * t * (1 - t) / 3);
        EXPECT_EQ(entryAt(table, in), std::lround(expected)) << in;
    }
}

TEST(Curve, NeverOvershootsItsPoints) {
    const std::string table = tableOfCurve("", "curve smooth\n0 0\n1 250\n2 250\n100 10\n101 255\n255 0\n");
    EXPECT_EQ(entryAt(table, 1), 250);
    EXPECT_EQ(entryAt(table, 2), 250);
    for (int in = 3; in <= 100; ++in) EXPECT_LE(entryAt(table, in), entryAt(table, in - 1)) << in;
    for (int in = 102; in <= 255; ++in) EXPECT_LE(entryAt(table, in), entryAt(table, in - 1)) << in;
    EXPECT_EQ(entryAt(table, 100), 10);
    EXPECT_EQ(entryAt(table, 101), 255);
}

TEST(Curve, MayHaveCommentsBlankLinesAndOtherLineEnds) {
    EXPECT_EQ(tableOfCurve("", "# one\r\n\r\n  Curve\tLinear # two\r\n0 0 # three\r\n\t255 +255\r\n"),
              tableOfCurve("", "curve linear\n0 0\n255 255\n"));
}

TEST(Curve, IsRefusedWithItsLineAndWhatWouldBeRight) {
    EXPECT_EQ(curveRefusal("curve\n0 0\n"),
              "\"my.curve\", line 1: a curve must begin with the line \"curve smooth\" or \"curve linear\"");
    EXPECT_EQ(curveRefusal("# hello\ncurve wavy\n"),
              "\"my.curve\", line 2: a curve must begin with the line \"curve smooth\" or \"curve linear\"");
    EXPECT_EQ(curveRefusal("curve linear\n0 0\n1\n"),
              "\"my.curve\", line 3: a point is two numbers: a value of the channel, and what it becomes");
    EXPECT_EQ(curveRefusal("curve linear\n\n0 0 0\n"),
              "\"my.curve\", line 3: a point is two numbers: a value of the channel, and what it becomes");
    EXPECT_EQ(curveRefusal("curve linear\n0 0\n1 two"), "\"my.curve\", line 3: \"two\" is not a number");
    EXPECT_EQ(curveRefusal("curve linear\n0 0\n1 2x"), "\"my.curve\", line 3: \"2x\" is not a number");
    EXPECT_EQ(curveRefusal("curve linear\n0 nan\n"), "\"my.curve\", line 2: \"nan\" is not a finite number");
    EXPECT_EQ(curveRefusal("curve linear\n0 1e999\n"), "\"my.curve\", line 2: \"1e999\" is not a finite number");
    EXPECT_EQ(curveRefusal("curve linear\n0 256\n"),
              "\"my.curve\", line 2: the numbers of a point must be from 0 to 255");
    EXPECT_EQ(curveRefusal("curve linear\n-1 2\n"),
              "\"my.curve\", line 2: the numbers of a point must be from 0 to 255");
    EXPECT_EQ(curveRefusal("curve linear\n5 2\n5 3\n"),
              "\"my.curve\", line 3: the first number of a point must be larger than that of the point before");
    EXPECT_EQ(curveRefusal("curve linear\n5 2\n"),
              "\"my.curve\", at the end: a curve needs at least two points, such as 0 0 and 255 255");
    EXPECT_EQ(curveRefusal("curve linear"),
              "\"my.curve\", at the end: a curve needs at least two points, such as 0 0 and 255 255");
    EXPECT_EQ(curveRefusal("curve linear\n0 " + std::string(100, 'x')),
              "\"my.curve\", line 2: \"" + std::string(40, 'x') + "\" is not a number");
}

}  // namespace
}  // namespace pxk::chain
