// Whether a rectangle is white, black or grey.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "support/definitions/masks.h"
#include "support/definitions/uniformity.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

constexpr auto whiteAll = "isWhitePXK as boolean";
constexpr auto whiteIn = "isWhitePXK(left as integer,top as integer,width as integer,height as integer) as boolean";
constexpr auto blackAll = "isBlackPXK as boolean";
constexpr auto blackIn = "isBlackPXK(left as integer,top as integer,width as integer,height as integer) as boolean";
constexpr auto greyAll = "isGrayPXK(tolerance as integer = 0) as boolean";
constexpr auto greyIn =
    "isGrayPXK(tolerance as integer, left as integer,top as integer,width as integer,height as integer) as boolean";

template <class... Arguments>
bool ask(Host& host, const char* question, const Ref<Picture>& self, Arguments... arguments) {
    return host.invoke<bool>(question, self, arguments...);
}

bool askOfOnePixel(Host& host, const Setting& setting, const char* question, Colour colour) {
    return ask(host, question, pictureOf(setting, 1, {colour}));
}

TEST(Uniformity, OfPlainPictures) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const int width : {1, 7, 64, 333}) {
            const Ref<Picture> white = plainPicture(setting, width, 3, {255, 255, 255});
            EXPECT_TRUE(ask(host, whiteAll, white));
            EXPECT_FALSE(ask(host, blackAll, white));
            EXPECT_TRUE(ask(host, greyAll, white, 0));
            const Ref<Picture> black = plainPicture(setting, width, 3, {0, 0, 0});
            EXPECT_FALSE(ask(host, whiteAll, black));
            EXPECT_TRUE(ask(host, blackAll, black));
            EXPECT_TRUE(ask(host, greyAll, black, 0));
            const Ref<Picture> red = plainPicture(setting, width, 3, {255, 0, 0});
            EXPECT_FALSE(ask(host, whiteAll, red));
            EXPECT_FALSE(ask(host, blackAll, red));
            EXPECT_FALSE(ask(host, greyAll, red, 0));
        }
    });
}

TEST(Uniformity, EveryChannelCounts) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const Colour almostWhite : {Colour{254, 255, 255}, {255, 254, 255}, {255, 255, 254}}) {
            EXPECT_FALSE(askOfOnePixel(host, setting, whiteAll, almostWhite));
        }
        for (const Colour almostBlack : {Colour{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}) {
            EXPECT_FALSE(askOfOnePixel(host, setting, blackAll, almostBlack));
        }
        for (const Colour almostGrey : {Colour{9, 8, 8}, {8, 9, 8}, {8, 8, 9}}) {
            EXPECT_FALSE(ask(host, greyAll, pictureOf(setting, 1, {almostGrey}), 0));
            EXPECT_TRUE(ask(host, greyAll, pictureOf(setting, 1, {almostGrey}), 1));
        }
    });
}

TEST(Uniformity, OfAnEmptyRectangleIsTrue) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 5, 4, {10, 20, 30});
        const int rectangles[][4] = {{0, 0, 0, 0},  {0, 0, 5, 0},       {0, 0, 0, 4},
                                     {5, 0, 3, 3},  {0, 4, 3, 3},       {-9, -9, 9, 9},
                                     {2, 2, 0, -1}, {100, 100, -1, -1}, {INT_MAX, INT_MAX, INT_MAX, INT_MAX}};
        for (const auto& [left, top, width, height] : rectangles) {
            EXPECT_TRUE(ask(host, whiteIn, self, left, top, width, height)) << left << ", " << top;
            EXPECT_TRUE(ask(host, blackIn, self, left, top, width, height)) << left << ", " << top;
            EXPECT_TRUE(ask(host, greyIn, self, 0, left, top, width, height)) << left << ", " << top;
        }
    });
}

TEST(Uniformity, ComputesTheFarEdgeBeforeTheStartIsMovedIntoThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        std::vector<Colour> colours(16, {200, 0, 0});
        colours[0] = colours[1] = colours[4] = colours[5] = {0, 0, 0};
        const Ref<Picture> self = pictureOf(setting, 4, colours);
        EXPECT_TRUE(ask(host, blackIn, self, -10, -10, 12, 12)) << "the 2 x 2 pixels at the top left";
        EXPECT_FALSE(ask(host, blackIn, self, -10, -10, 13, 12));
        EXPECT_FALSE(ask(host, blackIn, self, -10, -10, 12, 13));
        EXPECT_TRUE(ask(host, blackIn, self, -2, -2, -1, -1)) << "the edge is moved with the start";
    });
}

TEST(Uniformity, OnlyANegativeExtentReachesToTheEdge) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        std::vector<Colour> colours(12, {255, 255, 255});
        colours.back() = {0, 0, 0};
        const Ref<Picture> self = pictureOf(setting, 4, colours);
        EXPECT_FALSE(ask(host, whiteIn, self, 1, 1, -1, -1));
        EXPECT_FALSE(ask(host, whiteIn, self, 1, 1, INT_MIN, INT_MIN));
        EXPECT_FALSE(ask(host, whiteIn, self, 1, 1, INT_MAX, INT_MAX));
        EXPECT_TRUE(ask(host, whiteIn, self, 0, 0, 4, 2));
        EXPECT_TRUE(ask(host, whiteIn, self, 0, 0, 3, 3));
    });
}

TEST(Uniformity, TheToleranceOfGreysLosesItsSign) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> near = pictureOf(setting, 1, {{100, 103, 101}});
        const Ref<Picture> far = pictureOf(setting, 1, {{100, 104, 100}});
        for (const int tolerance : {3, -3}) {
            EXPECT_TRUE(ask(host, greyAll, near, tolerance));
            EXPECT_FALSE(ask(host, greyAll, far, tolerance));
        }
        EXPECT_FALSE(ask(host, greyAll, near, 2));
        EXPECT_TRUE(ask(host, greyAll, far, -4));
    });
}

TEST(Uniformity, GreysCompareRedWithBlueToo) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 1, {{100, 102, 104}});
        EXPECT_FALSE(ask(host, greyAll, self, 3));
        EXPECT_TRUE(ask(host, greyAll, self, 4));
    });
}

TEST(Uniformity, AGreyToleranceMayBeAnyNumber) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 1, {{255, 0, 1}});
        EXPECT_FALSE(ask(host, greyAll, self, 254));
        EXPECT_FALSE(ask(host, greyAll, self, -254));
        for (const int tolerance : {255, -255, 256, -256, 512, 65536, INT_MAX, INT_MIN, -INT_MAX}) {
            EXPECT_TRUE(ask(host, greyAll, self, tolerance)) << tolerance;
        }
    });
}

TEST(Uniformity, IgnoresAlpha) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> self = plainPicture(setting, 50, 2, {255, 255, 255});
        const std::uint32_t alpha = alphaBits(setting.sourceFormat());
        for (int x = 0; x < 50; ++x) self->row(1)[x] ^= random.word() & alpha;
        EXPECT_TRUE(ask(host, whiteAll, self));
        EXPECT_TRUE(ask(host, greyAll, self, 0));
        EXPECT_TRUE(ask(host, greyAll, self, 5));
        for (int x = 0; x < 50; ++x) self->row(0)[x] = self->row(1)[x] &= alpha;
        EXPECT_TRUE(ask(host, blackAll, self));
    });
}

TEST(Uniformity, OfAPictureThatCannotBeReadIsFalse) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (const Ref<Picture>& self : {Ref<Picture>(), Picture::palette(3, 3)}) {
            EXPECT_FALSE(ask(host, whiteAll, self));
            EXPECT_FALSE(ask(host, whiteIn, self, 0, 0, 0, 0));
            EXPECT_FALSE(ask(host, blackAll, self));
            EXPECT_FALSE(ask(host, blackIn, self, 0, 0, 0, 0));
            EXPECT_FALSE(ask(host, greyAll, self, 255));
            EXPECT_FALSE(ask(host, greyIn, self, 255, 0, 0, 0, 0));
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Uniformity, ReadsAPictureThatCannotBeLockedFromACopy) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> self = Picture::drawnOnly(9, 9);
        self->fill(0xFFFFFFFF);
        EXPECT_TRUE(ask(host, whiteAll, self));
        self->setPixel(8, 8, 0xFF808080);
        EXPECT_FALSE(ask(host, whiteAll, self));
        EXPECT_TRUE(ask(host, greyAll, self, 0));
    });
}

// Plain pictures with one pixel that is not like the others, in every place in turn.
TEST(Uniformity, FindsTheOneOtherPixelWhereverItIs) {
    forEverySetting([](Host& host, const Setting& setting) {
        if (setting.result != setting.source) return;
        for (const int width : {1, 2, 15, 16, 17, 130}) {
            const auto count = static_cast<std::size_t>(width) * 2;
            for (std::size_t place = 0; place < count; ++place) {
                std::vector<Colour> colours(count, {255, 255, 255});
                colours[place] = {255, 254, 255};
                const Ref<Picture> white = pictureOf(setting, width, colours);
                ASSERT_FALSE(ask(host, whiteAll, white)) << width << ", " << place;
                ASSERT_FALSE(ask(host, greyAll, white, 0)) << width << ", " << place;
                colours.assign(count, {50, 54, 52});
                colours[place] = {50, 55, 52};
                const Ref<Picture> grey = pictureOf(setting, width, colours);
                ASSERT_FALSE(ask(host, greyAll, grey, 4)) << width << ", " << place;
                ASSERT_TRUE(ask(host, greyAll, grey, 5)) << width << ", " << place;
                colours.assign(count, {0, 0, 0});
                colours[place] = {0, 0, 1};
                ASSERT_FALSE(ask(host, blackAll, pictureOf(setting, width, colours))) << width << ", " << place;
            }
        }
    });
}

TEST(Uniformity, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(2);
        for (int i = 0; i < 30; ++i) {
            const int width = random.between(1, 300);
            const int height = random.between(1, 5);
            // Colours near black, grey or white, so that small rectangles often pass.
            const int base = random.between(0, 2) * 127;
            std::vector<Colour> colours(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
            const int spread = random.between(0, 3);
            for (Colour& colour : colours) {
                const auto channel = [&] { return std::min(base + random.between(0, spread) / 2, 255); };
                colour = {channel(), channel(), channel()};
            }
            const Ref<Picture> self = pictureOf(setting, width, colours);
            const std::vector<std::uint32_t> before = rawWords(*self);
            const int left = random.between(-5, width);
            const int top = random.between(-2, height);
            const int extentX = random.between(-1, width / 2 + 1);
            const int extentY = random.between(-1, height + 1);
            const int tolerance = random.between(-3, 3);
            const auto holdsForAll = [&](auto test) {
                const int right = std::min(left + (extentX < 0 ? width : extentX), width);
                const int bottom = std::min(top + (extentY < 0 ? height : extentY), height);
                for (int y = std::max(top, 0); y < bottom; ++y) {
                    for (int x = std::max(left, 0); x < right; ++x) {
                        if (!test(readColour(setting.sourceFormat(), self->row(y)[x]))) return false;
                    }
                }
                return true;
            };
            ASSERT_EQ(ask(host, whiteIn, self, left, top, extentX, extentY), holdsForAll(white));
            ASSERT_EQ(ask(host, blackIn, self, left, top, extentX, extentY), holdsForAll(black));
            ASSERT_EQ(ask(host, greyIn, self, tolerance, left, top, extentX, extentY),
                      holdsForAll([&](Colour colour) { return greyWithin(colour, tolerance); }));
            ASSERT_EQ(rawWords(*self), before) << "nothing is changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
