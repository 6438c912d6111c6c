// The class PictureSepiaPXK.
#include <gtest/gtest.h>

#include <climits>

#include "frame/host_records.h"
#include "pointops/sepia_kernels.h"
#include "support/definitions/sepia.h"
#include "support/extreme_numbers.h"
#include "support/isa_tests.h"
#include "support/point_kernel_check.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

using pxkhost::Instance;
using pxkhost::Value;
using pxkhost::ValueKind;

/// An instance of the class, as a program uses it.
class SepiaFilter {
  public:
    explicit SepiaFilter(Host& host) : host_(host), instance_(host.newInstance("PictureSepiaPXK")) {}
    SepiaFilter(Host& host, const Ref<Picture>& source) : SepiaFilter(host) { setSource(source); }

    void setSource(const Ref<Picture>& source) {
        host_.setProperty(*instance_, "SourcePicture", Value::ofObject(ValueKind::picture, source));
    }
    void set(const char* name, std::int32_t value) { host_.setProperty(*instance_, name, Value::ofInteger(value)); }
    void set(const char* name, double value) { host_.setProperty(*instance_, name, Value::ofReal(value)); }
    void setLimits(std::int32_t minX, std::int32_t minY, std::int32_t maxX, std::int32_t maxY) {
        set("MinX", minX);
        set("MinY", minY);
        set("MaxX", maxX);
        set("MaxY", maxY);
    }

    std::int32_t integer(const char* name) { return host_.property(*instance_, name).integer; }
    double real(const char* name) { return host_.property(*instance_, name).real; }
    Ref<Picture> picture(const char* name) {
        const Value value = host_.property(*instance_, name);
        return Ref<Picture>::share(static_cast<Picture*>(value.object.get()));
    }
    Ref<Picture> destination() { return picture("DestinationPicture"); }

    bool run() { return host_.invoke<bool>("PictureSepiaPXK.Run as boolean", instance_); }
    void closePictures() { host_.invoke<void>("PictureSepiaPXK.Close", instance_); }

    Instance& instance() { return *instance_; }

  private:
    Host& host_;
    Ref<Instance> instance_;
};

Colour afterRun(SepiaFilter& filter) {
    EXPECT_TRUE(filter.run());
    const Ref<Picture> made = filter.destination();
    filter.closePictures();
    return coloursOf(*made).front();
}

Sepia kernelSettings(const SepiaSettings& settings) {
    const auto weight = [](double value) { return static_cast<std::uint32_t>(truncatedToInteger(value * 1024)); };
    return {weight(settings.redWeight),
            weight(settings.greenWeight),
            weight(settings.blueWeight),
            static_cast<std::uint32_t>(settings.red),
            static_cast<std::uint32_t>(settings.green),
            static_cast<std::uint32_t>(settings.blue)};
}

TEST(SepiaKernels, EqualTheirDefinition) {
    forEveryIsa<SepiaKernels>([](const SepiaKernels& kernels) {
        Random random(1);
        for (std::size_t i = 0; i < 60; ++i) {
            const auto number = [&](std::size_t k) { return extremeIntegers[(i + k) % extremeIntegers.size()]; };
            const auto weight = [&] { return random.between(-3000, 3000) / 1000.0; };
            const SepiaSettings settings =
                i < 30 ? SepiaSettings{weight(), weight(), weight(), number(0), number(3), number(8)}
                       : SepiaSettings{extremeDoubles[i - 30], weight(), extremeDoubles[59 - i], 40, 20, -20};
            checkPointKernel(kernels.sepia, kernelSettings(settings),
                             [=](Colour old) { return inSepia(old, settings); });
        }
    });
}

TEST(PictureSepia, AFreshInstanceHasTheDefaults) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        SepiaFilter filter(host);
        EXPECT_EQ(filter.real("FactorRed"), 0.299);
        EXPECT_EQ(filter.real("FactorBlue"), 0.587) << "the weight of green, crossed";
        EXPECT_EQ(filter.real("FactorGreen"), 0.114) << "the weight of blue, crossed";
        for (const char* name : {"MaxX", "MinX", "MaxY", "MinY", "SepiaRed", "SepiaGreen", "SepiaBlue"}) {
            EXPECT_EQ(filter.integer(name), 0) << name;
        }
        EXPECT_FALSE(filter.picture("SourcePicture"));
        EXPECT_FALSE(filter.picture("DestinationPicture"));
    });
}

TEST(PictureSepia, KeepsItsDataInThePublishedOrder) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(2);
        const Ref<Picture> source = setting.makeSource(1, 1, random);
        SepiaFilter filter(host, source);
        filter.set("FactorRed", 1.5);
        filter.set("FactorBlue", 2.5);
        filter.set("FactorGreen", 3.5);
        filter.setLimits(11, 12, 13, 14);
        filter.set("SepiaRed", 15);
        filter.set("SepiaGreen", 16);
        filter.set("SepiaBlue", 17);
        struct Published {
            double red, green, blue;
            REALpictureStruct* source;
            REALpictureStruct* destination;
            std::int32_t minX, minY, maxX, maxY, sepiaRed, sepiaGreen, sepiaBlue;
        };
        const auto& data = *reinterpret_cast<const Published*>(filter.instance().data());
        EXPECT_EQ(data.red, 1.5);
        EXPECT_EQ(data.green, 2.5) << "set as FactorBlue";
        EXPECT_EQ(data.blue, 3.5) << "set as FactorGreen";
        EXPECT_EQ(data.source, source->handle());
        EXPECT_EQ(data.destination, nullptr);
        EXPECT_EQ(data.minX, 11);
        EXPECT_EQ(data.minY, 12);
        EXPECT_EQ(data.maxX, 13);
        EXPECT_EQ(data.maxY, 14);
        EXPECT_EQ(data.sepiaRed, 15);
        EXPECT_EQ(data.sepiaGreen, 16);
        EXPECT_EQ(data.sepiaBlue, 17);
    });
}

TEST(PictureSepia, WithOnlyASourceMakesItGrey) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> source = pictureOf(setting, 2, {{255, 255, 255}, {255, 0, 0}});
        SepiaFilter filter(host, source);
        ASSERT_TRUE(filter.run());
        const std::vector<Colour> expected = {{254, 254, 254}, {76, 76, 76}};
        EXPECT_EQ(coloursOf(*filter.destination()), expected);
        expectPoints(setting, *source, filter.destination(), [](Colour old) { return inSepia(old, {}); });
    });
}

TEST(PictureSepia, WithOnlyTheRedWeightTakesRed) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        SepiaFilter filter(host, pictureOf(setting, 1, {{123, 200, 50}}));
        filter.set("FactorRed", 1.0);
        filter.set("FactorGreen", 0.0);
        filter.set("FactorBlue", 0.0);
        EXPECT_EQ(afterRun(filter), (Colour{123, 123, 123}));
    });
}

TEST(PictureSepia, FactorGreenWeighsBlueAndFactorBlueWeighsGreen) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        SepiaFilter withoutBlue(host, pictureOf(setting, 1, {{0, 100, 200}}));
        withoutBlue.set("FactorGreen", 0.0);
        EXPECT_EQ(afterRun(withoutBlue), (Colour{58, 58, 58})) << "100 * 601 / 1024";
        SepiaFilter withoutGreen(host, pictureOf(setting, 1, {{0, 100, 200}}));
        withoutGreen.set("FactorBlue", 0.0);
        EXPECT_EQ(afterRun(withoutGreen), (Colour{22, 22, 22})) << "200 * 116 / 1024";
    });
}

TEST(PictureSepia, AddsTheToneAndClamps) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        SepiaFilter filter(host, pictureOf(setting, 1, {{255, 255, 255}}));
        filter.set("SepiaRed", 40);
        filter.set("SepiaGreen", 20);
        filter.set("SepiaBlue", -20);
        EXPECT_EQ(afterRun(filter), (Colour{255, 255, 234}));
    });
}

TEST(PictureSepia, NegativeWeightsDivideTowardZeroAndClamp) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        SepiaFilter filter(host, pictureOf(setting, 1, {{1, 0, 200}}));
        filter.set("FactorRed", -1.5);  // grey = -1536 / 1024 = -1
        filter.set("FactorGreen", 0.0);
        filter.set("FactorBlue", 0.0);
        filter.set("SepiaRed", 1);
        filter.set("SepiaGreen", 10);
        EXPECT_EQ(afterRun(filter), (Colour{0, 9, 0}));
    });
}

TEST(PictureSepia, SumsWrapAt32Bits) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        SepiaFilter filter(host, pictureOf(setting, 1, {{255, 255, 255}}));
        filter.set("SepiaRed", INT_MAX);
        filter.set("SepiaGreen", INT_MAX - 254);
        filter.set("SepiaBlue", INT_MIN);
        EXPECT_EQ(afterRun(filter), (Colour{0, 255, 0}));
    });
}

TEST(PictureSepia, AWeightThatDoesNotFitIsTheMostNegativeInteger) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const double weight : {1e12, -1e12, HUGE_VAL, -HUGE_VAL, std::nan(""), 2097152.0}) {
            SepiaFilter filter(host, pictureOf(setting, 2, {{1, 0, 0}, {2, 0, 0}}));
            filter.set("FactorRed", weight);
            filter.set("FactorGreen", 0.0);
            filter.set("FactorBlue", 0.0);
            filter.set("SepiaRed", 2097152 + 7);
            ASSERT_TRUE(filter.run());
            const std::vector<Colour> made = coloursOf(*filter.destination());
            EXPECT_EQ(made[0].red, 7) << "-2^31 / 1024 is -2097152";
            EXPECT_EQ(made[1].red, 255) << "twice -2^31 wraps to 0";
        }
    });
}

TEST(PictureSepia, LimitsShortenTheBlockAndDoNotMoveIt) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> source = setting.makeSource(100, 100, random);
        SepiaFilter filter(host, source);
        filter.setLimits(10, 5, 50, 25);
        ASSERT_TRUE(filter.run());
        expectPoints(setting, *source, filter.destination(), 0, 0, 40, 20, [](Colour old) { return inSepia(old, {}); });
    });
}

TEST(PictureSepia, AnEndBeyondThePictureOrBeforeTheStartMeansTheEdge) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(4);
        const Ref<Picture> source = setting.makeSource(20, 10, random);
        for (const std::int32_t maxX : {20, 21, INT_MAX, 3, 2, 0, INT_MIN}) {
            SepiaFilter filter(host, source);
            filter.setLimits(3, 2, maxX, 2);
            ASSERT_TRUE(filter.run());
            expectPoints(setting, *source, filter.destination(), 0, 0, 17, 8,
                         [](Colour old) { return inSepia(old, {}); });
        }
    });
}

TEST(PictureSepia, AStartAtOrBeyondTheEdgeComputesNothingAndSucceeds) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(5);
        const Ref<Picture> source = setting.makeSource(20, 10, random);
        for (const auto& [minX, minY] : {std::pair{20, 0}, {0, 10}, {INT_MAX, INT_MAX}, {25, 3}}) {
            SepiaFilter filter(host, source);
            filter.setLimits(minX, minY, 0, 0);
            ASSERT_TRUE(filter.run());
            expectPoints(setting, *source, filter.destination(), 0, 0, 0, 0, [](Colour old) { return old; });
        }
    });
}

TEST(PictureSepia, ANegativeStartStopsAtThePicturesEdges) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(6);
        const Ref<Picture> source = setting.makeSource(20, 10, random);
        const auto definition = [](Colour old) { return inSepia(old, {}); };
        SepiaFilter whole(host, source);
        whole.setLimits(-5, INT_MIN, 0, 0);
        ASSERT_TRUE(whole.run());
        // MaxX = 0 lies between -5 and the width: columns -5 to before 0 are five columns.
        expectPoints(setting, *source, whole.destination(), 0, 0, 5, 10, definition);
        SepiaFilter part(host, source);
        part.setLimits(-5, -3, 10, 4);
        ASSERT_TRUE(part.run());
        expectPoints(setting, *source, part.destination(), 0, 0, 15, 7, definition);
        SepiaFilter beyond(host, source);
        beyond.setLimits(-5, -3, 18, INT_MAX);
        ASSERT_TRUE(beyond.run());
        expectPoints(setting, *source, beyond.destination(), 0, 0, 20, 10, definition);
    });
}

TEST(PictureSepia, WithoutAReadableSourceIsFalseAndKeepsTheDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(7);
        SepiaFilter filter(host, setting.makeSource(4, 3, random));
        ASSERT_TRUE(filter.run());
        const Ref<Picture> made = filter.destination();
        filter.setSource(nullptr);
        EXPECT_FALSE(filter.run());
        EXPECT_EQ(filter.destination().get(), made.get());
        const Ref<Picture> locked = setting.makeSource(4, 3, random);
        locked->refuseLocks(true);
        if (setting.application == ApplicationKind::console) {
            filter.setSource(locked);
            EXPECT_FALSE(filter.run());
            EXPECT_EQ(filter.destination().get(), made.get());
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(PictureSepia, WithoutAResultIsFalseAndKeepsTheDestination) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(8);
        SepiaFilter filter(host, setting.makeSource(4, 3, random));
        host.failCreation(0);
        EXPECT_FALSE(filter.run());
        EXPECT_FALSE(filter.destination());
    });
}

TEST(PictureSepia, RunningAgainOverwritesTheDestinationWithoutGivingItBack) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(9);
        SepiaFilter filter(host, setting.makeSource(4, 3, random));
        ASSERT_TRUE(filter.run());
        const Ref<Picture> first = filter.destination();
        ASSERT_EQ(first->references(), 2) << "the instance's and ours";
        ASSERT_TRUE(filter.run());
        EXPECT_NE(filter.destination().get(), first.get());
        EXPECT_EQ(first->references(), 2) << "the instance's is still there, though nobody knows it";
        first->release();
    });
}

TEST(PictureSepia, CloseGivesBothPicturesBackOnce) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(10);
        const Ref<Picture> source = setting.makeSource(4, 3, random);
        SepiaFilter filter(host, source);
        ASSERT_TRUE(filter.run());
        const Ref<Picture> made = filter.destination();
        ASSERT_EQ(source->references(), 2);
        ASSERT_EQ(made->references(), 2);
        for (int i = 0; i < 2; ++i) {
            filter.closePictures();
            EXPECT_EQ(source->references(), 1);
            EXPECT_EQ(made->references(), 1);
            EXPECT_FALSE(filter.picture("SourcePicture"));
            EXPECT_FALSE(filter.destination());
        }
        EXPECT_EQ(filter.real("FactorRed"), 0.299) << "weights stay";
    });
}

TEST(PictureSepia, TheDestructorGivesBothPicturesBack) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(11);
        const Ref<Picture> source = setting.makeSource(4, 3, random);
        Ref<Picture> made;
        {
            SepiaFilter filter(host, source);
            ASSERT_TRUE(filter.run());
            made = filter.destination();
        }
        EXPECT_EQ(source->references(), 1);
        EXPECT_EQ(made->references(), 1);
    });
}

TEST(PictureSepia, MakesAnOpaquePictureOfASourceWithAlphaChannel) {
    Options options;
    options.plugin = pluginPath();
    options.application = ApplicationKind::desktop;
    Host host(options);
    {
        SepiaFilter filter(host, Picture::desktop(3, 2, {}, true));
        filter.set("SepiaRed", 9);
        ASSERT_TRUE(filter.run());
        const Ref<Picture> made = filter.destination();
        EXPECT_FALSE(made->hasAlphaChannel());
        EXPECT_EQ(made->pixel(2, 1), 0xFF090000);
    }
    closeCleanly(host);
}

TEST(PictureSepia, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(12);
        for (std::size_t i = 0; i < 40; ++i) {
            const int width = random.between(1, 67);
            const int height = random.between(1, 9);
            const Ref<Picture> source = setting.makeSource(width, height, random);
            const std::vector<std::uint32_t> before = rawWords(*source);
            const auto extreme = [&](std::size_t k) { return extremeDoubles[(i + k) % extremeDoubles.size()]; };
            const auto weight = [&](std::size_t k) {
                return i % 3 == 0 ? extreme(k) : random.between(-2000, 2000) / 1000.0;
            };
            const auto tone = [&](std::size_t k) {
                return i % 4 == 0 ? extremeIntegers[(i + k) % extremeIntegers.size()] : random.between(-300, 300);
            };
            const SepiaSettings settings = {weight(0), weight(5), weight(9), tone(0), tone(1), tone(2)};
            const int minX = random.between(-9, 70);
            const int minY = random.between(-3, 10);
            const int maxX = random.between(-9, 80);
            const int maxY = random.between(-3, 12);
            SepiaFilter filter(host, source);
            filter.set("FactorRed", settings.redWeight);
            filter.set("FactorBlue", settings.greenWeight);
            filter.set("FactorGreen", settings.blueWeight);
            filter.set("SepiaRed", settings.red);
            filter.set("SepiaGreen", settings.green);
            filter.set("SepiaBlue", settings.blue);
            filter.setLimits(minX, minY, maxX, maxY);
            ASSERT_TRUE(filter.run());
            expectPoints(setting, *source, filter.destination(), 0, 0, computedCount(minX, maxX, width),
                         computedCount(minY, maxY, height), [=](Colour old) { return inSepia(old, settings); });
            ASSERT_EQ(rawWords(*source), before) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
