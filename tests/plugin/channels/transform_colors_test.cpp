// Every channel through a table.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/definitions/transform_colors.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

using pxkhost::HostException;
using pxkhost::MemoryBlock;

constexpr auto transformDeclaration =
    "TransformColorsPXK(red as memoryblock, blue as memoryblock, green as memoryblock, dest as picture = nil) as "
    "picture";

Ref<MemoryBlock> blockOf(const ChannelTable& table) { return MemoryBlock::make(table); }

ChannelTable tableOf(std::uint8_t value) {
    ChannelTable table;
    table.fill(value);
    return table;
}

// In the order of the parameters: blue is the second.
Ref<Picture> transform(Host& host, const Ref<Picture>& self, const Ref<MemoryBlock>& red, const Ref<MemoryBlock>& blue,
                       const Ref<MemoryBlock>& green, const Ref<Picture>& dest = nullptr) {
    return host.invoke<Ref<Picture>>(transformDeclaration, self, red, blue, green, dest);
}

Ref<Picture> transform(Host& host, const Ref<Picture>& self, const ChannelTables& tables,
                       const Ref<Picture>& dest = nullptr) {
    return transform(host, self, blockOf(tables.red), blockOf(tables.blue), blockOf(tables.green), dest);
}

std::vector<Colour> mapped(std::vector<Colour> colours, const ChannelTables& tables) {
    for (Colour& colour : colours) colour = tables(colour);
    return colours;
}

void expectRaised(Host& host, const char* message, const Ref<Picture>& self, const Ref<MemoryBlock>& red,
                  const Ref<MemoryBlock>& blue, const Ref<MemoryBlock>& green) {
    try {
        transform(host, self, red, blue, green);
        ADD_FAILURE() << "nothing was raised instead of: " << message;
    } catch (const HostException& exception) {
        EXPECT_EQ(exception.className, "NilObjectException");
        EXPECT_EQ(exception.message, message);
        EXPECT_EQ(exception.errorNumber, 0);
    }
}

TEST(TransformColors, WithIdentityTablesGivesAnOpaqueCopy) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> self = setting.makeSource(17, 5, random);
        const ChannelTables identity = {identityTable(), identityTable(), identityTable()};
        expectOpaque(transform(host, self, identity), 17, 5, coloursOf(*self));
    });
}

TEST(TransformColors, MapsEachChannelThroughTheTableOfItsName) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 1, {10, 20, 30});
        const auto none = blockOf(tableOf(0));
        const auto same = blockOf(identityTable());
        expectOpaque(transform(host, self, none, same, same), 2, 1, std::vector<Colour>(2, {0, 20, 30}));
        expectOpaque(transform(host, self, same, none, same), 2, 1, std::vector<Colour>(2, {10, 20, 0}));
        expectOpaque(transform(host, self, same, same, none), 2, 1, std::vector<Colour>(2, {10, 0, 30}));
    });
}

TEST(TransformColors, NamesTheFirstArgumentThatIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 1, {1, 2, 3});
        const auto table = blockOf(identityTable());
        expectRaised(host, "picture is nil", nullptr, nullptr, nullptr, nullptr);
        expectRaised(host, "picture is nil", nullptr, table, table, table);
        expectRaised(host, "red memoryblock is nil", self, nullptr, nullptr, nullptr);
        expectRaised(host, "red memoryblock is nil", self, nullptr, table, table);
        expectRaised(host, "green memoryblock is nil", self, table, nullptr, nullptr);
        expectRaised(host, "green memoryblock is nil", self, table, table, nullptr);
        expectRaised(host, "blue memoryblock is nil", self, table, nullptr, table);
    });
}

TEST(TransformColors, RefusesBlocksWithoutBytesOrWithTooFew) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 1, {1, 2, 3});
        const auto table = blockOf(identityTable());
        const auto without = blockOf(identityTable());
        without->pretend(256, nullptr);
        const auto negative = blockOf(identityTable());
        negative->pretend(-256, negative->bytes().data());
        for (const auto& bad :
             {without, negative, MemoryBlock::make(0), MemoryBlock::make(1), MemoryBlock::make(255)}) {
            EXPECT_FALSE(transform(host, self, bad, table, table));
            EXPECT_FALSE(transform(host, self, table, bad, table));
            EXPECT_FALSE(transform(host, self, table, table, bad));
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(TransformColors, IgnoresBytesBehindTheTable) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 2, 1, {255, 255, 255});
        const auto longer = MemoryBlock::make(300);
        std::memset(longer->bytes().data(), 7, 256);
        std::memset(longer->bytes().data() + 256, 99, 44);
        expectOpaque(transform(host, self, longer, longer, longer), 2, 1, std::vector<Colour>(2, {7, 7, 7}));
    });
}

TEST(TransformColors, TakesBlocksWhoseSizeTheHostCannotTell) {
    Host host({.plugin = pluginPath(), .version = 2017.0, .missing = {"memoryBlockGetSize"}});
    {
        const auto nines = blockOf(tableOf(9));
        expectOpaque(transform(host, Picture::console(2, 2), nines, nines, nines), 2, 2,
                     std::vector<Colour>(4, {9, 9, 9}));
    }
    closeCleanly(host);
}

// The pixels are written, but there is no second reference to the picture that could be returned.
TEST(TransformColors, IntoAGivenPictureGivesNilInAHostThatCannotAddReferences) {
    Host host({.plugin = pluginPath(), .missing = {"REALLockObject"}});
    {
        const auto nines = blockOf(tableOf(9));
        const Ref<Picture> dest = Picture::console(2, 2);
        EXPECT_FALSE(transform(host, Picture::console(2, 2), nines, nines, nines, dest));
        EXPECT_EQ(coloursOf(*dest), std::vector<Colour>(4, {9, 9, 9}));
    }
    closeCleanly(host);
}

TEST(TransformColors, ReadsBlocksOfOlderHosts) {
    for (const double version : {2012.5, 2016.04, 2017.0}) {
        Host host({.plugin = pluginPath(), .version = version});
        {
            const auto nines = blockOf(tableOf(9));
            expectOpaque(transform(host, Picture::console(2, 2), nines, nines, nines), 2, 2,
                         std::vector<Colour>(4, {9, 9, 9}));
        }
        closeCleanly(host);
    }
}

TEST(TransformColors, WritesADestinationOfTheSameSizeInPlace) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> self = setting.makeSource(9, 4, random);
        const Ref<Picture> dest = setting.makeSource(9, 4, random);
        const ChannelTables tables = randomTables(random);
        const Ref<Picture> result = transform(host, self, tables, dest);
        EXPECT_EQ(result, dest);
        expectOpaque(dest, 9, 4, mapped(coloursOf(*self), tables));
    });
}

TEST(TransformColors, KeepsALargerDestinationOutsideItsTopLeftPart) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> self = setting.makeSource(9, 4, random);
        const Ref<Picture> dest = setting.makeSource(12, 6, random);
        const std::vector<std::uint32_t> before = rawWords(*dest);
        const ChannelTables tables = randomTables(random);
        EXPECT_EQ(transform(host, self, tables, dest), dest);
        const std::vector<Colour> expected = mapped(coloursOf(*self), tables);
        std::size_t place = 0;
        auto colour = expected.begin();
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 12; ++x, ++place) {
                const bool written = x < 9 && y < 4;
                const std::uint32_t word = written ? opaqueWord(formatOf(*dest), *colour++) : before[place];
                ASSERT_EQ(dest->row(y)[x], word) << "(" << x << ", " << y << ")";
            }
        }
    });
}

TEST(TransformColors, MayWriteOverThePictureItself) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(4);
        const Ref<Picture> self = setting.makeSource(70, 3, random);
        const ChannelTables tables = randomTables(random);
        const std::vector<Colour> expected = mapped(coloursOf(*self), tables);
        EXPECT_EQ(transform(host, self, tables, self), self);
        expectOpaque(self, 70, 3, expected);
    });
}

TEST(TransformColors, IgnoresASmallerDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(5);
        const Ref<Picture> self = setting.makeSource(9, 4, random);
        const ChannelTables tables = randomTables(random);
        for (const auto& [width, height] : {std::pair{8, 4}, {9, 3}, {8, 20}, {20, 3}}) {
            const Ref<Picture> dest = setting.makeSource(width, height, random);
            const std::vector<std::uint32_t> before = rawWords(*dest);
            const Ref<Picture> result = transform(host, self, tables, dest);
            EXPECT_NE(result, dest);
            expectOpaque(result, 9, 4, mapped(coloursOf(*self), tables));
            EXPECT_EQ(rawWords(*dest), before);
        }
    });
}

TEST(TransformColors, IgnoresADestinationThatCannotBeWritten) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(6);
        const Ref<Picture> self = setting.makeSource(9, 4, random);
        const ChannelTables tables = randomTables(random);
        const Ref<Picture> locked = setting.makeSource(9, 4, random);
        locked->refuseLocks(true);
        const Ref<Picture> readOnly = setting.makeSource(9, 4, random);
        readOnly->setTypeCode(3);
        for (const Ref<Picture>& dest : {locked, readOnly}) {
            const std::vector<std::uint32_t> before = rawWords(*dest);
            const Ref<Picture> result = transform(host, self, tables, dest);
            EXPECT_NE(result, dest);
            expectOpaque(result, 9, 4, mapped(coloursOf(*self), tables));
            EXPECT_EQ(rawWords(*dest), before);
        }
    });
}

TEST(TransformColors, BelievesNeitherTheSizeThatADestinationClaimsNorThatOfItsPixelsAlone) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(7);
        const Ref<Picture> self = setting.makeSource(9, 4, random);
        const ChannelTables tables = randomTables(random);
        for (const auto& [width, height, claimedWidth, claimedHeight] :
             {std::tuple{8, 4, 9, 4}, {9, 3, 9, 4}, {9, 4, 8, 4}, {9, 4, 9, 3}, {9, 4, -1, 4}}) {
            const Ref<Picture> dest = setting.makeSource(width, height, random);
            dest->pretendSize(claimedWidth, claimedHeight);
            const std::vector<std::uint32_t> before = rawWords(*dest);
            const Ref<Picture> result = transform(host, self, tables, dest);
            EXPECT_NE(result, dest);
            expectOpaque(result, 9, 4, mapped(coloursOf(*self), tables));
            EXPECT_EQ(rawWords(*dest), before);
        }
    });
}

TEST(TransformColors, TakesASizeThatCannotBeReadForZero) {
    for (const char* missing : {"Picture.Width", "Picture.Height"}) {
        Host host({.plugin = pluginPath(), .missing = {missing}});
        {
            Random random(8);
            const Ref<Picture> self = Picture::console(3, 3);
            const Ref<Picture> dest = Picture::console(3, 3);
            const Ref<Picture> result = transform(host, self, randomTables(random), dest);
            EXPECT_TRUE(result);
            EXPECT_NE(result, dest);
        }
        closeCleanly(host);
    }
}

TEST(TransformColors, OfAnUnreadablePictureIsNil) {
    Host host({.plugin = pluginPath()});
    {
        Random random(9);
        const ChannelTables tables = randomTables(random);
        EXPECT_FALSE(transform(host, Picture::palette(3, 3), tables));
        EXPECT_FALSE(transform(host, Picture::palette(3, 3), tables, Picture::console(3, 3)));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    }
    closeCleanly(host);
}

TEST(TransformColors, WithoutMemoryForTheResultIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(10);
        const Ref<Picture> self = setting.makeSource(3, 3, random);
        host.failCreation(0);
        EXPECT_FALSE(transform(host, self, randomTables(random)));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(TransformColors, OfAPictureWiderThanNewOnesMayBeNeedsADestination) {
    Host host({.plugin = pluginPath(), .application = ApplicationKind::desktop});
    {
        Random random(11);
        const ChannelTables tables = randomTables(random);
        const Ref<Picture> wide = Picture::desktop(32768, 1, {}, true);
        EXPECT_FALSE(transform(host, wide, tables));
        const Ref<Picture> dest = Picture::desktop(32768, 1, {}, true);
        EXPECT_EQ(transform(host, wide, tables, dest), dest);
        expectOpaque(dest, 32768, 1, mapped(coloursOf(*wide), tables));
    }
    closeCleanly(host);
}

TEST(TransformColors, MakesAPictureWithoutAlphaChannel) {
    Host host({.plugin = pluginPath(), .application = ApplicationKind::desktop});
    {
        Random random(12);
        const Ref<Picture> result = transform(host, Picture::desktop(3, 3, {}, true), randomTables(random));
        ASSERT_TRUE(result);
        EXPECT_FALSE(result->hasAlphaChannel());
    }
    closeCleanly(host);
}

TEST(TransformColors, ClearsTheDestinationsCachedRendering) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(13);
        const Ref<Picture> self = setting.makeSource(3, 3, random);
        const Ref<Picture> dest = setting.makeSource(3, 3, random);
        transform(host, self, randomTables(random), dest);
        EXPECT_GT(dest->cacheClears(), 0);
        EXPECT_EQ(self->cacheClears(), 0);
    });
}

// The tables may lie in the memory that is written.
TEST(TransformColors, UsesTheTablesAsTheyWereBeforeTheCall) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(14);
        const Ref<Picture> self = setting.makeSource(64, 3, random);
        const Ref<Picture> dest = setting.makeSource(64, 3, random);
        ChannelTable table;
        std::memcpy(table.data(), dest->row(1), table.size());
        const auto overlapping = MemoryBlock::make(256);
        overlapping->pretend(256, dest->row(1));
        EXPECT_EQ(transform(host, self, overlapping, overlapping, overlapping, dest), dest);
        expectOpaque(dest, 64, 3, mapped(coloursOf(*self), {table, table, table}));
    });
}

TEST(TransformColors, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(15);
        for (int i = 0; i < 10; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> self = setting.makeSource(width, height, random);
            const ChannelTables tables = randomTables(random);
            const std::vector<std::uint32_t> before = rawWords(*self);
            expectPoints(setting, *self, transform(host, self, tables), tables);
            ASSERT_EQ(rawWords(*self), before) << "the source is never changed";
        }
    });
}

TEST(TransformColors, EqualsItsDefinitionIntoDestinationsOfEveryLayout) {
    forEveryDesktop([](Host& host) {
        Random random(16);
        for (const PixelLayout own : desktopLayouts) {
            for (const PixelLayout other : desktopLayouts) {
                const Ref<Picture> self = noiseIn(own, 37, 3, random);
                const Ref<Picture> dest = noiseIn(other, 37, 3, random);
                const ChannelTables tables = randomTables(random);
                EXPECT_EQ(transform(host, self, tables, dest), dest);
                expectOpaque(dest, 37, 3, mapped(coloursOf(*self), tables));
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
