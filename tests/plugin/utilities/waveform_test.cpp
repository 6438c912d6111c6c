// Samples drawn as a waveform.
#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <span>

#include "host/pictures/graphics.h"
#include "support/allocation_failure.h"
#include "support/definitions/waveform.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

using pxkhost::HostException;
using pxkhost::MemoryBlock;

constexpr auto renderSamples =
    "RenderSamplesPXK(Samples as memoryblock, SampleCount as integer, Smooth as integer, Width as integer, Height as "
    "integer, outlinewidth as integer, BackColor as color=&c88B5C4, ForeColor as color=&c274C5A, OutLineColor as "
    "color=&c203F4E, Bits as Integer = 8, AutoScale as boolean = false) as Picture";

Ref<Picture> call(Host& host, const Ref<MemoryBlock>& block, const WaveformCall& waveform) {
    return host.invoke<Ref<Picture>>(renderSamples, block, waveform.sampleCount, waveform.smooth, waveform.width,
                                     waveform.height, waveform.outlineWidth, waveform.backColor, waveform.foreColor,
                                     waveform.outlineColor, waveform.bits, waveform.autoScale);
}

Ref<Picture> call(Host& host, const WaveformCall& waveform) {
    return call(host, MemoryBlock::make(waveform.block), waveform);
}

template <class Sample>
std::vector<std::uint8_t> blockOf(const std::vector<Sample>& samples) {
    const auto bytes = std::as_bytes(std::span(samples));
    std::vector<std::uint8_t> block;
    for (const std::byte byte : bytes) block.push_back(static_cast<std::uint8_t>(byte));
    return block;
}

std::vector<std::uint8_t> bytesOfSamples(const std::vector<int>& samples) { return {samples.begin(), samples.end()}; }

void expectWaveform(Host& host, const Setting& setting, const WaveformCall& waveform) {
    const Ref<Picture> result = call(host, waveform);
    const std::optional<Canvas> expected = test::waveform(waveform, static_cast<int>(setting.result));
    ASSERT_EQ(static_cast<bool>(result), expected.has_value());
    if (!expected) return;
    ASSERT_EQ(result->width(), expected->width);
    ASSERT_EQ(result->height(), expected->height);
    ASSERT_EQ(result->layout(), setting.result);
    ASSERT_EQ(rawWords(*result), expected->words);
}

// The colours of one column, from top to bottom.
std::vector<Colour> column(const Picture& picture, int x) {
    std::vector<Colour> colours;
    for (int y = 0; y < picture.height(); ++y) {
        colours.push_back(readColour(static_cast<int>(picture.layout()), picture.row(y)[x]));
    }
    return colours;
}

// A column of `height` rows with the second colour in the rows from `begin` to before `end`.
std::vector<Colour> columnWith(Colour elsewhere, Colour inside, int height, int begin, int end) {
    std::vector<Colour> colours(static_cast<std::size_t>(height), elsewhere);
    std::fill(colours.begin() + begin, colours.begin() + end, inside);
    return colours;
}

constexpr Colour back = {0x88, 0xB5, 0xC4};
constexpr Colour fore = {0x27, 0x4C, 0x5A};
constexpr Colour outline = {0x20, 0x3F, 0x4E};
constexpr Colour foreExchanged = {0x27, 0x5A, 0x4C};

std::vector<Colour> spans(int height, int begin, int end) { return columnWith(back, fore, height, begin, end); }

TEST(Waveform, OfNoMemoryBlockRaisesAnException) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        try {
            call(host, nullptr, {.width = 4, .height = 4});
            ADD_FAILURE() << "no exception";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className, "NilObjectException");
            EXPECT_EQ(exception.message, "memoryblock is nil");
            EXPECT_EQ(exception.errorNumber, 0);
        }
        EXPECT_THROW(call(host, nullptr, {.width = 4, .height = 4, .bits = 9}), HostException);
        EXPECT_EQ(host.exceptionsRaised(), 2);
    });
}

TEST(Waveform, OfSilenceIsTheBackColourAlone) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        WaveformCall silence{.block = bytesOfSamples(std::vector(100, 128)), .width = 20, .height = 9};
        const Ref<Picture> plain = call(host, silence);
        EXPECT_EQ(coloursOf(*plain), std::vector<Colour>(20 * 9, back));
        silence.outlineWidth = 1;
        const Ref<Picture> outlined = call(host, silence);
        for (int x = 0; x < 20; ++x) EXPECT_EQ(column(*outlined, x), columnWith(back, outline, 9, 4, 5));
    });
}

TEST(Waveform, OfAnUnknownFormatIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (const int bits : {0, 1, 6, 9, 14, 17, 24, 32, 64, -1, -7, -8, -14, -16, -31, INT_MAX, INT_MIN}) {
            for (const int count : {0, 4}) {
                EXPECT_FALSE(call(host, {.block = bytesOfSamples({1, 2, 3, 4, 5, 6, 7, 8}),
                                         .sampleCount = count,
                                         .width = 2,
                                         .height = 2,
                                         .bits = bits}))
                    << bits;
            }
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

// The size is unknown then, rather than 0, and the program's count is all there is to go by.
TEST(Waveform, TrustsTheSampleCountOfAHostThatCannotTellSizes) {
    for (const double version : {2016.9999, 2017.0}) {
        Host host({.plugin = pluginPath(), .version = version, .missing = {"memoryBlockGetSize"}});
        {
            const std::vector<std::uint8_t> block = bytesOfSamples({64, 192, 64, 192});
            const Ref<Picture> counted = call(host, {.block = block, .sampleCount = 4, .width = 2, .height = 16});
            ASSERT_TRUE(counted);
            EXPECT_EQ(column(*counted, 0), spans(16, 0, 16)) << version;
            const Ref<Picture> uncounted = call(host, {.block = block, .sampleCount = 0, .width = 2, .height = 16});
            ASSERT_TRUE(uncounted);
            EXPECT_EQ(column(*uncounted, 0), version < 2017.0 ? spans(16, 0, 16) : spans(16, 0, 0)) << version;
            EXPECT_EQ(static_cast<bool>(call(host, {.block = block, .sampleCount = 0, .width = 0, .height = 16})),
                      version < 2017.0);
        }
        closeCleanly(host);
    }
}

// A row for each step of 16-bit samples: with another full scale, one of the two spans would end a row earlier or
// later.
TEST(Waveform, Of16BitSamplesHasAFullScaleOf32767) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const auto check = [&](int bits, const std::vector<std::uint8_t>& block) {
            const Ref<Picture> result = call(host, {.block = block, .width = 2, .height = 32767, .bits = bits});
            ASSERT_TRUE(result);
            EXPECT_EQ(column(*result, 0), spans(32767, 16183, 16383)) << bits;
            EXPECT_EQ(column(*result, 1), spans(32767, 16383, 16583)) << bits;
        };
        check(15, blockOf<std::int16_t>({-100, 100}));
        check(16, blockOf<std::uint16_t>({32668, 32868}));
    });
}

TEST(Waveform, MayBeOnePixelWideOrHigh) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const std::vector<std::uint8_t> block = bytesOfSamples({64, 192, 64, 192});
        const Ref<Picture> narrow = call(host, {.block = block, .sampleCount = 4, .width = 1, .height = 16});
        ASSERT_TRUE(narrow);
        EXPECT_EQ(narrow->width(), 1);
        EXPECT_EQ(column(*narrow, 0), spans(16, 0, 16));
        const Ref<Picture> low = call(host, {.block = block, .sampleCount = 4, .width = 4, .height = 1});
        ASSERT_TRUE(low);
        EXPECT_EQ(low->width(), 4);
        EXPECT_EQ(low->height(), 1);
        const Ref<Picture> single = call(host, {.block = block, .sampleCount = 1, .width = 0, .height = 1});
        ASSERT_TRUE(single);
        EXPECT_EQ(single->width(), 1);
    });
}

TEST(Waveform, DrawsNegativeSamplesAboveTheCentreLineAndOthersBelow) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        // -32 is a quarter of full scale, and a column's value is twice its mean.
        const Ref<Picture> result = call(
            host, {.block = blockOf<std::int8_t>({-32, -32, 31, 31, -32, 31}), .width = 3, .height = 254, .bits = 7});
        EXPECT_EQ(column(*result, 0), spans(254, 0, 127)) << "-64 / 127 of 254 rows is -128, a row beyond the top";
        EXPECT_EQ(column(*result, 1), spans(254, 127, 251)) << "62 / 127 of 254 rows is 124";
        EXPECT_EQ(column(*result, 2), spans(254, 127 - 64, 127 + 62));
    });
}

TEST(Waveform, ReadsEveryFormatInItsOwnFullScale) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const auto check = [&](int bits, const std::vector<std::uint8_t>& block) {
            const Ref<Picture> result =
                call(host, {.block = block, .sampleCount = 2, .width = 2, .height = 40, .bits = bits});
            ASSERT_TRUE(result) << bits;
            EXPECT_EQ(column(*result, 0), spans(40, 20 - 11, 20)) << bits << ": a little over a quarter of 40 rows up";
            EXPECT_EQ(column(*result, 1), spans(40, 20, 20 + 10)) << bits << ": a quarter of 40 rows down";
        };
        check(7, blockOf<std::int8_t>({-17, 16}));
        check(8, blockOf<std::uint8_t>({128 - 17, 128 + 16}));
        check(15, blockOf<std::int16_t>({-4100, 4100}));
        check(16, blockOf<std::uint16_t>({32768 - 4100, 32768 + 4100}));
        check(-32, blockOf<float>({-0.126F, 0.126F}));
        check(-64, blockOf<double>({-0.126, 0.126}));
    });
}

TEST(Waveform, TakesTheSampleCountFromTheBlock) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        // Without a width, each sample has a column.
        for (const int count : {0, -1, INT_MIN}) {
            for (const int bits : {7, 8, 15, 16}) {
                const WaveformCall waveform{.block = bytesOfSamples({1, 200, 3, 250, 5, 100, 7}),
                                            .sampleCount = count,
                                            .height = 30,
                                            .bits = bits};
                const Ref<Picture> result = call(host, waveform);
                ASSERT_TRUE(result);
                EXPECT_EQ(result->width(), bits < 9 ? 7 : 3) << "an odd byte at the end is no sample";
                expectWaveform(host, setting, waveform);
            }
        }
    });
}

TEST(Waveform, OfFloatsWithoutACountHasNothingToDraw) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (const int bits : {-32, -64}) {
            WaveformCall waveform{.block = blockOf<double>({0.5, -0.5, 0.5, -0.5}), .height = 8, .bits = bits};
            EXPECT_FALSE(call(host, waveform)) << "a negative count is no width";
            waveform.width = 5;
            EXPECT_EQ(coloursOf(*call(host, waveform)), std::vector<Colour>(5 * 8, back));
            waveform.outlineWidth = 1;
            EXPECT_EQ(column(*call(host, waveform), 2), columnWith(back, outline, 8, 4, 5));
        }
    });
}

TEST(Waveform, IsFiveHundredRowsHighUnlessTold) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const int height : {0, -1, INT_MIN}) {
            const WaveformCall waveform{.block = bytesOfSamples({0, 255, 10}), .width = 3, .height = height};
            EXPECT_EQ(call(host, waveform)->height(), 500);
            expectWaveform(host, setting, waveform);
        }
    });
}

TEST(Waveform, LargerThanAPictureIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const std::vector<std::uint8_t> samples = bytesOfSamples({0, 255, 10});
        EXPECT_FALSE(call(host, {.block = samples, .width = 32768, .height = 1}));
        EXPECT_FALSE(call(host, {.block = samples, .width = INT_MAX, .height = 1}));
        EXPECT_FALSE(call(host, {.block = samples, .width = 1, .height = 32768}));
        EXPECT_FALSE(call(host, {.block = samples, .width = INT_MAX, .height = INT_MAX}));
        EXPECT_FALSE(call(host, {.block = samples, .sampleCount = 40000, .height = 1})) << "the count is the width";
        EXPECT_FALSE(call(host, {.block = samples, .sampleCount = INT_MAX, .height = 1}));
        const Ref<Picture> widest = call(host, {.block = samples, .width = 32767, .height = 1});
        ASSERT_TRUE(widest);
        EXPECT_EQ(widest->width(), 32767);
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Waveform, OfAnEmptyBlockIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(call(host, {.width = 4, .height = 4}));
        const Ref<MemoryBlock> unreachable = MemoryBlock::make(16);
        unreachable->pretend(16, nullptr);
        EXPECT_FALSE(call(host, unreachable, {.sampleCount = 4, .width = 4, .height = 4}));
        const Ref<MemoryBlock> negative = MemoryBlock::make(16);
        negative->pretend(-16, negative->pointer());
        EXPECT_FALSE(call(host, negative, {.height = 4}));
        EXPECT_EQ(coloursOf(*call(host, negative, {.sampleCount = 9, .width = 2, .height = 2})),
                  std::vector<Colour>(4, back));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Waveform, WiderThanItsSamplesLeavesColumnsEmpty) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const WaveformCall waveform{.block = bytesOfSamples({255, 0}), .width = 6, .height = 10};
        const Ref<Picture> result = call(host, waveform);
        // The sample falls into the column in which its place is passed.
        for (const int x : {0, 1, 3, 4}) EXPECT_EQ(column(*result, x), spans(10, 0, 0)) << x;
        EXPECT_EQ(column(*result, 2), spans(10, 5, 10));
        EXPECT_EQ(column(*result, 5), spans(10, 0, 5));
        expectWaveform(host, setting, waveform);
    });
}

TEST(Waveform, TakesWhatTheBlockLacksForSilence) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        WaveformCall waveform{.block = bytesOfSamples({160, 160, 160}), .sampleCount = 8, .width = 4, .height = 127};
        const Ref<Picture> result = call(host, waveform);
        EXPECT_EQ(column(*result, 0), spans(127, 63, 63 + 64)) << "two samples";
        EXPECT_EQ(column(*result, 1), spans(127, 63, 63 + 32)) << "one sample, one lacking";
        EXPECT_EQ(column(*result, 2), spans(127, 0, 0));
        EXPECT_EQ(column(*result, 3), spans(127, 0, 0));
        for (const int bits : {7, 8, 15, 16, -32, -64}) {
            for (const int count : {9, 100, 1000000, INT_MAX}) {
                if (count == INT_MAX) {  // too long for the definition: all samples fall into the first column
                    waveform.bits = bits;
                    waveform.sampleCount = count;
                    EXPECT_EQ(column(*call(host, waveform), 1), spans(127, 0, 0));
                } else {
                    waveform.block = bytesOfSamples({1, 250, 3, 240, 5, 230, 7, 220, 9});
                    waveform.bits = bits;
                    waveform.sampleCount = count;
                    expectWaveform(host, setting, waveform);
                }
            }
        }
    });
}

TEST(Waveform, FillsToThePicturesEdgeWhereACurveLeavesIt) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> result = call(host, {.block = bytesOfSamples({255, 0}), .width = 2, .height = 10});
        EXPECT_EQ(column(*result, 0), spans(10, 5, 10)) << "the last row too";
        EXPECT_EQ(column(*result, 1), spans(10, 0, 5));
    });
}

TEST(Waveform, OfOneRowHasItsCentreLineThere) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> result = call(host, {.block = bytesOfSamples({255, 0, 128}), .width = 3, .height = 1});
        EXPECT_EQ(coloursOf(*result), (std::vector<Colour>{fore, back, back})) << "there is nothing above row 0";
    });
}

TEST(Waveform, ScalesToTwiceThePeakWhenAsked) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        WaveformCall waveform{
            .block = bytesOfSamples({128 + 4, 128 - 2, 128 + 1}), .width = 3, .height = 80, .autoScale = true};
        const Ref<Picture> result = call(host, waveform);
        EXPECT_EQ(column(*result, 0), spans(80, 40, 80)) << "the peak reaches the edge";
        EXPECT_EQ(column(*result, 1), spans(80, 20, 40));
        EXPECT_EQ(column(*result, 2), spans(80, 40, 50));
        for (const int bits : {7, 8, 15, 16, -32, -64}) {
            waveform.bits = bits;
            waveform.block = blockOf<std::int16_t>({0, 5, -6, 100, 0x3F12, -0x4567, 0x4000, 77});
            waveform.sampleCount = 2;
            expectWaveform(host, setting, waveform);
        }
    });
}

TEST(Waveform, ScalesSignedBytesToThePeakOfThePositiveSide) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> result = call(
            host, {.block = blockOf<std::int8_t>({2, -4, -1}), .width = 3, .height = 80, .bits = 7, .autoScale = true});
        EXPECT_EQ(column(*result, 0), spans(80, 40, 80));
        EXPECT_EQ(column(*result, 1), spans(80, 0, 40)) << "twice beyond the edge";
        EXPECT_EQ(column(*result, 2), spans(80, 20, 40));
        const Ref<Picture> noPeak =
            call(host, {.block = blockOf<std::int8_t>({0, -1}), .width = 2, .height = 8, .bits = 7, .autoScale = true});
        EXPECT_EQ(column(*noPeak, 0), spans(8, 0, 0)) << "nothing by nothing lies on the centre line";
        EXPECT_EQ(column(*noPeak, 1), spans(8, 0, 4)) << "something by nothing reaches the edge";
    });
}

TEST(Waveform, OfSilenceInAutomaticScaleLiesOnTheCentreLine) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        WaveformCall silence{
            .block = bytesOfSamples({128, 128}), .width = 3, .height = 8, .outlineWidth = 1, .autoScale = true};
        const Ref<Picture> result = call(host, silence);
        for (int x = 0; x < 3; ++x) EXPECT_EQ(column(*result, x), columnWith(back, outline, 8, 4, 5));
    });
}

TEST(Waveform, SmoothsOverTheColumns) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        WaveformCall waveform{.block = blockOf<double>({0.4, 0, 0, -0.4}),
                              .sampleCount = 4,
                              .smooth = 3,
                              .width = 4,
                              .height = 100,
                              .bits = -64};
        const Ref<Picture> result = call(host, waveform);
        EXPECT_EQ(column(*result, 0), spans(100, 50, 100)) << "0.8 of 100 rows, to the edge";
        EXPECT_EQ(column(*result, 1), spans(100, 50, 90)) << "half of it";
        EXPECT_EQ(column(*result, 2), spans(100, 50, 70)) << "a quarter of it";
        EXPECT_EQ(column(*result, 3), spans(100, 10, 60)) << "half of the new value, an eighth of the old";
        for (const int smooth : {1, 2, 5, 100, INT_MAX, 0}) {
            waveform.smooth = smooth;
            expectWaveform(host, setting, waveform);
        }
    });
}

TEST(Waveform, IsNotSmoothedWithANegativeWeight) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        WaveformCall waveform{.block = bytesOfSamples({140, 100, 150, 128}), .width = 4, .height = 100};
        const std::vector<Colour> unsmoothed = coloursOf(*call(host, waveform));
        for (const int smooth : {-2, -3, -1000, INT_MIN}) {
            waveform.smooth = smooth;
            EXPECT_EQ(coloursOf(*call(host, waveform)), unsmoothed) << smooth;
        }
    });
}

TEST(Waveform, SmoothedWithAnInfiniteWeightKeepsToThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const WaveformCall waveform{
            .block = bytesOfSamples({140, 100, 150, 128}), .smooth = -1, .width = 4, .height = 20};
        const Ref<Picture> result = call(host, waveform);
        EXPECT_EQ(column(*result, 0), spans(20, 10, 13)) << "the first column is never smoothed";
        for (int x = 1; x < 4; ++x) EXPECT_EQ(column(*result, x), spans(20, 0, 0)) << "infinity less infinity";
        expectWaveform(host, setting, waveform);
    });
}

TEST(Waveform, OfSamplesThatAreNoNumbersLiesOnTheCentreLine) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        constexpr double infinity = std::numeric_limits<double>::infinity();
        WaveformCall waveform{.block = blockOf<double>({nan, -0.25, infinity, -infinity, 1e300, -1e300}),
                              .sampleCount = 6,
                              .width = 6,
                              .height = 40,
                              .bits = -64};
        const Ref<Picture> result = call(host, waveform);
        EXPECT_EQ(column(*result, 0), spans(40, 0, 0));
        EXPECT_EQ(column(*result, 1), spans(40, 0, 20));
        EXPECT_EQ(column(*result, 2), spans(40, 20, 40));
        EXPECT_EQ(column(*result, 3), spans(40, 0, 20));
        EXPECT_EQ(column(*result, 4), spans(40, 20, 40));
        EXPECT_EQ(column(*result, 5), spans(40, 0, 20));
        for (const int smooth : {1, 4, 0, -1}) {
            for (const bool autoScale : {false, true}) {
                waveform.smooth = smooth;
                waveform.autoScale = autoScale;
                expectWaveform(host, setting, waveform);
            }
        }
    });
}

TEST(Waveform, OutlinesACurveThatLeavesThePictureForEver) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> result = call(host, {.block = blockOf<float>({std::numeric_limits<float>::infinity(), 0}),
                                                .sampleCount = 2,
                                                .width = 2,
                                                .height = 6,
                                                .outlineWidth = 1,
                                                .bits = -32});
        // Down in the first column, and back up in the second one, so steeply that each row has its neighbour in the
        // first column, where a weight of 255 keeps what the first line drew but exchanges green and blue.
        const Colour exchanged = {outline.red, outline.blue, outline.green};
        std::vector<Colour> first = columnWith(back, exchanged, 6, 4, 6);
        first[3] = outline;
        EXPECT_EQ(column(*result, 0), first);
        EXPECT_EQ(column(*result, 1), columnWith(back, outline, 6, 3, 6));
    });
}

TEST(Waveform, OutlineBetweenColumnsIsALineOfSmoothEdges) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> result =
            call(host, {.block = bytesOfSamples({128, 128 + 16}), .width = 2, .height = 127, .outlineWidth = 1});
        // The step of 32 rows is drawn as a steep line from (0, 63) to (1, 95), not as one column.
        const std::vector<Colour> left = column(*result, 0);
        const std::vector<Colour> right = column(*result, 1);
        EXPECT_EQ(left[63], outline);
        EXPECT_EQ(right[95], outline);
        const Colour quarter = {(0x88 * 64 + 0x20 * 191) / 255, (0xC4 * 64 + 0x3F * 191) / 255,
                                (0xB5 * 64 + 0x4E * 191) / 255};
        EXPECT_EQ(left[63 + 8], quarter) << "a quarter of the way, weight 64, over the back colour";
        const Colour threeQuarters = {(0x27 * 191 + 0x20 * 64) / 255, (0x5A * 191 + 0x3F * 64) / 255,
                                      (0x4C * 191 + 0x4E * 64) / 255};
        EXPECT_EQ(right[63 + 8], threeQuarters) << "and its neighbour, weight 191, over the fore colour";
    });
}

TEST(Waveform, OutlineExchangesGreenAndBlueOfTheFillBesideIt) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        WaveformCall waveform{.block = blockOf<double>({0.2, 0.2 + 500.0}),
                              .sampleCount = 2,
                              .width = 2,
                              .height = 20,
                              .outlineWidth = 1,
                              .bits = -64};
        const Ref<Picture> coloured = call(host, waveform);
        // The line to a row thousands below stays in its first column, and touches the second with weight 255.
        EXPECT_EQ(column(*coloured, 1)[19], foreExchanged);
        waveform.foreColor = 0x555555;
        const Ref<Picture> grey = call(host, waveform);
        EXPECT_EQ(column(*grey, 1)[19], (Colour{0x55, 0x55, 0x55})) << "invisible on grey";
    });
}

TEST(Waveform, UsesTheOutlineColourOfEachCall) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        WaveformCall silence{.block = bytesOfSamples({128}), .width = 1, .height = 1, .outlineWidth = 1};
        for (const std::uint32_t color : {0x000000U, 0xFF0000U, 0x00FF00U, 0x0000FFU, 0x123456U, 0xFF654321U}) {
            silence.outlineColor = color;
            EXPECT_EQ(coloursOf(*call(host, silence)), std::vector{hostColour(color)});
        }
    });
}

TEST(Waveform, IgnoresTheTopByteOfItsColours) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        expectWaveform(host, setting,
                       {.block = bytesOfSamples({0, 255, 128, 100}),
                        .width = 4,
                        .height = 9,
                        .outlineWidth = 1,
                        .backColor = 0xFF88B5C4,
                        .foreColor = 0x80274C5A,
                        .outlineColor = 0x7F203F4E});
    });
}

struct DrawnLine {
    int x1, y1, x2, y2;
    bool operator==(const DrawnLine&) const = default;
};

// What the host was asked to draw, and with which pen.
struct Drawing {
    std::vector<DrawnLine> lines;
    std::uint32_t foreColor = 0;
    int penWidth = 0;
    int penHeight = 0;
};
Drawing drawing;

void noteLine(const void* handle, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    const auto* graphics = pxkhost::fromHandle<pxkhost::Graphics>(handle, "a drawn line");
    drawing.lines.push_back({x1, y1, x2, y2});
    drawing.foreColor = graphics->foreColor;
    drawing.penWidth = graphics->penWidth;
    drawing.penHeight = graphics->penHeight;
}

TEST(Waveform, WideOutlinesAreDrawnByTheHostWithThePenCentred) {
    for (const int size : {2, 3, 5, 64, INT_MAX}) {
        forConsoleAndDesktop([&](Host& host, const Setting&) {
            host.replaceService("RuntimeGraphicsDrawLine", reinterpret_cast<void*>(noteLine));
            drawing = {};
            const Ref<Picture> result = call(host, {.block = bytesOfSamples({128 + 16, 128 - 16}),
                                                    .width = 2,
                                                    .height = 127,
                                                    .outlineWidth = size,
                                                    .outlineColor = 0xAB123456});
            ASSERT_TRUE(result);
            const int half = size / 2;
            const std::vector<DrawnLine> expected = {{0 - half, 63 - half, 0 - half, 63 - half},
                                                     {0 - half, 63 - half, 0 - half, 95 - half},
                                                     {0 - half, 63 - half, 1 - half, 31 - half},
                                                     {0 - half, 95 - half, 1 - half, 63 - half}};
            EXPECT_EQ(drawing.lines, expected) << "to each column's low point, and to its high point";
            EXPECT_EQ(drawing.foreColor, 0xAB123456);
            EXPECT_EQ(drawing.penWidth, size);
            EXPECT_EQ(drawing.penHeight, size);
            EXPECT_EQ(column(*result, 0), spans(127, 63, 95)) << "the plugin itself draws no outline";
        });
    }
}

TEST(Waveform, WideOutlinesKeepInfinitePointsInTheHostsRange) {
    forConsoleAndDesktop([&](Host& host, const Setting&) {
        host.replaceService("RuntimeGraphicsDrawLine", reinterpret_cast<void*>(noteLine));
        drawing = {};
        constexpr double infinity = std::numeric_limits<double>::infinity();
        ASSERT_TRUE(call(host, {.block = blockOf<double>({-infinity, infinity}),
                                .sampleCount = 2,
                                .width = 2,
                                .height = 10,
                                .outlineWidth = INT_MAX,
                                .bits = -64}));
        constexpr int far = 1 << 30;
        constexpr int half = INT_MAX / 2;
        const std::vector<DrawnLine> expected = {{-half, 5 - half, -half, -far - half},
                                                 {-half, 5 - half, -half, 5 - half},
                                                 {-half, -far - half, 1 - half, 5 - half},
                                                 {-half, 5 - half, 1 - half, far - half}};
        EXPECT_EQ(drawing.lines, expected);
    });
}

TEST(Waveform, WideOutlinesShowInThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> result =
            call(host, {.block = bytesOfSamples(std::vector(40, 128)), .width = 40, .height = 21, .outlineWidth = 3});
        EXPECT_EQ(column(*result, 20), columnWith(back, outline, 21, 9, 12)) << "three rows around the centre line";
    });
}

TEST(Waveform, WithoutGraphicsHasNoWideOutline) {
    Options options;
    options.plugin = pluginPath();
    options.graphics = false;
    Host host(options);
    {
        const Ref<Picture> result =
            call(host, {.block = bytesOfSamples({255, 0}), .width = 2, .height = 10, .outlineWidth = 4});
        ASSERT_TRUE(result);
        EXPECT_EQ(column(*result, 0), spans(10, 5, 10));
        EXPECT_EQ(column(*result, 1), spans(10, 0, 5));
    }
    closeCleanly(host);
}

TEST(Waveform, ReadsTheBlocksRecordOnOlderHosts) {
    for (const double version : {2010.0, 2012.5, 2013.04, 2016.04, 2017.0, 3000.0}) {
        Options options;
        options.plugin = pluginPath();
        options.version = version;
        Host host(options);
        expectWaveform(host, {pluginPath(), ApplicationKind::console, PixelLayout::gd, PixelLayout::gd},
                       {.block = bytesOfSamples({255, 0, 140, 128, 90}), .width = 3, .height = 30, .outlineWidth = 1});
        closeCleanly(host);
    }
}

TEST(Waveform, IsNilWhenAnAllocationFails) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<MemoryBlock> block = MemoryBlock::make(bytesOfSamples({255, 0, 140}));
        const WaveformCall waveform{.width = 3, .height = 10, .outlineWidth = 1};
        const auto render = host.member<Ref<Picture>(Ref<MemoryBlock>, int, int, int, int, int, std::uint32_t,
                                                     std::uint32_t, std::uint32_t, int, bool)>(renderSamples);
        std::size_t made = 0;
        const std::size_t allocations = failEveryAllocation([&] {
            if (render(block, 0, 1, 3, 10, 1, 0, 0, 0, 8, false)) ++made;
        });
        EXPECT_GE(allocations, 2U);
        EXPECT_EQ(made, 1U) << "only the attempt in which none failed";
        EXPECT_EQ(host.exceptionsRaised(), 0);
        EXPECT_EQ(block->references(), 1);
    });
}

TEST(Waveform, IsNilWhenTheHostMakesNoPicture) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<MemoryBlock> block = MemoryBlock::make(bytesOfSamples({255, 0, 140}));
        host.failCreation(0);
        EXPECT_FALSE(call(host, block, {.width = 3, .height = 10}));
        EXPECT_TRUE(call(host, block, {.width = 3, .height = 10}));
        EXPECT_EQ(host.exceptionsRaised(), 0);
        EXPECT_EQ(block->references(), 1);
    });
}

std::vector<std::uint8_t> randomBlock(int bits, std::size_t samples, Random& random) {
    std::vector<float> floats;
    std::vector<double> doubles;
    std::vector<std::uint16_t> words;
    const bool quiet = random.between(0, 1) == 0;
    for (std::size_t i = 0; i < samples; ++i) {
        doubles.push_back(random.between(-1000000, 1000000) / (quiet ? 2e6 : 1e5));
        floats.push_back(static_cast<float>(doubles.back()));
        const int quietSample = 0x8080 + random.between(-40, 40) * 0x101;
        words.push_back(quiet ? static_cast<std::uint16_t>(quietSample) : static_cast<std::uint16_t>(random.word()));
    }
    if (bits == -32) return blockOf(floats);
    if (bits == -64) return blockOf(doubles);
    return blockOf(words);
}

TEST(Waveform, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(1);
        for (const int bits : {7, 8, 15, 16, -32, -64}) {
            for (int i = 0; i < 6; ++i) {
                WaveformCall waveform;
                waveform.bits = bits;
                waveform.block = randomBlock(bits, static_cast<std::size_t>(random.between(1, 700)), random);
                waveform.sampleCount = i % 3 == 0 ? random.between(1, 900) : i % 3 == 1 ? 0 : 40;
                waveform.smooth = random.between(-2, 12);
                waveform.width = random.between(1, 90);
                waveform.height = random.between(1, 40);
                waveform.outlineWidth = random.between(0, 1);
                waveform.backColor = random.word();
                waveform.foreColor = random.word();
                waveform.outlineColor = random.word();
                waveform.autoScale = random.between(0, 1) == 1;
                // Infinite curves have tests of their own: the definition would follow them row by row.
                if (waveform.outlineWidth == 1 && (waveform.smooth < 1 || bits == 7)) waveform.smooth = 2;
                if (bits == 7) waveform.autoScale = false;
                expectWaveform(host, setting, waveform);
                if (::testing::Test::HasFailure()) return;
            }
        }
    });
}

TEST(Waveform, ReadsSamplesAtAnyAddressAndNoneBeyondTheBlock) {
    forEverySetting([](Host& host, const Setting& setting) {
        if (setting.source != setting.result) return;
        Random random(2);
        for (const int bits : {7, 8, 15, 16, -32, -64}) {
            WaveformCall waveform{
                .block = randomBlock(bits, 99, random), .sampleCount = 120, .width = 7, .height = 30, .bits = bits};
            // The bytes begin at an odd address, and end where their memory does.
            const std::size_t size = waveform.block.size();
            const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[size + 1]);
            std::copy(waveform.block.begin(), waveform.block.end(), bytes.get() + 1);
            const Ref<MemoryBlock> block = MemoryBlock::make(0);
            block->pretend(static_cast<std::int32_t>(size), bytes.get() + 1);
            const Ref<Picture> result = call(host, block, waveform);
            ASSERT_EQ(rawWords(*result), test::waveform(waveform, static_cast<int>(setting.result))->words) << bits;
        }
    });
}

}  // namespace
}  // namespace pxk::test
