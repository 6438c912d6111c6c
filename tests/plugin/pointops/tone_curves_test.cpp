// Contrast, brightness and linear maps.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "support/definitions/tone_curves.h"
#include "support/extreme_numbers.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

constexpr auto contrast1 = "ChangeContrastPXK(Contrast as double) as picture";
constexpr auto contrast3 =
    "ChangeContrastPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double) as picture";
constexpr auto linear1 = "ChangeBrightnessLinearPXK(Brightness as double) as picture";
constexpr auto linear3 =
    "ChangeBrightnessLinearPXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
    "picture";
constexpr auto absolute1 = "ChangeBrightnessAbsolutePXK(Brightness as double) as picture";
constexpr auto absolute3 =
    "ChangeBrightnessAbsolutePXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
    "picture";
constexpr auto custom1 = "ChangeCustomPXK(a as double, b as double) as picture";
constexpr auto custom3 =
    "ChangeCustomPXK(Ra as double, Rb as double, Ga as double, Gb as double, Ba as double, Bb as double) as picture";
constexpr auto contrastLinear1 =
    "ChangeContrastBrightnessLinearPXK(Contrast as double, Brightness as double) as picture";
constexpr auto contrastLinear3 =
    "ChangeContrastBrightnessLinearPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double, "
    "BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as picture";
constexpr auto contrastAbsolute1 =
    "ChangeContrastBrightnessAbsolutePXK(Contrast as double, Brightness as double) as picture";
constexpr auto contrastAbsolute3 =
    "ChangeContrastBrightnessAbsolutePXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double, "
    "BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as picture";

template <class... Parameters>
Ref<Picture> call(Host& host, const char* declaration, const Ref<Picture>& self, Parameters... parameters) {
    return host.invoke<Ref<Picture>>(declaration, self, parameters...);
}

/// A picture that has every value in every channel, in different orders.
Ref<Picture> everyValue(const Setting& setting) {
    std::vector<Colour> colours;
    for (int i = 0; i < 256; ++i) colours.push_back({i, i * 7 % 256, 255 - i});
    return pictureOf(setting, 16, colours);
}

/// The result for one grey.
int greyAfter(Host& host, const Setting& setting, const char* declaration, int grey, double parameter) {
    const Ref<Picture> result = call(host, declaration, pictureOf(setting, 1, {{grey, grey, grey}}), parameter);
    const Colour colour = coloursOf(*result).front();
    EXPECT_EQ(colour.red, colour.green);
    EXPECT_EQ(colour.red, colour.blue);
    return colour.red;
}

using Curve = std::function<int(int)>;

std::function<Colour(Colour)> curves(Curve red, Curve green, Curve blue) {
    return [=](Colour old) -> Colour { return {red(old.red), green(old.green), blue(old.blue)}; };
}
std::function<Colour(Colour)> curves(const Curve& all) { return curves(all, all, all); }

TEST(ToneCurves, WithNothingToDoGiveAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> self = setting.makeSource(13, 7, random);
        const auto unchanged = [](Colour old) { return old; };
        expectPoints(setting, *self, call(host, contrast1, self, 0.0), unchanged);
        expectPoints(setting, *self, call(host, linear1, self, 0.0), unchanged);
        expectPoints(setting, *self, call(host, absolute1, self, 0.0), unchanged);
        expectPoints(setting, *self, call(host, custom1, self, 1.0, 0.0), unchanged);
        expectPoints(setting, *self, call(host, contrastLinear1, self, 0.0, 0.0), unchanged);
        expectPoints(setting, *self, call(host, contrastAbsolute1, self, 0.0, 0.0), unchanged);
    });
}

TEST(ToneCurves, ContrastOfMinusOneGives127) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = everyValue(setting);
        expectPoints(setting, *self, call(host, contrast1, self, -1.0), [](Colour) { return Colour{127, 127, 127}; });
    });
}

TEST(ToneCurves, ContrastOfOneDoublesTheDistanceFrom127) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(greyAfter(host, setting, contrast1, 0, 1.0), 0);
        EXPECT_EQ(greyAfter(host, setting, contrast1, 200, 1.0), 255);
        EXPECT_EQ(greyAfter(host, setting, contrast1, 127, 1.0), 127);
        EXPECT_EQ(greyAfter(host, setting, contrast1, 100, 1.0), 73);
    });
}

TEST(ToneCurves, ContrastBelowMinusOneInvertsAround127) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(greyAfter(host, setting, contrast1, 100, -2.0), 154);
        EXPECT_EQ(greyAfter(host, setting, contrast1, 127, -2.0), 127);
    });
}

TEST(ToneCurves, LinearBrightnessCompressesTheRange) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(greyAfter(host, setting, linear1, 0, 100.0), 100);
        EXPECT_EQ(greyAfter(host, setting, linear1, 255, 100.0), 255);
        EXPECT_EQ(greyAfter(host, setting, linear1, 128, 100.0), 177);
        for (const int grey : {0, 1, 127, 255}) {
            EXPECT_EQ(greyAfter(host, setting, linear1, grey, 255.0), 255);
            EXPECT_EQ(greyAfter(host, setting, linear1, grey, -255.0), 0);
        }
    });
}

TEST(ToneCurves, LinearBrightnessWrapsAroundInsteadOfClamping) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(greyAfter(host, setting, linear1, 0, 300.0), 44);
        EXPECT_EQ(greyAfter(host, setting, linear1, 255, 300.0), 255);
        EXPECT_EQ(greyAfter(host, setting, linear1, 255, -300.0), 256 - 45);
    });
}

TEST(ToneCurves, WithContrastLinearBrightnessClamps) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 1, {{0, 127, 255}});
        EXPECT_EQ(coloursOf(*call(host, contrastLinear1, self, 0.0, 300.0)).front(), (Colour{255, 255, 255}));
        // 0 becomes -127, and that 100 - 127 * 155 / 255: the contrast alone is not clamped.
        EXPECT_EQ(coloursOf(*call(host, contrastLinear1, self, 1.0, 100.0)).front(), (Colour{22, 177, 255}));
    });
}

TEST(ToneCurves, AbsoluteBrightnessTruncatesTowardZero) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        EXPECT_EQ(greyAfter(host, setting, absolute1, 0, -0.5), 0);
        EXPECT_EQ(greyAfter(host, setting, absolute1, 1, -0.5), 0);
        EXPECT_EQ(greyAfter(host, setting, absolute1, 10, -0.5), 9);
        EXPECT_EQ(greyAfter(host, setting, absolute1, 250, 10.0), 255);
        EXPECT_EQ(greyAfter(host, setting, absolute1, 5, -10.0), 0);
    });
}

TEST(ToneCurves, WithContrastAbsoluteBrightnessIsAddedBeforeTheOneTruncation) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        // 126 becomes 125.5, and with 0.5 more 126; 0 becomes -63.5 and with 100 more 36.5.
        const Ref<Picture> self = pictureOf(setting, 1, {{126, 126, 0}});
        EXPECT_EQ(coloursOf(*call(host, contrastAbsolute3, self, 0.5, 0.5, 0.5, 0.5, 0.0, 100.0)).front(),
                  (Colour{126, 125, 36}));
    });
}

TEST(ToneCurves, CustomTakesTheFactorOfGreenFromRed) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 1, {{100, 100, 100}});
        EXPECT_EQ(coloursOf(*call(host, custom3, self, 2.0, 0.0, 0.5, 10.0, 1.0, 0.0)).front(),
                  (Colour{200, 210, 100}));
    });
}

TEST(ToneCurves, CustomWithOneLineEqualsThePerChannelFormWithAnyGreenFactor) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = everyValue(setting);
        for (const double ga : {0.0, 17.0, std::numeric_limits<double>::quiet_NaN()}) {
            EXPECT_EQ(rawWords(*call(host, custom1, self, 1.3, -20.5)),
                      rawWords(*call(host, custom3, self, 1.3, -20.5, ga, -20.5, 1.3, -20.5)));
        }
    });
}

TEST(ToneCurves, AResultThatDoesNotFit32BitsIsBlackAndNotWhite) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (int grey = 0; grey < 256; ++grey) {
            EXPECT_EQ(greyAfter(host, setting, contrast1, grey, 1e12), grey == 127 ? 127 : 0);
        }
        EXPECT_EQ(greyAfter(host, setting, absolute1, 0, 2147483647.0), 255);
        EXPECT_EQ(greyAfter(host, setting, absolute1, 0, 2147483648.0), 0);
        EXPECT_EQ(greyAfter(host, setting, absolute1, 1, 2147483647.0), 0);
        EXPECT_EQ(greyAfter(host, setting, linear1, 0, 1e12), 0);
    });
}

TEST(ToneCurves, InfinitiesAndNaNFlowThroughTheFormulas) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = everyValue(setting);
        const auto allBlack = [](Colour) { return Colour{}; };
        for (const double number : {infinity, -infinity, nan}) {
            for (const char* declaration : {contrast1, linear1, absolute1}) {
                expectPoints(setting, *self, call(host, declaration, self, number), allBlack);
            }
            for (const char* declaration : {custom1, contrastLinear1, contrastAbsolute1}) {
                expectPoints(setting, *self, call(host, declaration, self, number, 1.0), allBlack);
                expectPoints(setting, *self, call(host, declaration, self, 1.0, number), allBlack);
            }
        }
    });
}

TEST(ToneCurves, KeepTheAlphaChannelAndMakeEveryPixelOpaque) {
    Options options;
    options.plugin = pluginPath();
    options.application = ApplicationKind::desktop;
    Host host(options);
    {
        const Ref<Picture> self = Picture::desktop(3, 2, {}, true);
        const Ref<Picture> result = call(host, absolute1, self, 9.0);
        ASSERT_TRUE(result);
        EXPECT_TRUE(result->hasAlphaChannel());
        EXPECT_EQ(result->pixel(2, 1), 0xFF090909);
    }
    closeCleanly(host);
}

TEST(ToneCurves, OfNilAreNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> nil;
        for (const char* one : {contrast1, linear1, absolute1}) EXPECT_FALSE(call(host, one, nil, 1.0));
        for (const char* two : {custom1, contrastLinear1, contrastAbsolute1})
            EXPECT_FALSE(call(host, two, nil, 1.0, 1.0));
        for (const char* three : {contrast3, linear3, absolute3}) EXPECT_FALSE(call(host, three, nil, 1.0, 1.0, 1.0));
        for (const char* six : {custom3, contrastLinear3, contrastAbsolute3})
            EXPECT_FALSE(call(host, six, nil, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(ToneCurves, EqualTheirDefinitionsInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        const Ref<Picture> self = everyValue(setting);
        const std::vector<std::uint32_t> before = rawWords(*self);
        constexpr std::size_t count = extremeDoubles.size();
        for (std::size_t i = 0; i < count; ++i) {
            const double a = extremeDoubles[i];
            const double b = extremeDoubles[(i + 7) % count];
            const double c = extremeDoubles[(i * 5 + 3) % count];
            SCOPED_TRACE(::testing::Message() << a << ", " << b << ", " << c);
            const auto contrastOf = [](double x) { return [=](int v) { return contrast(v, x); }; };
            const auto linearOf = [](double x) { return [=](int v) { return linearBrightness(v, x); }; };
            const auto absoluteOf = [](double x) { return [=](int v) { return absoluteBrightness(v, x); }; };
            const auto customOf = [](double x, double y) { return [=](int v) { return customLine(v, x, y); }; };
            const auto bothLinear = [](double x, double y) {
                return [=](int v) { return contrastAndLinearBrightness(v, x, y); };
            };
            const auto bothAbsolute = [](double x, double y) {
                return [=](int v) { return contrastAndAbsoluteBrightness(v, x, y); };
            };
            const auto expect = [&](const Ref<Picture>& result, const std::function<Colour(Colour)>& definition) {
                expectPoints(setting, *self, result, definition);
            };
            expect(call(host, contrast1, self, a), curves(contrastOf(a)));
            expect(call(host, contrast3, self, a, b, c), curves(contrastOf(a), contrastOf(b), contrastOf(c)));
            expect(call(host, linear1, self, a), curves(linearOf(a)));
            expect(call(host, linear3, self, a, b, c), curves(linearOf(a), linearOf(b), linearOf(c)));
            expect(call(host, absolute1, self, a), curves(absoluteOf(a)));
            expect(call(host, absolute3, self, a, b, c), curves(absoluteOf(a), absoluteOf(b), absoluteOf(c)));
            expect(call(host, custom1, self, a, b), curves(customOf(a, b)));
            expect(call(host, custom3, self, a, b, b, c, c, a), curves(customOf(a, b), customOf(a, c), customOf(c, a)));
            expect(call(host, contrastLinear1, self, a, b), curves(bothLinear(a, b)));
            expect(call(host, contrastLinear3, self, a, b, c, b, c, a),
                   curves(bothLinear(a, b), bothLinear(b, c), bothLinear(c, a)));
            expect(call(host, contrastAbsolute1, self, a, b), curves(bothAbsolute(a, b)));
            expect(call(host, contrastAbsolute3, self, a, b, c, b, c, a),
                   curves(bothAbsolute(a, b), bothAbsolute(b, c), bothAbsolute(c, a)));
        }
        EXPECT_EQ(rawWords(*self), before) << "the source is never changed";
    });
}

TEST(ToneCurves, OfAnySizeEqualTheirDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(2);
        for (int i = 0; i < 10; ++i) {
            const Ref<Picture> self = setting.makeSource(random.between(1, 67), random.between(1, 9), random);
            const double c = random.between(-300, 300) / 100.0;
            expectPoints(setting, *self, call(host, contrast1, self, c), curves([c](int v) { return contrast(v, c); }));
        }
    });
}

}  // namespace
}  // namespace pxk::test
