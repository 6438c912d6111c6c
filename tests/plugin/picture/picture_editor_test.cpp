// Pictures opened for reading and writing.
#include "picture/picture_editor.h"

#include <gtest/gtest.h>

#include "support/linked_parts.h"

namespace pxk {
namespace {

using pxkhost::ApplicationKind;
using pxkhost::BitmapFormat;
using pxkhost::Picture;
using pxkhost::PixelLayout;
using pxkhost::Ref;

class Editors : public test::LinkedParts {
  protected:
    void openConsoleHost(double version = 2013.04) { openKind(version, ApplicationKind::console); }
    void openDesktopHost(double version = 2013.04) { openKind(version, ApplicationKind::desktop); }

  private:
    // The linked parts remember the kind of the first host for good, so it is reset here.
    void openKind(double version, ApplicationKind application) {
        IsDesktop = false;
        IsConsole = false;
        openAt(version, application);
    }
};

void expectClosed(const PictureEditor& editor) {
    EXPECT_EQ(editor.picture, nullptr);
    EXPECT_FALSE(editor.descriptionLocked);
}

TEST_F(Editors, OfNilStayClosed) {
    openConsoleHost();
    PictureReader reader;
    EXPECT_FALSE(reader.open(nullptr));
    expectClosed(reader);
}

TEST_F(Editors, OpenAConsolePictureInPlace) {
    openConsoleHost();
    const Ref<Picture> picture = Picture::console(5, 3);
    {
        PictureReader reader;
        ASSERT_TRUE(reader.open(picture->handle()));
        EXPECT_TRUE(IsConsole);
        EXPECT_FALSE(IsDesktop);
        EXPECT_EQ(reader.picture, picture->handle());
        EXPECT_EQ(reader.format, 8);
        EXPECT_EQ(reader.width, 5);
        EXPECT_EQ(reader.height, 3);
        EXPECT_EQ(reader.rowBytes, 20);
        EXPECT_EQ(reader.bytesPerPixel, 4);
        EXPECT_EQ(reader.pixels, picture->row(0));
        EXPECT_EQ(reader.rowPointer, picture->row(0));
        EXPECT_EQ(reader.gdRows, picture->gd()->tpixels);
        EXPECT_FALSE(reader.hasAlphaChannel);
        EXPECT_FALSE(reader.writable);
        EXPECT_TRUE(reader.allowCopy);
        EXPECT_TRUE(reader.descriptionLocked);
        EXPECT_EQ(picture->references(), 2);
        EXPECT_EQ(picture->locks(), 1);
    }
    EXPECT_EQ(picture->references(), 1);
    EXPECT_EQ(picture->locks(), 0);
    EXPECT_EQ(picture->cacheClears(), 0);
}

TEST_F(Editors, OpenADesktopPictureInPlaceInEachLayout) {
    for (int layout = 1; layout <= 6; ++layout) {
        openDesktopHost();
        const Ref<Picture> picture =
            Picture::desktop(5, 3, {.layout = static_cast<PixelLayout>(layout), .rowPadding = 12}, layout == 2);
        PictureReader reader;
        ASSERT_TRUE(reader.open(picture->handle()));
        EXPECT_TRUE(IsDesktop);
        EXPECT_FALSE(IsConsole);
        EXPECT_EQ(reader.format, layout);
        EXPECT_EQ(reader.rowBytes, 32);
        EXPECT_EQ(reader.pixels, picture->row(0));
        EXPECT_EQ(reader.hasAlphaChannel, layout == 2);
        EXPECT_EQ(reader.contextAlpha, layout == 2);
        reader.moveToRow(2);
        EXPECT_EQ(reader.rowPointer, picture->row(2));
    }
}

TEST_F(Editors, FindNoLibgdPicturesInDesktopApplications) {
    openDesktopHost();
    const Ref<Picture> picture = Picture::console(2, 2);
    PictureReader reader;
    EXPECT_FALSE(reader.GetPictureEditor(picture->handle(), false, false));
}

TEST_F(Editors, FindNoBitmapContextsInConsoleApplications) {
    openConsoleHost();
    const Ref<Picture> picture = Picture::desktop(2, 2);
    PictureReader reader;
    EXPECT_FALSE(reader.open(picture->handle()));
}

TEST_F(Editors, LearnTheKindFromTheFirstPictureWhereNoClassTells) {
    for (const bool desktop : {true, false}) {
        openConsoleHost();
        for (const char* name : {"Application", "WebApplication", "ConsoleApplication"}) host().deny(name);
        const Ref<Picture> picture = desktop ? Picture::desktop(2, 2) : Picture::console(2, 2);
        PictureReader reader;
        EXPECT_TRUE(reader.open(picture->handle()));
        EXPECT_EQ(IsDesktop, desktop);
        EXPECT_EQ(IsConsole, !desktop);
    }
}

TEST_F(Editors, MoveBeyondTheLastRowToRowZero) {
    openConsoleHost();
    const Ref<Picture> picture = Picture::console(4, 3);
    PictureReader reader;
    ASSERT_TRUE(reader.open(picture->handle()));
    reader.column = 2;
    reader.moveToRow(1);
    EXPECT_EQ(reader.row, 1);
    EXPECT_EQ(reader.column, 0);
    EXPECT_EQ(reader.rowPointer, picture->row(1));
    for (const int row : {3, 4, 1000000}) {
        reader.moveToRow(row);
        EXPECT_EQ(reader.row, row);
        EXPECT_EQ(reader.rowPointer, picture->row(0));
    }
}

TEST_F(Editors, KeepTheDescription) {
    openConsoleHost();
    const Ref<Picture> picture = Picture::console(5, 3);
    PictureReader reader;
    ASSERT_TRUE(reader.open(picture->handle()));
    EXPECT_EQ(reader.description.type, 10);
    EXPECT_EQ(reader.description.platformImage, picture->gd());
    EXPECT_EQ(reader.description.width, 5);
    EXPECT_EQ(reader.description.height, 3);
}

TEST_F(Editors, RefuseToWriteToPicturesOfSomeTypes) {
    openDesktopHost();
    const Ref<Picture> picture = Picture::desktop(2, 2);
    for (const int type : {0, 1, 3}) {
        picture->setTypeCode(type);
        PictureWriter writer;
        EXPECT_FALSE(writer.GetPictureEditor(picture->handle(), false, true)) << type;
        expectClosed(writer);
        PictureReader reader;
        EXPECT_TRUE(reader.open(picture->handle())) << type;
    }
    for (const int type : {2, 4, 8}) {
        picture->setTypeCode(type);
        PictureWriter writer;
        EXPECT_TRUE(writer.GetPictureEditor(picture->handle(), false, true)) << type;
    }
    EXPECT_EQ(picture->cacheClears(), 3) << "closing a writer clears the cached rendering";
}

TEST_F(Editors, LeaveAContextWithoutUsableAlphaLocked) {
    for (const auto layout : {PixelLayout::none, PixelLayout::alphaOnly}) {
        openDesktopHost();
        const Ref<Picture> picture = Picture::desktop(2, 2, {.layout = layout});
        {
            PictureReader reader;
            EXPECT_FALSE(reader.GetPictureEditor(picture->handle(), false, false));
            expectClosed(reader);
        }
        EXPECT_EQ(picture->locks(), 1);
        EXPECT_EQ(picture->references(), 1);
        picture->forgiveLocks();
    }
}

TEST_F(Editors, RefuseOtherDepths) {
    openDesktopHost();
    const Ref<Picture> picture = Picture::desktop(2, 2, {.bitsPerPixel = 16});
    PictureReader reader;
    EXPECT_FALSE(reader.GetPictureEditor(picture->handle(), false, false));
    EXPECT_EQ(picture->locks(), 0);
    EXPECT_EQ(picture->timesLocked(), 1);
}

TEST_F(Editors, RefusePalettePictures) {
    openConsoleHost();
    const Ref<Picture> picture = Picture::palette(2, 2);
    PictureReader reader;
    EXPECT_FALSE(reader.open(picture->handle()));
    EXPECT_EQ(picture->locks(), 0);
    EXPECT_TRUE(IsConsole);
}

TEST_F(Editors, UnlockAfterARefusalOnHostsBefore2012) {
    for (const double version : {2011.9999, 2012.0}) {
        openConsoleHost(version);
        const Ref<Picture> picture = Picture::console(2, 2);
        picture->refuseLocks(true);
        PictureReader reader;
        EXPECT_FALSE(reader.open(picture->handle()));
        EXPECT_EQ(picture->timesRefused(), 1);
    }
}

TEST_F(Editors, ReadAPictureThatCannotBeLockedFromACopy) {
    openDesktopHost();
    const Ref<Picture> picture = Picture::drawnOnly(3, 2);
    picture->setPixels(
        std::vector<pxkhost::Argb>{0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004, 0xFF000005, 0xFF000006});
    PictureReader reader;
    ASSERT_TRUE(reader.open(picture->handle()));
    EXPECT_NE(reader.picture, picture->handle());
    EXPECT_EQ(reader.width, 3);
    EXPECT_EQ(reader.height, 2);
    EXPECT_EQ(argbFromWord(static_cast<PixelLayout>(reader.format), reader.rowAt(1)[2]), 0xFF000006);
    EXPECT_EQ(picture->references(), 1) << "the copy is held, not the picture";
}

TEST_F(Editors, CopyKeepsAnAlphaChannel) {
    openDesktopHost();
    const Ref<Picture> picture = Picture::drawnOnly(2, 1, true);
    picture->setPixels(std::vector<pxkhost::Argb>{0x80102030, 0x00000000});
    PictureReader reader;
    ASSERT_TRUE(reader.open(picture->handle()));
    EXPECT_TRUE(reader.hasAlphaChannel);
    EXPECT_EQ(argbFromWord(static_cast<PixelLayout>(reader.format), reader.pixels[0]), 0x80102030);
    EXPECT_EQ(argbFromWord(static_cast<PixelLayout>(reader.format), reader.pixels[1]), 0U);
}

TEST_F(Editors, CopyNoAlphaChannelBefore201104) {
    for (const double version : {2011.0399, 2011.04}) {
        openDesktopHost(version);
        const Ref<Picture> picture = Picture::drawnOnly(2, 1, true);
        PictureReader reader;
        EXPECT_EQ(reader.open(picture->handle()), version >= 2011.04);
        EXPECT_TRUE(reader.open(Picture::drawnOnly(2, 1)->handle()));
    }
}

TEST_F(Editors, CopyAMaskedPictureBareAndPutItsMaskBack) {
    openDesktopHost();
    const Ref<Picture> mask = Picture::desktop(2, 1);
    mask->fill(0xFFFFFFFF);  // everything masked away
    const Ref<Picture> picture = Picture::drawnOnly(2, 1);
    picture->fill(0xFF123456);
    picture->setMask(mask);
    {
        PictureReader reader;
        ASSERT_TRUE(reader.open(picture->handle()));
        EXPECT_EQ(argbFromWord(static_cast<PixelLayout>(reader.format), reader.pixels[1]), 0xFF123456);
    }
    EXPECT_EQ(picture->mask(), mask);
    EXPECT_EQ(mask->references(), 2) << "the test's and the picture's";
}

TEST_F(Editors, PutTheMaskBackAlsoWhenNoCopyCanBeMade) {
    openDesktopHost();
    const Ref<Picture> mask = Picture::desktop(2, 1);
    const Ref<Picture> picture = Picture::drawnOnly(2, 1);
    picture->setMask(mask);
    host().failCreation(0);
    PictureReader reader;
    EXPECT_FALSE(reader.open(picture->handle()));
    EXPECT_EQ(picture->mask(), mask);
    EXPECT_EQ(mask->references(), 2);
}

TEST_F(Editors, CopyNothingOfUnusableSize) {
    openDesktopHost();
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}}) {
        const Ref<Picture> picture = Picture::drawnOnly(2, 2);
        picture->pretendSize(width, height);
        PictureReader reader;
        EXPECT_FALSE(reader.open(picture->handle()));
    }
    host().deny("Picture.Width");
    PictureReader reader;
    EXPECT_FALSE(reader.open(Picture::drawnOnly(2, 2)->handle()));
}

TEST_F(Editors, CopyNothingInConsoleApplications) {
    openConsoleHost();
    PictureReader reader;
    EXPECT_FALSE(reader.open(Picture::drawnOnly(2, 2)->handle()));
    EXPECT_EQ(host().creations(), 0U);
}

TEST_F(Editors, CopyNothingForWriters) {
    openDesktopHost();
    const Ref<Picture> picture = Picture::drawnOnly(2, 2);
    picture->setTypeCode(8);
    PictureWriter writer;
    EXPECT_FALSE(writer.GetPictureEditor(picture->handle(), true, true));
    EXPECT_FALSE(writer.GetPictureEditor(picture->handle(), false, false)) << "copies have to be allowed";
    EXPECT_EQ(host().creations(), 0U);
}

TEST_F(Editors, CanBeOpenedAgainOnAnotherPicture) {
    openConsoleHost();
    const Ref<Picture> first = Picture::console(2, 2);
    const Ref<Picture> second = Picture::console(3, 3);
    PictureReader reader;
    ASSERT_TRUE(reader.open(first->handle()));
    ASSERT_TRUE(reader.open(second->handle()));
    EXPECT_EQ(first->references(), 1);
    EXPECT_EQ(first->locks(), 0);
    EXPECT_EQ(reader.width, 3);
    EXPECT_FALSE(reader.open(nullptr));
    EXPECT_EQ(second->references(), 1);
}

TEST_F(Editors, RenderHandsOverExactlyOneReference) {
    openConsoleHost();
    PictureWriter writer;
    ASSERT_TRUE(writer.NewPictureWriter(4, 2));
    const auto rendered = Ref<Picture>::adopt(pxkhost::fromHandle<Picture>(writer.RenderPictureWriter(), "the test"));
    ASSERT_TRUE(rendered);
    expectClosed(writer);
    EXPECT_EQ(rendered->references(), 1);
    EXPECT_EQ(rendered->locks(), 0);
    EXPECT_EQ(rendered->cacheClears(), 2);
    EXPECT_EQ(rendered->width(), 4);
    EXPECT_EQ(rendered->height(), 2);
}

TEST_F(Editors, RenderNothingWhenClosed) {
    openConsoleHost();
    PictureWriter writer;
    EXPECT_EQ(writer.RenderPictureWriter(), nullptr);
}

TEST_F(Editors, RenderABufferOfTheirOwnWhenNoPictureIsHeld) {
    openConsoleHost();
    std::uint32_t buffer[] = {1, 2, 3, 4, 5, 6};
    PictureWriter writer;
    writer.width = 3;
    writer.height = 2;
    writer.rowBytes = 12;
    writer.ownedBuffer = buffer;
    const auto rendered = Ref<Picture>::adopt(pxkhost::fromHandle<Picture>(writer.RenderPictureWriter(), "the test"));
    ASSERT_TRUE(rendered);
    EXPECT_EQ(rendered->width(), 3);
    EXPECT_EQ(rendered->height(), 2);
}

TEST_F(Editors, WriteToNewPicturesOf1To32767APartFromAlpha) {
    openConsoleHost();
    PictureWriter writer;
    EXPECT_FALSE(writer.NewPictureWriter(0, 10));
    EXPECT_FALSE(writer.NewPictureWriter(10, 0));
    EXPECT_FALSE(writer.NewPictureWriter(32768, 10));
    EXPECT_FALSE(writer.NewPictureWriter(10, 32768));
    EXPECT_FALSE(writer.NewPictureWriter(-1, 10));
    EXPECT_EQ(host().creations(), 0U);
    EXPECT_TRUE(writer.NewPictureWriter(32767, 1));
    EXPECT_TRUE(writer.NewPictureWriter(1, 32767));
}

TEST_F(Editors, WriteToNewPicturesWithAlphaOfAnySize) {
    openDesktopHost();
    PictureReader reader;
    ASSERT_TRUE(reader.open(Picture::desktop(32768, 2, {}, true)->handle()));
    PictureWriter writer;
    EXPECT_TRUE(writer.NewPictureWriter(reader));
    EXPECT_EQ(writer.width, 32768);
    EXPECT_TRUE(writer.hasAlphaChannel);
    rbversion = 2011.04;
    EXPECT_TRUE(writer.NewPictureWriter(reader));
    rbversion = 2011.0399;
    EXPECT_FALSE(writer.NewPictureWriter(reader)) << "hosts before 2011.04 have no alpha pictures";
    reader.hasAlphaChannel = false;
    EXPECT_FALSE(writer.NewPictureWriter(reader)) << "too large for a picture without alpha";
}

TEST_F(Editors, OpenPicturesOfOnePixel) {
    openDesktopHost();
    for (const bool alpha : {false, true}) {
        for (const Ref<Picture>& picture : {Picture::desktop(1, 1, {}, alpha), Picture::drawnOnly(1, 1, alpha)}) {
            PictureReader reader;
            ASSERT_TRUE(reader.open(picture->handle()));
            PictureWriter writer;
            EXPECT_TRUE(writer.NewPictureWriter(reader));
            EXPECT_EQ(writer.hasAlphaChannel, alpha);
        }
    }
}

TEST_F(Editors, WriteToNothingWhenTheHostMakesNoPicture) {
    openDesktopHost();
    PictureReader reader;
    ASSERT_TRUE(reader.open(Picture::desktop(2, 2, {}, true)->handle()));
    PictureWriter writer;
    host().failCreation(0);
    EXPECT_FALSE(writer.NewPictureWriter(2, 2));
    host().failCreation(0);
    EXPECT_FALSE(writer.NewPictureWriter(reader));
    host().deny("Picture.Constructor");
    EXPECT_FALSE(writer.NewPictureWriter(reader));
}

}  // namespace
}  // namespace pxk
