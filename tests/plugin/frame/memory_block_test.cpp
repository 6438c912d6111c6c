// The bytes of a memory block, in hosts of every age.
#include "frame/memory_block.h"

#include <gtest/gtest.h>

#include "support/linked_parts.h"

namespace pxk {
namespace {

using pxkhost::MemoryBlock;
using pxkhost::Ref;

class MemoryBlocks : public test::LinkedParts {};

TEST_F(MemoryBlocks, OfNilHaveNoBytes) {
    openAt(2013.04);
    const rbData data(nullptr);
    EXPECT_EQ(data.bytes(), nullptr);
    EXPECT_EQ(data.size(), 0U);
}

TEST_F(MemoryBlocks, ShowTheirBytesAndAreHeldMeanwhile) {
    for (const double version : {2010.0, 2016.9999, 2017.0, 2019.03}) {
        openAt(version);
        const Ref<MemoryBlock> block = MemoryBlock::make(7);
        {
            const rbData data(block->handle());
            EXPECT_EQ(data.bytes(), block->pointer());
            EXPECT_EQ(data.size(), 7U);
            EXPECT_EQ(block->references(), 2);
        }
        EXPECT_EQ(block->references(), 1);
    }
}

TEST_F(MemoryBlocks, WithoutAPointerHaveNoSize) {
    for (const double version : {2016.9999, 2017.0}) {
        openAt(version);
        const Ref<MemoryBlock> block = MemoryBlock::make(7);
        block->pretend(7, nullptr);
        const rbData data(block->handle());
        EXPECT_EQ(data.bytes(), nullptr);
        EXPECT_EQ(data.size(), 0U);
        EXPECT_FALSE(data.holds(0));
    }
}

TEST_F(MemoryBlocks, HoldWhatTheirSizeSays) {
    for (const double version : {2016.9999, 2017.0}) {
        openAt(version);
        const Ref<MemoryBlock> block = MemoryBlock::make(7);
        const rbData data(block->handle());
        EXPECT_TRUE(data.sizeIsKnown());
        EXPECT_TRUE(data.holds(0));
        EXPECT_TRUE(data.holds(7));
        EXPECT_FALSE(data.holds(8));
    }
}

TEST_F(MemoryBlocks, OfNegativeSizeCountAsEmpty) {
    for (const double version : {2016.9999, 2017.0}) {
        openAt(version);
        const Ref<MemoryBlock> block = MemoryBlock::make(7);
        block->pretend(-7, block->pointer());
        const rbData data(block->handle());
        EXPECT_EQ(data.bytes(), block->pointer());
        EXPECT_EQ(data.size(), 0U);
        EXPECT_TRUE(data.holds(0));
        EXPECT_FALSE(data.holds(1));
    }
}

}  // namespace
}  // namespace pxk
