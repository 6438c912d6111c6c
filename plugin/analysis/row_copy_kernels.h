/// Copies of rows, for addresses at which memcpy is slow.
#pragma once

#include <cstddef>

namespace pxk {

struct RowCopyKernels {
    static const RowCopyKernels baseline, avx2, avx512;

    /// Copies a row, from its end to its start, to one that it does not overlap.
    void (*backwards)(const unsigned char* from, unsigned char* to, std::size_t bytes);
};

}  // namespace pxk
