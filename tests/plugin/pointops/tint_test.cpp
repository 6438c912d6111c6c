// Tint.
#include <gtest/gtest.h>

#include "pointops/tint_kernels.h"
#include "support/definitions/tint.h"
#include "support/isa_tests.h"
#include "support/point_kernel_check.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

Ref<Picture> tint(Host& host, const Ref<Picture>& source, std::uint32_t greyBase, std::uint32_t sepiaBase) {
    return host.invoke<Ref<Picture>>(
        "TintPicturePXK(source as picture, GreyBase as color, SepiaBase as color) as picture", source, greyBase,
        sepiaBase);
}

TEST(TintKernels, EqualTheirDefinition) {
    const auto shares = [](std::uint32_t color) -> ColorShares {
        const Colour colour = hostColour(color);
        return {colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0};
    };
    forEveryIsa<TintKernels>([&](const TintKernels& kernels) {
        Random random(1);
        for (int i = 0; i < 40; ++i) {
            const std::uint32_t greyBase = i == 0 ? 0xFFFFFF : random.word();
            const std::uint32_t sepiaBase = i == 1 ? 0xFFFFFF : random.word();
            SCOPED_TRACE(::testing::Message() << std::hex << greyBase << ", " << sepiaBase);
            checkPointKernel(kernels.tint, Tint{shares(greyBase), shares(sepiaBase)},
                             [=](Colour old) { return tinted(old, greyBase, sepiaBase); });
        }
    });
}

TEST(TintPicture, WithABlackGreyBaseIsBlack) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> source = setting.makeSource(9, 4, random);
        expectPoints(setting, *source, tint(host, source, 0x000000, 0xFFC080), [](Colour) { return Colour{}; });
    });
}

TEST(TintPicture, WithAThirdOfEachChannelKeepsWhite) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> source = pictureOf(setting, 1, {{255, 255, 255}});
        EXPECT_EQ(coloursOf(*tint(host, source, 0x555555, 0xFFFFFF)).front(), (Colour{255, 255, 255}));
    });
}

TEST(TintPicture, WithAWhiteGreyBaseSaturatesEarly) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> source = pictureOf(setting, 1, {{100, 100, 100}});
        // Grey 300: the tone takes all of it, about half (150.6), and none.
        EXPECT_EQ(coloursOf(*tint(host, source, 0xFFFFFF, 0xFF8000)).front(), (Colour{255, 150, 0}));
    });
}

TEST(TintPicture, TakesEachWeightFromItsOwnChannel) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> source = pictureOf(setting, 1, {{10, 100, 200}});
        EXPECT_EQ(coloursOf(*tint(host, source, 0xFF0000, 0xFFFFFF)).front(), (Colour{10, 10, 10}));
        EXPECT_EQ(coloursOf(*tint(host, source, 0x00FF00, 0xFFFFFF)).front(), (Colour{100, 100, 100}));
        EXPECT_EQ(coloursOf(*tint(host, source, 0x0000FF, 0xFFFFFF)).front(), (Colour{200, 200, 200}));
    });
}

TEST(TintPicture, IgnoresTheTopByteOfColours) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> source = setting.makeSource(9, 4, random);
        EXPECT_EQ(rawWords(*tint(host, source, 0xFF405060, 0x80FFC080)),
                  rawWords(*tint(host, source, 0x00405060, 0x00FFC080)));
    });
}

TEST(TintPicture, OfNilIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(tint(host, nullptr, 0xFFFFFF, 0xFFFFFF));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(TintPicture, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(4);
        for (int i = 0; i < 20; ++i) {
            const Ref<Picture> source = setting.makeSource(random.between(1, 67), random.between(1, 9), random);
            const std::vector<std::uint32_t> before = rawWords(*source);
            const std::uint32_t greyBase = random.word();
            const std::uint32_t sepiaBase = random.word();
            expectPoints(setting, *source, tint(host, source, greyBase, sepiaBase),
                         [=](Colour old) { return tinted(old, greyBase, sepiaBase); });
            ASSERT_EQ(rawWords(*source), before) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
