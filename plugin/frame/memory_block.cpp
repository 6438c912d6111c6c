#include "frame/memory_block.h"

#include <algorithm>

namespace pxk {

rbData::rbData(REALmemoryBlockStruct* block) {
    if (block == nullptr) return;
    if (REALLockObject(block)) held_.reset(block);
    const auto* record = reinterpret_cast<const REALmemoryBlockRecord*>(block);
    const bool throughServices = rbversion >= 2017.0;
    const std::int32_t size = throughServices ? REALMemoryBlockGetSize(block) : record->size;
    void* bytes = throughServices ? REALMemoryBlockGetPtr(block) : record->bytes;
    if (bytes == nullptr) return;
    bytes_ = static_cast<unsigned char*>(bytes);
    size_ = static_cast<std::uint32_t>(std::max(size, 0));
}

}  // namespace pxk
