#include "pointops/rectangle_mask_kernels.h"

namespace pxk {

namespace {

constexpr std::ptrdiff_t wordBits = 64;

// A bit for each byte, 0 or 1: the product has byte i's bit at place 56 + i, and none of the others gets there.
std::uint64_t bitsOfEightBytes(const std::uint8_t* bytes) {
    std::uint64_t eight = 0;
    __builtin_memcpy(&eight, bytes, sizeof eight);
    return (eight * 0x0102040810204080) >> 56;
}

// The three channels lie side by side, so each of two neighbours is compared with the next one by one shift.
void flagColored(const std::uint32_t* source, std::ptrdiff_t count, std::uint32_t channels, std::uint64_t* flags) {
    const std::uint32_t neighbours = channels & (channels >> 8);
    for (std::ptrdiff_t start = 0; start < count; start += wordBits) {
        std::uint8_t colored[wordBits] = {};
        const std::ptrdiff_t pixels = count - start < wordBits ? count - start : wordBits;
        for (std::ptrdiff_t i = 0; i < pixels; ++i) {
            const std::uint32_t word = source[start + i];
            colored[i] = ((word ^ (word >> 8)) & neighbours) != 0;
        }
        std::uint64_t bits = 0;
        for (int i = 0; i < wordBits; i += 8) bits |= bitsOfEightBytes(colored + i) << i;
        flags[start / wordBits] = bits;
    }
}

void paintBits(const std::uint64_t* bits, std::uint32_t* result, std::ptrdiff_t count, std::uint32_t whereSet,
               std::uint32_t whereClear) {
    // By halves of a word, since bits fill the lanes of vectors as wide as the pixels.
    constexpr std::ptrdiff_t half = wordBits / 2;
    for (std::ptrdiff_t x = 0; x < count; x += half) {
        const auto halfBits = static_cast<std::uint32_t>(bits[x / wordBits] >> (x % wordBits));
        if (count - x >= half) {
            for (std::uint32_t i = 0; i < half; ++i)
                result[x + i] = (halfBits & (1U << i)) != 0 ? whereSet : whereClear;
        } else {
            const auto rest = static_cast<std::uint32_t>(count - x);
            for (std::uint32_t i = 0; i < rest; ++i) result[x + i] = (halfBits >> i & 1) != 0 ? whereSet : whereClear;
        }
    }
}

constexpr RectangleMaskKernels table = {.flagColored = flagColored, .paintBits = paintBits};

}  // namespace

constinit const RectangleMaskKernels RectangleMaskKernels::PXK_ISA = table;

}  // namespace pxk
