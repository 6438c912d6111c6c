// Masks of the host, and alpha read and written as a grey picture.
#include <gtest/gtest.h>

#include "support/definitions/masks.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

constexpr auto hasMaskDeclaration = "HasMaskPXK as boolean";
constexpr auto embeddedDeclaration = "EmbeddedMaskPXK(swap as boolean) as picture";

bool hasMask(Host& host, const Ref<Picture>& self) { return host.invoke<bool>(hasMaskDeclaration, self); }

Ref<Picture> embeddedMask(Host& host, const Ref<Picture>& self, bool swap) {
    return host.invoke<Ref<Picture>>(embeddedDeclaration, self, swap);
}

void setEmbeddedMask(Host& host, const Ref<Picture>& self, bool swap, const Ref<Picture>& value) {
    host.assign(embeddedDeclaration, self, swap, value);
}

Ref<Picture> noise(const Setting& setting, int width, int height, unsigned seed = 1) {
    Random random(seed);
    return setting.makeSource(width, height, random);
}

// Black in red, green and blue.
Ref<Picture> blackPicture(const Setting& setting, int width, int height) {
    return plainPicture(setting, width, height, {0, 0, 0});
}

TEST(HasMask, TellsWhetherThereIsOne) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 3, 3);
        EXPECT_FALSE(hasMask(host, self));
        EXPECT_FALSE(self->mask()) << "asking makes none";
        const Ref<Picture> mask = noise(setting, 3, 3);
        self->setMask(mask);
        const auto references = mask->references();
        EXPECT_TRUE(hasMask(host, self));
        EXPECT_EQ(mask->references(), references);
        EXPECT_FALSE(hasMask(host, nullptr));
        EXPECT_EQ(self->timesLocked(), 0);
    });
}

TEST(HasMask, WithoutTheServiceThereIsNone) {
    Options options;
    options.plugin = pluginPath();
    options.missing = {"REALGetPictureMask"};
    Host host(options);
    {
        const Ref<Picture> self = Picture::console(2, 2);
        self->setMask(Picture::console(2, 2));
        EXPECT_FALSE(hasMask(host, self));
    }
    closeCleanly(host);
}

TEST(EmbeddedMask, OfAnOpaquePictureIsWhiteOnADesktopAndBlackSwapped) {
    forEveryDesktop([](Host& host) {
        for (const PixelLayout layout : desktopLayouts) {
            const Ref<Picture> self = Picture::desktop(5, 4, {.layout = layout});
            self->fill(0xFF336699);
            expectOpaque(embeddedMask(host, self, false), 5, 4, std::vector<Colour>(20, {255, 255, 255}));
            expectOpaque(embeddedMask(host, self, true), 5, 4, std::vector<Colour>(20, {0, 0, 0}));
        }
    });
}

TEST(EmbeddedMask, OfAConsolePictureIsItsSevenBitsWidened) {
    Options options;
    options.plugin = pluginPath();
    Host host(options);
    {
        const Ref<Picture> self = Picture::console(128, 1);
        std::vector<Colour> expected;
        for (int alpha = 0; alpha < 128; ++alpha) {
            self->row(0)[alpha] = static_cast<std::uint32_t>(alpha) << 24 | 0x123456;
            const int value = alpha * 2 + alpha % 2;
            expected.push_back({value, value, value});
        }
        EXPECT_EQ(expected.front(), (Colour{0, 0, 0})) << "opaque is passed on as 0";
        EXPECT_EQ(expected.back(), (Colour{255, 255, 255}));
        expectOpaque(embeddedMask(host, self, false), 128, 1, expected);
        for (int alpha = 0; alpha < 128; ++alpha) self->row(0)[alpha] |= 0x80000000;
        expectOpaque(embeddedMask(host, self, false), 128, 1, expected);
    }
    closeCleanly(host);
}

TEST(EmbeddedMask, IsWithoutAlphaChannelAndLeavesThePictureAsItWas) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> self = Picture::desktop(4, 3, {}, true);
        const auto before = rawWords(*self);
        const Ref<Picture> mask = embeddedMask(host, self, false);
        ASSERT_TRUE(mask);
        EXPECT_FALSE(mask->hasAlphaChannel());
        EXPECT_EQ(rawWords(*self), before);
        expectOpaque(mask, 4, 3, std::vector<Colour>(12, {0, 0, 0}));
    });
}

TEST(EmbeddedMask, OfWhatCannotBeReadIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(embeddedMask(host, nullptr, false));
        EXPECT_FALSE(embeddedMask(host, Picture::palette(3, 3), true));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(EmbeddedMask, OfAPictureThatCannotBeLockedIsThatOfItsCopy) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> self = Picture::drawnOnly(6, 2, true);
        self->fill(0x40101010);
        const Ref<Picture> mask = embeddedMask(host, self, false);
        expectOpaque(mask, 6, 2, std::vector<Colour>(12, {0x40, 0x40, 0x40}));
    });
}

TEST(EmbeddedMask, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(3);
        for (const int width : {1, 7, 16, 33, 67}) {
            const Ref<Picture> self = setting.makeSource(width, 3, random);
            for (const bool swap : {false, true}) {
                std::vector<Colour> expected;
                for (const std::uint32_t word : rawWords(*self)) {
                    expected.push_back(maskColour(setting.sourceFormat(), word, swap));
                }
                expectOpaque(embeddedMask(host, self, swap), width, 3, expected);
            }
        }
    });
}

TEST(EmbeddedMaskAssignment, OfBlackStores255SwappedAndElse0) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 9, 4);
        const auto old = rawWords(*self);
        for (const bool swap : {true, false}) {
            setEmbeddedMask(host, self, swap, blackPicture(setting, 9, 4));
            auto expected = old;
            for (std::uint32_t& word : expected)
                word = (word & ~wordOf({255, 0, 0, 0})) | (swap ? wordOf({255, 0, 0, 0}) : 0);
            EXPECT_EQ(rawWords(*self), expected);
        }
    });
}

TEST(EmbeddedMaskAssignment, StoresInTheFirstByteWhateverThatMeans) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> value = Picture::desktop(1, 1);
        value->fill(0xFF7A0000);
        const Ref<Picture> alphaFirst = Picture::desktop(1, 1, {.layout = PixelLayout::first});
        alphaFirst->fill(0xFF102030);
        setEmbeddedMask(host, alphaFirst, false, value);
        EXPECT_EQ(alphaFirst->pixel(0, 0), 0x7A102030U) << "alpha";
        const Ref<Picture> alphaLast = Picture::desktop(1, 1, {.layout = PixelLayout::last});
        alphaLast->fill(0xFF102030);
        setEmbeddedMask(host, alphaLast, false, value);
        EXPECT_EQ(alphaLast->pixel(0, 0), 0xFF7A2030U) << "red";
    });
    Options options;
    options.plugin = pluginPath();
    Host host(options);
    {
        const Ref<Picture> value = Picture::console(1, 1);
        value->fill(0xFF7A0000);
        const Ref<Picture> self = Picture::console(1, 1);
        self->fill(0xFF102030);
        setEmbeddedMask(host, self, false, value);
        EXPECT_EQ(self->pixel(0, 0), 0xFF10207AU) << "blue";
    }
    closeCleanly(host);
}

TEST(EmbeddedMaskAssignment, OfNilOrToNilChangesNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 5, 5);
        const auto old = rawWords(*self);
        setEmbeddedMask(host, self, true, nullptr);
        setEmbeddedMask(host, nullptr, true, self);
        setEmbeddedMask(host, nullptr, false, nullptr);
        setEmbeddedMask(host, self, true, Picture::palette(5, 5));
        setEmbeddedMask(host, Picture::palette(5, 5), true, self);
        EXPECT_EQ(rawWords(*self), old);
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(EmbeddedMaskAssignment, RowsBelowTheValueTakeItsFirst) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 4, 5);
        const Ref<Picture> value = pictureOf(
            setting, 4, {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}, {6, 0, 0}, {7, 0, 0}, {8, 0, 0}});
        setEmbeddedMask(host, self, false, value);
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < 4; ++x) {
                EXPECT_EQ(bytesOf(self->row(y)[x])[0], x + (y == 1 ? 5 : 1)) << x << ", " << y;
            }
        }
    });
}

TEST(EmbeddedMaskAssignment, ColumnsToTheRightOfTheValueStay) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 7, 3);
        const auto old = rawWords(*self);
        setEmbeddedMask(host, self, true, blackPicture(setting, 4, 3));
        for (std::size_t i = 0; i < old.size(); ++i) {
            const std::uint32_t expected = i % 7 < 4 ? withFirstByte(old[i], {0, 0, 0}, true) : old[i];
            EXPECT_EQ(rawWords(*self)[i], expected) << i;
        }
    });
}

TEST(EmbeddedMaskAssignment, OfALargerPictureTakesItsTopLeft) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 3, 2);
        const Ref<Picture> value = noise(setting, 40, 30, 2);
        const auto old = rawWords(*self);
        setEmbeddedMask(host, self, false, value);
        for (int y = 0; y < 2; ++y) {
            for (int x = 0; x < 3; ++x) {
                const Colour red = readColour(setting.sourceFormat(), value->row(y)[x]);
                EXPECT_EQ(self->row(y)[x], withFirstByte(old[static_cast<std::size_t>(y * 3 + x)], red, false));
            }
        }
    });
}

TEST(EmbeddedMaskAssignment, OfThePictureItself) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const bool swap : {false, true}) {
            const Ref<Picture> self = noise(setting, 50, 3);
            auto expected = rawWords(*self);
            for (std::uint32_t& word : expected) {
                word = withFirstByte(word, readColour(setting.sourceFormat(), word), swap);
            }
            setEmbeddedMask(host, self, swap, self);
            EXPECT_EQ(rawWords(*self), expected);
        }
    });
}

TEST(EmbeddedMaskAssignment, DoesNotHaveTheHostDrawThePictureAnew) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 4, 4);
        setEmbeddedMask(host, self, true, blackPicture(setting, 4, 4));
        EXPECT_EQ(self->cacheClears(), 0);
        EXPECT_EQ(self->timesLocked(), 1);
    });
}

TEST(EmbeddedMaskAssignment, WorksOnAPictureOfATypeThatIsElseNotWritten) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 4, 4);
        self->setTypeCode(3);
        setEmbeddedMask(host, self, true, blackPicture(setting, 4, 4));
        for (const std::uint32_t word : rawWords(*self)) EXPECT_EQ(bytesOf(word)[0], 255) << "it is opened to read";
    });
}

TEST(EmbeddedMaskAssignment, ToAPictureThatCannotBeLockedIsLost) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> self = Picture::drawnOnly(4, 4);
        const auto old = rawWords(*self);
        setEmbeddedMask(host, self, true, Picture::desktop(4, 4));
        EXPECT_EQ(rawWords(*self), old);
    });
}

TEST(EmbeddedMaskAssignment, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(4);
        const Setting ofValues = {{}, setting.application, setting.result, setting.result};
        for (const int width : {1, 7, 16, 33, 67}) {
            const Ref<Picture> self = setting.makeSource(width, 3, random);
            const Ref<Picture> value = ofValues.makeSource(width + random.between(0, 3), 3, random);
            for (const bool swap : {false, true}) {
                const auto old = rawWords(*self);
                const auto oldValue = rawWords(*value);
                setEmbeddedMask(host, self, swap, value);
                for (int y = 0; y < 3; ++y) {
                    for (int x = 0; x < width; ++x) {
                        const Colour mask = readColour(ofValues.sourceFormat(), value->row(y)[x]);
                        ASSERT_EQ(self->row(y)[x],
                                  withFirstByte(old[static_cast<std::size_t>(y * width + x)], mask, swap));
                    }
                }
                ASSERT_EQ(rawWords(*value), oldValue);
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
