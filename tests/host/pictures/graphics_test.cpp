// Drawing into pictures.

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/host_test_support.h"

namespace pxktest {
namespace {

constexpr Argb black = 0xFF000000u;
constexpr Argb white = 0xFFFFFFFFu;
constexpr Argb red = 0xFFFF0000u;

class GraphicsTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }
};

std::size_t count(const Picture& picture, Argb pixel) {
    const std::vector<Argb> pixels = picture.pixels();
    return static_cast<std::size_t>(std::count(pixels.begin(), pixels.end(), pixel));
}

TEST_F(GraphicsTest, HoldsItsPictureWhileItLives) {
    const Ref<Picture> picture = Picture::console(4, 4);
    void* const handle = service<void*(void*)>("pluginPictureGraphicsGetter")(picture->handle());
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(picture->references(), 2);
    service<void(void*)>("REALUnlockObject")(handle);
    EXPECT_EQ(picture->references(), 1);
}

TEST_F(GraphicsTest, NoneOnHostsWithoutGraphics) {
    openBare({.graphics = false});
    const Ref<Picture> picture = Picture::console(4, 4);
    EXPECT_EQ(service<void*(void*)>("pluginPictureGraphicsGetter")(picture->handle()), nullptr);
}

TEST_F(GraphicsTest, PropertiesThroughServices) {
    const Ref<Graphics> graphics = Graphics::make(Picture::console(4, 4));
    const auto setInteger = service<void(void*, const char*, std::int32_t)>("REALSetPropValueInteger");
    setInteger(graphics->handle(), "PenWidth", 3);
    setInteger(graphics->handle(), "penheight", 5);
    service<void(void*, const char*, std::uint32_t)>("REALSetPropValueColor")(graphics->handle(), "ForeColor",
                                                                              0x123456);
    EXPECT_EQ(graphics->penWidth, 3);
    EXPECT_EQ(graphics->penHeight, 5);
    EXPECT_EQ(graphics->foreColor, 0x123456u);
    setInteger(graphics->handle(), "ForeColor", 0x654321);
    EXPECT_EQ(graphics->foreColor, 0x654321u);
}

class LineTest : public GraphicsTest, public ::testing::WithParamInterface<PictureFormat> {};

TEST_P(LineTest, ThinLinesColourTheirPixels) {
    const Ref<Picture> picture = makePicture(GetParam(), 8, 8);
    picture->fill(white);
    const Ref<Graphics> graphics = Graphics::make(picture);
    graphics->foreColor = 0xFF0000;
    service<void(void*, std::int32_t, std::int32_t, std::int32_t, std::int32_t)>("RuntimeGraphicsDrawLine")(
        graphics->handle(), 1, 2, 5, 2);
    for (int x = 0; x < 8; ++x) EXPECT_EQ(picture->pixel(x, 2), x >= 1 && x <= 5 ? red : white) << x;
    EXPECT_EQ(count(*picture, red), 5u);
    graphics->drawLine(0, 7, 7, 0);
    for (int x = 0; x < 8; ++x) EXPECT_EQ(picture->pixel(x, 7 - x), red) << x;
}

TEST_P(LineTest, ThickLinesHangBelowAndToTheRight) {
    const Ref<Picture> picture = makePicture(GetParam(), 12, 12);
    picture->fill(white);
    const Ref<Graphics> graphics = Graphics::make(picture);
    graphics->foreColor = 0xFF0000;
    graphics->penWidth = graphics->penHeight = 3;
    graphics->drawLine(2, 4, 8, 4);
    for (int y = 0; y < 12; ++y) EXPECT_EQ(picture->pixel(5, y), y >= 4 && y <= 6 ? red : white) << y;
}

TEST_P(LineTest, LinesAreCutAtTheEdges) {
    const Ref<Picture> picture = makePicture(GetParam(), 6, 6);
    picture->fill(white);
    const Ref<Graphics> graphics = Graphics::make(picture);
    graphics->foreColor = 0xFF0000;
    graphics->drawLine(-2000000000, 3, 2000000000, 3);
    for (int x = 0; x < 6; ++x) EXPECT_EQ(picture->pixel(x, 3), red) << x;
    graphics->drawLine(2, -2000000000, 2, 2000000000);
    for (int y = 0; y < 6; ++y) EXPECT_EQ(picture->pixel(2, y), red) << y;
    const std::size_t before = count(*picture, red);
    graphics->drawLine(-100, -100, -50, 7);
    graphics->drawLine(100, 0, 100, 7);
    EXPECT_EQ(count(*picture, red), before);
}

TEST_P(LineTest, PensAsWideAsCanBeCoverAllFromTheirLineOn) {
    for (const int pen : {1000, 10'000'000, 1'000'000'000, 1 << 30, std::numeric_limits<int>::max()}) {
        const Ref<Picture> picture = makePicture(GetParam(), 9, 7);
        picture->fill(white);
        const Ref<Graphics> graphics = Graphics::make(picture);
        graphics->foreColor = 0xFF0000;
        graphics->penWidth = graphics->penHeight = pen;
        // As members centre a pen on their curve.
        graphics->drawLine(2 - pen / 2, 3 - pen / 2, 6 - pen / 2, 5 - pen / 2);
        graphics->drawLine(-pen / 2, 3 - pen / 2, 8 - pen / 2, 4 - pen / 2);
        EXPECT_EQ(count(*picture, red), 63u) << pen;
    }
}

INSTANTIATE_TEST_SUITE_P(Families, LineTest, ::testing::ValuesIn(oneOfEachFamily()), formatName);

/// The pixels under a pen on every point of a line, one after the other.
void stampEveryPoint(Picture& picture, int x1, int y1, int x2, int y2, int penWidth, int penHeight) {
    const int steps = std::max({std::abs(x2 - x1), std::abs(y2 - y1), 1});
    for (int step = 0; step <= steps; ++step) {
        const double along = static_cast<double>(step) / steps;
        const auto left = static_cast<int>(std::lround(x1 + along * (x2 - x1)));
        const auto top = static_cast<int>(std::lround(y1 + along * (y2 - y1)));
        for (int y = std::max(top, 0); y < std::min(top + penHeight, picture.height()); ++y)
            for (int x = std::max(left, 0); x < std::min(left + penWidth, picture.width()); ++x)
                picture.setPixel(x, y, red);
    }
}

TEST_F(GraphicsTest, PensCoverWhatEachOfTheirStepsWould) {
    openBareDesktop();
    const int ends[][4] = {{3, 2, 17, 9},  {17, 9, 3, 2},   {2, 11, 14, 1}, {9, 12, 7, 0},    {5, 5, 5, 5},
                           {-2, 6, 22, 7}, {0, 13, 19, 13}, {6, -2, 6, 16}, {-2, -2, 22, 16}, {19, -2, -2, 16}};
    for (const auto& [x1, y1, x2, y2] : ends) {
        for (const auto& [penWidth, penHeight] :
             {std::pair(1, 1), std::pair(3, 2), std::pair(2, 7), std::pair(40, 1)}) {
            const Ref<Picture> drawn = Picture::desktop(20, 14);
            const Ref<Picture> stamped = Picture::desktop(20, 14);
            const Ref<Graphics> graphics = Graphics::make(drawn);
            graphics->foreColor = 0xFF0000;
            graphics->penWidth = penWidth;
            graphics->penHeight = penHeight;
            graphics->drawLine(x1, y1, x2, y2);
            stampEveryPoint(*stamped, x1, y1, x2, y2, penWidth, penHeight);
            EXPECT_EQ(drawn->pixels(), stamped->pixels()) << x1 << ' ' << y1 << ' ' << penWidth << ' ' << penHeight;
        }
    }
}

// ---- DrawPicture ----

class DrawPictureTest : public GraphicsTest {
  protected:
    void SetUp() override { openBareDesktop(); }

    static void draw(Picture& target, const Picture& source, int w, int h, int sw, int sh) {
        const Ref<Graphics> graphics = Graphics::make(Ref<Picture>::share(&target));
        const auto load = service<void*(void*, const char*)>("REALLoadObjectMethod");
        const auto method = reinterpret_cast<void (*)(void*, void*, int, int, int, int, int, int, int, int)>(load(
            graphics->handle(),
            "DrawPicture(Image as Picture, x as Integer, y as Integer, w as Integer, h as Integer, sx as Integer = "
            "0, sy as Integer = 0, sw as Integer = -10000, sh as Integer = -10000)"));
        ASSERT_NE(method, nullptr);
        method(graphics->handle(), source.handle(), 0, 0, w, h, 0, 0, sw, sh);
    }
};

TEST_F(DrawPictureTest, CopiesColours) {
    const Ref<Picture> source = Picture::drawnOnly(2, 2, false, {.layout = PixelLayout::noneSkipLast, .rowPadding = 4});
    source->setPixels(std::vector<Argb>{0xFF010203, 0xFF040506, 0xFF070809, 0xFF0A0B0C});
    const Ref<Picture> target = Picture::desktop(3, 3);
    draw(*target, *source, 2, 2, 2, 2);
    EXPECT_EQ(target->pixel(1, 0), 0xFF040506u);
    EXPECT_EQ(target->pixel(0, 1), 0xFF070809u);
    EXPECT_EQ(target->pixel(2, 2), white);
}

TEST_F(DrawPictureTest, WholeSourceAndScaling) {
    const Ref<Picture> source = Picture::desktop(2, 1);
    source->setPixels(std::vector<Argb>{red, black});
    const Ref<Picture> target = Picture::desktop(4, 2);
    draw(*target, *source, 4, 2, -10000, -10000);
    EXPECT_THAT(target->pixels(), testing::ElementsAre(red, red, black, black, red, red, black, black));
}

TEST_F(DrawPictureTest, ThroughTheMask) {
    const Ref<Picture> source = Picture::desktop(3, 1);
    source->fill(black);
    const Ref<Picture> mask = Picture::desktop(3, 1);
    mask->setPixels(std::vector<Argb>{black, 0xFF808080, white});
    source->setMask(mask);
    const Ref<Picture> target = Picture::desktop(3, 1);
    draw(*target, *source, 3, 1, 3, 1);
    EXPECT_THAT(target->pixels(), testing::ElementsAre(black, 0xFF808080u, white));
}

TEST_F(DrawPictureTest, AlphaIsKeptByATargetWithAlpha) {
    const Ref<Picture> source = Picture::drawnOnly(2, 1, true, {.layout = PixelLayout::last});
    source->setPixels(std::vector<Argb>{0x80102030, 0x00405060});
    const Ref<Picture> target = Picture::desktop(2, 1, {}, true);
    draw(*target, *source, 2, 1, 2, 1);
    EXPECT_THAT(target->pixels(), testing::ElementsAre(0x80102030u, 0x00405060u));
}

TEST_F(DrawPictureTest, AlphaBlendsIntoATargetWithout) {
    const Ref<Picture> source = Picture::drawnOnly(3, 1, true, {.layout = PixelLayout::last});
    source->setPixels(std::vector<Argb>{0xFF000000, 0x80000000, 0x00000000});
    const Ref<Picture> target = Picture::desktop(3, 1);
    draw(*target, *source, 3, 1, 3, 1);
    EXPECT_THAT(target->pixels(), testing::ElementsAre(black, 0xFF7F7F7Fu, white));
}

}  // namespace
}  // namespace pxktest
