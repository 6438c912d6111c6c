// Locks on the descriptions of pictures.

#include <dlfcn.h>

#include "host/host_test_support.h"

namespace pxktest {
namespace {

using pxk::REALpictureDescription;
using testing::ElementsAre;

class PictureLockTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }

    static bool lock(const Picture& picture, std::int32_t type, REALpictureDescription& description) {
        return service<bool(void*, REALpictureDescription*, std::int32_t)>("REALLockPictureDescription")(
            picture.handle(), &description, type);
    }
    static bool lock(const Picture& picture, std::int32_t type) {
        REALpictureDescription description{};
        return lock(picture, type, description);
    }
    static void unlock(const Picture& picture) { service<void(void*)>("unlockPictureDescription")(picture.handle()); }
};

TEST_F(PictureLockTest, ConsoleLockGivesTheGdImage) {
    const Ref<Picture> picture = Picture::console(7, 4);
    REALpictureDescription description{};
    EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
    ASSERT_TRUE(lock(*picture, pxk::gdImageType, description));
    EXPECT_EQ(description.type, 10);
    EXPECT_EQ(description.platformImage, picture->gd());
    EXPECT_EQ(description.width, 7);
    EXPECT_EQ(description.height, 4);
    const auto& image = *static_cast<const gdImage*>(description.platformImage);
    EXPECT_EQ(image.pixels, nullptr);
    EXPECT_NE(image.trueColor, 0);
    EXPECT_EQ(picture->locks(), 1);
    unlock(*picture);
    EXPECT_EQ(picture->locks(), 0);
    EXPECT_EQ(picture->timesLocked(), 1);
    EXPECT_EQ(picture->timesRefused(), 1);
}

TEST_F(PictureLockTest, DesktopLockGivesAContextWithGetters) {
    const Ref<Picture> picture =
        Picture::desktop(7, 4, {.layout = PixelLayout::first, .rowPadding = 20, .bitsPerPixel = 24});
    REALpictureDescription description{};
    EXPECT_FALSE(lock(*picture, pxk::gdImageType));
    ASSERT_TRUE(lock(*picture, pxk::bitmapContextType, description));
    const auto get = [&]<class Result>(const char* name, Result) {
        const auto getter = reinterpret_cast<Result (*)(void*)>(dlsym(RTLD_DEFAULT, name));
        return getter != nullptr ? getter(description.platformImage) : Result{};
    };
    EXPECT_EQ(get("CGBitmapContextGetData", static_cast<void*>(nullptr)), picture->row(0));
    EXPECT_EQ(get("CGBitmapContextGetWidth", std::size_t{}), 7u);
    EXPECT_EQ(get("CGBitmapContextGetHeight", std::size_t{}), 4u);
    EXPECT_EQ(get("CGBitmapContextGetBytesPerRow", std::size_t{}), 48u);
    EXPECT_EQ(get("CGBitmapContextGetBitsPerPixel", std::size_t{}), 24u);
    EXPECT_EQ(get("CGBitmapContextGetAlphaInfo", std::uint32_t{}), 4u);
    unlock(*picture);
}

TEST_F(PictureLockTest, DrawnOnlyAndRefusingPicturesAreNeverLocked) {
    const Ref<Picture> drawn = Picture::drawnOnly(3, 3);
    EXPECT_FALSE(lock(*drawn, pxk::bitmapContextType));
    EXPECT_FALSE(lock(*drawn, pxk::gdImageType));
    const Ref<Picture> console = Picture::console(3, 3);
    console->refuseLocks(true);
    EXPECT_FALSE(lock(*console, pxk::gdImageType));
    console->refuseLocks(false);
    EXPECT_TRUE(lock(*console, pxk::gdImageType));
    unlock(*console);
}

TEST_F(PictureLockTest, PaletteLockGivesAPaletteImage) {
    const Ref<Picture> picture = Picture::palette(6, 2);
    REALpictureDescription description{};
    ASSERT_TRUE(lock(*picture, pxk::gdImageType, description));
    const auto& image = *static_cast<const gdImage*>(description.platformImage);
    EXPECT_NE(image.pixels, nullptr);
    EXPECT_EQ(image.trueColor, 0);
    EXPECT_EQ(image.tpixels, nullptr);
    EXPECT_EQ(description.width, 6);
    EXPECT_EQ(description.height, 2);
    unlock(*picture);
}

TEST_F(PictureLockTest, UnlockWithoutLockIsNamed) {
    const Ref<Picture> picture = Picture::console(3, 2);
    unlock(*picture);
    EXPECT_THAT(host().accounting().takeProblems(), ElementsAre("picture 1 (3 x 2) was unlocked without a lock"));
}

TEST_F(PictureLockTest, LockLeftBehindIsNamedWhenThePictureEnds) {
    {
        const Ref<Picture> picture = Picture::console(3, 2);
        lock(*picture, pxk::gdImageType);
    }
    EXPECT_THAT(closeAndTakeProblems(), ElementsAre("picture 1 (3 x 2) was left locked 1 times"));
}

TEST_F(PictureLockTest, LockLeftBehindIsNamedAtClose) {
    const Ref<Picture> picture = Picture::console(3, 2);
    lock(*picture, pxk::gdImageType);
    EXPECT_THAT(closeAndTakeProblems(),
                ElementsAre("picture 1 (3 x 2) was left locked 1 times", "leaked: picture 1 (3 x 2): 1 reference"));
}

TEST_F(PictureLockTest, LockLeftBehindOnPurposeIsForgiven) {
    const Ref<Picture> picture = Picture::console(3, 2);
    lock(*picture, pxk::gdImageType);
    picture->forgiveLocks();
    EXPECT_EQ(picture->locks(), 0);
}

TEST_F(PictureLockTest, RefusedLockOnOldHostsNeedsAnUnlock) {
    openBareDesktop(2011.5);
    {
        const Ref<Picture> picture = Picture::console(3, 2);
        EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
        unlock(*picture);
        EXPECT_TRUE(host().accounting().problems().empty());
        EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
    }
    EXPECT_THAT(
        host().accounting().takeProblems(),
        ElementsAre("picture 1 (3 x 2): a refused lock was not followed by the unlock that hosts before 2012.0 need"));
}

TEST_F(PictureLockTest, UnlockOnOldHostsWithoutLocksIsNoProblem) {
    openBare({.version = 2011.5, .missing = {"REALLockPictureDescription"}});
    unlock(*Picture::console(3, 2));
    EXPECT_TRUE(host().accounting().problems().empty());
    openBare({.version = 2012.0, .missing = {"REALLockPictureDescription"}});
    unlock(*Picture::console(3, 2));
    EXPECT_EQ(host().accounting().takeProblems().size(), 1u);
}

TEST_F(PictureLockTest, RefusedLockOnNewerHostsTakesNoUnlock) {
    openBareDesktop(2012.0);
    const Ref<Picture> picture = Picture::console(3, 2);
    EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
    unlock(*picture);
    EXPECT_EQ(host().accounting().takeProblems().size(), 1u);
}

}  // namespace
}  // namespace pxktest
