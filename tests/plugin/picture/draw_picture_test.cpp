// One picture drawn into another, with and without graphics of the host.
#include "picture/draw_picture.h"

#include <gtest/gtest.h>

#include "support/linked_parts.h"

namespace pxk {
namespace {

using pxkhost::ApplicationKind;
using pxkhost::Picture;
using pxkhost::Ref;

class Drawing : public test::LinkedParts {
  protected:
    static void draw(const Ref<Picture>& dest, const Ref<Picture>& src, int w, int h) {
        GraphicsDrawPicture(dest->handle(), src ? src->handle() : nullptr, 0, 0, w, h, 0, 0, w, h);
    }

    static Ref<Picture> filled(int width, int height, pxkhost::Argb pixel) {
        const Ref<Picture> picture = Picture::console(width, height);
        picture->fill(pixel);
        return picture;
    }

    void openWithoutGraphics(double version = 2013.04) {
        openAt(version);
        host().deny("Graphics.DrawPicture");
    }
};

TEST_F(Drawing, GoesThroughTheGraphicsOfTheTarget) {
    openAt(2013.04, ApplicationKind::desktop);
    const Ref<Picture> dest = Picture::desktop(4, 3);
    const Ref<Picture> src = Picture::desktop(4, 3);
    src->fill(0xFF123456);
    draw(dest, src, 4, 3);
    EXPECT_TRUE(samePixels(*dest, *src));
}

TEST_F(Drawing, CopiesRowsWhereThereIsNoDrawingMethod) {
    for (const double version : {2010.0, 2013.04}) {
        openWithoutGraphics(version);
        const Ref<Picture> dest = filled(4, 3, 0xFFFFFFFF);
        const Ref<Picture> src = filled(4, 3, 0x80123456);
        draw(dest, src, 4, 3);
        EXPECT_EQ(pxktest::rawWords(*dest), pxktest::rawWords(*src));
    }
}

TEST_F(Drawing, CopiesTheWholePictureWhateverSizeIsAskedFor) {
    openWithoutGraphics();
    const Ref<Picture> dest = filled(4, 3, 0xFFFFFFFF);
    const Ref<Picture> src = filled(4, 3, 0xFF123456);
    draw(dest, src, 1, 1);
    EXPECT_TRUE(samePixels(*dest, *src));
}

TEST_F(Drawing, LeavesPicturesOfOtherSizesAlone) {
    openWithoutGraphics();
    for (const auto& [width, height] : {std::pair{5, 3}, {4, 2}}) {
        const Ref<Picture> dest = filled(width, height, 0xFFFFFFFF);
        const auto before = pxktest::rawWords(*dest);
        draw(dest, filled(4, 3, 0xFF123456), 4, 3);
        EXPECT_EQ(pxktest::rawWords(*dest), before);
    }
}

TEST_F(Drawing, DoesNotScaleByCopying) {
    openWithoutGraphics();
    const Ref<Picture> dest = filled(4, 3, 0xFFFFFFFF);
    const Ref<Picture> src = filled(4, 3, 0xFF123456);
    GraphicsDrawPicture(dest->handle(), src->handle(), 0, 0, 4, 3, 0, 0, 2, 3);
    EXPECT_EQ(dest->pixel(0, 0), 0xFFFFFFFF);
}

TEST_F(Drawing, LeavesPalettePicturesAlone) {
    openWithoutGraphics();
    const Ref<Picture> dest = filled(4, 3, 0xFFFFFFFF);
    draw(dest, Picture::palette(4, 3), 4, 3);
    EXPECT_EQ(dest->pixel(0, 0), 0xFFFFFFFF);
    draw(Picture::palette(4, 3), dest, 4, 3);
}

TEST_F(Drawing, DrawsNothingFromNilOrFromAPictureThatCannotBeLocked) {
    for (const double version : {2011.9999, 2012.0}) {
        openWithoutGraphics(version);
        const Ref<Picture> dest = filled(4, 3, 0xFFFFFFFF);
        draw(dest, nullptr, 4, 3);
        const Ref<Picture> refusing = filled(4, 3, 0xFF123456);
        refusing->refuseLocks(true);
        draw(dest, refusing, 4, 3);
        draw(refusing, dest, 4, 3);
        EXPECT_EQ(dest->pixel(0, 0), 0xFFFFFFFF);
    }
}

}  // namespace
}  // namespace pxk
