// A channel replaced by that of another picture.
#include <gtest/gtest.h>

#include "support/definitions/recombination.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

using pxkhost::HostException;

struct ChannelMember {
    const char* declaration;
    Colour (*definition)(Colour picture, Colour channel);
};

const ChannelMember members[] = {
    {"ReplaceRedChannelPXK(RedChannel as picture) as picture",
     [](Colour picture, Colour channel) { return combined(channel, picture, picture); }},
    {"ReplaceGreenChannelPXK(GreenChannel as picture) as picture",
     [](Colour picture, Colour channel) { return combined(picture, channel, picture); }},
    {"ReplaceBlueChannelPXK(BlueChannel as picture) as picture",
     [](Colour picture, Colour channel) { return combined(picture, picture, channel); }},
};

Ref<Picture> call(Host& host, const ChannelMember& member, const Ref<Picture>& self, const Ref<Picture>& channel) {
    return host.invoke<Ref<Picture>>(member.declaration, self, channel);
}

// Expects what the definition gives for the top-left part of the channel picture.
void expectReplaced(const ChannelMember& member, const Picture& self, const Picture& channel,
                    const Ref<Picture>& result) {
    std::vector<Colour> expected;
    for (int y = 0; y < self.height(); ++y) {
        for (int x = 0; x < self.width(); ++x) {
            expected.push_back(member.definition(readColour(formatOf(self), self.row(y)[x]),
                                                 readColour(formatOf(channel), channel.row(y)[x])));
        }
    }
    expectOpaque(result, self.width(), self.height(), expected);
}

TEST(ReplaceChannel, TakesTheChannelOfTheSameName) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 2, {1, 2, 3});
        const Ref<Picture> channel = plainPicture(setting, 2, 2, {10, 20, 30});
        const Colour expected[] = {{10, 2, 3}, {1, 20, 3}, {1, 2, 30}};
        for (std::size_t i = 0; i < 3; ++i) {
            expectOpaque(call(host, members[i], self, channel), 2, 2, std::vector<Colour>(4, expected[i]));
        }
    });
}

TEST(ReplaceChannel, RaisesForANilChannelPicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 2, {1, 2, 3});
        for (const ChannelMember& member : members) {
            for (const Ref<Picture>& picture : {self, Ref<Picture>()}) {
                try {
                    call(host, member, picture, nullptr);
                    ADD_FAILURE() << "nothing was raised";
                } catch (const HostException& exception) {
                    EXPECT_EQ(exception.className, "NilObjectException");
                    EXPECT_EQ(exception.message, "The channel picture is nil.");
                    EXPECT_EQ(exception.errorNumber, 0);
                }
            }
        }
    });
}

TEST(ReplaceChannel, OfNilIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> channel = plainPicture(setting, 2, 2, {1, 2, 3});
        for (const ChannelMember& member : members) EXPECT_FALSE(call(host, member, nullptr, channel));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(ReplaceChannel, RefusesASmallerChannelPicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> self = setting.makeSource(9, 7, random);
        for (const auto& [width, height] : {std::pair{8, 7}, {9, 6}, {8, 20}, {20, 6}}) {
            const Ref<Picture> channel = setting.makeSource(width, height, random);
            for (const ChannelMember& member : members) EXPECT_FALSE(call(host, member, self, channel));
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(ReplaceChannel, UsesTheTopLeftPartOfALargerChannelPicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> self = setting.makeSource(9, 7, random);
        for (const auto& [width, height] : {std::pair{9, 7}, {10, 8}, {9, 20}, {20, 7}}) {
            const Ref<Picture> channel = setting.makeSource(width, height, random);
            for (const ChannelMember& member : members) {
                expectReplaced(member, *self, *channel, call(host, member, self, channel));
            }
        }
    });
}

TEST(ReplaceChannel, ByItsOwnGivesAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> self = setting.makeSource(5, 4, random);
        for (const ChannelMember& member : members) {
            expectOpaque(call(host, member, self, self), 5, 4, coloursOf(*self));
        }
    });
}

TEST(ReplaceChannel, OfAPictureThatCannotBeLockedIsNilOnAConsole) {
    Host host({.plugin = pluginPath()});
    {
        const Ref<Picture> good = Picture::console(3, 3);
        const Ref<Picture> locked = Picture::console(3, 3);
        locked->refuseLocks(true);
        for (const ChannelMember& member : members) {
            EXPECT_FALSE(call(host, member, good, locked));
            EXPECT_FALSE(call(host, member, locked, good));
            EXPECT_FALSE(call(host, member, good, Picture::palette(3, 3)));
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    }
    closeCleanly(host);
}

TEST(ReplaceChannel, ReadsDrawnPicturesThroughACopy) {
    forEveryDesktop([](Host& host) {
        Random random(4);
        const Ref<Picture> self = Picture::drawnOnly(6, 5);
        const Ref<Picture> channel = Picture::drawnOnly(7, 6);
        setWords(*self, std::vector<std::uint32_t>(30, 0xFF030201));
        setWords(*channel, std::vector<std::uint32_t>(42, 0xFF0C0B0A));
        for (const ChannelMember& member : members) {
            expectReplaced(member, *self, *channel, call(host, member, self, channel));
        }
    });
}

TEST(ReplaceChannel, WithoutMemoryForTheResultIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 2, {1, 2, 3});
        for (const ChannelMember& member : members) {
            host.failCreation(0);
            EXPECT_FALSE(call(host, member, self, self));
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(ReplaceChannel, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(5);
        for (int i = 0; i < 10; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> self = setting.makeSource(width, height, random);
            const Ref<Picture> channel =
                setting.makeSource(width + random.between(0, 3), height + random.between(0, 3), random);
            const std::vector<std::uint32_t> before = rawWords(*self);
            for (const ChannelMember& member : members) {
                expectReplaced(member, *self, *channel, call(host, member, self, channel));
            }
            ASSERT_EQ(rawWords(*self), before) << "the source is never changed";
        }
    });
}

TEST(ReplaceChannel, EqualsItsDefinitionForPicturesOfDifferentLayouts) {
    forEveryDesktop([](Host& host) {
        Random random(6);
        for (const PixelLayout own : desktopLayouts) {
            for (const PixelLayout other : desktopLayouts) {
                const Ref<Picture> self = noiseIn(own, random.between(1, 40), 3, random);
                const Ref<Picture> channel = noiseIn(other, 41, 4, random);
                for (const ChannelMember& member : members) {
                    expectReplaced(member, *self, *channel, call(host, member, self, channel));
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
