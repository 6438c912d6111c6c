/// The bytes of a host memory block.
#pragma once

#include <cstdint>

#include "frame/host_services.h"

namespace pxk {

/// Holds a reference to a memory block and shows its bytes while a member works on them.
class rbData {
  public:
    /// Nil is allowed and shows no bytes.
    explicit rbData(REALmemoryBlockStruct* block);

    /// The bytes, or nil when the block is nil or the host does not say where they are.
    unsigned char* bytes() const { return bytes_; }

    /// The number of bytes; 0 when `bytes()` is nil or the host cannot tell.
    std::uint32_t size() const { return size_; }

    /// Whether the host can tell the size; true also when `bytes()` is nil.
    bool sizeIsKnown() const { return sizeIsKnown_; }

    /// Whether there are bytes, and at least that many. Where the host cannot tell the size, the program is trusted.
    bool holds(std::uint64_t count) const;

  private:
    HostReference<REALmemoryBlockStruct> held_;
    unsigned char* bytes_ = nullptr;
    std::uint32_t size_ = 0;
    bool sizeIsKnown_ = true;
};

}  // namespace pxk
