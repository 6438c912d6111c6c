// Inversion of every pixel and of grey ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "support/definitions/inversion.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

constexpr auto invertAll = "InvertPXK as picture";
constexpr auto invertRectangle =
    "InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture";
constexpr auto invertGreyAll = "InvertGrayPXK as picture";
constexpr auto invertGreyRectangle =
    "InvertGrayPXK(left as integer,top as integer,width as integer,height as integer) as picture";

Ref<Picture> call(Host& host, const char* declaration, const Ref<Picture>& self) {
    return host.invoke<Ref<Picture>>(declaration, self);
}

Ref<Picture> call(Host& host, const char* declaration, const Ref<Picture>& self, int left, int top, int width,
                  int height) {
    return host.invoke<Ref<Picture>>(declaration, self, left, top, width, height);
}

TEST(Inversion, GivesTheFullNegative) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(
            setting, 3, {{0, 0, 0}, {255, 255, 255}, {1, 2, 3}, {10, 10, 10}, {255, 0, 128}, {127, 128, 129}});
        const std::vector<Colour> negative = {{255, 255, 255}, {0, 0, 0},     {254, 253, 252},
                                              {245, 245, 245}, {0, 255, 127}, {128, 127, 126}};
        EXPECT_EQ(coloursOf(*call(host, invertAll, self)), negative);
    });
}

TEST(Inversion, WidthOrHeightOfZeroMeansToTheEdge) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> self = setting.makeSource(9, 7, random);
        expectPoints(setting, *self, call(host, invertRectangle, self, 0, 0, 0, 0), inverted);
        expectPoints(setting, *self, call(host, invertRectangle, self, 2, 1, 0, -3), 2, 1, 9, 7, inverted);
    });
}

TEST(Inversion, OfGreysTakesAWidthOrHeightOfZeroAsEmpty) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> self = setting.makeSource(9, 7, random);
        expectPoints(setting, *self, call(host, invertGreyRectangle, self, 0, 0, 0, 0), 0, 0, 0, 0, greyInverted);
        expectPoints(setting, *self, call(host, invertGreyRectangle, self, 0, 0, 9, 0), 0, 0, 0, 0, greyInverted);
        expectPoints(setting, *self, call(host, invertGreyRectangle, self, 1, 2, -1, -1), 1, 2, 9, 7, greyInverted);
    });
}

TEST(Inversion, ComputesTheFarEdgeBeforeTheStartIsMovedIntoThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(4);
        const Ref<Picture> self = setting.makeSource(30, 20, random);
        expectPoints(setting, *self, call(host, invertRectangle, self, -5, -5, 10, 10), 0, 0, 5, 5, inverted);
        expectPoints(setting, *self, call(host, invertRectangle, self, -5, -5, -1, -1), 0, 0, 25, 15, inverted);
    });
}

TEST(Inversion, OfARectangleOutsideThePictureWritesNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(5);
        const Ref<Picture> self = setting.makeSource(8, 8, random);
        for (const auto& [left, top] : {std::pair{8, 0}, {0, 8}, {100, 100}, {INT_MAX, INT_MAX}, {-50, -50}}) {
            expectPoints(setting, *self, call(host, invertRectangle, self, left, top, 20, 20), 0, 0, 0, 0, inverted);
        }
    });
}

TEST(Inversion, OfARectangleNearTheLimitsReachesTheEdge) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(6);
        const Ref<Picture> self = setting.makeSource(8, 8, random);
        expectPoints(setting, *self, call(host, invertRectangle, self, 3, 2, INT_MAX, INT_MAX), 3, 2, 8, 8, inverted);
        expectPoints(setting, *self, call(host, invertRectangle, self, INT_MIN, INT_MIN, INT_MAX, INT_MAX), 0, 0, 0, 0,
                     inverted);
    });
}

TEST(Inversion, TakesOnlyExactlyEqualChannelsForGrey) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 3, {{10, 10, 10}, {10, 10, 11}, {11, 10, 10}});
        const std::vector<Colour> expected = {{245, 245, 245}, {10, 10, 11}, {11, 10, 10}};
        EXPECT_EQ(coloursOf(*call(host, invertGreyAll, self)), expected);
    });
}

TEST(Inversion, MakesTransparentPixelsOpaque) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(7);
        const Ref<Picture> self = setting.makeSource(1, 1, random);
        self->row(0)[0] = setting.application == ApplicationKind::console ? 0x7F000000 : 0;
        const std::uint32_t white = opaqueWord(static_cast<int>(setting.result), {255, 255, 255});
        EXPECT_EQ(call(host, invertAll, self)->row(0)[0], white);
        EXPECT_EQ(call(host, invertGreyAll, self)->row(0)[0], white);
    });
}

TEST(Inversion, OfAPictureWithAlphaChannelHasOneToo) {
    Options options;
    options.plugin = pluginPath();
    options.application = ApplicationKind::desktop;
    Host host(options);
    {
        const Ref<Picture> self = Picture::desktop(4, 3, {}, true);
        const Ref<Picture> result = call(host, invertRectangle, self, 0, 0, 2, 3);
        ASSERT_TRUE(result);
        EXPECT_TRUE(result->hasAlphaChannel());
        EXPECT_EQ(result->row(0)[0], 0xFFFFFFFF) << "transparent black becomes opaque white";
        EXPECT_EQ(result->row(0)[2], 0U) << "the rest stays as the host made it";
    }
    closeCleanly(host);
}

TEST(Inversion, OfNilIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(call(host, invertAll, nullptr));
        EXPECT_FALSE(call(host, invertRectangle, nullptr, 0, 0, 1, 1));
        EXPECT_FALSE(call(host, invertGreyAll, nullptr));
        EXPECT_FALSE(call(host, invertGreyRectangle, nullptr, 0, 0, 1, 1));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Inversion, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(8);
        const auto invert = host.member<Ref<Picture>(Ref<Picture>, int, int, int, int)>(invertRectangle);
        const auto invertGrey = host.member<Ref<Picture>(Ref<Picture>, int, int, int, int)>(invertGreyRectangle);
        for (int i = 0; i < 20; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> self = setting.makeSource(width, height, random);
            const std::vector<std::uint32_t> before = rawWords(*self);
            const int left = random.between(-10, 70);
            const int top = random.between(-3, 10);
            const int extentX = random.between(-2, 80);
            const int extentY = random.between(-2, 12);
            const int right = std::min(left + (extentX > 0 ? extentX : width), width);
            const int bottom = std::min(top + (extentY > 0 ? extentY : height), height);
            expectPoints(setting, *self, invert(self, left, top, extentX, extentY), left, top, right, bottom, inverted);
            const int greyRight = std::min(left + (extentX >= 0 ? extentX : width), width);
            const int greyBottom = std::min(top + (extentY >= 0 ? extentY : height), height);
            expectPoints(setting, *self, invertGrey(self, left, top, extentX, extentY), left, top, greyRight,
                         greyBottom, greyInverted);
            ASSERT_EQ(rawWords(*self), before) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
