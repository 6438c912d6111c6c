// Finding a smaller picture in a larger one.
#include <gtest/gtest.h>

#include <climits>

#include "support/definitions/masks.h"
#include "support/definitions/picture_search.h"
#include "support/opaque_pictures.h"

namespace pxk::test {
namespace {

using pxkhost::byRef;

constexpr auto findDeclaration =
    "FindPicturePXK(pic as picture, byref x as integer, byref y as integer, StartX as Integer = 0, StartY as Integer = "
    "0, Tolerance as Integer = 3) as boolean";

constexpr int defaultTolerance = 3;

struct Found {
    bool found;
    int x;
    int y;

    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* stream) {
    *stream << (found.found ? "found at (" : "not found (") << found.x << ", " << found.y << ")";
}

constexpr Found nowhere = {false, 0, 0};

Found find(Host& host, const Ref<Picture>& haystack, const Ref<Picture>& needle, int startX = 0, int startY = 0,
           int tolerance = defaultTolerance) {
    Found result{false, -77, -88};
    result.found = host.invoke<bool>(findDeclaration, haystack, needle, byRef(result.x), byRef(result.y), startX,
                                     startY, tolerance);
    return result;
}

Ref<Picture> noise(const Setting& setting, int width, int height, unsigned seed = 1) {
    Random random(seed);
    return setting.makeSource(width, height, random);
}

// The part of a picture that begins at (left, top).
Ref<Picture> cut(const Setting& setting, const Picture& picture, int left, int top, int width, int height) {
    Random unused(0);
    Ref<Picture> part = setting.makeSource(width, height, unused);
    for (int y = 0; y < height; ++y) std::copy_n(picture.row(top + y) + left, width, part->row(y));
    return part;
}

TEST(PictureSearch, FindsAPictureInItself) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 20, 10);
        EXPECT_EQ(find(host, self, self), (Found{true, 0, 0}));
    });
}

TEST(PictureSearch, FindsEveryPartWhereItIs) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 41, 7);
        for (int top = 0; top <= 7 - 2; ++top) {
            for (int left = 0; left <= 41 - 3; ++left) {
                EXPECT_EQ(find(host, self, cut(setting, *self, left, top, 3, 2)), (Found{true, left, top}));
            }
        }
    });
}

TEST(PictureSearch, BeyondTheLastRowLeavesTheNeedleUnopened) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 4, 3, {1, 2, 3});
        const Ref<Picture> needle = plainPicture(setting, 1, 1, {1, 2, 3});
        for (const auto& [startX, startY] : {std::pair{0, 3}, {4, 2}, {5, 2}, {0, 100}}) {
            EXPECT_EQ(find(host, self, needle, startX, startY), (Found{false, 0, 0}));
            EXPECT_EQ(needle->timesLocked(), 0);
        }
        EXPECT_EQ(find(host, self, needle, 3, 2), (Found{true, 3, 2}));
        EXPECT_EQ(find(host, self, needle, 4, 1), (Found{true, 0, 2}));
        EXPECT_EQ(needle->timesLocked(), 2);
    });
}

// The padding of a row, and the row below it, would complete the needle.
TEST(PictureSearch, EndsWhereTheNeedleMeetsTheEdges) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> self = Picture::desktop(3, 2, {.rowPadding = 8});
        const Ref<Picture> needle = Picture::desktop(2, 2);
        self->fill(0xFF102030);
        needle->fill(0xFF102030);
        for (int y = 0; y < 2; ++y) {
            self->row(y)[2] = self->row(y)[3] = self->row(y)[4] = 0xFFAABBCC;
            needle->row(y)[0] = needle->row(y)[1] = 0xFFAABBCC;
        }
        EXPECT_EQ(find(host, self, needle), (Found{false, 0, 0}));
        needle->row(0)[0] = needle->row(1)[0] = self->row(0)[1];
        EXPECT_EQ(find(host, self, needle), (Found{true, 1, 0}));
    });
}

TEST(PictureSearch, TheToleranceIsExclusive) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> needle = pictureOf(setting, 1, {{10, 10, 10}});
        EXPECT_TRUE(find(host, pictureOf(setting, 1, {{12, 8, 10}}), needle).found);
        for (const Colour other :
             {Colour{13, 10, 10}, {10, 13, 10}, {10, 10, 13}, {7, 10, 10}, {10, 7, 10}, {10, 10, 7}}) {
            EXPECT_EQ(find(host, pictureOf(setting, 1, {other}), needle), nowhere);
            EXPECT_TRUE(find(host, pictureOf(setting, 1, {other}), needle, 0, 0, 4).found);
        }
    });
}

TEST(PictureSearch, AToleranceOfZeroOrLessFindsNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 20, 10);
        for (const int tolerance : {0, -1, -3, INT_MIN}) {
            EXPECT_EQ(find(host, self, self, 0, 0, tolerance), nowhere) << tolerance;
        }
        EXPECT_TRUE(find(host, self, self, 0, 0, 1).found) << "1 finds exact copies";
    });
}

TEST(PictureSearch, AToleranceAbove255MatchesEverything) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> black = plainPicture(setting, 9, 3, {0, 0, 0});
        const Ref<Picture> white = plainPicture(setting, 2, 2, {255, 255, 255});
        EXPECT_EQ(find(host, black, white, 0, 0, 255), nowhere) << "a difference of 255 is not below 255";
        for (const int tolerance : {256, 257, 1000, INT_MAX}) {
            EXPECT_EQ(find(host, black, white, 3, 1, tolerance), (Found{true, 3, 1})) << tolerance;
        }
    });
}

TEST(PictureSearch, AStartBeyondTheRightEdgeMeansTheNextRow) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 6, 4, {50, 60, 70});
        const Ref<Picture> needle = pictureOf(setting, 1, {{50, 60, 70}});
        EXPECT_EQ(find(host, self, needle, 5, 1), (Found{true, 5, 1}));
        for (const int startX : {6, 7, INT_MAX}) EXPECT_EQ(find(host, self, needle, startX, 1), (Found{true, 0, 2}));
        EXPECT_EQ(find(host, self, needle, 6, 3), nowhere) << "there is no next row";
    });
}

TEST(PictureSearch, AStartBelowThePictureFindsNothingAndDoesNotOpenTheNeedle) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 6, 4);
        const Ref<Picture> needle = cut(setting, *self, 0, 3, 1, 1);
        for (const int startY : {4, 5, INT_MAX}) {
            EXPECT_EQ(find(host, self, needle, 0, startY), nowhere);
            EXPECT_EQ(find(host, self, needle, INT_MAX, startY), nowhere);
        }
        EXPECT_EQ(needle->timesLocked(), 0);
        EXPECT_TRUE(find(host, self, needle, 0, 3).found);
        EXPECT_EQ(needle->timesLocked(), 1);
    });
}

TEST(PictureSearch, ANegativeStartMeansZero) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 6, 4, {50, 60, 70});
        const Ref<Picture> needle = pictureOf(setting, 1, {{50, 60, 70}});
        EXPECT_EQ(find(host, self, needle, -5, -1), (Found{true, 0, 0}));
        EXPECT_EQ(find(host, self, needle, INT_MIN, INT_MIN), (Found{true, 0, 0}));
        EXPECT_EQ(find(host, self, needle, 2, -1), (Found{true, 2, 0}));
        EXPECT_EQ(find(host, self, needle, -2, 1), (Found{true, 0, 1}));
    });
}

TEST(PictureSearch, OnlyTheFirstRowBeginsAtTheStart) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        std::vector<Colour> colours(40, {0, 0, 0});
        colours[0 * 10 + 3] = colours[1 * 10 + 1] = colours[3 * 10 + 9] = {200, 0, 0};
        const Ref<Picture> self = pictureOf(setting, 10, colours);
        const Ref<Picture> needle = pictureOf(setting, 1, {{200, 0, 0}});
        EXPECT_EQ(find(host, self, needle, 3, 0), (Found{true, 3, 0}));
        EXPECT_EQ(find(host, self, needle, 4, 0), (Found{true, 1, 1}));
        EXPECT_EQ(find(host, self, needle, 2, 1), (Found{true, 9, 3}));
        EXPECT_EQ(find(host, self, needle, 10, 3), nowhere);
    });
}

TEST(PictureSearch, SearchingOnFromOneToTheRightFindsEveryPlace) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 5, 4, {9, 9, 9});
        const Ref<Picture> needle = plainPicture(setting, 2, 3, {9, 9, 9});
        std::vector<Found> places;
        Found place = find(host, self, needle);
        while (place.found && places.size() < 100) {
            places.push_back(place);
            place = find(host, self, needle, place.x + 1, place.y);
        }
        const std::vector<Found> expected = {{true, 0, 0}, {true, 1, 0}, {true, 2, 0}, {true, 3, 0},
                                             {true, 0, 1}, {true, 1, 1}, {true, 2, 1}, {true, 3, 1}};
        EXPECT_EQ(places, expected);
    });
}

TEST(PictureSearch, ANeedleThatDoesNotFitIsNotFound) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = plainPicture(setting, 5, 4, {9, 9, 9});
        EXPECT_EQ(find(host, self, plainPicture(setting, 6, 1, {9, 9, 9})), nowhere);
        EXPECT_EQ(find(host, self, plainPicture(setting, 1, 5, {9, 9, 9})), nowhere);
        EXPECT_EQ(find(host, self, plainPicture(setting, 400, 300, {9, 9, 9}), 0, 0, INT_MAX), nowhere);
        EXPECT_EQ(find(host, self, plainPicture(setting, 5, 4, {9, 9, 9}), 1, 0), nowhere);
        EXPECT_EQ(find(host, self, plainPicture(setting, 5, 4, {9, 9, 9}), 0, 1), nowhere);
    });
}

TEST(PictureSearch, EveryPixelOfTheNeedleCounts) {
    forEverySetting([](Host& host, const Setting& setting) {
        if (setting.source != setting.result) return;
        for (const auto& [width, height] : {std::pair{1, 3}, {7, 2}, {16, 1}, {33, 2}, {70, 1}}) {
            const Ref<Picture> self = noise(setting, width + 3, height + 1);
            const Ref<Picture> needle = cut(setting, *self, 2, 1, width, height);
            ASSERT_EQ(find(host, self, needle), (Found{true, 2, 1}));
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    for (const std::uint32_t channel : {0x00000080U, 0x00008000U, 0x00800000U, 0x80000000U}) {
                        needle->row(y)[x] ^= channel;
                        ASSERT_EQ(find(host, self, needle).found, (alphaBits(setting.sourceFormat()) & channel) != 0)
                            << "pixel (" << x << ", " << y << ") of " << width << " x " << height;
                        needle->row(y)[x] ^= channel;
                    }
                }
            }
        }
    });
}

TEST(PictureSearch, OfOrInWhatCannotBeReadFindsNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> self = noise(setting, 5, 4);
        for (const Ref<Picture>& unreadable : {Ref<Picture>(), Picture::palette(2, 2)}) {
            EXPECT_EQ(find(host, self, unreadable), nowhere);
            EXPECT_EQ(find(host, unreadable, self), nowhere);
            EXPECT_EQ(find(host, unreadable, unreadable), nowhere);
        }
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(PictureSearch, ReadsPicturesThatCannotBeLockedFromCopies) {
    forEveryDesktop([](Host& host) {
        const Ref<Picture> self = Picture::drawnOnly(9, 9);
        self->setPixel(6, 7, 0xFF102030);
        const Ref<Picture> needle = Picture::drawnOnly(1, 1);
        needle->fill(0xFF102030);
        EXPECT_EQ(find(host, self, needle), (Found{true, 6, 7}));
    });
}

// Pictures of few colours that lie close together, in which needles almost match in many places.
TEST(PictureSearch, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(2);
        const auto grid = [&](int width, int height, int spread) {
            ColourGrid made{width, height, {}};
            for (int i = 0; i < width * height; ++i) {
                const auto channel = [&] { return 100 + random.between(0, spread); };
                made.colours.push_back({channel(), channel(), channel()});
            }
            return made;
        };
        const auto picture = [&](const ColourGrid& colours, PixelLayout layout) {
            Ref<Picture> made =
                Setting{{}, setting.application, layout, layout}.makeSource(colours.width, colours.height, random);
            const int format = formatOf(*made);
            for (int y = 0; y < colours.height; ++y) {
                for (int x = 0; x < colours.width; ++x) {
                    const std::uint32_t alpha = made->row(y)[x] & alphaBits(format);
                    made->row(y)[x] = (opaqueWord(format, colours.at(x, y)) & ~alphaBits(format)) | alpha;
                }
            }
            return made;
        };
        for (int i = 0; i < 40; ++i) {
            const int spread = random.between(0, 5);
            const ColourGrid haystack = grid(random.between(1, 80), random.between(1, 6), spread);
            const ColourGrid needle = grid(random.between(1, random.between(1, 40)), random.between(1, 3), spread);
            const Ref<Picture> self = picture(haystack, setting.source);
            const Ref<Picture> pic = picture(needle, setting.result);
            for (const int tolerance : {spread, spread + 1, 1, 2}) {
                const int startX = random.between(-2, haystack.width + 1);
                const int startY = random.between(-2, haystack.height + 1);
                const auto expected = firstMatch(haystack, needle, startX, startY, tolerance);
                ASSERT_EQ(find(host, self, pic, startX, startY, tolerance),
                          (expected ? Found{true, expected->first, expected->second} : nowhere))
                    << needle.width << " x " << needle.height << " in " << haystack.width << " x " << haystack.height
                    << " from (" << startX << ", " << startY << "), tolerance " << tolerance;
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
