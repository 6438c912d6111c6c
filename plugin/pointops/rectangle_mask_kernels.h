/// Row loops of the rectangle mask: coloured pixels to bits, and bits to pixels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pxk {

struct RectangleMaskKernels {
    static const RectangleMaskKernels baseline, avx2, avx512;

    /// Sets bit x of `flags`, counted from its first word on, for each of `count` pixels whose channels differ, and
    /// clears the other bits of these words. `channels` are the channel bits of a pixel word.
    void (*flagColored)(const std::uint32_t* source, std::ptrdiff_t count, std::uint32_t channels,
                        std::uint64_t* flags);

    /// Writes one word for a set bit and another for a clear one.
    void (*paintBits)(const std::uint64_t* bits, std::uint32_t* result, std::ptrdiff_t count, std::uint32_t whereSet,
                      std::uint32_t whereClear);
};

}  // namespace pxk
