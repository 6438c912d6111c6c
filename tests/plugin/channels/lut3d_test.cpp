// The class PictureLut3DPXK.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "support/definitions/lut3d.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

using pxkhost::Instance;
using pxkhost::Value;
using pxkhost::ValueKind;

constexpr auto className = "PictureLut3DPXK";
constexpr auto tableDeclaration = "PictureLut3DPXK.Table(r as UInt32, g as UInt32, b as UInt32, x as UInt32) as double";
constexpr double infinity = std::numeric_limits<double>::infinity();

// An instance of the class, as a program uses it.
class Lut3D {
  public:
    explicit Lut3D(Host& host) : host_(&host), instance_(host.newInstance(className)) {}
    Lut3D(Host& host, const Ref<Picture>& source) : Lut3D(host) { setSource(source); }
    Lut3D(Host& host, const Ref<Picture>& source, const ColourCube& cube) : Lut3D(host, source) { setTable(cube); }

    void setSource(const Ref<Picture>& picture) { set("SourcePicture", Value::ofObject(ValueKind::picture, picture)); }
    void setNumber(const char* name, int value) { set(name, Value::ofInteger(value)); }
    void setLimits(int minX, int minY, int maxX, int maxY) {
        setNumber("MinX", minX);
        setNumber("MinY", minY);
        setNumber("MaxX", maxX);
        setNumber("MaxY", maxY);
    }
    int number(const char* name) const { return host_->property(*instance_, name).integer; }
    Ref<pxkhost::Object> picture(const char* name) const { return host_->property(*instance_, name).object; }

    bool run() const { return host_->invoke<bool>("PictureLut3DPXK.Run as boolean", instance_); }
    void close() const { host_->invoke<void>("PictureLut3DPXK.Close", instance_); }

    double entry(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x) const {
        return host_->invoke<double>(tableDeclaration, instance_, r, g, b, x);
    }
    void setEntry(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x, double value) const {
        host_->assign(tableDeclaration, instance_, r, g, b, x, value);
    }
    void setTable(const ColourCube& cube) const {
        const auto set =
            host_
                ->memberSetter<void(Ref<Instance>, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, double)>(
                    tableDeclaration);
        for (int r = 0; r < ColourCube::points; ++r) {
            for (int g = 0; g < ColourCube::points; ++g) {
                for (int b = 0; b < ColourCube::points; ++b) {
                    for (int x = 0; x < 3; ++x) {
                        set(instance_, static_cast<std::uint32_t>(r), static_cast<std::uint32_t>(g),
                            static_cast<std::uint32_t>(b), static_cast<std::uint32_t>(x), cube.at(r, g, b, x));
                    }
                }
            }
        }
    }

    Ref<Picture> destination() const {
        const Ref<pxkhost::Object> object = picture("DestinationPicture");
        return Ref<Picture>::share(static_cast<Picture*>(object.get()));
    }

    const std::byte* data() const { return instance_->data(); }

  private:
    void set(const char* name, const Value& value) { host_->setProperty(*instance_, name, value); }

    Host* host_;
    Ref<Instance> instance_;
};

template <class Entry>
ColourCube cubeOf(Entry entry) {
    ColourCube cube;
    for (int r = 0; r < ColourCube::points; ++r) {
        for (int g = 0; g < ColourCube::points; ++g) {
            for (int b = 0; b < ColourCube::points; ++b) {
                for (int x = 0; x < 3; ++x) cube.at(r, g, b, x) = entry(r, g, b, x);
            }
        }
    }
    return cube;
}

// 17 times the point on the axis of the channel; 0 beyond the points that count.
ColourCube identityCube() {
    return cubeOf([](int r, int g, int b, int x) {
        const int point = x == 0 ? r : x == 1 ? g : b;
        return r < 16 && g < 16 && b < 16 ? 17.0 * point : 0.0;
    });
}

ColourCube plainCube(double value) {
    return cubeOf([&](int, int, int, int) { return value; });
}

ColourCube randomCube(Random& random) {
    return cubeOf([&](int, int, int, int) { return random.between(-2000, 28000) / 99.0; });
}

// Every grey.
Ref<Picture> greyRamp(const Setting& setting) {
    std::vector<Colour> greys;
    for (int value = 0; value < 256; ++value) greys.push_back({value, value, value});
    return pictureOf(setting, 256, greys);
}

TEST(Lut3D, StartsEmpty) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Lut3D lut(host);
        for (const char* name : {"SourcePicture", "DestinationPicture"}) EXPECT_FALSE(lut.picture(name)) << name;
        for (const char* name : {"MinX", "MinY", "MaxX", "MaxY"}) EXPECT_EQ(lut.number(name), 0) << name;
        EXPECT_EQ(lut.entry(0, 0, 0, 0), 0.0);
        EXPECT_EQ(lut.entry(17, 17, 17, 2), 0.0);
    });
}

TEST(Lut3D, KeepsItsDataInThePublishedLayout) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> source = plainPicture(setting, 2, 2, {1, 2, 3});
        Lut3D lut(host, source);
        lut.setLimits(11, 12, 13, 14);
        lut.setEntry(0, 0, 0, 0, 0.5);
        lut.setEntry(0, 0, 0, 1, 1.5);
        lut.setEntry(0, 0, 1, 0, 2.5);
        lut.setEntry(0, 1, 0, 0, 3.5);
        lut.setEntry(1, 0, 0, 0, 4.5);
        lut.setEntry(17, 17, 17, 2, 5.5);
        const std::byte* data = lut.data();
        const auto word = [&](std::size_t offset) {
            std::int32_t value = 0;
            std::memcpy(&value, data + offset, sizeof value);
            return value;
        };
        void* picture = nullptr;
        std::memcpy(&picture, data, sizeof picture);
        EXPECT_EQ(picture, source->handle());
        const std::size_t numbers = 2 * sizeof(void*);
        EXPECT_EQ(word(numbers), 11) << "MinX";
        EXPECT_EQ(word(numbers + 4), 12) << "MinY";
        EXPECT_EQ(word(numbers + 8), 13) << "MaxX";
        EXPECT_EQ(word(numbers + 12), 14) << "MaxY";
        const auto entry = [&](std::size_t place) {
            double value = 0;
            std::memcpy(&value, data + numbers + 16 + place * sizeof value, sizeof value);
            return value;
        };
        EXPECT_EQ(entry(0), 0.5);
        EXPECT_EQ(entry(1), 1.5);
        EXPECT_EQ(entry(3), 2.5);
        EXPECT_EQ(entry(54), 3.5) << "3 * 18 entries on";
        EXPECT_EQ(entry(972), 4.5) << "3 * 18 * 18 entries on";
        EXPECT_EQ(entry(17495), 5.5) << "the last entry";
    });
}

TEST(Lut3D, TableReadsZeroAndIgnoresWritesOutsideItsBounds) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Lut3D lut(host);
        lut.setTable(plainCube(7.25));
        constexpr std::uint32_t outside[][4] = {{18, 0, 0, 0},         {0, 18, 0, 0},           {0, 0, 18, 0},
                                                {0, 0, 0, 3},          {0xFFFFFFFF, 0, 0, 0},   {0, 0x80000000, 0, 0},
                                                {0, 0, 0xFFFFFFFF, 2}, {17, 17, 17, 0xFFFFFFFF}};
        for (const auto& [r, g, b, x] : outside) {
            EXPECT_EQ(lut.entry(r, g, b, x), 0.0);
            lut.setEntry(r, g, b, x, 99.0);
            EXPECT_EQ(lut.entry(r, g, b, x), 0.0);
        }
        for (const std::uint32_t point : {0U, 1U, 17U}) {
            for (const std::uint32_t x : {0U, 1U, 2U}) EXPECT_EQ(lut.entry(point, point, point, x), 7.25);
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Lut3D, FreshInstanceMakesOpaqueBlack) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Lut3D lut(host, setting.makeSource(5, 4, random));
        EXPECT_TRUE(lut.run());
        expectOpaque(lut.destination(), 5, 4, std::vector<Colour>(20, {0, 0, 0}));
    });
}

TEST(Lut3D, IdentityTruncatesInsteadOfRounding) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Lut3D lut(host, greyRamp(setting), identityCube());
        ASSERT_TRUE(lut.run());
        const std::vector<Colour> result = coloursOf(*lut.destination());
        std::vector<int> losing;
        for (int grey = 0; grey < 256; ++grey) {
            const int red = result[static_cast<std::size_t>(grey)].red;
            if (red != grey) {
                losing.push_back(grey);
                EXPECT_EQ(red, grey - 1);
            }
            if (grey % 17 == 0) {
                EXPECT_EQ(result[static_cast<std::size_t>(grey)], (Colour{grey, grey, grey}));
            }
        }
        EXPECT_EQ(losing, (std::vector<int>{57, 108, 124, 125, 210, 226, 227, 243, 244}));
    });
}

TEST(Lut3D, CutsAndTruncatesEntries) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const std::pair<double, int> cases[] = {
            {300.0, 255}, {-5.0, 0},    {12.9, 12},      {255.0, 255},   {254.999, 254},
            {-0.5, 0},    {1e300, 255}, {infinity, 255}, {-infinity, 0}, {std::numeric_limits<double>::quiet_NaN(), 0}};
        for (const auto& [entry, value] : cases) {
            // At a point of the grid all of the weight is on one entry, and the others must not be infinite.
            ColourCube cube = plainCube(0);
            cube.at(0, 0, 0, 0) = cube.at(0, 0, 0, 1) = cube.at(0, 0, 0, 2) = entry;
            const Lut3D lut(host, plainPicture(setting, 1, 1, {0, 0, 0}), cube);
            ASSERT_TRUE(lut.run());
            expectOpaque(lut.destination(), 1, 1, {{value, value, value}});
        }
    });
}

TEST(Lut3D, NeverReadsTheLastTwoPoints) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> source = setting.makeSource(64, 4, random);
        for (int y = 0; y < 4; ++y) source->row(y)[0] = 0xFFFFFFFF;
        const ColourCube ordinary = randomCube(random);
        const ColourCube odd = cubeOf([&](int r, int g, int b, int x) {
            return r > 15 || g > 15 || b > 15 ? std::numeric_limits<double>::quiet_NaN() : ordinary.at(r, g, b, x);
        });
        const Lut3D lut(host, source, odd);
        ASSERT_TRUE(lut.run());
        expectPoints(setting, *source, lut.destination(), ordinary);
    });
}

TEST(Lut3D, ShortensTheBlockAndNeverMovesIt) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> source = setting.makeSource(40, 30, random);
        const ColourCube cube = randomCube(random);
        Lut3D lut(host, source, cube);
        struct Case {
            int minX, minY, maxX, maxY, columns, rows;
        };
        const Case cases[] = {
            {10, 5, 20, 25, 10, 20},   // not columns 10 to 19
            {0, 0, 0, 0, 40, 30},      // no limits
            {10, 5, 0, 0, 30, 25},     // an end of 0 is none
            {10, 5, 10, 5, 30, 25},    // nor is one that is not beyond the start
            {10, 5, 40, 30, 30, 25},   // nor one at or beyond the edge
            {10, 5, 39, 29, 29, 24},   // the last end that counts
            {39, 29, 0, 0, 1, 1},      // the last start that leaves anything
            {40, 0, 0, 0, 0, 0},       // a start at the edge leaves nothing
            {0, 30, 0, 0, 0, 0},       //
            {1000, 1000, 0, 0, 0, 0},  //
            {-5, -5, 0, 0, 40, 30},    // a negative start is 0
            {-5, -7, 3, 2, 3, 2},      //
            {-5, -5, -2, -2, 40, 30},  //
            {std::numeric_limits<int>::min(), std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
             std::numeric_limits<int>::max(), 40, 30},
            {std::numeric_limits<int>::max(), 0, std::numeric_limits<int>::min(), 0, 0, 0},
        };
        for (const Case& each : cases) {
            SCOPED_TRACE(testing::Message() << each.minX << " " << each.minY << " " << each.maxX << " " << each.maxY);
            lut.setLimits(each.minX, each.minY, each.maxX, each.maxY);
            EXPECT_TRUE(lut.run());
            expectPoints(setting, *source, lut.destination(), 0, 0, each.columns, each.rows, cube);
        }
    });
}

TEST(Lut3D, WithoutASourceFailsAndClearsTheDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Lut3D lut(host, plainPicture(setting, 2, 2, {1, 2, 3}));
        ASSERT_TRUE(lut.run());
        ASSERT_TRUE(lut.destination());
        lut.setSource(nullptr);
        EXPECT_FALSE(lut.run());
        EXPECT_FALSE(lut.destination());
        EXPECT_FALSE(lut.run());
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Lut3D, OfAnUnreadableSourceFailsAndClearsTheDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Lut3D lut(host, plainPicture(setting, 2, 2, {1, 2, 3}));
        ASSERT_TRUE(lut.run());
        lut.setSource(Picture::palette(2, 2));
        EXPECT_FALSE(lut.run());
        EXPECT_FALSE(lut.destination());
        EXPECT_TRUE(lut.picture("SourcePicture")) << "the source stays";
    });
}

TEST(Lut3D, WithoutMemoryForTheResultFailsAndClearsTheDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Lut3D lut(host, plainPicture(setting, 2, 2, {1, 2, 3}));
        ASSERT_TRUE(lut.run());
        host.failCreation(0);
        EXPECT_FALSE(lut.run());
        EXPECT_FALSE(lut.destination());
    });
}

TEST(Lut3D, EachRunReplacesTheDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> source = plainPicture(setting, 2, 2, {1, 2, 3});
        const Lut3D lut(host, source);
        ASSERT_TRUE(lut.run());
        const Ref<Picture> first = lut.destination();
        ASSERT_TRUE(lut.run());
        EXPECT_NE(lut.destination(), first);
        EXPECT_EQ(lut.picture("SourcePicture").get(), source.get());
    });
}

TEST(Lut3D, CloseGivesBothPicturesBackAndMayBeCalledAgain) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Lut3D lut(host, plainPicture(setting, 2, 2, {1, 2, 3}), plainCube(50));
        ASSERT_TRUE(lut.run());
        lut.close();
        EXPECT_FALSE(lut.picture("SourcePicture"));
        EXPECT_FALSE(lut.picture("DestinationPicture"));
        lut.close();
        EXPECT_EQ(lut.entry(3, 3, 3, 1), 50.0) << "the table stays";
        lut.setSource(plainPicture(setting, 1, 1, {9, 9, 9}));
        EXPECT_TRUE(lut.run());
        expectOpaque(lut.destination(), 1, 1, {{50, 50, 50}});
    });
}

// An instance releases what it holds: closing each host checks for leaks.
TEST(Lut3D, GivesItsPicturesBackWhenItGoes) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Lut3D lut(host, plainPicture(setting, 2, 2, {1, 2, 3}));
        EXPECT_TRUE(lut.run());
    });
}

TEST(Lut3D, OfAPictureWithAlphaChannelMakesOneToo) {
    Host host({.plugin = pluginPath(), .application = ApplicationKind::desktop});
    {
        Lut3D lut(host, Picture::desktop(4, 3, {}, true), plainCube(128));
        lut.setLimits(0, 0, 2, 0);
        ASSERT_TRUE(lut.run());
        const Ref<Picture> result = lut.destination();
        EXPECT_TRUE(result->hasAlphaChannel());
        EXPECT_EQ(result->row(0)[0], opaqueWord(formatOf(*result), {128, 128, 128}));
        EXPECT_EQ(result->row(0)[2], 0U) << "the rest stays as the host made it";
    }
    closeCleanly(host);
}

TEST(Lut3D, WorksInHostsOfEveryVersion) {
    for (const double version : {2010.0, 2011.04, 2012.5, 2013.04, 2019.03, 3000.0}) {
        Host host({.plugin = pluginPath(), .version = version});
        {
            const Lut3D lut(host, Picture::console(2, 2), plainCube(77));
            EXPECT_TRUE(lut.run());
            expectOpaque(lut.destination(), 2, 2, std::vector<Colour>(4, {77, 77, 77}));
        }
        closeCleanly(host);
    }
}

TEST(Lut3D, EqualsItsDefinitionInEverySetting) {
    Random cubes(4);
    const ColourCube cube = randomCube(cubes);
    forEverySetting([&](Host& host, const Setting& setting) {
        Random random(5);
        Lut3D lut(host);
        lut.setTable(cube);
        for (int i = 0; i < 6; ++i) {
            const Ref<Picture> self = setting.makeSource(random.between(1, 140), random.between(1, 5), random);
            const std::vector<std::uint32_t> before = rawWords(*self);
            lut.setSource(self);
            ASSERT_TRUE(lut.run());
            expectPoints(setting, *self, lut.destination(), cube);
            ASSERT_EQ(rawWords(*self), before) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
