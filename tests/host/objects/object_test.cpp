// References and their accounting.

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
    EXPECT_TRUE(host().accounting().problems().empty());
}

TEST_F(ObjectTest, HandleOfAnotherKindIsAProblem) {
    const Ref<String> text = String::make("x");
    EXPECT_EQ(fromHandle<Picture>(text->handle(), "someone"), nullptr);
    EXPECT_THAT(host().accounting().takeProblems(),
                ElementsAre("someone was given string 1 (1 bytes) where a picture belongs"));
}

TEST_F(ObjectTest, ForeignHandleIsAProblem) {
    pxk::REALobjectHeader foreign{};
    EXPECT_EQ(Object::fromHandle(&foreign, "someone"), nullptr);
    EXPECT_THAT(host().accounting().takeProblems(),
                ElementsAre("someone was given something that is not an object of this host"));
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
    EXPECT_EQ(host().accounting().livingCount(), 0u);
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
    const std::string reason = " was given memory block 1 (3 bytes), whose last reference had been released";
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
    EXPECT_EQ(host().accounting().livingCount(), 0u);
}

}  // namespace
}  // namespace pxktest
