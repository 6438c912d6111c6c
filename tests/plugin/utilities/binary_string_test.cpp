// Pictures as strings of bytes, and back.
#include <gd.h>
#include <gtest/gtest.h>

#include <climits>

#include "support/allocation_failure.h"
#include "support/definitions/binary_string.h"
#include "support/settings.h"

namespace pxk::test {
namespace {

using pxkhost::String;
using namespace std::string_literals;

constexpr auto toStringMember = "PicturetoBinaryStringPXK(p as picture) as string";
constexpr auto fromStringMember = "BinaryStringtoPicturePXK(data as String) as Picture";

Ref<String> toString(Host& host, const Ref<Picture>& picture) {
    return host.invoke<Ref<String>>(toStringMember, picture);
}

Ref<Picture> toPicture(Host& host, const Ref<String>& string) {
    const std::int64_t references = string ? string->references() : 0;
    const Ref<Picture> picture = host.invoke<Ref<Picture>>(fromStringMember, string);
    EXPECT_EQ(string ? string->references() : 0, references) << "the string is given back in every case";
    return picture;
}

Ref<Picture> toPicture(Host& host, const std::string& bytes) {
    return toPicture(host, String::make(bytes, pxkhost::encoding::unknown));
}

const Colour red = {255, 0, 0};
const Colour blue = {0, 0, 255};

TEST(BinaryString, OfTwoPixels) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<String> string = toString(host, pictureOf(setting, 2, {red, blue}));
        ASSERT_TRUE(string);
        EXPECT_EQ(string->bytes(),
                  "PPIC\x00\x00\x00\x2E\x00\x00\x00\x02\x00\x00\x00\x01\x00\x00\x00\x20\x00\x00\x00\x28"s +
                      std::string(16, '\0') + "\xFF\x00\x00\x00\x00\xFF"s);
        EXPECT_EQ(string->encoding(), pxkhost::encoding::unknown);
    });
}

TEST(BinaryString, WithoutBytesAbove127IsASCII) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<String> plain = toString(host, pictureOf(setting, 1, {{127, 0, 65}}));
        EXPECT_EQ(plain->encoding(), pxkhost::encoding::ascii);
        EXPECT_EQ(toString(host, pictureOf(setting, 1, {{127, 128, 65}}))->encoding(), pxkhost::encoding::unknown);
        // 40 + 3 * 30 is 130: the length itself is above 127.
        const std::vector<Colour> black(30, Colour{});
        EXPECT_EQ(toString(host, pictureOf(setting, 30, black))->encoding(), pxkhost::encoding::unknown);
    });
}

TEST(BinaryString, OfALengthOtherThanItSaysIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const std::string right = binaryString(2, {red, blue});
        EXPECT_TRUE(toPicture(host, right));
        EXPECT_FALSE(toPicture(host, right + '\0'));
        EXPECT_FALSE(toPicture(host, right.substr(0, 45)));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(BinaryString, OfNilIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        EXPECT_FALSE(toString(host, nullptr));
        EXPECT_FALSE(toPicture(host, Ref<String>()));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(BinaryString, TooShortForItsHeaderIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (std::uint32_t length = 0; length < 43; ++length) {
            EXPECT_FALSE(toPicture(host, binaryHeader(length, 1, 1).substr(0, length))) << length;
        }
        EXPECT_TRUE(toPicture(host, binaryHeader(43, 1, 1) + "abc"));
    });
}

TEST(BinaryString, WithoutItsFirstFourBytesIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (std::size_t place = 0; place < 4; ++place) {
            std::string string = binaryString(2, {red, blue});
            string[place] = static_cast<char>(string[place] ^ 0x20);
            EXPECT_FALSE(toPicture(host, string)) << place;
        }
    });
}

TEST(BinaryString, WithoutRoomForItsPixelsIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const auto refused = [&](std::uint32_t width, std::uint32_t height, std::uint32_t offset) {
            const std::string string = binaryHeader(52, width, height, offset) + std::string(12, 'x');
            EXPECT_FALSE(toPicture(host, string)) << width << " x " << height << " at " << offset;
        };
        EXPECT_TRUE(toPicture(host, binaryHeader(52, 2, 2) + std::string(12, 'x')));
        for (const std::uint32_t offset : {41U, 52U, 53U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF4U, 0xFFFFFFFFU}) {
            refused(2, 2, offset);
        }
        // Products that wrap to small numbers in 32 bits.
        refused(32767, 32767, 40);
        refused(0x5556, 0x10000, 40);
        refused(65536, 65536, 40);
        refused(5, 1, 40);
        refused(1, 5, 40);
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(BinaryString, OfASideThatNoPictureHasIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        for (const std::uint32_t side : {0U, 32768U, 65536U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            EXPECT_FALSE(toPicture(host, binaryHeader(40 + 3 * 32768, side, 1) + std::string(3 * 32768, 'x')));
            EXPECT_FALSE(toPicture(host, binaryHeader(40 + 3 * 32768, 1, side) + std::string(3 * 32768, 'x')));
            EXPECT_FALSE(toPicture(host, binaryHeader(40, side, side))) << side;
        }
        const Ref<Picture> widest =
            toPicture(host, binaryHeader(40 + 3 * 32767, 32767, 1) + std::string(3 * 32767, 'x'));
        ASSERT_TRUE(widest);
        EXPECT_EQ(widest->width(), 32767);
    });
}

TEST(BinaryString, MayHaveMoreThanItsPixels) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<Picture> picture = toPicture(host, binaryHeader(50, 1, 1) + "\xFF\x00\x00trailer"s);
        ASSERT_TRUE(picture);
        EXPECT_EQ(coloursOf(*picture), std::vector{red});
    });
}

TEST(BinaryString, HasItsPixelsWhereItSays) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const auto colourAt = [&](std::uint32_t offset) {
            const Ref<Picture> picture = toPicture(host, binaryHeader(46, 1, 1, offset) + "abcdef");
            return coloursOf(*picture)[0];
        };
        EXPECT_EQ(colourAt(43), (Colour{'d', 'e', 'f'}));
        EXPECT_EQ(colourAt(41), (Colour{'b', 'c', 'd'}));
        EXPECT_EQ(colourAt(24), (Colour{0, 0, 0}));
        EXPECT_EQ(colourAt(0), (Colour{'P', 'P', 'I'})) << "the header itself may be taken for pixels";
        const Ref<Picture> shortest = toPicture(host, binaryHeader(24, 2, 1, 0).substr(0, 24));
        ASSERT_TRUE(shortest) << "the reserved bytes need not be there";
        EXPECT_EQ(coloursOf(*shortest)[1], (Colour{'C', 0, 0}));
    });
}

TEST(BinaryString, IsReadWhateverItsDepthAndReservedBytesSay) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        std::string string = binaryString(2, {red, blue});
        for (std::size_t place = 16; place < 20; ++place) string[place] = '\x55';
        for (std::size_t place = 24; place < 40; ++place) string[place] = '\xAA';
        EXPECT_EQ(coloursOf(*toPicture(host, string)), (std::vector{red, blue}));
    });
}

TEST(BinaryString, ComesBackAsItWasWithoutAlpha) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        Random random(1);
        const Ref<Picture> picture = setting.makeSource(13, 5, random);
        const Ref<String> string = toString(host, picture);
        const Ref<Picture> again = toPicture(host, string);
        ASSERT_TRUE(again);
        EXPECT_EQ(coloursOf(*again), coloursOf(*picture));
        for (const std::uint32_t word : rawWords(*again)) {
            const int format = static_cast<int>(setting.result);
            EXPECT_EQ(word, opaqueWord(format, readColour(format, word)));
        }
        EXPECT_EQ(toString(host, again)->bytes(), string->bytes());
    });
}

TEST(BinaryString, OfAPictureThatCannotBeOpenedIsNil) {
    Options options;
    options.plugin = pluginPath();
    Host host(options);
    {
        EXPECT_FALSE(toString(host, Picture::palette(2, 2)));
        const Ref<Picture> locked = Picture::console(2, 2);
        locked->refuseLocks(true);
        EXPECT_FALSE(toString(host, locked));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    }
    closeCleanly(host);
}

TEST(BinaryString, OfADrawnPictureIsThatOfItsCopy) {
    Options options;
    options.plugin = pluginPath();
    options.application = ApplicationKind::desktop;
    Host host(options);
    {
        const Ref<Picture> drawn = Picture::drawnOnly(2, 1);
        drawn->setPixels(std::vector<pxkhost::Argb>{0xFFFF0000, 0xFF0000FF});
        EXPECT_EQ(toString(host, drawn)->bytes(), binaryString(2, {red, blue}));
    }
    closeCleanly(host);
}

// The size that the host reports for its pictures, chosen by the test.
int describedWidth = 0;
int describedHeight = 0;
int describedPixel = 0;

bool describe(const void*, pxk::REALpictureDescription* description, std::int32_t wantedType) {
    static int* rows[] = {&describedPixel};
    static gdImage image = {};
    image.trueColor = 1;
    image.tpixels = rows;
    if (wantedType != gdImageType) return false;
    *description = {.type = wantedType,
                    .platformImage = &image,
                    .width = describedWidth,
                    .height = describedHeight,
                    .forTheHost = {}};
    return true;
}

void leaveUnlocked(const void*) {}

TEST(BinaryString, LongerThanAnyStringIsNil) {
    Options options;
    options.plugin = pluginPath();
    Host host(options);
    host.replaceService("REALLockPictureDescription", reinterpret_cast<void*>(describe));
    host.replaceService("unlockPictureDescription", reinterpret_cast<void*>(leaveUnlocked));
    {
        const Ref<Picture> picture = Picture::console(1, 1);
        const auto stringOf = [&](int width, int height) {
            describedWidth = width;
            describedHeight = height;
            return toString(host, picture);
        };
        EXPECT_FALSE(stringOf(715827870, 1)) << "2^31 + 2 bytes";
        EXPECT_FALSE(stringOf(30000, 30000)) << "negative in 32 bits";
        EXPECT_FALSE(stringOf(40000, 40000)) << "positive in 32 bits, but short by 2^32";
        EXPECT_FALSE(stringOf(INT_MAX, INT_MAX));
        EXPECT_FALSE(stringOf(-1, 5));
        EXPECT_FALSE(stringOf(-5, 7));
        EXPECT_FALSE(stringOf(-5, -7)) << "positive again";
        EXPECT_FALSE(stringOf(INT_MIN, INT_MIN));
        EXPECT_EQ(stringOf(0, 0)->bytes(), binaryHeader(40, 0, 0)) << "no pixels, no bytes";
        EXPECT_EQ(stringOf(1, 1)->bytes(), binaryString(1, {Colour{}}));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    }
    closeCleanly(host);
}

TEST(BinaryString, WithARecordThatLiesIsNil) {
    forConsoleAndDesktop([](Host& host, const Setting&) {
        const Ref<String> string = String::make(binaryString(2, {red, blue}));
        auto* record = reinterpret_cast<pxk::REALstringRecord*>(string->handle());
        const pxk::REALstringRecord honest = *record;
        record->length = -46;
        EXPECT_FALSE(toPicture(host, string));
        record->length = honest.length;
        record->bytes = nullptr;
        EXPECT_FALSE(toPicture(host, string));
        record->bytes = honest.bytes;
        EXPECT_TRUE(toPicture(host, string));
    });
}

TEST(BinaryString, ReadsNothingPastItsEnd) {
    forEverySetting([](Host& host, const Setting& setting) {
        if (setting.source != setting.result) return;
        Random random(3);
        for (int width = 1; width <= 20; ++width) {
            const std::vector<Colour> colours(static_cast<std::size_t>(width), red);
            const std::string bytes = binaryString(width, colours);
            // Memory that ends with the string, so that a sanitizer sees one byte more.
            const std::unique_ptr<char[]> exact(new char[bytes.size()]);
            std::copy(bytes.begin(), bytes.end(), exact.get());
            const Ref<String> string = String::make(bytes);
            auto* record = reinterpret_cast<pxk::REALstringRecord*>(string->handle());
            const pxk::REALstringRecord honest = *record;
            record->bytes = exact.get();
            ASSERT_EQ(coloursOf(*toPicture(host, string)), colours);
            *record = honest;
        }
    });
}

TEST(BinaryString, IsNilWhenAnAllocationFails) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> picture = pictureOf(setting, 2, {red, blue});
        const auto member = host.member<Ref<String>(Ref<Picture>)>(toStringMember);
        std::size_t made = 0;
        const std::size_t allocations = failEveryAllocation([&] {
            if (member(picture)) ++made;
        });
        EXPECT_GE(allocations, 1U);
        EXPECT_EQ(made, 1U);
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(BinaryString, IsNilWhenTheHostMakesNothing) {
    forConsoleAndDesktop([](Host& host, const Setting& setting) {
        const Ref<Picture> picture = pictureOf(setting, 2, {red, blue});
        host.failCreation(0);
        EXPECT_FALSE(toString(host, picture));
        host.failCreation(0);
        EXPECT_FALSE(toPicture(host, binaryString(2, {red, blue})));
        EXPECT_EQ(host.exceptionsRaised(), 0);
    });
}

TEST(BinaryString, EqualsItsDefinitionInEverySetting) {
    forEverySetting([](Host& host, const Setting& setting) {
        Random random(2);
        const auto toBytes = host.member<Ref<String>(Ref<Picture>)>(toStringMember);
        for (int i = 0; i < 20; ++i) {
            const int width = random.between(1, 70);
            const Ref<Picture> picture = setting.makeSource(width, random.between(1, 9), random);
            const std::vector<std::uint32_t> before = rawWords(*picture);
            const Ref<String> string = toBytes(picture);
            ASSERT_TRUE(string);
            ASSERT_EQ(string->bytes(), binaryString(width, coloursOf(*picture)));
            ASSERT_EQ(rawWords(*picture), before) << "the source is never changed";
            const Ref<Picture> again = toPicture(host, string);
            ASSERT_TRUE(again);
            ASSERT_EQ(again->layout(), setting.result);
            ASSERT_EQ(again->width(), width);
            std::vector<std::uint32_t> expected;
            for (const Colour& colour : coloursOf(*picture)) {
                expected.push_back(opaqueWord(static_cast<int>(setting.result), colour));
            }
            ASSERT_EQ(rawWords(*again), expected);
        }
    });
}

}  // namespace
}  // namespace pxk::test
