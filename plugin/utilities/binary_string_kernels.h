/// Row loops between pixel words and packed bytes of red, green and blue.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/pixel_families.h"

namespace pxk {

/// Writes red, green and blue of `count` pixels, three bytes each. Source and result do not overlap.
using BytesFromWords = void (*)(const std::uint32_t* words, unsigned char* bytes, std::ptrdiff_t count);

/// The reverse: `count` opaque pixels from three bytes each.
using WordsFromBytes = void (*)(const unsigned char* bytes, std::uint32_t* words, std::ptrdiff_t count);

struct BinaryStringKernels {
    static const BinaryStringKernels baseline, avx2, avx512;

    /// By the family of the source; one of no family gives black.
    BytesFromWords toBytes[familyCount];
    /// By the family of the result.
    WordsFromBytes fromBytes[writableFamilyCount];
};

}  // namespace pxk
