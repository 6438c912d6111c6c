#include "channels/color_counting_kernels.h"

namespace pxk {

namespace {

std::uint32_t countColor(const std::uint32_t* row, std::ptrdiff_t count, std::uint32_t mask, std::uint32_t wanted) {
    std::uint32_t found = 0;
    for (std::ptrdiff_t x = 0; x < count; ++x) found += (row[x] & mask) == wanted ? 1U : 0U;
    return found;
}

using Counts = std::uint32_t[ByteCounts::channels][ByteCounts::values];

template <int firstShift, class Word>
void add(Word word, std::uint32_t number, Counts& counts) {
    counts[0][(word >> firstShift) & 0xFF] += number;
    counts[1][(word >> (firstShift + 8)) & 0xFF] += number;
    counts[2][(word >> (firstShift + 16)) & 0xFF] += number;
}

// Two words as one: a processor of 64 bits reads them so.
std::uint64_t pairAt(const std::uint32_t* row) { return row[0] | std::uint64_t{row[1]} << 32; }

// Words are taken in fours: four of one colour, as in flat areas, are counted as one.
template <int firstShift>
void countBytes(const std::uint32_t* row, std::ptrdiff_t count, ByteCounts& result) {
    static_assert(ByteCounts::copies == 4);
    Counts(&counts)[ByteCounts::copies] = result.counts;
    std::ptrdiff_t x = 0;
    for (; x + 4 <= count; x += 4) {
        const std::uint64_t front = pairAt(row + x);
        const std::uint64_t back = pairAt(row + x + 2);
        if (front == back && (front >> 32) == (front & 0xFFFFFFFF)) {
            add<firstShift>(row[x], 4, counts[0]);
        } else {
            add<firstShift>(front, 1, counts[0]);
            add<firstShift + 32>(front, 1, counts[1]);
            add<firstShift>(back, 1, counts[2]);
            add<firstShift + 32>(back, 1, counts[3]);
        }
    }
    for (; x < count; ++x) add<firstShift>(row[x], 1, counts[0]);
}

constexpr ColorCountingKernels table = {.countColor = countColor,
                                        // The colour bytes are the low three, except behind a leading alpha byte.
                                        .countBytes = {countBytes<0>, countBytes<8>, countBytes<0>}};

}  // namespace

constinit const ColorCountingKernels ColorCountingKernels::PXK_ISA = table;

}  // namespace pxk
