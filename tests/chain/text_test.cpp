/// Helpers for text.
#include "chain/text.h"

#include <gtest/gtest.h>

namespace pxk::chain {
namespace {

TEST(Text, ComparesLettersInAnyCase) {
    EXPECT_TRUE(sameLetters("InvertPXK", "invertpxk"));
    EXPECT_FALSE(sameLetters("Invert", "InvertPXK"));
    EXPECT_FALSE(sameLetters("[", "{"));
}

TEST(Text, TellsTextFromBytes) {
    EXPECT_TRUE(isPlainText("plain, \xC3\xA9 and \xF0\x9F\x8E\xA8\n"));
    EXPECT_FALSE(isPlainText(std::string_view("PPIC\0\0", 6)));
    EXPECT_FALSE(isPlainText("\xFF"));
    EXPECT_FALSE(isPlainText("\xC3"));
    EXPECT_FALSE(isPlainText("\xC0\x80"));
    EXPECT_FALSE(isPlainText("\xE0\x80\x80"));
    EXPECT_FALSE(isPlainText("\xED\xA0\x80"));
    EXPECT_FALSE(isPlainText("\xF4\x90\x80\x80"));
    EXPECT_FALSE(isPlainText("\x1b[2J"));
}

TEST(Text, EscapesWhatATerminalWouldObey) {
    EXPECT_EQ(printable("a\x1b[2Jb\nc\td\x7F"), "a\\x1B[2Jb\\x0Ac\\x09d\\x7F");
    EXPECT_EQ(printable("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(printable("a\xC2\x9Bz"), "a\\xC2\\x9Bz");
    EXPECT_EQ(printable("\xFF\xFE"), "\\xFF\\xFE");
}

}  // namespace
}  // namespace pxk::chain
