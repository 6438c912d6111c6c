/// The host's memory blocks: bytes that a program reads and writes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/objects/object.h"

namespace pxkhost {

class MemoryBlock final : public Object {
  public:
    /// A block of `size` zero bytes.
    static Ref<MemoryBlock> make(std::int32_t size);
    static Ref<MemoryBlock> make(std::span<const std::uint8_t> bytes);

    std::span<std::uint8_t> bytes() { return bytes_; }
    std::span<const std::uint8_t> bytes() const { return bytes_; }
    std::int32_t size() const { return record_.size; }

    /// The pointer handed to plugins; nil for a block without bytes.
    void* pointer() const { return record_.bytes; }

    /// Makes the block report a size or pointer other than its own, as a block over foreign memory may.
    void pretend(std::int32_t size, void* pointer);

    REALmemoryBlockStruct* handle() const { return static_cast<REALmemoryBlockStruct*>(Object::handle()); }

    static constexpr Kind ownKind = Kind::memoryBlock;

  private:
    explicit MemoryBlock(std::vector<std::uint8_t> bytes);
    void dispose() override;
    std::string details() const override;

    pxk::REALmemoryBlockRecord record_{};
    std::vector<std::uint8_t> bytes_;
};

}  // namespace pxkhost
