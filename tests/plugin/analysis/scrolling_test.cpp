// Content shifted and rotated in place.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "support/allocation_failure.h"
#include "support/definitions/scrolling.h"
#include "support/opaque_pictures.h"
#include "support/substitute_image.h"

namespace pxk::test {
namespace {

constexpr auto verticalDeclaration =
    "ScrollVerticalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean";
constexpr auto horizontalDeclaration =
    "ScrollHorizontalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean";
constexpr auto bothDeclaration =
    "ScrollPXK(deltaX as integer, deltaY as integer, wrap as boolean, scrollmask as boolean) as boolean";

bool scrollVertically(Host& host, const Ref<Picture>& self, int delta, bool wrap, bool mask = false) {
    return host.invoke<bool>(verticalDeclaration, self, delta, wrap, mask);
}

bool scrollHorizontally(Host& host, const Ref<Picture>& self, int delta, bool wrap, bool mask = false) {
    return host.invoke<bool>(horizontalDeclaration, self, delta, wrap, mask);
}

bool scroll(Host& host, const Ref<Picture>& self, int deltaX, int deltaY, bool wrap, bool mask = false) {
    return host.invoke<bool>(bothDeclaration, self, deltaX, deltaY, wrap, mask);
}

// A picture's rows with their padding, which libgd images do not have.
std::size_t wordsPerRow(const Picture& picture) {
    const pxkhost::Surface& surface = picture.surface();
    return surface.rows != nullptr ? static_cast<std::size_t>(surface.width) : surface.rowBytes / 4;
}

WordRows rowsOf(const Picture& picture) {
    WordRows rows;
    for (int y = 0; y < picture.height(); ++y) rows.emplace_back(picture.row(y), picture.row(y) + wordsPerRow(picture));
    return rows;
}

// Every word differs from every other, those of the padding too.
void number(const Picture& picture) {
    std::uint32_t next = 0x01000000;
    for (int y = 0; y < picture.height(); ++y) {
        std::generate_n(picture.row(y), wordsPerRow(picture), [&] { return next += 0x10001; });
    }
}

Ref<Picture> numbered(const Setting& setting, int width, int height) {
    Random unused(0);
    Ref<Picture> picture = setting.makeSource(width, height, unused);
    number(*picture);
    return picture;
}

// A type of picture that cannot be written.
constexpr std::int32_t readOnlyType = 3;

TEST(Scrolling, DownLeavesRowsOf255AtTheTop) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 4, 5);
        const WordRows old = rowsOf(*self);
        EXPECT_TRUE(scrollVertically(host, self, 3, false));
        const WordRows expected = {std::vector<std::uint32_t>(old[0].size(), freed),
                                   std::vector<std::uint32_t>(old[0].size(), freed),
                                   std::vector<std::uint32_t>(old[0].size(), freed), old[0], old[1]};
        EXPECT_EQ(rowsOf(*self), expected);
    });
}

TEST(Scrolling, UpLeavesRowsOf255AtTheBottom) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 4, 3);
        const WordRows old = rowsOf(*self);
        EXPECT_TRUE(scrollVertically(host, self, -1, false));
        EXPECT_EQ(rowsOf(*self), (WordRows{old[1], old[2], std::vector<std::uint32_t>(old[0].size(), freed)}));
    });
}

TEST(Scrolling, ByThePicturesSizeOrMoreFillsIt) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const int delta : {5, -5, 6, -6, 1000, INT_MAX, INT_MIN, -INT_MAX}) {
            for (const auto move : {scrollVertically, scrollHorizontally}) {
                const Ref<Picture> self = numbered(setting, 5, 5);
                EXPECT_TRUE(move(host, self, delta, false, false));
                EXPECT_EQ(rowsOf(*self), WordRows(5, std::vector<std::uint32_t>(wordsPerRow(*self), freed)))
                    << delta << ": padding included";
            }
        }
    });
}

TEST(Scrolling, RotationsAreTakenModuloTheSize) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 4, 5);
        const WordRows old = rowsOf(*self);
        EXPECT_TRUE(scrollVertically(host, self, 7, true));
        EXPECT_EQ(rowsOf(*self), (WordRows{old[3], old[4], old[0], old[1], old[2]})) << "a rotation by 2";
    });
}

TEST(Scrolling, ToTheLeftAroundTheEdge) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 4, 2);
        const WordRows old = rowsOf(*self);
        EXPECT_TRUE(scrollHorizontally(host, self, -1, true));
        for (std::size_t y = 0; y < 2; ++y) {
            const std::uint32_t* row = self->row(static_cast<int>(y));
            EXPECT_EQ(std::vector<std::uint32_t>(row, row + 4),
                      (std::vector<std::uint32_t>{old[y][1], old[y][2], old[y][3], old[y][0]}));
        }
    });
}

TEST(Scrolling, OfPicturesOfOneTwoAndThreeRowsOrColumns) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (int size = 1; size <= 3; ++size) {
            for (int delta = -7; delta <= 7; ++delta) {
                for (const bool wrap : {false, true}) {
                    const Ref<Picture> tall = numbered(setting, 2, size);
                    const WordRows oldTall = rowsOf(*tall);
                    EXPECT_TRUE(scrollVertically(host, tall, delta, wrap));
                    EXPECT_EQ(rowsOf(*tall), scrolledVertically(oldTall, delta, wrap)) << size << " by " << delta;
                    const Ref<Picture> wide = numbered(setting, size, 2);
                    const WordRows oldWide = rowsOf(*wide);
                    EXPECT_TRUE(scrollHorizontally(host, wide, delta, wrap));
                    EXPECT_EQ(rowsOf(*wide), scrolledHorizontally(oldWide, size, delta, wrap))
                        << size << " by " << delta;
                }
            }
        }
    });
}

TEST(Scrolling, RotationsByTheGreatestNumbers) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const int delta : {INT_MIN, INT_MIN + 1, INT_MAX, INT_MAX - 1}) {
            const Ref<Picture> self = numbered(setting, 6, 7);
            const WordRows old = rowsOf(*self);
            EXPECT_TRUE(scrollVertically(host, self, delta, true));
            const WordRows between = scrolledVertically(old, delta, true);
            EXPECT_EQ(rowsOf(*self), between) << delta;
            EXPECT_TRUE(scrollHorizontally(host, self, delta, true));
            EXPECT_EQ(rowsOf(*self), scrolledHorizontally(between, 6, delta, true)) << delta;
        }
    });
}

TEST(Scrolling, ByZeroSucceedsWithoutOpeningThePicture) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 4, 4);
        const WordRows old = rowsOf(*self);
        for (const bool wrap : {false, true}) {
            EXPECT_TRUE(scrollVertically(host, self, 0, wrap));
            EXPECT_TRUE(scrollHorizontally(host, self, 0, wrap));
            EXPECT_TRUE(scroll(host, self, 0, 0, wrap));
            EXPECT_TRUE(scrollVertically(host, nullptr, 0, wrap));
            EXPECT_TRUE(scrollVertically(host, nullptr, 0, wrap, true));
        }
        EXPECT_EQ(self->timesLocked(), 0);
        EXPECT_EQ(self->cacheClears(), 0);
        EXPECT_EQ(rowsOf(*self), old);
    });
}

TEST(Scrolling, ByTheSizeItselfOpensThePictureAndRotatesNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 6, 4);
        const WordRows old = rowsOf(*self);
        EXPECT_TRUE(scrollVertically(host, self, -8, true));
        EXPECT_TRUE(scrollHorizontally(host, self, 6, true));
        EXPECT_EQ(self->timesLocked(), 2);
        EXPECT_EQ(rowsOf(*self), old);
    });
}

TEST(Scrolling, HasTheHostDrawThePictureAnew) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 4, 4);
        EXPECT_TRUE(scrollVertically(host, self, 1, false));
        EXPECT_EQ(self->cacheClears(), 1);
        EXPECT_TRUE(scrollHorizontally(host, self, 1, true));
        EXPECT_EQ(self->cacheClears(), 2);
    });
}

TEST(Scrolling, OfNilFailsVerticallyButNeverHorizontally) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (const bool wrap : {false, true}) {
            for (const bool mask : {false, true}) {
                EXPECT_FALSE(scrollVertically(host, nullptr, 1, wrap, mask));
                EXPECT_TRUE(scrollHorizontally(host, nullptr, 1, wrap, mask));
                EXPECT_FALSE(scroll(host, nullptr, 1, 1, wrap, mask));
                EXPECT_TRUE(scroll(host, nullptr, 1, 0, wrap, mask)) << "the result is the vertical one";
            }
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(Scrolling, OfAPictureThatCannotBeWrittenFailsVerticallyButNeverHorizontally) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const std::int32_t type : {0, 1, 3}) {
            const Ref<Picture> self = numbered(setting, 4, 4);
            self->setTypeCode(type);
            const WordRows old = rowsOf(*self);
            EXPECT_FALSE(scrollVertically(host, self, 1, false));
            EXPECT_FALSE(scrollVertically(host, self, 1, true));
            EXPECT_TRUE(scrollHorizontally(host, self, 1, false));
            EXPECT_TRUE(scrollHorizontally(host, self, 1, true));
            EXPECT_EQ(rowsOf(*self), old);
        }
        EXPECT_FALSE(scrollVertically(host, Picture::palette(3, 3), 1, false));
        EXPECT_TRUE(scrollHorizontally(host, Picture::palette(3, 3), 1, false));
    });
}

TEST(Scrolling, InBothDirectionsAtOnce) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const bool wrap : {false, true}) {
            const Ref<Picture> self = numbered(setting, 5, 6);
            const WordRows old = rowsOf(*self);
            EXPECT_TRUE(scroll(host, self, 2, -3, wrap));
            EXPECT_EQ(rowsOf(*self), scrolledVertically(scrolledHorizontally(old, 5, 2, wrap), -3, wrap));
        }
    });
}

TEST(Scrolling, TakesTheMaskAlongWhenAsked) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const bool wrap : {false, true}) {
            const Ref<Picture> self = numbered(setting, 5, 6);
            const Ref<Picture> mask = numbered(setting, 3, 2);
            self->setMask(mask);
            const WordRows old = rowsOf(*self);
            const WordRows oldMask = rowsOf(*mask);
            const auto references = mask->references();

            EXPECT_TRUE(scrollVertically(host, self, 1, wrap, false));
            EXPECT_TRUE(scrollHorizontally(host, self, 1, wrap, false));
            EXPECT_EQ(rowsOf(*mask), oldMask) << "not asked";

            EXPECT_TRUE(scrollVertically(host, self, 1, wrap, true));
            EXPECT_EQ(rowsOf(*mask), scrolledVertically(oldMask, 1, wrap));
            EXPECT_TRUE(scrollHorizontally(host, self, 1, wrap, true));
            const WordRows once = scrolledHorizontally(scrolledVertically(oldMask, 1, wrap), 3, 1, wrap);
            EXPECT_EQ(rowsOf(*mask), once);
            EXPECT_TRUE(scroll(host, self, -1, -1, wrap, true));
            EXPECT_EQ(rowsOf(*mask), scrolledVertically(scrolledHorizontally(once, 3, -1, wrap), -1, wrap));

            EXPECT_EQ(mask->references(), references);
            if (wrap) {
                EXPECT_EQ(rowsOf(*self), scrolledHorizontally(scrolledVertically(old, 1, true), 5, 1, true))
                    << "twice there and once back";
            }
        }
    });
}

TEST(Scrolling, WithoutAMaskMovesThePictureAlone) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 5, 6);
        const WordRows old = rowsOf(*self);
        EXPECT_TRUE(scrollVertically(host, self, 2, false, true));
        EXPECT_EQ(rowsOf(*self), scrolledVertically(old, 2, false));
        EXPECT_FALSE(self->mask()) << "none is made";
    });
}

TEST(Scrolling, AMaskThatFailsKeepsThePictureFromScrollingVertically) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const bool wrap : {false, true}) {
            const Ref<Picture> self = numbered(setting, 5, 6);
            const Ref<Picture> mask = numbered(setting, 5, 6);
            mask->setTypeCode(readOnlyType);
            self->setMask(mask);
            const WordRows old = rowsOf(*self);
            EXPECT_FALSE(scrollVertically(host, self, 1, wrap, true));
            EXPECT_EQ(rowsOf(*self), old);
            EXPECT_EQ(rowsOf(*mask), old);
            EXPECT_TRUE(scrollHorizontally(host, self, 1, wrap, true)) << "here failures go unnoticed";
            EXPECT_EQ(rowsOf(*self), scrolledHorizontally(old, 5, 1, wrap));
            EXPECT_EQ(rowsOf(*mask), old);
        }
    });
}

TEST(Scrolling, AMaskStaysScrolledWhenThePictureFails) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const bool wrap : {false, true}) {
            const Ref<Picture> self = numbered(setting, 5, 6);
            self->setMask(numbered(setting, 5, 6));
            self->setTypeCode(readOnlyType);
            const WordRows old = rowsOf(*self);
            EXPECT_FALSE(scrollVertically(host, self, 2, wrap, true));
            EXPECT_EQ(rowsOf(*self), old);
            EXPECT_EQ(rowsOf(*self->mask()), scrolledVertically(old, 2, wrap));
        }
    });
}

TEST(Scrolling, ARotationWithoutMemoryChangesNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        for (const int delta : {2, -2}) {
            const Ref<Picture> self = numbered(setting, 6, 7);
            const WordRows old = rowsOf(*self);
            const AllocationFailure vertical(0);
            EXPECT_FALSE(scrollVertically(host, self, delta, true));
            EXPECT_TRUE(vertical.happened());
            EXPECT_EQ(rowsOf(*self), old);
        }
        for (const int delta : {2, -2}) {
            const Ref<Picture> self = numbered(setting, 6, 7);
            const WordRows old = rowsOf(*self);
            const AllocationFailure horizontal(0);
            EXPECT_TRUE(scrollHorizontally(host, self, delta, true)) << "here failures go unnoticed";
            EXPECT_TRUE(horizontal.happened());
            EXPECT_EQ(rowsOf(*self), old);
        }
    });
}

TEST(Scrolling, AShiftTakesNoMemory) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = numbered(setting, 6, 7);
        const AllocationFailure failure(0);
        EXPECT_TRUE(scroll(host, self, 3, -2, false, true));
        EXPECT_FALSE(failure.happened());
    });
}

// The rows that stay, or upwards the whole picture, must be less than 2^31 bytes. All rows are the same memory; what is
// not refused for its size fails for lack of memory for one row.
TEST(Scrolling, ARotationOf2To31BytesIsRefused) {
    std::vector<int> row(1 << 14, 7);
    constexpr int height = 1 << 15;
    const auto asksForMemory = [&](int rows, int delta) {
        SubstituteImage image(row, rows);
        return image.run([&](Host& host, const Ref<Picture>& self) {
            const AllocationFailure failure(0);
            EXPECT_FALSE(scrollVertically(host, self, delta, true));
            return failure.happened();
        });
    };
    EXPECT_FALSE(asksForMemory(height, -1)) << "2^31 bytes";
    EXPECT_TRUE(asksForMemory(height, 1)) << "one row less";
    EXPECT_TRUE(asksForMemory(height - 1, -1));
    EXPECT_FALSE(asksForMemory(height + 1, 1));
    EXPECT_TRUE(asksForMemory(height + 1, 2));
    EXPECT_TRUE(asksForMemory(height, height / 2)) << "half a turn counts as one down";
    EXPECT_TRUE(asksForMemory(height, -height / 2));
}

// Rows a little more than a page apart, which are copied in another way; also of another width than a register's.
TEST(Scrolling, OfLongRows) {
    for (const auto& plugin : runnablePlugins()) {
        SCOPED_TRACE(plugin.filename().string());
        Options options;
        options.plugin = plugin;
        options.application = ApplicationKind::desktop;
        Host host(options);
        for (const int width : {1018, 1021, 1024, 1025, 2049}) {
            for (const int delta : {1, 2, -1, -2, 253}) {
                for (const bool wrap : {false, true}) {
                    const Ref<Picture> self = Picture::desktop(width, 7, {.rowPadding = 16});
                    number(*self);
                    const WordRows old = rowsOf(*self);
                    ASSERT_TRUE(scrollVertically(host, self, delta, wrap));
                    ASSERT_EQ(rowsOf(*self), scrolledVertically(old, delta, wrap)) << width << " by " << delta;
                    ASSERT_TRUE(scrollHorizontally(host, self, delta, wrap));
                    ASSERT_EQ(rowsOf(*self),
                              scrolledHorizontally(scrolledVertically(old, delta, wrap), width, delta, wrap))
                        << width << " by " << delta;
                }
            }
        }
        closeCleanly(host);
    }
}

TEST(Scrolling, EqualsItsDefinitionForAllDeltasInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        if (setting.source != setting.result) return;
        for (const auto& [width, height] : {std::pair{1, 1}, {3, 5}, {4, 4}, {6, 9}, {9, 6}}) {
            for (int delta = -2 * std::max(width, height) - 1; delta <= 2 * std::max(width, height) + 1; ++delta) {
                for (const bool wrap : {false, true}) {
                    SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height) + " by " +
                                 std::to_string(delta) + (wrap ? ", wrapped" : ""));
                    const Ref<Picture> self = numbered(setting, width, height);
                    const WordRows old = rowsOf(*self);
                    ASSERT_TRUE(scrollVertically(host, self, delta, wrap));
                    const WordRows moved = scrolledVertically(old, delta, wrap);
                    ASSERT_EQ(rowsOf(*self), moved);
                    number(*self);
                    ASSERT_TRUE(scrollHorizontally(host, self, delta, wrap));
                    ASSERT_EQ(rowsOf(*self), scrolledHorizontally(old, width, delta, wrap));
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
