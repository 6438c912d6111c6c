// Several threads at a time, each with files of its own, whose fates do not mix.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "files/files_module.h"

namespace pxkfiles::test {

TEST(Threads, EachGetItsOwnPictureOrMessage) {
    const FileBytes good = written(noisePicture(), "jpg");
    FileBytes stray = good;
    stray.insert(stray.end() - 2, {1, 2, 3});
    FileBytes damaged = good;
    damaged.erase(damaged.end() - static_cast<std::ptrdiff_t>(damaged.size() / 4), damaged.end() - 2);
    FileBytes png = written(noisePicture(), "png");
    png[png.size() / 2] ^= 0xFF;
    const FileBytes avif = written(flagPicture(), "avif");

    const auto work = [&] {
        for (int round = 0; round < 100; ++round) {
            EXPECT_EQ(readBytes(good).message, "");
            EXPECT_EQ(readBytes(stray).message, "");
            EXPECT_NE(readBytes(damaged).message.find("JPEG"), std::string::npos);
            EXPECT_NE(readBytes(png).message.find("cannot read PNG picture"), std::string::npos);
            EXPECT_EQ(readBytes(round % 10 == 0 ? avif : good).message, "");
            EXPECT_FALSE(written(flagPicture(), "png").empty());
        }
    };
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
}

TEST(Threads, MayBeGivenToLibvips) {
    const Raster picture = noisePicture(300, 300);
    for (const int threads : {4, 0, 1}) {
        module().setThreads(threads);
        EXPECT_EQ(largestDifference(picture, pictureIn(written(picture, "png"))), 0) << threads;
    }
}

}  // namespace pxkfiles::test
