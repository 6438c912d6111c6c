/// The text of the progress bar.
#include "tool/terminal/progress_bar.h"

#include <gtest/gtest.h>

#include "chain/text.h"

namespace pxk::tool {
namespace {

using chain::characterCount;

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
