// One exact colour replaced and extracted.
#include <gtest/gtest.h>

#include "picture/host_color.h"
#include "pointops/exact_colors_kernels.h"
#include "support/definitions/tint.h"
#include "support/isa_tests.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

Ref<Picture> replace(Host& host, const Ref<Picture>& self, std::uint32_t search, std::uint32_t with) {
    return host.invoke<Ref<Picture>>("ReplaceColorPXK(SearchColor as color, ReplaceWithColor as color) as picture",
                                     self, search, with);
}

Ref<Picture> extract(Host& host, const Ref<Picture>& self, std::uint32_t search, std::uint32_t with,
                     std::uint32_t background) {
    return host.invoke<Ref<Picture>>(
        "ExtractColorPXK(SearchColor as color, ReplaceWithColor as color, BackGroundColor as color) as picture", self,
        search, with, background);
}

// Words of few colours, so that many are found, with any alpha.
std::vector<std::uint32_t> fewColours(std::size_t count, Random& random) {
    std::vector<std::uint32_t> words(count);
    for (std::uint32_t& word : words) {
        for (int shift = 0; shift < 32; shift += 8) word |= (random.between(0, 3) == 0 ? 0x41U : 0x40U) << shift;
    }
    return words;
}

TEST(ExactColorKernels, EqualTheirDefinitions) {
    constexpr int familyFormats[] = {1, 2, 8, 0};
    constexpr std::uint32_t untouched = 0xDEADBEEF;
    forEveryIsa<ExactColorKernels>([&](const ExactColorKernels& kernels) {
        Random random(1);
        for (int from = 0; from < familyCount; ++from) {
            for (int to = 0; to < writableFamilyCount; ++to) {
                for (std::size_t width = 0; width <= 130; ++width) {
                    const std::uint32_t search = from == 3 && width % 2 == 0 ? 0 : 0x404041;
                    const std::uint32_t found = random.word();
                    const std::uint32_t background = random.word();
                    const FamilyLayout layout = layoutOf(static_cast<Family>(from));
                    const ExactColor settings = {colorMask(layout), channelBits(search, layout),
                                                 opaqueWord(familyFormats[to], hostColour(found)),
                                                 opaqueWord(familyFormats[to], hostColour(background))};
                    const std::vector<std::uint32_t> source = fewColours(width + 3, random);
                    std::vector<std::uint32_t> replaced(width + 1, untouched);
                    std::vector<std::uint32_t> extracted(width + 1, untouched);
                    const auto count = static_cast<std::ptrdiff_t>(width);
                    kernels.replace.rows[from][to](source.data() + 3, replaced.data(), count, settings);
                    kernels.extract.rows[from][to](source.data() + 3, extracted.data(), count, settings);
                    for (std::size_t x = 0; x < width; ++x) {
                        const Colour old = readColour(familyFormats[from], source[x + 3]);
                        const bool matches = old == hostColour(search);
                        const int format = familyFormats[to];
                        ASSERT_EQ(replaced[x], opaqueWord(format, matches ? hostColour(found) : old));
                        ASSERT_EQ(extracted[x], opaqueWord(format, hostColour(matches ? found : background)));
                    }
                    ASSERT_EQ(replaced.back(), untouched);
                    ASSERT_EQ(extracted.back(), untouched);
                }
            }
        }
    });
}

TEST(ReplaceColor, ReplacesExactlyTheColour) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 4, {{255, 0, 0}, {254, 0, 0}, {255, 0, 1}, {255, 1, 0}});
        const std::vector<Colour> expected = {{0, 255, 0}, {254, 0, 0}, {255, 0, 1}, {255, 1, 0}};
        EXPECT_EQ(coloursOf(*replace(host, self, 0xFF0000, 0x00FF00)), expected);
    });
}

TEST(ReplaceColor, ByItselfGivesAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> self = setting.makeSource(12, 5, random);
        const Colour some = coloursOf(*self)[7];
        const auto color = static_cast<std::uint32_t>(some.red * 65536 + some.green * 256 + some.blue);
        expectPoints(setting, *self, replace(host, self, color, color), [](Colour old) { return old; });
    });
}

TEST(ExtractColor, LeavesTwoColours) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 3, {{1, 2, 3}, {3, 2, 1}, {1, 2, 4}});
        const std::vector<Colour> expected = {{255, 255, 255}, {0, 0, 0}, {0, 0, 0}};
        EXPECT_EQ(coloursOf(*extract(host, self, 0x010203, 0xFFFFFF, 0x000000)), expected);
    });
}

TEST(ExactColors, IgnoreTheTopByteOfColours) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 2, {{1, 2, 3}, {9, 9, 9}});
        const std::vector<Colour> replaced = {{4, 5, 6}, {9, 9, 9}};
        EXPECT_EQ(coloursOf(*replace(host, self, 0xAB010203, 0xCD040506)), replaced);
        EXPECT_EQ(rawWords(*replace(host, self, 0xAB010203, 0xCD040506)),
                  rawWords(*replace(host, self, 0x00010203, 0x00040506)));
        EXPECT_EQ(rawWords(*extract(host, self, 0xAB010203, 0xCD040506, 0xEF070809)),
                  rawWords(*extract(host, self, 0x00010203, 0x00040506, 0x00070809)));
    });
}

TEST(ExactColors, IgnoreTheAlphaOfPixels) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 3, {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}});
        const std::uint32_t opaque = self->row(0)[0];
        const std::uint32_t alphaBits = opaqueWord(setting.sourceFormat(), {255, 255, 255}) ^ 0xFFFFFFFF;
        const std::uint32_t alphaByte = setting.application == ApplicationKind::console ? 0x7F000000U
                                        : alphaIsLast(setting.sourceFormat())           ? 0xFF000000U
                                                                                        : 0x000000FFU;
        ASSERT_EQ(alphaBits & ~alphaByte & 0x7FFFFFFF, 0U);
        self->row(0)[1] = opaque ^ alphaByte;
        self->row(0)[2] = opaque ^ (alphaByte & 0x55555555);
        expectPoints(setting, *self, replace(host, self, 0x010203, 0x040506), [](Colour) { return Colour{4, 5, 6}; });
        expectPoints(setting, *self, extract(host, self, 0x010203, 0x040506, 0xFFFFFF), [](Colour) {
            return Colour{4, 5, 6};
        });
    });
}

TEST(ExactColors, ReplaceKeepsTheAlphaChannelAndExtractDoesNot) {
    Options options;
    options.plugin = pluginPath();
    options.application = ApplicationKind::desktop;
    Host host(options);
    {
        const Ref<Picture> self = Picture::desktop(3, 2, {}, true);
        const Ref<Picture> replaced = replace(host, self, 0x000000, 0x102030);
        EXPECT_TRUE(replaced->hasAlphaChannel());
        EXPECT_EQ(replaced->pixel(2, 1), 0xFF102030);
        const Ref<Picture> extracted = extract(host, self, 0x000000, 0x102030, 0xFFFFFF);
        EXPECT_FALSE(extracted->hasAlphaChannel());
        EXPECT_EQ(extracted->pixel(2, 1), 0xFF102030);
    }
    closeCleanly(host);
}

TEST(ExactColors, OfNilAreNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(replace(host, nullptr, 0, 1));
        EXPECT_FALSE(extract(host, nullptr, 0, 1, 2));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(ExactColors, EqualTheirDefinitionsInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(3);
        for (int i = 0; i < 20; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> self = setting.makeSource(width, height, random);
            setWords(*self, fewColours(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), random));
            const std::vector<std::uint32_t> before = rawWords(*self);
            const std::uint32_t search = (random.word() & 0xFF010101U) | 0x404040U;
            const std::uint32_t found = random.word();
            const std::uint32_t background = random.word();
            expectPoints(setting, *self, replace(host, self, search, found),
                         [=](Colour old) { return old == hostColour(search) ? hostColour(found) : old; });
            expectPoints(setting, *self, extract(host, self, search, found, background),
                         [=](Colour old) { return hostColour(old == hostColour(search) ? found : background); });
            ASSERT_EQ(rawWords(*self), before) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
