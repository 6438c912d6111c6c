// Pictures combined from channels, and merged.
#include <gtest/gtest.h>

#include "support/definitions/recombination.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

constexpr Colour black = {0, 0, 0};
constexpr Colour white = {255, 255, 255};
constexpr Colour pureRed = {255, 0, 0};
constexpr Colour pureGreen = {0, 255, 0};
constexpr Colour pureBlue = {0, 0, 255};

// In the order of the parameters: blue is the second.
Ref<Picture> combine(Host& host, const Ref<Picture>& red, const Ref<Picture>& blue, const Ref<Picture>& green) {
    return host.invoke<Ref<Picture>>("CombinePicturesPXK(red as picture, blue as picture, green as picture) as picture",
                                     red, blue, green);
}

Ref<Picture> merge(Host& host, const Ref<Picture>& a, const Ref<Picture>& b) {
    return host.invoke<Ref<Picture>>("MergePicturePXK(source1 as picture, source2 as picture) as picture", a, b);
}

void expectCombined(const Ref<Picture>& red, const Ref<Picture>& blue, const Ref<Picture>& green,
                    const Ref<Picture>& result) {
    const std::vector<Colour> reds = coloursOf(*red);
    const std::vector<Colour> greens = coloursOf(*green);
    const std::vector<Colour> blues = coloursOf(*blue);
    std::vector<Colour> expected;
    for (std::size_t i = 0; i < reds.size(); ++i) expected.push_back(combined(reds[i], greens[i], blues[i]));
    expectOpaque(result, red->width(), red->height(), expected);
}

void expectMerged(const Ref<Picture>& a, const Ref<Picture>& b, const Ref<Picture>& result) {
    const std::vector<Colour> first = coloursOf(*a);
    const std::vector<Colour> second = coloursOf(*b);
    std::vector<Colour> expected;
    for (std::size_t i = 0; i < first.size(); ++i) expected.push_back(lightest(first[i], second[i]));
    expectOpaque(result, a->width(), a->height(), expected);
}

TEST(CombinePictures, OfPureColoursInTheDeclaredOrderIsWhite) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> r = plainPicture(setting, 3, 2, pureRed);
        const Ref<Picture> g = plainPicture(setting, 3, 2, pureGreen);
        const Ref<Picture> b = plainPicture(setting, 3, 2, pureBlue);
        expectOpaque(combine(host, r, b, g), 3, 2, std::vector<Colour>(6, white));
        for (const Colour& colour : coloursOf(*combine(host, r, g, b))) EXPECT_EQ(colour.blue, 0);
    });
}

TEST(CombinePictures, RefusesPicturesOfDifferentSizes) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> normal = plainPicture(setting, 4, 3, white);
        for (const Ref<Picture>& odd : {plainPicture(setting, 5, 3, white), plainPicture(setting, 3, 3, white),
                                        plainPicture(setting, 4, 4, white), plainPicture(setting, 4, 2, white)}) {
            EXPECT_FALSE(combine(host, odd, normal, normal));
            EXPECT_FALSE(combine(host, normal, odd, normal));
            EXPECT_FALSE(combine(host, normal, normal, odd));
            EXPECT_FALSE(merge(host, odd, normal));
            EXPECT_FALSE(merge(host, normal, odd));
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CombinePictures, OfNilIsNilWithoutAnException) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> some = plainPicture(setting, 4, 3, white);
        EXPECT_FALSE(combine(host, nullptr, some, some));
        EXPECT_FALSE(combine(host, some, nullptr, some));
        EXPECT_FALSE(combine(host, some, some, nullptr));
        EXPECT_FALSE(merge(host, nullptr, some));
        EXPECT_FALSE(merge(host, some, nullptr));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CombinePictures, OpensRedThenGreenThenBlue) {
    Host host({.plugin = pluginPath()});
    {
        const Ref<Picture> red = Picture::console(2, 2);
        const Ref<Picture> green = Picture::console(2, 2);
        const Ref<Picture> blue = Picture::console(2, 2);
        green->refuseLocks(true);
        EXPECT_FALSE(combine(host, red, blue, green));
        EXPECT_EQ(red->timesLocked(), 1);
        EXPECT_EQ(green->timesRefused(), 1);
        EXPECT_EQ(blue->timesLocked(), 0);
    }
    closeCleanly(host);
}

TEST(CombinePictures, WithoutMemoryForTheResultIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> some = plainPicture(setting, 4, 3, white);
        host.failCreation(0);
        EXPECT_FALSE(combine(host, some, some, some));
        host.failCreation(0);
        EXPECT_FALSE(merge(host, some, some));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CombinePictures, OfOnePictureGivesAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> some = setting.makeSource(7, 5, random);
        expectOpaque(combine(host, some, some, some), 7, 5, coloursOf(*some));
    });
}

TEST(CombinePictures, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(2);
        for (int i = 0; i < 10; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> a = setting.makeSource(width, height, random);
            const Ref<Picture> b = setting.makeSource(width, height, random);
            const Ref<Picture> c = setting.makeSource(width, height, random);
            expectCombined(a, b, c, combine(host, a, b, c));
            expectMerged(a, b, merge(host, a, b));
        }
    });
}

TEST(CombinePictures, EqualsItsDefinitionForPicturesOfDifferentLayouts) {
    forEveryDesktop([](Host& host) {
        Random random(3);
        for (const PixelLayout red : desktopLayouts) {
            for (const PixelLayout blue : desktopLayouts) {
                for (const PixelLayout green : desktopLayouts) {
                    const int width = random.between(1, 40);
                    const Ref<Picture> a = noiseIn(red, width, 2, random);
                    const Ref<Picture> b = noiseIn(blue, width, 2, random);
                    const Ref<Picture> c = noiseIn(green, width, 2, random);
                    expectCombined(a, b, c, combine(host, a, b, c));
                    expectMerged(a, b, merge(host, a, b));
                }
            }
        }
    });
}

TEST(MergePicture, OfAPictureWithItselfIsAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(4);
        const Ref<Picture> some = setting.makeSource(7, 5, random);
        expectOpaque(merge(host, some, some), 7, 5, coloursOf(*some));
    });
}

TEST(MergePicture, WithBlackGivesTheOther) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(5);
        const Ref<Picture> some = setting.makeSource(7, 5, random);
        const Ref<Picture> dark = plainPicture(setting, 7, 5, black);
        expectOpaque(merge(host, some, dark), 7, 5, coloursOf(*some));
        expectOpaque(merge(host, dark, some), 7, 5, coloursOf(*some));
    });
}

TEST(MergePicture, TakesTheLargerOfEachChannelOnItsOwn) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> a = plainPicture(setting, 1, 1, {10, 200, 128});
        const Ref<Picture> b = plainPicture(setting, 1, 1, {20, 100, 127});
        expectOpaque(merge(host, a, b), 1, 1, {{20, 200, 128}});
    });
}

// Alpha bytes of 255 and 0 in the sources, which a byte-wise maximum would let through.
TEST(MergePicture, NeverLetsAlphaThrough) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(6);
        const Ref<Picture> clear = setting.makeSource(33, 1, random);
        const Ref<Picture> dense = setting.makeSource(33, 1, random);
        setWords(*clear, std::vector<std::uint32_t>(33, 0));
        setWords(*dense, std::vector<std::uint32_t>(33, 0xFFFFFFFF));
        expectOpaque(merge(host, clear, clear), 33, 1, std::vector<Colour>(33, black));
        expectOpaque(merge(host, dense, dense), 33, 1, std::vector<Colour>(33, white));
        expectOpaque(combine(host, clear, dense, clear), 33, 1, std::vector<Colour>(33, pureBlue));
    });
}

}  // namespace
}  // namespace pxk::test
