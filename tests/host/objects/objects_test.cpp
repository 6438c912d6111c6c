// References, the ledger, strings and memory blocks.

#include "host/host_test_support.h"

namespace pxktest {
namespace {

using testing::ElementsAre;

class ObjectTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }
};

TEST_F(ObjectTest, ReferencesAreCounted) {
    const Ref<MemoryBlock> block = MemoryBlock::make(4);
    EXPECT_EQ(block->references(), 1);
    {
        Ref<MemoryBlock> second;
        second = block;
        EXPECT_EQ(block->references(), 2);
    }
    EXPECT_EQ(block->references(), 1);
    EXPECT_EQ(block->timesTaken(), 2u);
    EXPECT_EQ(block->timesGivenBack(), 1u);
}

TEST_F(ObjectTest, ReferencesMoveWithoutCounting) {
    Ref<MemoryBlock> block = MemoryBlock::make(4);
    MemoryBlock* const raw = block.get();
    const Ref<Object> moved = std::move(block);
    EXPECT_EQ(moved.get(), raw);
    EXPECT_EQ(raw->timesTaken(), 1u);
}

TEST_F(ObjectTest, HandleLeadsBack) {
    const Ref<String> text = String::make("x");
    EXPECT_EQ(fromHandle<String>(text->handle(), "test"), text.get());
    EXPECT_EQ(fromHandle<String>(nullptr, "test"), nullptr);
    EXPECT_TRUE(host().ledger().problems().empty());
}

TEST_F(ObjectTest, HandleOfAnotherKindIsAProblem) {
    const Ref<String> text = String::make("x");
    EXPECT_EQ(fromHandle<Picture>(text->handle(), "someone"), nullptr);
    EXPECT_THAT(host().ledger().takeProblems(),
                ElementsAre("someone was given string 1 (1 bytes) where a picture belongs"));
}

TEST_F(ObjectTest, ForeignHandleIsAProblem) {
    pxk::REALobjectHeader foreign{};
    EXPECT_EQ(Object::fromHandle(&foreign, "someone"), nullptr);
    EXPECT_THAT(host().ledger().takeProblems(),
                ElementsAre("someone was given something that is no object of this host"));
}

TEST_F(ObjectTest, LeaksAreNamedAtClose) {
    Ref<Picture> picture = Picture::console(10, 8);
    Ref<MemoryBlock> block = MemoryBlock::make(3);
    block->retain();
    EXPECT_THAT(closeAndTakeProblems(), ElementsAre("leaked: picture 1 (10 x 8): 1 reference",
                                                    "leaked: memory block 2 (3 bytes): 2 references"));
    block->release();
}

TEST_F(ObjectTest, NothingIsNamedWhenAllIsGivenBack) {
    { const Ref<Picture> picture = Picture::console(10, 8); }
    EXPECT_EQ(host().ledger().livingCount(), 0u);
    EXPECT_TRUE(closeAndTakeProblems().empty());
}

TEST_F(ObjectTest, ReleaseTooManyIsNamed) {
    const auto unlock = service<void(void*)>("REALUnlockObject");
    void* const handle = MemoryBlock::make(3).detach()->handle();
    unlock(handle);
    unlock(handle);
    EXPECT_THAT(closeAndTakeProblems(), ElementsAre("memory block 1 (3 bytes) was released more often than taken"));
}

TEST_F(ObjectTest, UseAfterTheLastReleaseIsNamed) {
    void* const handle = MemoryBlock::make(3).detach()->handle();
    service<void(void*)>("REALUnlockObject")(handle);
    service<void(void*)>("REALLockObject")(handle);
    EXPECT_EQ(service<std::int32_t(void*)>("memoryBlockGetSize")(handle), 0);
    const std::string reason = " was given memory block 1 (3 bytes), whose last reference had been given back";
    EXPECT_THAT(closeAndTakeProblems(), ElementsAre("REALLockObject" + reason, "memoryBlockGetSize" + reason));
}

TEST_F(ObjectTest, ServicesTakeNil) {
    for (const char* name : {"REALLockObject", "REALUnlockObject", "REALLockString", "REALUnlockString",
                             "unlockPictureDescription", "REALPictureClearCache"})
        service<void(void*)>(name)(nullptr);
    EXPECT_EQ(service<void*(void*)>("memoryBlockGetPtr")(nullptr), nullptr);
}

TEST_F(ObjectTest, ManyObjectsComeAndGo) {
    for (int i = 0; i < 2000; ++i) MemoryBlock::make(i);
    EXPECT_EQ(host().ledger().livingCount(), 0u);
}

// ---- strings ----

TEST_F(ObjectTest, StringRecordShowsItsBytes) {
    const Ref<String> text = String::make(std::string("a\0b", 3));
    const auto& record = *reinterpret_cast<const pxk::REALstringRecord*>(text->handle());
    ASSERT_EQ(record.length, 3);
    EXPECT_EQ(std::string(static_cast<const char*>(record.bytes), 3), std::string("a\0b", 3));
}

TEST_F(ObjectTest, EmptyStringHasNoBytes) {
    const Ref<String> text = String::make("");
    const auto& record = *reinterpret_cast<const pxk::REALstringRecord*>(text->handle());
    EXPECT_EQ(record.length, 0);
    EXPECT_EQ(record.bytes, nullptr);
}

TEST_F(ObjectTest, BuiltStringHasNoEncodingYet) {
    auto* const handle = service<REALstringStruct*(const void*, std::int32_t)>("REALBuildString")("abc", 3);
    EXPECT_EQ(service<std::uint32_t(void*)>("REALGetStringEncoding")(handle), encoding::unknown);
    service<void(void*, std::uint32_t)>("REALSetStringEncoding")(handle, encoding::ascii);
    EXPECT_EQ(service<std::uint32_t(void*)>("REALGetStringEncoding")(handle), encoding::ascii);
    EXPECT_EQ(fromHandle<String>(handle, "test")->bytes(), "abc");
    service<void(void*)>("REALLockString")(handle);
    service<void(void*)>("REALUnlockString")(handle);
    service<void(void*)>("REALUnlockString")(handle);
    EXPECT_EQ(host().ledger().livingCount(), 0u);
}

TEST_F(ObjectTest, ConvertedStringIsNew) {
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

// ---- memory blocks ----

TEST_F(ObjectTest, MemoryBlockRecordAndServicesAgree) {
    auto* const handle = service<REALmemoryBlockStruct*(std::int32_t)>("newMemoryBlock")(6);
    const Ref<MemoryBlock> block = Ref<MemoryBlock>::adopt(fromHandle<MemoryBlock>(handle, "test"));
    const auto& record = *reinterpret_cast<const pxk::REALmemoryBlockRecord*>(handle);
    EXPECT_EQ(record.size, 6);
    EXPECT_EQ(record.bytes, service<void*(void*)>("memoryBlockGetPtr")(handle));
    EXPECT_EQ(service<std::int32_t(void*)>("memoryBlockGetSize")(handle), 6);
    EXPECT_THAT(block->bytes(), testing::Each(0));
    static_cast<std::uint8_t*>(record.bytes)[5] = 9;
    EXPECT_EQ(block->bytes()[5], 9);
}

TEST_F(ObjectTest, MemoryBlockMayPretend) {
    const Ref<MemoryBlock> block = MemoryBlock::make(6);
    block->pretend(-3, nullptr);
    const auto& record = *reinterpret_cast<const pxk::REALmemoryBlockRecord*>(block->handle());
    EXPECT_EQ(record.size, -3);
    EXPECT_EQ(record.bytes, nullptr);
    EXPECT_EQ(service<std::int32_t(void*)>("memoryBlockGetSize")(block->handle()), -3);
    EXPECT_EQ(service<void*(void*)>("memoryBlockGetPtr")(block->handle()), nullptr);
}

TEST_F(ObjectTest, EmptyAndNegativeMemoryBlocks) {
    auto* const empty = service<REALmemoryBlockStruct*(std::int32_t)>("newMemoryBlock")(0);
    EXPECT_EQ(service<void*(void*)>("memoryBlockGetPtr")(empty), nullptr);
    service<void(void*)>("REALUnlockObject")(empty);
    EXPECT_EQ(service<REALmemoryBlockStruct*(std::int32_t)>("newMemoryBlock")(-1), nullptr);
}

}  // namespace
}  // namespace pxktest
