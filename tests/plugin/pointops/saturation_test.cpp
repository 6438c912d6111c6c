// Saturation.
#include <gtest/gtest.h>

#include "support/definitions/saturation.h"
#include "support/extreme_numbers.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

Ref<Picture> saturate(Host& host, const Ref<Picture>& self, std::int32_t amount) {
    return host.invoke<Ref<Picture>>("ChangeSaturationPXK(Amount as integer) as picture", self, amount);
}

Colour saturatedBy(Host& host, const Setting& setting, Colour colour, std::int32_t amount) {
    return coloursOf(*saturate(host, pictureOf(setting, 1, {colour}), amount)).front();
}

TEST(Saturation, OfZeroGivesAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> self = setting.makeSource(11, 5, random);
        expectPoints(setting, *self, saturate(host, self, 0), [](Colour old) { return old; });
    });
}

TEST(Saturation, OfMinus255GivesGreys) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(saturatedBy(host, setting, {255, 0, 0}, -255), (Colour{63, 63, 63}));
        EXPECT_EQ(saturatedBy(host, setting, {10, 20, 30}, -255), (Colour{20, 20, 20}));
    });
}

TEST(Saturation, Of255DoublesTheDistanceFromGrey) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(saturatedBy(host, setting, {200, 100, 50}, 255), (Colour{255, 88, 0}));
    });
}

TEST(Saturation, BelowMinus255GivesComplementaryColours) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        // Grey 112; red 112 + 88 * -255 / 255.
        EXPECT_EQ(saturatedBy(host, setting, {200, 100, 50}, -510), (Colour{24, 124, 174}));
    });
}

TEST(Saturation, DividesTowardZero) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        // Grey 100; factor 1: 101 - 100 = 1 gives 1 / 255 = 0, and 98 - 100 = -2 gives -2 / 255 = 0.
        EXPECT_EQ(saturatedBy(host, setting, {101, 101, 98}, -254), (Colour{100, 100, 100}));
    });
}

TEST(Saturation, LeavesGreysAloneWhateverTheAmount) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const std::int32_t amount : extremeIntegers) {
            EXPECT_EQ(saturatedBy(host, setting, {77, 77, 77}, amount), (Colour{77, 77, 77}));
        }
    });
}

TEST(Saturation, WrapsProductsAt32Bits) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        // Grey 50; 150 * 2^24 - and -50 * 2^24 - are 2516582400 and -838860800: the first wraps to a negative number.
        EXPECT_EQ(saturatedBy(host, setting, {200, 0, 0}, (1 << 24) - 255), (Colour{0, 0, 0}));
        // The factor itself wraps: INT_MAX + 255 is 254 - 2^31, which is even, so 2^31 drops out of even multiples.
        EXPECT_EQ(saturatedBy(host, setting, {104, 100, 96}, 2147483647), (Colour{103, 100, 97}));
    });
}

TEST(Saturation, OfNilIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(saturate(host, nullptr, 10));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Saturation, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(2);
        for (int i = 0; i < 40; ++i) {
            const Ref<Picture> self = setting.makeSource(random.between(1, 67), random.between(1, 9), random);
            const std::vector<std::uint32_t> before = rawWords(*self);
            const std::int32_t amount = static_cast<std::size_t>(i) < extremeIntegers.size()
                                            ? extremeIntegers[static_cast<std::size_t>(i)]
                                            : random.between(-600, 600);
            expectPoints(setting, *self, saturate(host, self, amount),
                         [=](Colour old) { return saturated(old, amount); });
            ASSERT_EQ(rawWords(*self), before) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
