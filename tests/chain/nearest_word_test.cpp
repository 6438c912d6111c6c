#include "chain/nearest_word.h"

#include <gtest/gtest.h>

namespace pxk::chain {
namespace {

TEST(NearestWord, IsTheOneWithTheFewestChanges) {
    EXPECT_EQ(nearestWord("lst", {"help", "list", "last-one"}), "list");
    EXPECT_EQ(nearestWord("Hlep", {"list", "help"}), "help");
    EXPECT_EQ(nearestWord("histgoram", {"compare", "histogram"}), "histogram");
}

TEST(NearestWord, CountsNeitherDashesNorLetterCase) {
    EXPECT_EQ(nearestWord("--OUTPT", {"--output", "--other"}), "--output");
    EXPECT_EQ(nearestWord("help", {"--help"}), "--help");
}

TEST(NearestWord, IsNoneWhenAllAreFar) {
    EXPECT_EQ(nearestWord("photograph", {"list", "help"}), "");
    EXPECT_EQ(nearestWord("list", {}), "");
}

TEST(NearestWord, AllowsAThirdOfALongWordToDiffer) {
    EXPECT_EQ(nearestWord("abcdefghi", {"abcdefxyz"}), "abcdefxyz");
    EXPECT_EQ(nearestWord("abcdefgh", {"abcdexyz"}), "");
}

TEST(NearestWord, IsSuggestedInAMessage) {
    EXPECT_EQ(suggestionFor("lst", {"list"}), "; did you mean list?");
    EXPECT_EQ(suggestionFor("photograph", {"list"}), "");
}

}  // namespace
}  // namespace pxk::chain
