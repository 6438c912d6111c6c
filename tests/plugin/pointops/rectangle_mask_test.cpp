// The coloured regions of a picture as rectangles.
#include <gtest/gtest.h>

#include <climits>

#include "picture/host_color.h"
#include "pointops/rectangle_mask_kernels.h"
#include "support/allocation_failure.h"
#include "support/definitions/rectangle_mask.h"
#include "support/isa_tests.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

constexpr auto ofAll = "ExtractColorRectangleMaskPXK as picture";
constexpr auto ofRectangle =
    "ExtractColorRectangleMaskPXK(left as integer,top as integer,width as integer,height as integer) as picture";

Ref<Picture> mask(Host& host, const Ref<Picture>& self) { return host.invoke<Ref<Picture>>(ofAll, self); }

Ref<Picture> mask(Host& host, const Ref<Picture>& self, int left, int top, int width, int height) {
    return host.invoke<Ref<Picture>>(ofRectangle, self, left, top, width, height);
}

constexpr Colour black = {0, 0, 0};
constexpr Colour white = {255, 255, 255};

/// A grey picture with red pixels at the given places.
Ref<Picture> redAt(const Setting& setting, int width, int height, const std::vector<std::pair<int, int>>& places) {
    std::vector<Colour> colours(static_cast<std::size_t>(width * height), Colour{90, 90, 90});
    for (const auto& [x, y] : places) colours[static_cast<std::size_t>(y * width + x)] = {200, 90, 90};
    return pictureOf(setting, width, colours);
}

/// Expects black at the columns x0 to x1 of the rows y0 to y1 of each box, and white elsewhere.
struct Box {
    int x0, y0, x1, y1;
};
void expectBoxes(const Setting& setting, const Ref<Picture>& result, int width, int height,
                 const std::vector<Box>& boxes) {
    ASSERT_TRUE(result);
    ASSERT_EQ(result->width(), width);
    ASSERT_EQ(result->height(), height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            bool covered = false;
            for (const Box& box : boxes) {
                covered = covered || (x >= box.x0 && x <= box.x1 && y >= box.y0 && y <= box.y1);
            }
            ASSERT_EQ(result->row(y)[x], opaqueWord(static_cast<int>(setting.result), covered ? black : white))
                << "pixel (" << x << ", " << y << ")";
        }
    }
}

TEST(RectangleMaskKernels, FlagTheColouredPixels) {
    constexpr int familyFormats[] = {1, 2, 8, 0};
    forEveryIsa<RectangleMaskKernels>([&](const RectangleMaskKernels& kernels) {
        Random random(1);
        for (int family = 0; family < familyCount; ++family) {
            const std::uint32_t channels = colorMask(layoutOf(static_cast<Family>(family)));
            for (std::size_t count = 0; count <= 200; ++count) {
                std::vector<std::uint32_t> source;
                for (std::size_t x = 0; x < count; ++x) {
                    // Grey, or with one channel or the alpha one step off.
                    const std::uint32_t grey = (random.word() >> 25) * 0x01010101U;
                    const std::uint32_t step = random.word() & 1;
                    source.push_back(grey + (step << (8 * random.between(0, 3))));
                }
                constexpr std::uint64_t untouched = 0xDEADBEEF;
                const std::size_t words = (count + 63) / 64;
                std::vector<std::uint64_t> flags(words + 1, untouched);
                kernels.flagColored(source.data(), static_cast<std::ptrdiff_t>(count), channels, flags.data());
                for (std::size_t x = 0; x < words * 64; ++x) {
                    const Colour colour = x < count ? readColour(familyFormats[family], source[x]) : Colour{};
                    const bool colored = colour.red != colour.green || colour.green != colour.blue;
                    ASSERT_EQ(flags[x / 64] >> x % 64 & 1, colored ? 1U : 0U) << "pixel " << x << " of " << count;
                }
                ASSERT_EQ(flags.back(), untouched);
            }
        }
    });
}

TEST(RectangleMaskKernels, PaintBits) {
    forEveryIsa<RectangleMaskKernels>([](const RectangleMaskKernels& kernels) {
        Random random(2);
        for (std::size_t count = 0; count <= 200; ++count) {
            std::vector<std::uint64_t> bits((count + 63) / 64);
            for (std::uint64_t& word : bits) word = std::uint64_t{random.word()} << 32 | random.word();
            constexpr std::uint32_t untouched = 0xDEADBEEF;
            std::vector<std::uint32_t> result(count + 1, untouched);
            kernels.paintBits(bits.data(), result.data(), static_cast<std::ptrdiff_t>(count), 11, 22);
            for (std::size_t x = 0; x < count; ++x) {
                ASSERT_EQ(result[x], (bits[x / 64] >> x % 64 & 1) != 0 ? 11U : 22U) << "pixel " << x << " of " << count;
            }
            ASSERT_EQ(result.back(), untouched);
        }
    });
}

TEST(RectangleMask, OfAGreyPictureIsWhite) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        expectBoxes(setting, mask(host, redAt(setting, 9, 7, {})), 9, 7, {});
    });
}

TEST(RectangleMask, KeepsPixelsThatTouchAtACornerApart) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        expectBoxes(setting, mask(host, redAt(setting, 8, 8, {{2, 2}, {3, 3}})), 8, 8, {{2, 2, 2, 2}, {3, 3, 3, 3}});
    });
}

TEST(RectangleMask, PutsOneBoxAroundNeighbours) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        expectBoxes(setting, mask(host, redAt(setting, 8, 8, {{2, 2}, {3, 2}})), 8, 8, {{2, 2, 3, 2}});
    });
}

TEST(RectangleMask, CoversTheWholeBoundsOfARegion) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const auto lShape = redAt(setting, 8, 8, {{1, 1}, {1, 2}, {1, 3}, {1, 4}, {2, 4}, {3, 4}});
        expectBoxes(setting, mask(host, lShape), 8, 8, {{1, 1, 3, 4}});
    });
}

TEST(RectangleMask, ReachesThePicturesEdges) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const auto corners = redAt(setting, 6, 5, {{0, 0}, {5, 0}, {0, 4}, {5, 4}});
        expectBoxes(setting, mask(host, corners), 6, 5, {{0, 0, 0, 0}, {5, 0, 5, 0}, {0, 4, 0, 4}, {5, 4, 5, 4}});
        const auto frame = redAt(setting, 3, 2, {{0, 0}, {1, 0}, {2, 0}, {2, 1}});
        expectBoxes(setting, mask(host, frame), 3, 2, {{0, 0, 2, 1}});
    });
}

TEST(RectangleMask, OfTheWholePictureEqualsTheFormWithoutParameters) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(3);
        const Ref<Picture> self = setting.makeSource(40, 30, random);
        EXPECT_EQ(rawWords(*mask(host, self, 0, 0, -1, -1)), rawWords(*mask(host, self)));
        EXPECT_EQ(rawWords(*mask(host, self, 0, 0, INT_MIN, INT_MIN)), rawWords(*mask(host, self)));
    });
}

TEST(RectangleMask, BoxesStayInTheRectangle) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        std::vector<Colour> colours(std::size_t{20 * 9}, Colour{1, 2, 3});
        const Ref<Picture> self = pictureOf(setting, 20, colours);
        expectBoxes(setting, mask(host, self, 10, 0, 5, 5), 20, 9, {{10, 0, 14, 4}});
    });
}

TEST(RectangleMask, TakesItsRowsFromTheTopOfThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = redAt(setting, 10, 9, {{4, 0}, {6, 2}, {3, 5}});
        // Row 0 decides about row 3, row 1 about row 4, and row 2 about row 5: red pixels in row 5 do not count.
        expectBoxes(setting, mask(host, self, 0, 3, 10, 3), 10, 9, {{4, 3, 4, 3}, {6, 5, 6, 5}});
        // Columns are taken where they are.
        expectBoxes(setting, mask(host, self, 5, 3, 10, 3), 10, 9, {{6, 5, 6, 5}});
    });
}

TEST(RectangleMask, ComputesTheFarEdgeBeforeTheStartIsMovedIntoThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 10, std::vector<Colour>(std::size_t{100}, Colour{1, 2, 3}));
        expectBoxes(setting, mask(host, self, -4, -3, 10, 10), 10, 10, {{0, 0, 5, 6}});
        expectBoxes(setting, mask(host, self, -4, 0, -1, -1), 10, 10, {{0, 0, 5, 9}});
    });
}

TEST(RectangleMask, OfAnEmptyRectangleIsWhite) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 10, std::vector<Colour>(std::size_t{100}, Colour{1, 2, 3}));
        for (const auto& [left, top, width, height] :
             {Box{0, 0, 0, 5}, {0, 0, 5, 0}, {10, 0, 5, 5}, {0, 10, 5, 5}, {-9, 0, 9, 5}, {INT_MAX, INT_MAX, 9, 9}}) {
            expectBoxes(setting, mask(host, self, left, top, width, height), 10, 10, {});
        }
    });
}

TEST(RectangleMask, OfARectangleNearTheLimitsReachesTheEdge) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = pictureOf(setting, 10, std::vector<Colour>(std::size_t{100}, Colour{1, 2, 3}));
        expectBoxes(setting, mask(host, self, 3, 2, INT_MAX, INT_MAX), 10, 10, {{3, 2, 9, 9}});
    });
}

TEST(RectangleMask, IsOpaqueWithoutAlphaChannelWhateverTheSource) {
    Options options;
    options.plugin = pluginPath();
    options.application = ApplicationKind::desktop;
    Host host(options);
    {
        const Ref<Picture> result = mask(host, Picture::desktop(3, 2, {}, true));
        ASSERT_TRUE(result);
        EXPECT_FALSE(result->hasAlphaChannel());
        EXPECT_EQ(result->pixel(2, 1), 0xFFFFFFFF) << "transparent black is grey";
    }
    closeCleanly(host);
}

TEST(RectangleMask, OfNilIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(mask(host, nullptr));
        EXPECT_FALSE(mask(host, nullptr, 0, 0, 1, 1));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(RectangleMask, WithoutMemoryIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = redAt(setting, 8, 8, {{2, 2}});
        const auto member = host.member<Ref<Picture>(Ref<Picture>)>(ofAll);
        std::vector<bool> made;
        const std::size_t allocations = failEveryAllocation([&] { made.push_back(static_cast<bool>(member(self))); });
        ASSERT_GE(allocations, 1U);
        for (std::size_t i = 0; i < allocations; ++i) EXPECT_FALSE(made[i]);
        EXPECT_TRUE(made.back());
    });
}

TEST(RectangleMask, WithoutAResultIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = redAt(setting, 8, 8, {{2, 2}});
        host.failCreation(0);
        EXPECT_FALSE(mask(host, self));
    });
}

TEST(RectangleMask, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(4);
        for (int i = 0; i < 15; ++i) {
            const int width = random.between(1, 90);
            const int height = random.between(1, 30);
            const int oneIn = random.between(2, 40);
            const Ref<Picture> self = setting.makeSource(width, height, random);
            std::vector<bool> colored;
            std::vector<std::uint32_t> words = rawWords(*self);
            for (std::uint32_t& word : words) {
                if (random.between(1, oneIn) != 1) word = (word >> 25) * 0x01010101U;
                const Colour colour = readColour(setting.sourceFormat(), word);
                colored.push_back(colour.red != colour.green || colour.green != colour.blue);
            }
            setWords(*self, words);
            const int left = random.between(-10, 95);
            const int top = random.between(-5, 35);
            const int rectangleWidth = random.between(-2, 100);
            const int rectangleHeight = random.between(-2, 40);
            const Ref<Picture> result = mask(host, self, left, top, rectangleWidth, rectangleHeight);
            const std::vector<bool> covered =
                rectangleMask(width, height, colored, left, top, rectangleWidth, rectangleHeight);
            ASSERT_TRUE(result);
            const std::vector<std::uint32_t> made = rawWords(*result);
            ASSERT_EQ(made.size(), covered.size());
            for (std::size_t k = 0; k < made.size(); ++k) {
                ASSERT_EQ(made[k], opaqueWord(static_cast<int>(setting.result), covered[k] ? black : white));
            }
            ASSERT_EQ(rawWords(*self), words) << "the source is never changed";
        }
    });
}

}  // namespace
}  // namespace pxk::test
