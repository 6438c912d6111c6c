/// Memory of the plugin's own: zeroed, never by exception.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace pxk {

/// The largest block the plugin asks for; larger requests are refused as a failed allocation is.
inline constexpr std::uint64_t largestAllocation = 0x7FFFFFFF;

/// A zeroed array, or nil when `count` is 0, the size is 2^31 bytes or more, or there is no memory.
template <class Element>
std::unique_ptr<Element[]> allocateZeroed(std::uint64_t count) {
    if (count == 0 || count > largestAllocation / sizeof(Element)) return nullptr;
    return std::unique_ptr<Element[]>(new (std::nothrow) Element[static_cast<std::size_t>(count)]());
}

}  // namespace pxk
