#include "channels/recombination_kernels.h"

#include "picture/byte_lanes.h"

namespace pxk {

namespace {

// Whether the channels are at the same places. Those of a format of no family, with masks of 0, are nowhere.
bool sameLayout(const FamilyLayout& source, const FamilyLayout& result) {
    return ((source.redMask ^ result.redMask) | (source.greenMask ^ result.greenMask) |
            (source.blueMask ^ result.blueMask)) == 0;
}

// One channel, to be moved from its place in the source to its place in the result.
struct Move {
    Move(std::int32_t fromShift, std::uint32_t sourceMask, std::int32_t toShift)
        : from(fromShift), mask(sourceMask >> fromShift), to(toShift) {}

    std::int32_t from;
    std::uint32_t mask;
    std::int32_t to;
};

std::uint32_t valueOf(std::uint32_t word, const Move& move) { return (word >> move.from) & move.mask; }

void combineInPlace(const std::uint32_t* red, const std::uint32_t* green, const std::uint32_t* blue,
                    std::uint32_t* __restrict result, std::ptrdiff_t count, const FamilyLayout& layout) {
    const std::uint32_t redMask = layout.redMask;
    const std::uint32_t greenMask = layout.greenMask;
    const std::uint32_t blueMask = layout.blueMask;
    const std::uint32_t opaque = layout.opaque;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        result[x] = (red[x] & redMask) | (green[x] & greenMask) | (blue[x] & blueMask) | opaque;
    }
}

void combineAcross(const std::uint32_t* red, const std::uint32_t* green, const std::uint32_t* blue,
                   std::uint32_t* __restrict result, std::ptrdiff_t count, const CombinedLayouts& layouts) {
    const Move r(layouts.red.red, layouts.red.redMask, layouts.result.red);
    const Move g(layouts.green.green, layouts.green.greenMask, layouts.result.green);
    const Move b(layouts.blue.blue, layouts.blue.blueMask, layouts.result.blue);
    const std::uint32_t opaque = layouts.result.opaque;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        result[x] = valueOf(red[x], r) << r.to | valueOf(green[x], g) << g.to | valueOf(blue[x], b) << b.to | opaque;
    }
}

void combine(const std::uint32_t* red, const std::uint32_t* green, const std::uint32_t* blue, std::uint32_t* result,
             std::ptrdiff_t count, const CombinedLayouts& layouts) {
    if (sameLayout(layouts.red, layouts.result) && sameLayout(layouts.green, layouts.result) &&
        sameLayout(layouts.blue, layouts.result)) [[likely]] {
        combineInPlace(red, green, blue, result, count, layouts.result);
    } else {
        combineAcross(red, green, blue, result, count, layouts);
    }
}

std::uint32_t larger(std::uint32_t a, std::uint32_t b) { return a > b ? a : b; }

void mergeAcross(const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* __restrict result,
                 std::ptrdiff_t count, const MergedLayouts& layouts) {
    const FamilyLayout& l1 = layouts.first;
    const FamilyLayout& l2 = layouts.second;
    const FamilyLayout& out = layouts.result;
    const Move r1(l1.red, l1.redMask, out.red);
    const Move g1(l1.green, l1.greenMask, out.green);
    const Move b1(l1.blue, l1.blueMask, out.blue);
    const Move r2(l2.red, l2.redMask, out.red);
    const Move g2(l2.green, l2.greenMask, out.green);
    const Move b2(l2.blue, l2.blueMask, out.blue);
    const std::uint32_t opaque = out.opaque;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        result[x] = larger(valueOf(first[x], r1), valueOf(second[x], r2)) << r1.to |
                    larger(valueOf(first[x], g1), valueOf(second[x], g2)) << g1.to |
                    larger(valueOf(first[x], b1), valueOf(second[x], b2)) << b1.to | opaque;
    }
}

// What larger bytes make of the alpha bytes is replaced.
void mergeInPlace(const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* __restrict result,
                  std::ptrdiff_t count, const MergedLayouts& layouts) {
    const Words colors = broadcast(colorMask(layouts.result));
    const Words opaque = broadcast(layouts.result.opaque);
    std::ptrdiff_t x = 0;
    for (; x + pixelsAtOnce <= count; x += pixelsAtOnce) {
        const Bytes merged =
            larger(reinterpret_cast<Bytes>(load(first + x)), reinterpret_cast<Bytes>(load(second + x)));
        store(result + x, (reinterpret_cast<Words>(merged) & colors) | opaque);
    }
    if (x < count) mergeAcross(first + x, second + x, result + x, count - x, layouts);
}

void merge(const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* result, std::ptrdiff_t count,
           const MergedLayouts& layouts) {
    if (sameLayout(layouts.first, layouts.result) && sameLayout(layouts.second, layouts.result)) [[likely]] {
        mergeInPlace(first, second, result, count, layouts);
    } else {
        mergeAcross(first, second, result, count, layouts);
    }
}

constexpr RecombinationKernels table = {.combine = combine, .merge = merge};

}  // namespace

constinit const RecombinationKernels RecombinationKernels::PXK_ISA = table;

}  // namespace pxk
