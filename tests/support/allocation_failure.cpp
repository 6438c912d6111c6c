#include "support/allocation_failure.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();
std::size_t countdown = never;

}  // namespace

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (countdown != never && countdown-- == 0) {
        countdown = never;
        return nullptr;
    }
    try {
        return ::operator new[](size);
    } catch (...) {
        return nullptr;
    }
}

namespace pxk::test {

AllocationFailure::AllocationFailure(std::size_t which) { countdown = which; }
AllocationFailure::~AllocationFailure() { countdown = never; }
bool AllocationFailure::happened() const { return countdown == never; }

}  // namespace pxk::test
