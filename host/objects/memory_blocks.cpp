#include "host/objects/memory_blocks.h"

#include <algorithm>
#include <utility>

namespace pxkhost {

MemoryBlock::MemoryBlock(std::vector<std::uint8_t> bytes) : Object(ownKind), bytes_(std::move(bytes)) {
    publish(record_.header);
    record_.size = static_cast<std::int32_t>(bytes_.size());
    record_.bytes = bytes_.empty() ? nullptr : bytes_.data();
}

Ref<MemoryBlock> MemoryBlock::make(std::int32_t size) {
    return Ref<MemoryBlock>::adopt(
        new MemoryBlock(std::vector<std::uint8_t>(static_cast<std::size_t>(std::max(size, 0)))));
}

Ref<MemoryBlock> MemoryBlock::make(std::span<const std::uint8_t> bytes) {
    return Ref<MemoryBlock>::adopt(new MemoryBlock({bytes.begin(), bytes.end()}));
}

void MemoryBlock::pretend(std::int32_t size, void* pointer) {
    record_.size = size;
    record_.bytes = pointer;
}

void MemoryBlock::dispose() { std::vector<std::uint8_t>().swap(bytes_); }

std::string MemoryBlock::details() const { return std::to_string(record_.size) + " bytes"; }

}  // namespace pxkhost
