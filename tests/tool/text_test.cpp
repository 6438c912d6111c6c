#include "text.h"

#include <gtest/gtest.h>

#include "progress_bar.h"

namespace pxk::tool {
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

TEST(Text, KeepsWhatATerminalObeysOutOfALine) {
    EXPECT_EQ(printable("a\x1b[2Jb\nc\td\x7F"), "a?[2Jb?c?d?");
    EXPECT_EQ(printable("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(printable("a\xC2\x9Bz"), "a??z");
    EXPECT_EQ(printable("\xFF\xFE"), "??");
}

TEST(Progress, ShowsHowFarItHasCome) {
    EXPECT_EQ(progressText(0, 10, "a.png", 79), "[--------------------------]  0/10 a.png");
    EXPECT_EQ(progressText(5, 10, "a.png", 79), "[#############-------------]  5/10 a.png");
    EXPECT_EQ(progressText(10, 10, "", 79), "[##########################] 10/10 ");
}

TEST(Progress, StaysWithinTheTerminal) {
    const std::string longName(200, 'n');
    for (const std::size_t width : {1U, 10U, 40U, 79U, 300U}) {
        EXPECT_LE(characterCount(progressText(3, 9, longName, width)), width);
    }
    EXPECT_EQ(progressText(1, 2, "\xC3\xA9\xC3\xA9\xC3\xA9", 12), "[##--] 1/2 \xC3\xA9");
}

}  // namespace
}  // namespace pxk::tool
