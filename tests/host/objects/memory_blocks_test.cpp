// Memory blocks.

#include "host/host_test_support.h"

namespace pxktest {
namespace {

class MemoryBlockTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }
};

TEST_F(MemoryBlockTest, RecordAndServicesAgree) {
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

TEST_F(MemoryBlockTest, MayPretend) {
    const Ref<MemoryBlock> block = MemoryBlock::make(6);
    block->pretend(-3, nullptr);
    const auto& record = *reinterpret_cast<const pxk::REALmemoryBlockRecord*>(block->handle());
    EXPECT_EQ(record.size, -3);
    EXPECT_EQ(record.bytes, nullptr);
    EXPECT_EQ(service<std::int32_t(void*)>("memoryBlockGetSize")(block->handle()), -3);
    EXPECT_EQ(service<void*(void*)>("memoryBlockGetPtr")(block->handle()), nullptr);
}

TEST_F(MemoryBlockTest, EmptyAndNegativeMemoryBlocks) {
    auto* const empty = service<REALmemoryBlockStruct*(std::int32_t)>("newMemoryBlock")(0);
    EXPECT_EQ(service<void*(void*)>("memoryBlockGetPtr")(empty), nullptr);
    service<void(void*)>("REALUnlockObject")(empty);
    EXPECT_EQ(service<REALmemoryBlockStruct*(std::int32_t)>("newMemoryBlock")(-1), nullptr);
}

}  // namespace
}  // namespace pxktest
