#include "analysis/uniformity_kernels.h"

#include "picture/byte_lanes.h"

namespace pxk {

namespace {

bool anyDiffers(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t mask, std::uint32_t wanted) {
    std::uint32_t different = 0;
    for (std::ptrdiff_t x = 0; x < count; ++x) different |= row[x] ^ wanted;
    return (different & mask) != 0;
}

bool allEqual(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t mask, std::uint32_t wanted) {
    if ((wanted & ~mask) != 0) return count == 0;
    constexpr std::ptrdiff_t block = 128;
    for (; count >= block; row += block, count -= block) {
        if (anyDiffers(row, block, mask, wanted)) return false;
    }
    return !anyDiffers(row, count, mask, wanted);
}

// Equal channels need one comparison with the next byte, where a tolerance needs all three.
bool anyColoured(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t twoChannels) {
    std::uint32_t different = 0;
    for (std::ptrdiff_t x = 0; x < count; ++x) different |= row[x] ^ (row[x] >> 8);
    return (different & twoChannels) != 0;
}

bool allExactlyGrey(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t twoChannels) {
    constexpr std::ptrdiff_t block = 128;
    for (; count >= block; row += block, count -= block) {
        if (anyColoured(row, block, twoChannels)) return false;
    }
    return !anyColoured(row, count, twoChannels);
}

// In the lowest colour byte: the largest difference of two channels.
Bytes spread(Words pixels) {
    const auto first = reinterpret_cast<Bytes>(pixels);
    const auto second = reinterpret_cast<Bytes>(pixels >> 8);
    const auto third = reinterpret_cast<Bytes>(pixels >> 16);
    return larger(larger(first, second), third) - smaller(smaller(first, second), third);
}

bool allGreyWithin(const std::uint32_t* row, std::ptrdiff_t count, Words limit) {
    constexpr int registers = 16;
    for (; count >= registers * pixelsAtOnce; count -= registers * pixelsAtOnce) {
        Bytes widest = {};
        for (int i = 0; i < registers; ++i, row += pixelsAtOnce) widest = larger(widest, spread(load(row)));
        if (!allWithin(widest, limit)) return false;
    }
    Bytes widest = {};
    for (; count >= pixelsAtOnce; count -= pixelsAtOnce, row += pixelsAtOnce) {
        widest = larger(widest, spread(load(row)));
    }
    return allWithin(larger(widest, spread(loadPart(row, count))), limit);
}

bool allGrey(const std::uint32_t* row, std::ptrdiff_t count, const FamilyLayout& layout, std::int32_t tolerance) {
    const std::uint32_t colour = colorMask(layout);
    if (tolerance == 0) return allExactlyGrey(row, count, colour & (colour >> 8));
    const std::uint32_t lowestByte = colour & ~(colour << 8);
    const std::uint32_t one = lowestByte & ~(lowestByte << 1);
    return allGreyWithin(row, count, broadcast(~lowestByte | one * static_cast<std::uint32_t>(tolerance)));
}

constexpr UniformityKernels table = {.allEqual = allEqual, .allGrey = allGrey};

}  // namespace

constinit const UniformityKernels UniformityKernels::PXK_ISA = table;

}  // namespace pxk
