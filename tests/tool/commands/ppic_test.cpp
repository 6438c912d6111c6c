/// The plugin's binary strings as picture files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

/// A picture of red and blue.
std::string redAndBlue() {
    std::string bytes("PPIC\0\0\0\x2E\0\0\0\x02\0\0\0\x01\0\0\0\x20\0\0\0\x28", 24);
    bytes.append(16, '\0').append("\xFF\0\0\0\0\xFF", 6);
    return bytes;
}

class Ppic : public testing::Test {
  protected:
    Ppic() { folder.writePicture("in.png", {2, 1, {0xFFFF0000U, 0xFF0000FFU}}); }

    CommandResult pxk(const std::vector<std::string>& arguments) const { return runTool(folder.path(), arguments); }

    PictureFolder folder;
};

TEST_F(Ppic, IsWrittenForAPicture) {
    EXPECT_EQ(pxk({"in.png", "-o", "out.ppic"}).error, "");
    EXPECT_EQ(folder.readText("out.ppic"), redAndBlue());
    EXPECT_EQ(pxk({"in.png", "-e", "Invert.Invert", "-o", "out2.PPIC"}).exitCode, 0);
    EXPECT_EQ(folder.readText("out2.PPIC"), redAndBlue());
}

TEST_F(Ppic, IsWrittenForAStringToo) {
    EXPECT_EQ(pxk({"in.png", "-e", "PicturetoBinaryString", "-o", "out.ppic"}).exitCode, 0);
    EXPECT_EQ(folder.readText("out.ppic"), redAndBlue());
}

TEST_F(Ppic, IsReadByItsContent) {
    folder.writeText("in.bin", redAndBlue());
    EXPECT_EQ(pxk({"in.bin", "-e", "Invert", "-o", "out.png"}).error, "");
    EXPECT_EQ(folder.readPicture("out.png"), inverted(folder.readPicture("in.png")));
    folder.writeText("named.ppic", folder.readText("in.png"));
    EXPECT_EQ(pxk({"named.ppic", "-o", "out.ppic"}).error, "");
    EXPECT_EQ(folder.readText("out.ppic"), redAndBlue());
}

TEST_F(Ppic, StandsWhereverAPictureIsNamed) {
    folder.writeText("in.ppic", redAndBlue());
    EXPECT_EQ(pxk({"compare", "in.png", "in.ppic"}).exitCode, 0);
    EXPECT_EQ(pxk({"in.png", "-e", "MergePicture(\"in.ppic\", pic.Invert)", "-o", "out.png"}).exitCode, 0);
    EXPECT_EQ(folder.readPicture("out.png").words, (std::vector<std::uint32_t>{0xFFFFFFFFU, 0xFFFFFFFFU}));
    EXPECT_EQ(pxk({"in.png", "in.ppic", "-o", "new/", "--format", "ppic"}).exitCode, 2) << "two results of one name";
    EXPECT_EQ(pxk({"in.png", "-o", "new/", "--format", "ppic"}).exitCode, 0);
    EXPECT_EQ(folder.readText("new/in.ppic"), redAndBlue());
}

TEST_F(Ppic, OfADesktopApplicationIsTheSame) {
    EXPECT_EQ(pxk({"--application", "desktop", "in.png", "-o", "out.ppic"}).error, "");
    EXPECT_EQ(folder.readText("out.ppic"), redAndBlue());
}

TEST_F(Ppic, ThatIsDamagedIsRefused) {
    const std::string whole = redAndBlue();
    std::vector<std::pair<std::string, std::string>> damaged = {
        {whole + " ", "it has 47 bytes; its header states 46"},
        {whole.substr(0, 45), "it has 45 bytes; its header states 46"},
        {"PPIC", "it has 4 bytes; the header alone has 40"},
        {whole.substr(0, 12), "it has 12 bytes; the header alone has 40"},
        {whole, "its header states 2130706434 x 1 pixels; each side is 1 to 32767"},
        {whole, "its header states 2 x 2130706433 pixels; each side is 1 to 32767"},
        {whole, "its header states 2 x 1 pixels, which need 2130706478 bytes; it has 46"}};
    damaged[4].first[8] = damaged[5].first[12] = damaged[6].first[20] = '\x7F';
    for (const auto& [bytes, reason] : damaged) {
        folder.writeText("bad.ppic", bytes);
        const CommandResult result = pxk({"bad.ppic", "-o", "out.png"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error, "pxk: cannot read binary string \"bad.ppic\": " + reason + "\n");
        EXPECT_FALSE(folder.has("out.png"));
    }
}

TEST_F(Ppic, LeavesWhatWasThereWhenItCannotBeWritten) {
    EXPECT_EQ(pxk({"in.png", "-o", "gone/out.ppic"}).exitCode, 1);
    folder.writeText("out.ppic", "precious");
    const CommandResult result = pxk({"in.png", "-o", "out.ppic", "--plugin", PXK_TRIAL_PLUGIN});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, StartsWith("pxk: in.png: "));
    EXPECT_EQ(folder.readText("out.ppic"), "precious");
    EXPECT_THAT(folder.names(), ElementsAre("in.png", "out.ppic"));
}

}  // namespace
}  // namespace pxk::tool
