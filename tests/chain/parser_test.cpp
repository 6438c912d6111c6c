/// Chains that are parsed, and those that are refused.
#include "chain/parser.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

#include "chain/error.h"
#include "chain/language_help.h"

namespace pxk::chain {
namespace {

/// The argument of a chain with one call with one argument.
Argument argumentIn(const std::string& text) {
    const Chain chain = parseChain("Call(" + text + ")");
    EXPECT_EQ(chain.statements.size(), 1U);
    EXPECT_EQ(chain.statements.at(0).steps.size(), 1U);
    EXPECT_EQ(chain.statements.at(0).steps.at(0).arguments.size(), 1U) << text;
    return chain.statements.at(0).steps.at(0).arguments.at(0);
}

template <class Written>
Written read(const std::string& text) {
    return std::get<Written>(argumentIn(text).written);
}

/// The names of the calls, statement by statement: "A.B / C".
std::string namesIn(const std::string& text) {
    std::string names;
    for (const Statement& statement : parseChain(text).statements) {
        if (!names.empty()) names += " / ";
        for (const Step& step : statement.steps) names += (&step == &statement.steps.front() ? "" : ".") + step.name;
    }
    return names;
}

TEST(ChainParser, ReadsOneNameAsOneCall) {
    const Chain chain = parseChain("InvertPXK");
    ASSERT_EQ(chain.statements.size(), 1U);
    ASSERT_EQ(chain.statements[0].steps.size(), 1U);
    EXPECT_EQ(chain.statements[0].steps[0].name, "InvertPXK");
    EXPECT_TRUE(chain.statements[0].steps[0].arguments.empty());
    EXPECT_FALSE(chain.statements[0].assigned);
}

TEST(ChainParser, ReadsCallsJoinedByDots) {
    const Chain chain = parseChain("InvertPXK(10,10,200,100).InvertGrayPXK");
    ASSERT_EQ(chain.statements.size(), 1U);
    const auto& steps = chain.statements[0].steps;
    ASSERT_EQ(steps.size(), 2U);
    ASSERT_EQ(steps[0].arguments.size(), 4U);
    EXPECT_EQ(std::get<std::int32_t>(steps[0].arguments[2].written), 200);
    EXPECT_EQ(steps[0].arguments[2].position, 16U);
    EXPECT_EQ(steps[1].name, "InvertGrayPXK");
    EXPECT_EQ(steps[1].position, 25U);
}

TEST(ChainParser, EmptyBracketsAreNoArguments) {
    EXPECT_TRUE(parseChain("Invert()").statements[0].steps[0].arguments.empty());
    EXPECT_TRUE(parseChain("Invert( \n )").statements[0].steps[0].arguments.empty());
}

TEST(ChainParser, TakesPicInFrontOfAStatement) {
    EXPECT_EQ(namesIn("pic.Invert"), "Invert");
    EXPECT_EQ(namesIn("PIC . Invert.Other"), "Invert.Other");
    EXPECT_EQ(namesIn("pic = pic.Invert"), "Invert");
    EXPECT_EQ(namesIn("pic=Pic.Invert\nPic.Other"), "Invert / Other");
    EXPECT_EQ(namesIn("picture.Invert"), "picture.Invert");
}

TEST(ChainParser, LineEndsPartStatementsAndDotsJoinThem) {
    EXPECT_EQ(namesIn("A\nB\r\n\n  C\n"), "A / B / C");
    EXPECT_EQ(namesIn("A\n  .B\n  .C\nD"), "A.B.C / D");
    EXPECT_EQ(namesIn("A.\nB\n\n.C"), "A.B.C");
    EXPECT_EQ(namesIn("A(1,\n2,\n3\n).B"), "A.B");
    EXPECT_EQ(namesIn("A _\n .B"), "A.B");
    EXPECT_EQ(namesIn("A_\r\n.B"), "A_.B");
    EXPECT_EQ(namesIn("A( _\n 1)"), "A");
}

TEST(ChainParser, SkipsEveryKindOfComment) {
    EXPECT_EQ(namesIn("' first\nA ' this, and .B too\n// and\nREM more.C\nrem\nB"), "A / B");
    EXPECT_EQ(namesIn("A // one\n.B(1, ' the first\n 2) rem the last"), "A.B");
    EXPECT_EQ(namesIn("Remove.Remark"), "Remove.Remark");
    EXPECT_EQ(read<std::string>("\"it's // no REM comment\""), "it's // no REM comment");
}

TEST(ChainParser, ReadsIntegers) {
    EXPECT_EQ(read<std::int32_t>("0"), 0);
    EXPECT_EQ(read<std::int32_t>("-12"), -12);
    EXPECT_EQ(read<std::int32_t>("+7"), 7);
    EXPECT_EQ(read<std::int32_t>("007"), 7);
    EXPECT_EQ(read<std::int32_t>("2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(read<std::int32_t>("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(read<double>("2147483648"), 2147483648.0);
    EXPECT_EQ(read<double>("-99999999999999999999"), -1e20);
}

TEST(ChainParser, ReadsHexadecimalNumbersAs32Bits) {
    EXPECT_EQ(read<std::int32_t>("&hFF"), 255);
    EXPECT_EQ(read<std::int32_t>("&H00fF"), 255);
    EXPECT_EQ(read<std::int32_t>("&hFFFFFFFF"), -1);
    EXPECT_EQ(read<std::int32_t>("&h000000000000FFFFFFFF"), -1);
}

TEST(ChainParser, ReadsDoubles) {
    EXPECT_EQ(read<double>("1.5"), 1.5);
    EXPECT_EQ(read<double>("-.25"), -0.25);
    EXPECT_EQ(read<double>("+0.1"), 0.1);
    EXPECT_EQ(read<double>("1e3"), 1000.0);
    EXPECT_EQ(read<double>("2.5E-3"), 0.0025);
    EXPECT_EQ(read<double>("1e+12"), 1e12);
}

TEST(ChainParser, ReadsBooleansNilAndColours) {
    EXPECT_TRUE(read<bool>("true"));
    EXPECT_FALSE(read<bool>("FALSE"));
    EXPECT_TRUE(std::holds_alternative<Nil>(argumentIn("Nil").written));
    EXPECT_EQ(read<Color>("&c88B5C4").rgb, 0x88B5C4U);
    EXPECT_EQ(read<Color>("&Cffffff").rgb, 0xFFFFFFU);
}

TEST(ChainParser, ReadsStrings) {
    EXPECT_EQ(read<std::string>("\"a b.png\""), "a b.png");
    EXPECT_EQ(read<std::string>("\"\""), "");
    EXPECT_EQ(read<std::string>("\"say \"\"yes\"\"\""), "say \"yes\"");
    EXPECT_EQ(read<std::string>("\"a\\n(b),\""), "a\\n(b),");
    EXPECT_EQ(read<std::string>("\"caf\xC3\xA9\""), "caf\xC3\xA9");
}

TEST(ChainParser, ReadsNamesWhereValuesComeBack) {
    EXPECT_EQ(read<Variable>("x").name, "x");
    EXPECT_EQ(read<Variable>("nilValue").name, "nilValue");
    EXPECT_EQ(read<Variable>("true_2").name, "true_2");
}

TEST(ChainParser, ReadsTheCurrentPictureAndWhatIsMadeOfIt) {
    EXPECT_TRUE(read<FromPicture>("pic").steps.empty());
    const auto made = read<FromPicture>("pic.Invert(1, 2).Merge(pic.Gray)");
    ASSERT_EQ(made.steps.size(), 2U);
    EXPECT_EQ(made.steps[0].arguments.size(), 2U);
    const auto& inner = std::get<FromPicture>(made.steps[1].arguments.at(0).written);
    EXPECT_EQ(inner.steps.at(0).name, "Gray");
}

TEST(ChainParser, ReadsArgumentsByName) {
    const Step step = parseChain("PictureSepiaPXK(SepiaRed = 40, SepiaBlue=-20)").statements[0].steps[0];
    EXPECT_TRUE(step.arguments.empty());
    ASSERT_EQ(step.properties.size(), 2U);
    EXPECT_EQ(step.properties[0].name, "SepiaRed");
    EXPECT_EQ(step.properties[0].position, 16U);
    EXPECT_EQ(std::get<std::int32_t>(step.properties[0].value.written), 40);
    EXPECT_EQ(step.properties[0].value.position, 27U);
    EXPECT_EQ(std::get<std::int32_t>(step.properties[1].value.written), -20);
}

TEST(ChainParser, ReadsArgumentsByNameAfterThoseByPositionAndWithIndices) {
    const Step step = parseChain("Lut(\"look.cube\", Table(0, 1, 2, 0) = 12.5, MaxX = 3)").statements[0].steps[0];
    ASSERT_EQ(step.arguments.size(), 1U);
    ASSERT_EQ(step.properties.size(), 2U);
    EXPECT_EQ(step.properties[0].name, "Table");
    EXPECT_EQ(step.properties[0].index.size(), 4U);
    EXPECT_EQ(std::get<double>(step.properties[0].value.written), 12.5);
    EXPECT_EQ(step.properties[1].name, "MaxX");
}

TEST(ChainParser, ReadsAssignments) {
    const Statement statement = parseChain("pic.EmbeddedMaskPXK(true) = \"mask.png\"").statements[0];
    ASSERT_TRUE(statement.assigned);
    EXPECT_EQ(std::get<std::string>(statement.assigned->written), "mask.png");
    EXPECT_EQ(statement.steps[0].arguments.size(), 1U);
}

// ---- what is refused, and where

struct Refusal {
    const char* text;
    std::size_t position;
    const char* message;
};

void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.text; }

class ChainParserRefuses : public testing::TestWithParam<Refusal> {};

TEST_P(ChainParserRefuses, WithThePositionAndWhatWasExpected) {
    try {
        parseChain(GetParam().text);
        FAIL() << "was read";
    } catch (const ChainError& error) {
        EXPECT_EQ(error.position, GetParam().position);
        EXPECT_EQ(std::string(error.what()), GetParam().message);
    }
}

constexpr const char* expectsValue = "expected a value: a number, true, false, nil, &cRRGGBB, \"text\" or pic";
constexpr const char* expectsName = "expected the name of a method or class";
constexpr const char* expectsCommaOrBracket = "expected \",\" or \")\"";
constexpr const char* expectsNextCall = "expected \".\" and the next call, or the end of the line";
constexpr const char* expectsColor = "a colour is &c followed by six hexadecimal digits: &cRRGGBB";

INSTANTIATE_TEST_SUITE_P(
    All, ChainParserRefuses,
    testing::Values(
        Refusal{"", 0, "the chain is empty; write a call such as InvertPXK"},
        Refusal{" ' only a comment\n", 0, "the chain is empty; write a call such as InvertPXK"},
        Refusal{"12", 0, expectsName}, Refusal{".A", 0, expectsName}, Refusal{"A.", 2, expectsName},
        Refusal{"A..B", 2, expectsName}, Refusal{"A.(1)", 2, expectsName}, Refusal{"_A", 0, expectsName},
        Refusal{"\xC3\xA9", 0, expectsName}, Refusal{"pic.", 4, expectsName},
        Refusal{"pic", 3, "expected \".\" and a call after \"pic\""},
        Refusal{"pic(1)", 3, "expected \".\" and a call after \"pic\""},
        Refusal{"pic = 3", 6, "expected \"pic.\" and a call after \"pic =\""},
        Refusal{"pic = pic", 9, "expected \".\" and a call after \"pic\""}, Refusal{"A B", 2, expectsNextCall},
        Refusal{"A(1) B", 5, expectsNextCall}, Refusal{"A;B", 1, expectsNextCall},
        Refusal{"A = 1 2", 6, expectsNextCall}, Refusal{"A)", 1, "unmatched \")\""}, Refusal{"A(", 2, expectsValue},
        Refusal{"A(1,", 4, expectsValue}, Refusal{"A(,1)", 2, expectsValue}, Refusal{"A(1,)", 4, expectsValue},
        Refusal{"A(#)", 2, expectsValue}, Refusal{"A =", 3, expectsValue}, Refusal{"A(x = )", 6, expectsValue},
        Refusal{"A(1", 3, expectsCommaOrBracket}, Refusal{"A(1 2)", 4, expectsCommaOrBracket},
        Refusal{"A(10px)", 4, expectsCommaOrBracket}, Refusal{"A(1.)", 3, expectsCommaOrBracket},
        Refusal{"A(true false)", 7, expectsCommaOrBracket}, Refusal{"A(T(1 2) = 3)", 6, expectsCommaOrBracket},
        Refusal{"A(B(1))", 2, "a call inside an argument starts with the current picture: pic.B"},
        Refusal{"A(B.C)", 2, "a call inside an argument starts with the current picture: pic.B"},
        Refusal{"A(x = 1, 2)", 9, "expected \"Name = value\": arguments by position come before those by name"},
        Refusal{"A(\"open)", 2, "this string has no closing quote on its line"},
        Refusal{"A(\"open\n\")", 2, "this string has no closing quote on its line"},
        Refusal{"A(-)", 2, "expected digits"}, Refusal{"A(.)", 2, "expected digits"},
        Refusal{"A(1e)", 2, "expected digits after the \"e\" of this number"},
        Refusal{"A(1e+)", 2, "expected digits after the \"e\" of this number"},
        Refusal{"A(1e999)", 2, "this number does not fit in a double"}, Refusal{"A(&cFFF)", 2, expectsColor},
        Refusal{"A(&cFFFFFFF)", 2, expectsColor}, Refusal{"A(&cFFFFFG)", 2, expectsColor},
        Refusal{"A(&c)", 2, expectsColor}, Refusal{"A(&h)", 2, "expected hexadecimal digits after &h"},
        Refusal{"A(&h1G)", 2, "expected hexadecimal digits after &h"},
        Refusal{"A(&h100000000)", 2, "this number does not fit in 32 bits"},
        Refusal{"A(&hFFFFFFFFFFFFFFFFFFFF)", 2, "this number does not fit in 32 bits"},
        Refusal{"A(&x1)", 2, "a colour is written &cRRGGBB, a hexadecimal number &hFF"},
        Refusal{"A\nB(\n3 4)", 7, expectsCommaOrBracket}));

TEST(ChainParser, RefusesANulByteInAString) {
    const std::string text("A(\"b\0c\")", 8);
    try {
        parseChain(text);
        FAIL() << "was read";
    } catch (const ChainError& error) {
        EXPECT_EQ(error.position, 4U);
    }
}

std::string nested(int depth) {
    std::string text = "A";
    for (int i = 1; i < depth; ++i) text += "(pic.A";
    text += "(1)";
    return text + std::string(static_cast<std::size_t>(depth - 1), ')');
}

/// They are the lines that start with a capital letter, two blanks in.
TEST(ChainParser, ReadsTheChainsThatTheHelpShows) {
    std::istringstream help(languageHelp);
    std::string line;
    std::string chains;
    while (std::getline(help, line)) {
        const bool isChain = line.starts_with("  ") && line.size() > 2 && line[2] >= 'A' && line[2] <= 'Z';
        if (isChain) chains += line + "\n";
    }
    EXPECT_EQ(namesIn(chains),
              "InvertPXK.InvertGrayPXK / PictureSepiaPXK / PictureLut3DPXK / ScrollPXK / EmbeddedMaskPXK / InvertPXK");
}

TEST(ChainParser, BoundsHowDeepCallsAreNested) {
    EXPECT_NO_THROW(parseChain(nested(deepestNesting)));
    EXPECT_THROW(parseChain(nested(deepestNesting + 1)), ChainError);
    EXPECT_THROW(parseChain(nested(1'000'000)), ChainError);
    EXPECT_THROW(parseChain("A" + std::string(1'000'000, '(')), ChainError);
}

TEST(ChainParser, TakesAVeryLongChain) {
    std::string text = "A";
    for (int i = 0; i < 100'000; ++i) text += ".A";
    EXPECT_EQ(parseChain(text).statements[0].steps.size(), 100'001U);
}

/// Text made of the pieces that chains are made of, and of any bytes, in any order.
class RandomText {
  public:
    std::string make() {
        std::string text;
        for (std::size_t length = number(30); length > 0; --length) text += piece();
        return text;
    }

  private:
    std::string piece() {
        static const std::vector<std::string> pieces = {
            "pic", ".",   "(",   ")",  ",",   "=",  "\n", "\r\n", " ",    "\t",     "_",    "'",   "//",
            "REM", "\"",  "&c",  "&h", "FF",  "-",  "+",  "e",    "1",    "2.5",    "true", "nil", "Invert",
            "x",   "A(1", "&cF", "\\", "\"a", "1e", ".5", "(pic", "pic.", "= pic.", "REM ", " _\n"};
        if (number(10) == 0) return {static_cast<char>(number(256))};
        return pieces[number(pieces.size())];
    }

    std::size_t number(std::size_t below) { return std::uniform_int_distribution<std::size_t>(0, below - 1)(random_); }

    std::mt19937 random_{20130401};
};

TEST(ChainParser, ReadsOrRefusesAnyTextWithinItsBounds) {
    RandomText random;
    int read = 0;
    int refused = 0;
    for (int i = 0; i < 60'000; ++i) {
        const std::string text = random.make();
        try {
            EXPECT_FALSE(parseChain(text).statements.empty());
            ++read;
        } catch (const ChainError& error) {
            ASSERT_LE(error.position, text.size()) << text;
            ASSERT_STRNE(error.what(), "") << text;
            ++refused;
        }
    }
    EXPECT_GT(read, 100);
    EXPECT_GT(refused, 100);
}

}  // namespace
}  // namespace pxk::chain
