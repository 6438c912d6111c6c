#include "analysis/colorness_kernels.h"

#include "picture/byte_lanes.h"

namespace pxk {

namespace {

constexpr std::uint32_t brightestNearBlack = 29;

struct Limits {
    Words nearBlack;
    // Green is the middle channel in every family, so its differences are those of neighbouring bytes.
    Words neighbours;
};

// -1 in each pixel that is not to be counted. A negative threshold has greys counted as well.
template <bool countGrey>
Words uncounted(Words pixels, const Limits& limits) {
    const auto bytes = reinterpret_cast<Bytes>(pixels);
    const Words dark = pixelsWithin(bytes, limits.nearBlack);
    if constexpr (countGrey) return dark;
    return pixelsWithin(difference(bytes, reinterpret_cast<Bytes>(pixels >> 8)), limits.neighbours) | dark;
}

template <bool countGrey>
std::uint32_t countUncounted(const std::uint32_t* row, std::ptrdiff_t count, const Limits& limits) {
    constexpr int registers = 4;
    Words found = {};
    for (; count >= registers * pixelsAtOnce; count -= registers * pixelsAtOnce) {
        for (int i = 0; i < registers; ++i, row += pixelsAtOnce) found -= uncounted<countGrey>(load(row), limits);
    }
    for (; count >= pixelsAtOnce; count -= pixelsAtOnce, row += pixelsAtOnce) {
        found -= uncounted<countGrey>(load(row), limits);
    }
    // After the end of the row comes black, which is not counted.
    found -= uncounted<countGrey>(loadPart(row, count), limits);
    auto sum = static_cast<std::uint32_t>(count - pixelsAtOnce);
    for (std::ptrdiff_t i = 0; i < pixelsAtOnce; ++i) sum += found[i];
    return sum;
}

std::uint32_t countColoured(const std::uint32_t* row, std::ptrdiff_t count, const FamilyLayout& layout,
                            std::int32_t threshold) {
    const std::uint32_t colour = colorMask(layout);
    const std::uint32_t ones = colour & 0x01010101;
    const std::uint32_t lowerTwo = ones & (ones >> 8);
    const auto largest = static_cast<std::uint32_t>(threshold);
    const Limits limits = {.nearBlack = broadcast(~colour | ones * brightestNearBlack),
                           .neighbours = broadcast(~(lowerTwo * 0xFF) | lowerTwo * largest)};
    const auto uncountedIn = threshold < 0 ? countUncounted<true> : countUncounted<false>;
    return static_cast<std::uint32_t>(count) - uncountedIn(row, count, limits);
}

constexpr ColornessKernels table = {.countColoured = countColoured};

}  // namespace

constinit const ColornessKernels ColornessKernels::PXK_ISA = table;

}  // namespace pxk
