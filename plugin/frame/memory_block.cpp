#include "frame/memory_block.h"

#include <algorithm>

namespace pxk {

rbData::rbData(REALmemoryBlockStruct* block) {
    if (block == nullptr) return;
    held_ = anotherReference(block);
    const auto* record = reinterpret_cast<const REALmemoryBlockRecord*>(block);
    const bool throughServices = rbversion >= 2017.0;
    const std::optional<std::int32_t> size = throughServices ? REALMemoryBlockGetSize(block) : record->size;
    void* bytes = throughServices ? REALMemoryBlockGetPtr(block) : record->bytes;
    if (bytes == nullptr) return;
    bytes_ = static_cast<unsigned char*>(bytes);
    sizeIsKnown_ = size.has_value();
    size_ = static_cast<std::uint32_t>(std::max(size.value_or(0), 0));
}

bool rbData::holds(std::uint64_t count) const { return bytes_ != nullptr && (!sizeIsKnown_ || size_ >= count); }

}  // namespace pxk
