#include "pointops/whole_offsets_kernels.h"

#include "picture/byte_lanes.h"

namespace pxk {

namespace {

std::int32_t clampedSum(std::int32_t value, std::int32_t offset) {
    const std::int32_t sum = value + offset;
    return sum < 0 ? 0 : sum > 255 ? 255 : sum;
}

Rgb add(const WholeOffsets& offsets, Rgb old) {
    return {clampedSum(old.red, offsets.red), clampedSum(old.green, offsets.green), clampedSum(old.blue, offsets.blue)};
}

std::int32_t positive(std::int32_t value) { return value > 0 ? value : 0; }

// Where source and result are of one family, bytes stay where they are.
template <class Pixels>
void addInBytes(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
                const WholeOffsets& offsets) {
    constexpr std::uint32_t opaque = Pixels::opaque({0, 0, 0});
    constexpr std::uint32_t colour = Pixels::opaque({255, 255, 255}) ^ opaque;
    const std::uint32_t up =
        Pixels::opaque({positive(offsets.red), positive(offsets.green), positive(offsets.blue)}) ^ opaque;
    const std::uint32_t down =
        Pixels::opaque({positive(-offsets.red), positive(-offsets.green), positive(-offsets.blue)}) ^ opaque;
    const auto added = reinterpret_cast<Bytes>(broadcast(up));
    const auto taken = reinterpret_cast<Bytes>(broadcast(down));
    std::ptrdiff_t x = 0;
    for (; x + pixelsAtOnce <= count; x += pixelsAtOnce) {
        const Bytes moved = saturatingSubtract(saturatingAdd(reinterpret_cast<Bytes>(load(source + x)), added), taken);
        store(result + x, (reinterpret_cast<Words>(moved) & colour) | opaque);
    }
    mapRow<Pixels, Pixels, WholeOffsets, add>(source + x, result + x, count - x, offsets);
}

constexpr WholeOffsetsKernels table = {
    .add = pointKernel<WholeOffsets, add>(addInBytes<AlphaLast>, addInBytes<AlphaFirst>, addInBytes<GdTrueColor>)};

}  // namespace

constinit const WholeOffsetsKernels WholeOffsetsKernels::PXK_ISA = table;

}  // namespace pxk
