/// Row loops that count a colour, and every value of each channel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/pixel_families.h"

namespace pxk {

/// How often each byte value occurs in each of the three colour bytes of a pixel word, lowest byte first (in whichever
/// channel that is). Four copies, to be added up: in a run of pixels of one colour every count would otherwise wait for
/// the one before.
struct ByteCounts {
    static constexpr int copies = 4;
    static constexpr int channels = 3;
    static constexpr int values = 256;

    std::uint32_t counts[copies][channels][values];
};

struct ColorCountingKernels {
    static const ColorCountingKernels baseline, avx2, avx512;

    /// The number of words among `count` that are `wanted` in the bits of `mask`.
    std::uint32_t (*countColor)(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t mask,
                                std::uint32_t wanted);

    /// Adds a row to the counts, by family. Pixels of no family have no colour bytes: there is no kernel for them.
    void (*countBytes[writableFamilyCount])(const std::uint32_t* row, std::ptrdiff_t count, ByteCounts& counts);
};

}  // namespace pxk
