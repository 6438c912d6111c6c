/// The waves of a tool that was built without libsndfile.
#include <gtest/gtest.h>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

TEST(WaveCommand, SaysThatItReadsNoSoundFiles) {
    const PictureFolder folder;
    folder.writeText("a.wav", "RIFF");
    const CommandResult result = runTool(folder.path(), {"wave", "a.wav", "-o", "wave.png"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "pxk: this pxk cannot read sound files: it was built without libsndfile\n");
    EXPECT_FALSE(folder.has("wave.png"));
}

}  // namespace
}  // namespace pxk::tool
