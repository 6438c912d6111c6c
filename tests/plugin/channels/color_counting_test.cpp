// Counting one colour, and the histograms of all channels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/definitions/color_counting.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

using pxkhost::byRef;
using pxkhost::MemoryBlock;
using Counters = Histograms::Counters;

constexpr auto countColorDeclaration = "CountColorPXK(col as color) as integer";
constexpr auto countColorsDeclaration =
    "CountColorsPXK(byref red as memoryblock, byref blue as memoryblock, byref green as memoryblock, byref count as "
    "integer)";

// A program's variables in the order of the parameters, whose names are crossed.
struct Variables {
    Ref<MemoryBlock> first;
    Ref<MemoryBlock> second;
    Ref<MemoryBlock> third;
    int count = 12345;
};

void countColors(Host& host, const Ref<Picture>& self, Variables& variables) {
    host.invoke<void>(countColorsDeclaration, self, byRef(variables.first), byRef(variables.second),
                      byRef(variables.third), byRef(variables.count));
}

int countColor(Host& host, const Ref<Picture>& self, std::uint32_t colour) {
    return host.invoke<int>(countColorDeclaration, self, colour);
}

Counters countersOf(const Ref<MemoryBlock>& block) {
    Counters counters{};
    std::memcpy(counters.data(), block->bytes().data(), sizeof counters);
    return counters;
}

Counters only(std::size_t value, std::uint32_t number) {
    Counters counters{};
    counters[value] = number;
    return counters;
}

bool allZero(const Ref<MemoryBlock>& block) {
    return std::all_of(block->bytes().begin(), block->bytes().end(), [](std::uint8_t byte) { return byte == 0; });
}

TEST(CountColor, CountsExactlyThatColour) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self =
            pictureOf(setting, 3, {{255, 0, 0}, {0, 0, 0}, {0, 0, 255}, {254, 0, 0}, {255, 0, 1}, {0, 0, 0}});
        EXPECT_EQ(countColor(host, self, 0xFF0000), 1);
        EXPECT_EQ(countColor(host, self, 0x0000FF), 1);
        EXPECT_EQ(countColor(host, self, 0x000000), 2);
        EXPECT_EQ(countColor(host, self, 0x00FF00), 0);
    });
}

TEST(CountColor, IgnoresAlphaAndTheTopByte) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 40, 2, {0, 0, 0});
        for (int y = 0; y < 2; ++y) {
            for (int x = 0; x < 40; ++x) {
                const auto alpha = static_cast<std::uint32_t>(x * 6 + y);
                self->row(y)[x] = alphaIsFirst(setting.sourceFormat()) ? 0xFF00 | alpha
                                  : setting.sourceFormat() == 8        ? 0xFF0000 | alpha << 24
                                                                       : 0xFF | alpha << 24;
            }
        }
        EXPECT_EQ(countColor(host, self, 0xFF0000), 80);
        EXPECT_EQ(countColor(host, self, 0xABFF0000), 80);
    });
}

TEST(CountColor, OfNilOrAnUnreadablePictureIsZero) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_EQ(countColor(host, nullptr, 0), 0);
        EXPECT_EQ(countColor(host, Picture::palette(4, 4), 0), 0);
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CountColor, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(1);
        for (int i = 0; i < 10; ++i) {
            const Ref<Picture> self = setting.makeSource(random.between(1, 67), random.between(1, 9), random);
            const std::vector<Colour> colours = coloursOf(*self);
            const Colour some =
                colours[static_cast<std::size_t>(random.between(0, static_cast<int>(colours.size()) - 1))];
            for (const auto wanted :
                 {static_cast<std::uint32_t>(some.red << 16 | some.green << 8 | some.blue), random.word()}) {
                ASSERT_EQ(countColor(host, self, wanted), std::count(colours.begin(), colours.end(), colourOf(wanted)));
            }
        }
    });
}

TEST(CountColors, MakesTheBlocksThatAreMissing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Variables variables;
        countColors(host, plainPicture(setting, 10, 10, {0, 0, 0}), variables);
        EXPECT_EQ(variables.count, 100);
        for (const auto& block : {variables.first, variables.second, variables.third}) {
            ASSERT_TRUE(block);
            EXPECT_EQ(block->size(), 1024);
            EXPECT_EQ(countersOf(block), only(0, 100));
        }
    });
}

TEST(CountColors, PutsRedGreenAndBlueIntoTheBlocksInThisOrder) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Variables variables;
        countColors(host, plainPicture(setting, 1, 1, {10, 20, 30}), variables);
        EXPECT_EQ(variables.count, 1);
        EXPECT_EQ(countersOf(variables.first), only(10, 1));
        EXPECT_EQ(countersOf(variables.second), only(20, 1)) << "declared as blue";
        EXPECT_EQ(countersOf(variables.third), only(30, 1)) << "declared as green";
    });
}

TEST(CountColors, AddsToWhatTheBlocksHold) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> self = setting.makeSource(13, 11, random);
        Variables variables;
        countColors(host, self, variables);
        const Counters once = countersOf(variables.first);
        countColors(host, self, variables);
        const Counters twice = countersOf(variables.first);
        for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(twice[i], 2 * once[i]);
        EXPECT_EQ(variables.count, 13 * 11) << "the pixels of the second call only";
    });
}

TEST(CountColors, CountsBeyondTheLargestNumberFromZero) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Variables variables;
        variables.first = MemoryBlock::make(1024);
        std::memset(variables.first->bytes().data(), 0xFF, 1024);
        countColors(host, plainPicture(setting, 3, 1, {7, 7, 7}), variables);
        const Counters counters = countersOf(variables.first);
        EXPECT_EQ(counters[7], 2U);
        EXPECT_EQ(counters[6], 0xFFFFFFFFU);
    });
}

TEST(CountColors, TakesOneBlockForAllThree) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Variables variables;
        variables.first = variables.second = variables.third = MemoryBlock::make(1024);
        countColors(host, plainPicture(setting, 5, 5, {1, 2, 2}), variables);
        Counters expected = only(1, 25);
        expected[2] = 50;
        EXPECT_EQ(countersOf(variables.first), expected);
        EXPECT_EQ(variables.count, 25);
    });
}

TEST(CountColors, TakesOneVariableForAllThree) {
    Host host({.plugin = pluginPath()});
    {
        const Ref<Picture> self = Picture::console(5, 5);
        const auto call =
            host.member<void(Ref<Picture>, pxkhost::ByRef<Ref<MemoryBlock>>, pxkhost::ByRef<Ref<MemoryBlock>>,
                             pxkhost::ByRef<Ref<MemoryBlock>>, pxkhost::ByRef<int>)>(countColorsDeclaration)
                .raw();
        REALmemoryBlockStruct* variable = nullptr;
        std::int32_t count = 0;
        call(self->handle(), &variable, &variable, &variable, &count);
        const auto block = Ref<MemoryBlock>::adopt(pxkhost::fromHandle<MemoryBlock>(variable, "the variable"));
        ASSERT_TRUE(block);
        EXPECT_EQ(countersOf(block), only(0, 75));
        EXPECT_EQ(count, 25);
    }
    closeCleanly(host);
}

TEST(CountColors, LeavesTheRestOfALongerBlockAlone) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Variables variables;
        variables.second = MemoryBlock::make(1030);
        std::memset(variables.second->bytes().data() + 1024, 0xA5, 6);
        countColors(host, plainPicture(setting, 2, 2, {0, 255, 0}), variables);
        EXPECT_EQ(countersOf(variables.second), only(255, 4));
        for (std::size_t i = 1024; i < 1030; ++i) EXPECT_EQ(variables.second->bytes()[i], 0xA5);
    });
}

TEST(CountColors, TakesABlockAtAnyAddress) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Variables variables;
        variables.third = MemoryBlock::make(1025);
        variables.third->pretend(1024, variables.third->bytes().data() + 1);
        countColors(host, plainPicture(setting, 2, 2, {0, 0, 9}), variables);
        Counters counters{};
        std::memcpy(counters.data(), variables.third->bytes().data() + 1, sizeof counters);
        EXPECT_EQ(counters, only(9, 4));
    });
}

TEST(CountColors, ReadsBlocksOfOlderHosts) {
    for (const double version : {2012.5, 2016.04, 2017.0}) {
        Host host({.plugin = pluginPath(), .version = version});
        Variables variables;
        countColors(host, Picture::console(4, 4), variables);
        EXPECT_EQ(variables.count, 16);
        EXPECT_EQ(countersOf(variables.third), only(0, 16));
        variables = {};
        closeCleanly(host);
    }
}

TEST(CountColors, TakesBlocksWhoseSizeTheHostCannotTell) {
    Host host({.plugin = pluginPath(), .version = 2017.0, .missing = {"memoryBlockGetSize"}});
    {
        Variables variables;
        variables.second = MemoryBlock::make(1024);
        countColors(host, Picture::console(4, 4), variables);
        EXPECT_EQ(variables.count, 16);
        for (const auto& block : {variables.first, variables.second, variables.third}) {
            EXPECT_EQ(countersOf(block), only(0, 16));
        }
    }
    closeCleanly(host);
}

TEST(CountColors, RefusesShortBlocksAndWritesNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 4, 4, {1, 2, 3});
        for (int place = 0; place < 3; ++place) {
            for (const int size : {0, 1, 256, 1020, 1023}) {
                Variables variables;
                (place == 0   ? variables.first
                 : place == 1 ? variables.second
                              : variables.third) = MemoryBlock::make(size);
                countColors(host, self, variables);
                EXPECT_EQ(variables.count, -1);
                for (const auto& block : {variables.first, variables.second, variables.third}) {
                    ASSERT_TRUE(block);
                    EXPECT_TRUE(allZero(block));
                }
            }
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CountColors, RefusesBlocksWithoutBytesAndOfNegativeSize) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 4, 4, {1, 2, 3});
        Variables without;
        without.first = MemoryBlock::make(1024);
        without.first->pretend(1024, nullptr);
        countColors(host, self, without);
        EXPECT_EQ(without.count, -1);
        Variables negative;
        negative.first = MemoryBlock::make(1024);
        negative.first->pretend(-1024, negative.first->bytes().data());
        countColors(host, self, negative);
        EXPECT_EQ(negative.count, -1);
        EXPECT_TRUE(allZero(negative.first));
    });
}

TEST(CountColors, WithoutMemoryForABlockCountsNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 4, 4, {1, 2, 3});
        for (std::size_t failing = 0; failing < 3; ++failing) {
            Variables variables;
            host.failCreation(failing);
            countColors(host, self, variables);
            EXPECT_EQ(variables.count, -1);
            std::size_t place = 0;
            for (const auto& block : {variables.first, variables.second, variables.third}) {
                EXPECT_EQ(static_cast<bool>(block), place++ != failing);
                EXPECT_TRUE(!block || allZero(block));
            }
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CountColors, OfAnUnreadablePictureLeavesNewBlocksInTheVariables) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (const Ref<Picture>& self : {Ref<Picture>(), Picture::palette(3, 3)}) {
            Variables variables;
            countColors(host, self, variables);
            EXPECT_EQ(variables.count, -1);
            for (const auto& block : {variables.first, variables.second, variables.third}) {
                ASSERT_TRUE(block);
                EXPECT_EQ(block->size(), 1024);
                EXPECT_TRUE(allZero(block));
            }
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(CountColors, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(3);
        for (int i = 0; i < 5; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> self = setting.makeSource(width, height, random);
            // Runs of one colour, as flat areas have them.
            for (int x = 1; x < width; ++x) {
                if (random.between(0, 2) != 0) self->row(0)[x] = self->row(0)[x - 1];
            }
            const Histograms expected = histogramsOf(coloursOf(*self));
            Variables variables;
            countColors(host, self, variables);
            ASSERT_EQ(variables.count, width * height);
            ASSERT_EQ(countersOf(variables.first), expected.red);
            ASSERT_EQ(countersOf(variables.second), expected.green);
            ASSERT_EQ(countersOf(variables.third), expected.blue);
        }
    });
}

}  // namespace
}  // namespace pxk::test
