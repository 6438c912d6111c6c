/// Row loops that test for one colour and for grey.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/family_layout.h"

namespace pxk {

/// Both end early, at most a few hundred pixels behind the first that fails.
struct UniformityKernels {
    static const UniformityKernels baseline, avx2, avx512;

    /// Whether each of `count` words is `wanted` in the bits of `mask`.
    bool (*allEqual)(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t mask, std::uint32_t wanted);

    /// Whether no two channels of a pixel differ by more than `tolerance`, 0 to 255. Pixels of no family are grey.
    bool (*allGrey)(const std::uint32_t* row, std::ptrdiff_t count, const FamilyLayout& layout, std::int32_t tolerance);
};

}  // namespace pxk
