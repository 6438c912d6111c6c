/// Interpolation in colour cubes, and .cube files.
#include "chain/color_cube.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "chain/cube_file.h"
#include "chain/error.h"

namespace pxk::chain {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

auto isNear(double r, double g, double b) {
    constexpr double little = 1e-6;
    return ElementsAre(DoubleNear(r, little), DoubleNear(g, little), DoubleNear(b, little));
}

ColorCube cubeOf(const std::string& text) { return parseCube("my.cube", text); }

/// The message for a file that is refused, without the file's name.
std::string cubeRefusal(const std::string& text) {
    try {
        parseCube("my.cube", text);
    } catch (const WorkError& error) {
        const std::string message = error.what();
        const std::string named = "\"my.cube\", ";
        EXPECT_THAT(message, testing::StartsWith(named));
        return message.substr(std::min(named.size(), message.size()));
    }
    return "nothing";
}

/// The eight rows of a cube of size 2.
std::string eightRows() { return "0 0 0\n1 0 0\n0 1 0\n1 1 0\n0 0 1\n1 0 1\n0 1 1\n1 1 1\n"; }

/// A cube of size 2 whose corners have nothing to do with each other.
ColorCube unruly() {
    return cubeOf("LUT_3D_SIZE 2\n.1 .2 .3\n.9 .1 .4\n.3 .8 .5\n.7 .6 .2\n.4 .3 .9\n.8 .2 .7\n.2 .9 .6\n1.5 -0.5 .9\n");
}

ColorCube refined(const ColorCube& cube, int size) {
    ColorCube result = identityCube(size);
    for (std::size_t i = 0; i < result.entries.size(); i += 3) {
        const auto colour = cube({result.entries[i], result.entries[i + 1], result.entries[i + 2]});
        for (std::size_t x = 0; x < 3; ++x) result.entries[i + x] = static_cast<float>(colour[x]);
    }
    return result;
}

// ---- interpolation

TEST(ColorCube, HasItsEntriesAtItsPoints) {
    const ColorCube cube = unruly();
    EXPECT_THAT(cube({0, 0, 0}), isNear(0.1, 0.2, 0.3));
    EXPECT_THAT(cube({1, 0, 0}), isNear(0.9, 0.1, 0.4));
    EXPECT_THAT(cube({0, 1, 0}), isNear(0.3, 0.8, 0.5));
    EXPECT_THAT(cube({0, 0, 1}), isNear(0.4, 0.3, 0.9));
    EXPECT_THAT(cube({1, 1, 1}), isNear(1.5, -0.5, 0.9));
}

// Each of the six ways from the lowest corner to the highest, the first channel only: entries are by red, green, blue.
TEST(ColorCube, IsInterpolatedInTheSixTetrahedra) {
    const ColorCube cube = unruly();
    const double lowest = 0.1, red = 0.9, green = 0.3, redGreen = 0.7, blue = 0.4, redBlue = 0.8, greenBlue = 0.2,
                 highest = 1.5;
    const auto along = [&](double one, double two) { return 0.2 * lowest + 0.3 * one + 0.4 * two + 0.1 * highest; };
    EXPECT_NEAR(cube({.8, .5, .1})[0], along(red, redGreen), 1e-6);
    EXPECT_NEAR(cube({.8, .1, .5})[0], along(red, redBlue), 1e-6);
    EXPECT_NEAR(cube({.5, .8, .1})[0], along(green, redGreen), 1e-6);
    EXPECT_NEAR(cube({.1, .8, .5})[0], along(green, greenBlue), 1e-6);
    EXPECT_NEAR(cube({.5, .1, .8})[0], along(blue, redBlue), 1e-6);
    EXPECT_NEAR(cube({.1, .5, .8})[0], along(blue, greenBlue), 1e-6);
    EXPECT_NEAR(cube({.5, .5, .5})[0], (lowest + highest) / 2, 1e-6);
}

TEST(ColorCube, ClampsColoursToTheDomain) {
    const ColorCube cube = unruly();
    EXPECT_EQ(cube({-3, 0.5, 7}), cube({0, 0.5, 1}));
}

TEST(ColorCube, IsTheSameWithPointsBetweenItsPoints) {
    const ColorCube coarse = unruly();
    const ColorCube fine = refined(coarse, 16);
    const ColorCube finest = refined(fine, 31);
    for (double r = 0; r <= 1; r += 0.13) {
        for (double g = 0; g <= 1; g += 0.17) {
            for (double b = 0; b <= 1; b += 0.19) {
                const ColorTriple expected = coarse({r, g, b});
                EXPECT_THAT(fine({r, g, b}), isNear(expected[0], expected[1], expected[2]));
                EXPECT_THAT(finest({r, g, b}), isNear(expected[0], expected[1], expected[2]));
            }
        }
    }
}

TEST(ColorCube, ChangesNothingWhenItIsTheIdentity) {
    for (const int size : {2, 3, 16, 17, 33, 64, 256}) {
        const ColorCube cube = identityCube(size);
        EXPECT_EQ(cube.entries.size(), 3 * pointCount(size));
        for (int level = 0; level <= 255; ++level) {
            const double v = level / 255.0;
            EXPECT_THAT(cube({v, 1 - v, 0.3}), isNear(v, 1 - v, 0.3));
        }
    }
}

// ---- files

TEST(CubeFile, GoesFastestInRed) {
    const ColorCube cube = cubeOf("LUT_3D_SIZE 2\n0 0 0\n.5 0 0\n" + eightRows().substr(12));
    EXPECT_THAT(cube({1, 0, 0}), isNear(0.5, 0, 0));
    EXPECT_THAT(cube({0, 1, 0}), isNear(0, 1, 0));
}

TEST(CubeFile, MayHaveATitleADomainCommentsAndOtherLineEnds) {
    std::string text = "\xEF\xBB\xBF# mine\nTITLE \"night # 3\"\n\n  lut_3d_size\t2 \nDOMAIN_MIN 0 -1 0\n";
    text += "DOMAIN_MAX 2 1 4 # wide\n# rows\n" + eightRows() + "\n# the end\n";
    std::string windows;
    for (const char c : text) windows += c == '\n' ? "\r\n" : std::string(1, c);
    for (const std::string& each : {text, windows, windows.substr(0, windows.size() - 2)}) {
        const ColorCube cube = cubeOf(each);
        EXPECT_THAT(cube({0, -1, 0}), isNear(0, 0, 0));
        EXPECT_THAT(cube({1, 0, 1}), isNear(0.5, 0.5, 0.25));
        EXPECT_THAT(cube({2, 1, 4}), isNear(1, 1, 1));
    }
}

TEST(CubeFile, TakesNumbersAsTheyAreWritten) {
    const ColorCube cube = cubeOf("LUT_3D_SIZE 2\n-0.5 1e-3 +2.5E0\n" + eightRows().substr(6));
    EXPECT_THAT(cube({0, 0, 0}), isNear(-0.5, 0.001, 2.5));
}

TEST(CubeFile, IsReadAsItWasWritten) {
    for (const int size : {2, 5, 16}) {
        const ColorCube cube = refined(unruly(), size);
        const ColorCube back = cubeOf(cubeText(cube, "unruly"));
        ASSERT_EQ(back.size, size);
        ASSERT_EQ(back.entries.size(), cube.entries.size());
        for (std::size_t i = 0; i < cube.entries.size(); ++i) EXPECT_NEAR(back.entries[i], cube.entries[i], 6e-7);
    }
}

TEST(CubeFile, OfSize256IsRead) {
    std::ostringstream text;
    text << "LUT_3D_SIZE 256\n";
    for (std::size_t i = 0; i < pointCount(256); ++i) text << "1 .5 0\n";
    EXPECT_THAT(cubeOf(text.str())({0.3, 0.2, 0.1}), isNear(1, 0.5, 0));
}

TEST(CubeFile, IsRefusedWithItsLineAndTheReason) {
    EXPECT_EQ(cubeRefusal(""), "at the end: there is no LUT_3D_SIZE, so this is not a 3D LUT");
    EXPECT_EQ(cubeRefusal("# nothing\n"), "at the end: there is no LUT_3D_SIZE, so this is not a 3D LUT");
    EXPECT_EQ(cubeRefusal("TITLE \"a\"\nLUT_1D_SIZE 4\n0 0 0\n"),
              "line 2: this is a 1D LUT; expected a 3D LUT, with LUT_3D_SIZE");
    for (const char* size : {"1", "257", "0", "-2", "2.5", "4294967298", "", "2 2"}) {
        EXPECT_EQ(cubeRefusal(std::string("\nLUT_3D_SIZE ") + size + "\n" + eightRows()),
                  "line 2: LUT_3D_SIZE must be a whole number from 2 to 256")
            << size;
    }
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE two\n"), "line 1: \"two\" is not a number");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\nLUT_3D_SIZE 2\n"), "line 2: LUT_3D_SIZE appears a second time");
    EXPECT_EQ(cubeRefusal("0 0 0\nLUT_3D_SIZE 2\n"), "line 1: expected LUT_3D_SIZE before the first row of numbers");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n" + eightRows().substr(6)),
              "at the end: there are 7 rows of numbers; LUT_3D_SIZE 2 needs 8");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n" + eightRows() + "\n0 0 0\n"),
              "line 11: this is one row too many; LUT_3D_SIZE 2 needs 8");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n0 0\n"), "line 2: a row is three numbers: red, green and blue");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n0 0 0 0\n"), "line 2: a row is three numbers: red, green and blue");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n0 0 O\n"), "line 2: \"O\" is not a number");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n0 0,5 0\n"), "line 2: \"0,5\" is not a number");
    for (const char* number : {"nan", "NaN", "-nan", "inf", "-inf", "infinity", "1e999"}) {
        const std::string said = std::string("line 3: \"") + number + "\" is not a finite number";
        EXPECT_EQ(cubeRefusal(std::string("LUT_3D_SIZE 2\n0 0 0\n") + number + " 0 0\n"), said);
        EXPECT_EQ(cubeRefusal(std::string("LUT_3D_SIZE 2\n0 0 0\n0 0 ") + number + "\n"), said);
    }
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n0 0 1e10\n"), "line 2: \"1e10\" is too large; white is 1");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\nDOMAIN_MIN 0 0\n"), "line 2: expected three numbers: red, green and blue");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\nDOMAIN_MAX 0 0 x\n"), "line 2: \"x\" is not a number");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\nDOMAIN_MIN 0 1 0\n" + eightRows()),
              "line 3: the rows begin here, but DOMAIN_MIN is not below DOMAIN_MAX in every channel");
    EXPECT_EQ(cubeRefusal("LUT_3D_SIZE 2\n0 0 0\nDOMAIN_MIN 0 0 0\n"),
              "line 3: the domain must come before the first row of numbers");
    EXPECT_THAT(cubeRefusal("LUT_3D_SIZE 2\nLUT_IN_VIDEO_RANGE\n"),
                HasSubstr("line 2: \"LUT_IN_VIDEO_RANGE\" is neither a number nor TITLE"));
    EXPECT_THAT(cubeRefusal("\x89PNG\r\n\x1a\n"), HasSubstr("line 1: \"\\x89PNG\" is neither a number nor"));
    EXPECT_THAT(cubeRefusal(std::string(100000, '\0')), HasSubstr("is neither a number nor"));
}

}  // namespace
}  // namespace pxk::chain
