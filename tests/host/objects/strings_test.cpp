// Strings and their encodings.

#include "host/host_test_support.h"

namespace pxktest {
namespace {

class StringTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }
};

TEST_F(StringTest, RecordShowsItsBytes) {
    const Ref<String> text = String::make(std::string("a\0b", 3));
    const auto& record = *reinterpret_cast<const pxk::REALstringRecord*>(text->handle());
    ASSERT_EQ(record.length, 3);
    EXPECT_EQ(std::string(static_cast<const char*>(record.bytes), 3), std::string("a\0b", 3));
}

TEST_F(StringTest, EmptyStringHasNoBytes) {
    const Ref<String> text = String::make("");
    const auto& record = *reinterpret_cast<const pxk::REALstringRecord*>(text->handle());
    EXPECT_EQ(record.length, 0);
    EXPECT_EQ(record.bytes, nullptr);
}

TEST_F(StringTest, BuiltStringHasNoEncodingYet) {
    auto* const handle = service<REALstringStruct*(const void*, std::int32_t)>("REALBuildString")("abc", 3);
    EXPECT_EQ(service<std::uint32_t(void*)>("REALGetStringEncoding")(handle), encoding::unknown);
    service<void(void*, std::uint32_t)>("REALSetStringEncoding")(handle, encoding::ascii);
    EXPECT_EQ(service<std::uint32_t(void*)>("REALGetStringEncoding")(handle), encoding::ascii);
    EXPECT_EQ(fromHandle<String>(handle, "test")->bytes(), "abc");
    service<void(void*)>("REALLockString")(handle);
    service<void(void*)>("REALUnlockString")(handle);
    service<void(void*)>("REALUnlockString")(handle);
    EXPECT_EQ(host().accounting().livingCount(), 0u);
}

TEST_F(StringTest, ConvertedStringIsNew) {
    using Build = REALstringStruct*(const void*, std::int32_t, std::uint32_t);
    auto* const utf16 = service<Build>("REALBuildStringWithEncoding")(u"\u00FC\U0001F600", 6, encoding::utf16);
    auto* const utf8 = service<REALstringStruct*(void*, std::uint32_t)>("REALConvertString")(utf16, encoding::utf8);
    const Ref<String> source = Ref<String>::adopt(fromHandle<String>(utf16, "test"));
    const Ref<String> result = Ref<String>::adopt(fromHandle<String>(utf8, "test"));
    EXPECT_EQ(result->bytes(), "\xC3\xBC\xF0\x9F\x98\x80");
    EXPECT_EQ(result->encoding(), encoding::utf8);
    EXPECT_EQ(source->bytes().size(), 6u);
}

struct Conversion {
    const char* name;
    std::string bytes;
    std::uint32_t encoding;
    std::string utf8;
};

class ConversionTest : public ::testing::TestWithParam<Conversion> {};

TEST_P(ConversionTest, ToUtf8AndBack) {
    const Ref<String> source = String::make(GetParam().bytes, GetParam().encoding);
    const Ref<String> text = source->converted(encoding::utf8);
    EXPECT_EQ(text->bytes(), GetParam().utf8);
    EXPECT_EQ(text->converted(GetParam().encoding)->bytes(), GetParam().bytes);
    EXPECT_EQ(source->text(), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, ConversionTest,
    ::testing::Values(Conversion{"MacRoman", "\x9F\x8E", encoding::macRoman, "\u00FC\u00E9"},
                      Conversion{"Latin1", "\xFC\xE9", encoding::latin1, "\u00FC\u00E9"},
                      Conversion{"WindowsLatin1", "\x80\xFC", encoding::windowsLatin1, "\u20AC\u00FC"},
                      Conversion{"Ascii", "plain", encoding::ascii, "plain"},
                      Conversion{"Utf16", std::string("\xFC\0\x3D\xD8\0\xDE", 6), encoding::utf16, "\u00FC\U0001F600"},
                      Conversion{"Utf32", std::string("\0\xF6\1\0", 4), encoding::utf32, "\U0001F600"},
                      Conversion{"Empty", "", encoding::utf16, ""}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(StringConversion, WhatTheTargetLacksBecomesAQuestionMark) {
    EXPECT_EQ(String::make("a\u00FCb\U0001F600c")->converted(encoding::ascii)->bytes(), "a?b?c");
    EXPECT_EQ(String::make("\u00FC\U0001F600")->converted(encoding::latin1)->bytes(), "\xFC?");
    EXPECT_EQ(String::make("a\xFFz")->converted(encoding::utf16)->bytes(), std::string("a\0?\0z\0", 6));
    EXPECT_EQ(String::make(std::string("\0\xD8x\0", 4), encoding::utf16)->text(), "?x");
}

TEST(StringConversion, UnknownEncodingsKeepTheBytes) {
    EXPECT_EQ(String::make("\xFF\xFE", encoding::unknown)->converted(encoding::utf8)->bytes(), "\xFF\xFE");
    EXPECT_EQ(String::make("ab", encoding::utf8)->converted(encoding::unknown)->bytes(), "ab");
}

}  // namespace
}  // namespace pxktest
