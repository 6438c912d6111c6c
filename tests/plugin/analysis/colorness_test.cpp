// The share of coloured pixels.
#include <gd.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "support/definitions/uniformity.h"
#include "support/opaque_pictures.h"
#include "support/substitute_image.h"

namespace pxk::test {
namespace {

constexpr auto colornessDeclaration = "ColornessPXK(threshold as integer = 10) as double";

double colorness(Host& host, const Ref<Picture>& self, int threshold = 10) {
    return host.invoke<double>(colornessDeclaration, self, threshold);
}

TEST(Colorness, OfPlainPictures) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(colorness(host, plainPicture(setting, 20, 10, {0, 0, 0})), 0.0);
        EXPECT_EQ(colorness(host, plainPicture(setting, 20, 10, {200, 100, 100})), 1.0);
        EXPECT_EQ(colorness(host, plainPicture(setting, 20, 10, {30, 30, 30})), 0.0);
    });
}

TEST(Colorness, NearBlackPixelsAreNeverColouredButCountInTheWhole) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        std::vector<Colour> colours(40, {10, 10, 10});
        std::fill_n(colours.begin(), 20, Colour{255, 0, 0});
        EXPECT_EQ(colorness(host, pictureOf(setting, 8, colours)), 0.5);
        EXPECT_EQ(colorness(host, plainPicture(setting, 9, 9, {29, 0, 29}), 0), 0.0);
    });
}

TEST(Colorness, OneChannelOf30IsEnoughNotToBeNearBlack) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const Colour colour : {Colour{30, 0, 0}, {0, 30, 0}, {0, 0, 30}}) {
            EXPECT_EQ(colorness(host, pictureOf(setting, 1, {colour})), 1.0);
        }
        for (const Colour colour : {Colour{29, 0, 0}, {0, 29, 0}, {0, 0, 29}}) {
            EXPECT_EQ(colorness(host, pictureOf(setting, 1, {colour})), 0.0);
        }
    });
}

TEST(Colorness, ADifferenceMustBeAboveTheThreshold) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const std::vector<Colour> colours = {{100, 110, 110}, {100, 111, 111}, {110, 110, 100},
                                             {111, 111, 100}, {110, 100, 110}, {110, 99, 110}};
        EXPECT_EQ(colorness(host, pictureOf(setting, 6, colours), 10), 0.5);
        EXPECT_EQ(colorness(host, pictureOf(setting, 6, colours), 9), 1.0);
        EXPECT_EQ(colorness(host, pictureOf(setting, 6, colours), 11), 0.0);
    });
}

TEST(Colorness, RedIsNotComparedWithBlue) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(colorness(host, pictureOf(setting, 1, {{90, 100, 110}}), 10), 0.0);
        EXPECT_EQ(colorness(host, pictureOf(setting, 1, {{110, 100, 90}}), 10), 0.0);
    });
}

TEST(Colorness, WithANegativeThresholdCountsWhateverIsNotNearBlack) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 4, {{80, 80, 80}, {29, 29, 29}, {255, 255, 255}, {0, 200, 0}});
        for (const int threshold : {-1, -5, -256, -1000000, -INT_MAX, INT_MIN}) {
            EXPECT_EQ(colorness(host, self, threshold), 0.75) << threshold;
        }
    });
}

TEST(Colorness, NoDifferenceIsAboveAThresholdOf255) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 33, 2, {255, 0, 255});
        EXPECT_EQ(colorness(host, self, 254), 1.0);
        for (const int threshold : {255, 256, 511, INT_MAX}) EXPECT_EQ(colorness(host, self, threshold), 0.0);
    });
}

TEST(Colorness, OfAPictureThatCannotBeReadIsZero) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_EQ(colorness(host, nullptr), 0.0);
        EXPECT_EQ(colorness(host, Picture::palette(4, 4), -1), 0.0);
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Colorness, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(1);
        for (int i = 0; i < 12; ++i) {
            const Ref<Picture> self = setting.makeSource(random.between(1, 200), random.between(1, 5), random);
            for (const std::uint32_t mask : {0xFFFFFFFFU, 0x3F3F3F3FU}) {
                std::vector<std::uint32_t> words = rawWords(*self);
                for (std::uint32_t& word : words) word &= mask;
                setWords(*self, words);
                const std::vector<Colour> colours = coloursOf(*self);
                for (const int threshold : {10, random.between(0, 255), random.between(-3, 3)}) {
                    const auto count = std::count_if(colours.begin(), colours.end(),
                                                     [=](Colour colour) { return coloured(colour, threshold); });
                    ASSERT_EQ(colorness(host, self, threshold),
                              static_cast<double>(count) / static_cast<double>(colours.size()))
                        << threshold;
                }
                ASSERT_EQ(rawWords(*self), words) << "nothing is changed";
            }
        }
    });
}

// The number of pixels wraps around in 32 bits. All rows of an image are the same memory, so that it needs little.
TEST(Colorness, OfImagesBeyondAllBoundsDividesByTheWrappedNumberOfPixels) {
    constexpr int width = 1 << 16;
    std::vector<int> row(width, 0x00FF0000);
    const auto colornessOf = [&](int height) {
        SubstituteImage image(row, height);
        return image.run([](Host& host, const Ref<Picture>& self) { return colorness(host, self); });
    };
    EXPECT_EQ(colornessOf(1000), 1.0);
    EXPECT_EQ(colornessOf(1 << 15), -1.0) << "2^31 pixels, of which the number comes out negative";
    EXPECT_EQ(colornessOf(1 << 16), 0.0) << "2^32 pixels, of which the number comes out as 0";
}

}  // namespace
}  // namespace pxk::test
