/// Curves and tables in files, where a chain wants a memory block.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::EndsWith;

class CurveRun : public testing::Test {
  protected:
    CurveRun() {
        folder.writePicture("in.png", {2, 1, {0xFF0A141EU, 0xFFFF8000U}});
        folder.writeText("same.curve", "curve linear\n0 0\n255 255\n");
        folder.writeText("dark.curve", "# darker\r\ncurve linear\r\n0 0\r\n255 51\r\n");
        std::string opposite;
        for (int i = 0; i < 256; ++i) opposite += static_cast<char>(255 - i);
        folder.writeText("opposite.table", opposite);
    }

    CommandResult transform(const std::string& red, const std::string& blue, const std::string& green) const {
        const std::string chain = "TransformColors(\"" + red + "\", \"" + blue + "\", \"" + green + "\")";
        return runTool(folder.path(), {"in.png", "-e", chain, "-o", "out.png"});
    }

    PictureFolder folder;
};

TEST_F(CurveRun, ServesEachChannelBesideATableOfBytes) {
    const CommandResult result = transform("dark.curve", "opposite.table", "same.curve");
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(folder.readPicture("out.png").words, (std::vector<std::uint32_t>{0xFF0214E1U, 0xFF3380FFU}));
}

TEST_F(CurveRun, IsRefusedWithItsPlace) {
    folder.writeText("bad.curve", "curve linear\n0 0\n300 3\n");
    const CommandResult result = transform("same.curve", "same.curve", "bad.curve");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error,
              "pxk: in.png: TransformColorsPXK: \"bad.curve\", line 3: the numbers of a point must be from 0 to 255\n");
    EXPECT_FALSE(folder.has("out.png"));
}

TEST_F(CurveRun, IsATableOf256BytesForEveryMember) {
    const CommandResult result =
        runTool(folder.path(), {"in.png", "-e", "BlockSize(\"same.curve\")", "--plugin", PXK_TRIAL_PLUGIN});
    EXPECT_EQ(result.out, "256\n");
}

TEST_F(CurveRun, LeavesTextThatIsNoCurveAsItIs) {
    folder.writeText("numbers.txt", "0 0\n255 255\n");
    const CommandResult result =
        runTool(folder.path(), {"in.png", "-e", "BlockSize(\"numbers.txt\")", "--plugin", PXK_TRIAL_PLUGIN});
    EXPECT_EQ(result.out, "12\n");
}

TEST_F(CurveRun, IsAnExampleToStartFrom) {
    const std::string examples = PXK_EXAMPLES;
    const std::string curve = examples + "/gentle_s.curve";
    EXPECT_EQ(transform(curve, curve, curve).error, "");
    EXPECT_TRUE(folder.has("out.png"));
}

}  // namespace
}  // namespace pxk::tool
