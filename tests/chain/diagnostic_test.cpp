/// The line and the caret that point at a mistake.
#include "chain/diagnostic.h"

#include <gtest/gtest.h>

namespace pxk::chain {
namespace {

std::string pointed(const std::string& text, std::size_t position) {
    return pointAt(text, ChainError(position, "wrong"));
}

TEST(Diagnostic, ShowsTheChainWithACaret) {
    EXPECT_EQ(pointed("InvertPXK(10 10)", 13),
              "column 14: wrong\n"
              "  InvertPXK(10 10)\n"
              "               ^");
}

TEST(Diagnostic, PointsBehindTheEnd) {
    EXPECT_EQ(pointed("A(", 2), "column 3: wrong\n  A(\n    ^");
    EXPECT_EQ(pointed("", 0), "column 1: wrong\n  \n  ^");
    EXPECT_EQ(pointed("A", 99), "column 2: wrong\n  A\n   ^");
}

TEST(Diagnostic, ShowsOneLineOfSeveral) {
    EXPECT_EQ(pointed("A\nB(\nC D\nE", 7), "line 3, column 3: wrong\n  C D\n    ^");
    EXPECT_EQ(pointed("A\r\nB B\r\n", 5), "line 2, column 3: wrong\n  B B\n    ^");
    EXPECT_EQ(pointed("A\n", 2), "line 2, column 1: wrong\n  \n  ^");
}

TEST(Diagnostic, CountsCharactersNotBytes) {
    EXPECT_EQ(pointed("A(\"\xC3\xA9\xE2\x82\xAC\") B", 11),
              "column 9: wrong\n  A(\"\xC3\xA9\xE2\x82\xAC\") B\n          ^");
}

TEST(Diagnostic, KeepsControlCharactersFromTheTerminal) {
    EXPECT_EQ(pointed("A\x1b[2J\tB", 6), "column 7: wrong\n  A\\x1B[2J B\n           ^");
}

TEST(Diagnostic, ShowsALongLineAroundThePlace) {
    const std::string text = std::string(200, 'a') + "!" + std::string(200, 'b');
    EXPECT_EQ(pointed(text, 200), "column 201: wrong\n  ..." + std::string(60, 'a') + "!" + std::string(39, 'b') +
                                      "...\n  " + std::string(63, ' ') + "^");
}

}  // namespace
}  // namespace pxk::chain
