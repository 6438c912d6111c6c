// Host strings made from bytes in every encoding.
#include "frame/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "support/allocation_failure.h"
#include "support/linked_parts.h"

namespace pxk {
namespace {

using pxkhost::Ref;
using pxkhost::String;

class Text : public test::LinkedParts {
  protected:
    static Ref<String> build(const void* data, long long length, unsigned long encoding) {
        return Ref<String>::adopt(
            pxkhost::fromHandle<String>(REALBuildUnicodeString(data, length, encoding), "the test"));
    }
    static Ref<String> build(const std::string& bytes, unsigned long encoding) {
        return build(bytes.data(), static_cast<long long>(bytes.size()), encoding);
    }
    static Ref<String> buildUTF32(const std::vector<std::uint32_t>& text) {
        return build(text.data(), static_cast<long long>(text.size() * 4), encodingUTF32);
    }
};

TEST_F(Text, OfNothingIsNil) {
    openAt(2013.04);
    EXPECT_FALSE(build(nullptr, 5, encodingUTF8));
    EXPECT_FALSE(build("x", 0, encodingUTF8));
    EXPECT_FALSE(build("x", -1, encodingUTF8));
    EXPECT_FALSE(build("x", 0x80000000LL, encodingUTF8));
}

TEST_F(Text, OfPlainBytesIsTaggedASCII) {
    openAt(2013.04);
    for (const auto encoding : {encodingMacRoman, encodingISOLatin1, encodingWindowsLatin1, encodingUnknown}) {
        const Ref<String> text = build("plain \x7f", encoding);
        ASSERT_TRUE(text);
        EXPECT_EQ(text->encoding(), encodingASCII);
        EXPECT_EQ(text->bytes(), "plain \x7f");
    }
}

TEST_F(Text, WithHighBytesKeepsItsEncoding) {
    openAt(2013.04);
    for (const auto encoding : {encodingMacRoman, encodingISOLatin1, encodingWindowsLatin1, encodingUnknown}) {
        const Ref<String> text = build("caf\x80", encoding);
        ASSERT_TRUE(text);
        EXPECT_EQ(text->encoding(), encoding);
        EXPECT_EQ(text->bytes(), "caf\x80");
    }
}

TEST_F(Text, InAnyOtherEncodingIsTakenAsItIs) {
    openAt(2013.04);
    EXPECT_EQ(build("caf\xc3\xa9", encodingUTF8)->encoding(), encodingUTF8);
    EXPECT_EQ(build("plain", encodingUTF8)->encoding(), encodingUTF8);
    EXPECT_EQ(build("bytes", 0x0630)->encoding(), 0x0630U);
}

TEST_F(Text, InUTF16BecomesUTF8OnEveryHost) {
    for (const double version : {2010.0, 2011.04, 2012.0, 2013.0, 2019.03}) {
        openAt(version);
        const std::u16string text = u"na\u00efve \U0001F600";
        const Ref<String> built = build(text.data(), static_cast<long long>(text.size() * 2), encodingUTF16);
        ASSERT_TRUE(built) << version;
        EXPECT_EQ(built->encoding(), encodingUTF8);
        EXPECT_EQ(built->bytes(), "na\xc3\xafve \xf0\x9f\x98\x80");
    }
}

TEST_F(Text, InUTF32BecomesUTF8OnEveryHost) {
    for (const double version : {2010.0, 2012.0, 2012.5, 2013.0, 2019.03}) {
        openAt(version);
        const Ref<String> built = buildUTF32({'a', 0xEF, 0x20AC, 0x1F600});
        ASSERT_TRUE(built) << version;
        EXPECT_EQ(built->encoding(), encodingUTF8);
        EXPECT_EQ(built->bytes(), "a\xc3\xaf\xe2\x82\xac\xf0\x9f\x98\x80");
    }
}

TEST_F(Text, IsBuiltWithTheServiceOfTheHostsVersion) {
    const std::u16string utf16 = u"text";
    for (const auto& [version, forUTF16, forUTF32] : {std::tuple{2011.9999, noEncoding, noEncoding},
                                                      {2012.0, encodingUTF16, encodingUTF16},
                                                      {2012.9999, encodingUTF16, encodingUTF16},
                                                      {2013.0, encodingUTF16, encodingUTF32}}) {
        openAt(version);
        build(utf16.data(), 8, encodingUTF16);
        EXPECT_EQ(encodingsBuilt, std::vector{forUTF16}) << version;
        encodingsBuilt.clear();
        buildUTF32({'t', 'e', 'x', 't'});
        EXPECT_EQ(encodingsBuilt, std::vector{forUTF32}) << version;
    }
}

// Below 800 bytes, text is converted on the stack.
TEST_F(Text, InUTF32IsConvertedAtAnyLength) {
    openAt(2012.5);
    for (const std::size_t length : {796U, 797U, 799U, 800U, 801U, 803U, 804U}) {
        const std::vector<std::uint32_t> text(length / 4 + 1, 'x');
        const Ref<String> built = build(text.data(), static_cast<long long>(length), encodingUTF32);
        ASSERT_TRUE(built);
        EXPECT_EQ(built->bytes(), std::string(length / 4, 'x')) << length;
    }
}

// For hosts before 2013.0, the plugin converts it to UTF-16.
TEST_F(Text, InUTF32HasItsSurrogatesAndOtherNonCharactersRemovedOnOlderHosts) {
    for (const double version : {2010.0, 2012.5}) {
        openAt(version);
        EXPECT_EQ(buildUTF32({0x10FFFF})->bytes(), "\xf4\x8f\xbf\xbf");
        EXPECT_EQ(buildUTF32({0x110000, 'a', 0xFFFFFFFF})->bytes(),
                  "\xef\xbf\xbd"
                  "a\xef\xbf\xbd");
        EXPECT_EQ(buildUTF32({'a', 0xD800, 'b', 0xDFFF})->bytes(), "ab");
        EXPECT_EQ(buildUTF32({'a', 0, 'b'})->bytes(), std::string("a\0b", 3));
        EXPECT_EQ(buildUTF32({0xD7FF, 0xE000})->bytes(), "\xed\x9f\xbf\xee\x80\x80");
        EXPECT_EQ(buildUTF32({0xFFFF, 0x10000})->bytes(), "\xef\xbf\xbf\xf0\x90\x80\x80");
    }
}

TEST_F(Text, InUTF32HasRoomForTwoUnitsOfEveryCharacter) {
    openAt(2012.5);
    for (const std::size_t length : {199U, 200U, 201U, 5000U}) {
        const Ref<String> built = buildUTF32(std::vector<std::uint32_t>(length, 0x1F600));
        ASSERT_TRUE(built);
        ASSERT_EQ(built->bytes().size(), length * 4) << length;
        EXPECT_EQ(built->bytes().substr(length * 4 - 4), "\xf0\x9f\x98\x80");
    }
}

// From 800 bytes on, text in UTF-32 takes memory on the heap.
TEST_F(Text, LeavesLongTextUnbuiltWhenThereIsNoMemory) {
    openAt(2012.5);
    for (const long long length : {799, 800, 20000}) {
        const std::vector<std::uint32_t> text(5000, 'x');
        std::size_t attempts = 0;
        std::size_t built = 0;
        const std::size_t allocations = test::failEveryAllocation([&] {
            ++attempts;
            if (build(text.data(), length, encodingUTF32)) ++built;
        });
        EXPECT_EQ(allocations, length < 800 ? 0U : 1U) << length;
        EXPECT_EQ(attempts, allocations + 1);
        EXPECT_EQ(built, 1U) << length;
    }
}

// The host fails before it reads the bytes, of which there are not as many.
TEST_F(Text, MayHave2To31Minus1Bytes) {
    openAt(2013.04);
    host().failCreation(0);
    EXPECT_FALSE(build("x", 0x7FFFFFFFLL, encodingUTF8));
    EXPECT_EQ(encodingsBuilt, std::vector{noEncoding});
    EXPECT_FALSE(build("x", 0x80000000LL, encodingUTF8));
    EXPECT_EQ(encodingsBuilt, std::vector{noEncoding});
}

}  // namespace
}  // namespace pxk
