#include "analysis/row_copy_kernels.h"

#include "picture/byte_lanes.h"

namespace pxk {

namespace {

constexpr std::size_t blockBytes = 4 * laneBytes;

void copyBlock(const unsigned char* from, unsigned char* to) {
    const Words first = load(from);
    const Words second = load(from + laneBytes);
    const Words third = load(from + 2 * laneBytes);
    const Words fourth = load(from + 3 * laneBytes);
    store(to, first);
    store(to + laneBytes, second);
    store(to + 2 * laneBytes, third);
    store(to + 3 * laneBytes, fourth);
}

void copyBackwards(const unsigned char* from, unsigned char* to, std::size_t bytes) {
    for (; bytes >= blockBytes; bytes -= blockBytes) {
        copyBlock(from + bytes - blockBytes, to + bytes - blockBytes);
    }
    __builtin_memcpy(to, from, bytes);
}

constexpr RowCopyKernels table = {.backwards = copyBackwards};

}  // namespace

constinit const RowCopyKernels RowCopyKernels::PXK_ISA = table;

}  // namespace pxk
