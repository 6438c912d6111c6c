#include "channels/color_counting.h"

#include <algorithm>
#include <cstring>

#include "channels/color_counting_kernels.h"
#include "frame/memory_block.h"
#include "picture/host_color.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"

namespace pxk {

namespace {

constexpr std::int32_t histogramBytes = ByteCounts::values * sizeof(std::uint32_t);

ByteCounts countBytes(const PictureReader& source) {
    ByteCounts counts{};
    const Family family = familyOf(source.format);
    if (family == Family::none) {
        counts.counts[0][0][0] = static_cast<std::uint32_t>(source.width) * static_cast<std::uint32_t>(source.height);
        return counts;
    }
    const auto countRow = kernels<ColorCountingKernels>().countBytes[static_cast<int>(family)];
    for (std::int32_t y = 0; y < source.height; ++y) countRow(source.rowAt(y), source.width, counts);
    return counts;
}

// The counters may lie at any address, and two blocks may be one, so each counter is read and written on its own.
void addTo(unsigned char* block, const ByteCounts& counts, int channel) {
    for (int value = 0; value < ByteCounts::values; ++value) {
        std::uint32_t counter = 0;
        std::memcpy(&counter, block, sizeof counter);
        for (const auto& copy : counts.counts) counter += copy[channel][value];
        std::memcpy(block, &counter, sizeof counter);
        block += sizeof counter;
    }
}

// Whether the variable holds a block now, a new one if it held none. The host makes new blocks zero-filled.
bool provideBlock(REALmemoryBlockStruct*& variable) {
    if (variable == nullptr) variable = REALNewMemoryBlockOriginal(histogramBytes);
    return variable != nullptr;
}

bool holdsHistogram(const rbData& block) { return block.holds(histogramBytes); }

// What `CountColorsPXK` promises once the variables hold blocks; false when nothing could be counted.
bool countInto(const PictureReader& source, REALmemoryBlockStruct* first, REALmemoryBlockStruct* second,
               REALmemoryBlockStruct* third) {
    const rbData reds(first);
    const rbData greens(second);
    const rbData blues(third);
    if (!holdsHistogram(reds) || !holdsHistogram(greens) || !holdsHistogram(blues)) return false;
    const ByteCounts counts = countBytes(source);
    const FamilyLayout layout = layoutOf(familyOf(source.format));
    const std::int32_t lowest = std::min({layout.red, layout.green, layout.blue});
    addTo(reds.bytes(), counts, (layout.red - lowest) / 8);
    addTo(greens.bytes(), counts, (layout.green - lowest) / 8);
    addTo(blues.bytes(), counts, (layout.blue - lowest) / 8);
    return true;
}

}  // namespace

std::int32_t CountColorPXK(REALpictureStruct* self, std::uint32_t col) {
    PictureReader source;
    if (!source.open(self)) return 0;
    const FamilyLayout layout = layoutOf(familyOf(source.format));
    const std::uint32_t mask = colorMask(layout);
    const std::uint32_t wanted = channelBits(col, layout);
    const auto countRow = kernels<ColorCountingKernels>().countColor;
    std::uint32_t found = 0;
    for (std::int32_t y = 0; y < source.height; ++y) found += countRow(source.rowAt(y), source.width, mask, wanted);
    return static_cast<std::int32_t>(found);
}

// `blue` is the second block and receives green, `green` the third and receives blue: the published names are crossed.
void CountColorsPXK(REALpictureStruct* self, REALmemoryBlockStruct** red, REALmemoryBlockStruct** blue,
                    REALmemoryBlockStruct** green, std::int32_t* count) {
    *count = -1;
    bool provided = true;
    for (REALmemoryBlockStruct** variable : {red, blue, green}) provided = provideBlock(*variable) && provided;
    PictureReader source;
    if (!provided || !source.open(self)) return;
    if (!countInto(source, *red, *blue, *green)) return;
    *count =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(source.width) * static_cast<std::uint32_t>(source.height));
}

}  // namespace pxk
