#include "analysis/picture_search_kernels.h"

#include "picture/byte_lanes.h"

namespace pxk {

namespace {

const std::uint32_t* rowOf(const SearchPicture& picture, std::int32_t y) {
    if (picture.rowTable != nullptr) return reinterpret_cast<const std::uint32_t*>(picture.rowTable[y]);
    return reinterpret_cast<const std::uint32_t*>(picture.start + y * picture.rowBytes);
}

std::uint32_t limitFor(const FamilyLayout& layout, std::int32_t largestDifference) {
    return ~colorMask(layout) | (colorMask(layout) & 0x01010101) * static_cast<std::uint32_t>(largestDifference);
}

// Both pictures have the channels at the same places: words are compared as they are.
struct SameLayout {
    explicit SameLayout(const SearchSettings& settings)
        : limit(broadcast(limitFor(settings.haystack.layout, settings.largestDifference))) {}

    static Words fromHaystack(Words pixels) { return pixels; }
    static Words fromNeedle(Words pixels) { return pixels; }

    Words limit;
};

// The channels of either picture are moved to where alpha-last formats have them. Formats of no family have masks of
// 0, which make them black.
struct MixedLayouts {
    explicit MixedLayouts(const SearchSettings& settings)
        : limit(broadcast(limitFor(layout<AlphaLast>(), settings.largestDifference))),
          haystack(settings.haystack.layout),
          needle(settings.needle.layout) {}

    static Words moved(Words pixels, const FamilyLayout& from) {
        return ((pixels & from.redMask) >> from.red) | ((pixels & from.greenMask) >> from.green << 8) |
               ((pixels & from.blueMask) >> from.blue << 16);
    }
    Words fromHaystack(Words pixels) const { return moved(pixels, haystack); }
    Words fromNeedle(Words pixels) const { return moved(pixels, needle); }

    Words limit;
    FamilyLayout haystack;
    FamilyLayout needle;
};

template <class Layouts>
Bytes differences(const Layouts& layouts, Words haystack, Words needle) {
    return difference(reinterpret_cast<Bytes>(layouts.fromHaystack(haystack)),
                      reinterpret_cast<Bytes>(layouts.fromNeedle(needle)));
}

template <class Layouts>
bool rowMatches(const Layouts& layouts, const std::uint32_t* haystack, const std::uint32_t* needle,
                std::ptrdiff_t count) {
    constexpr int registers = 4;
    for (; count >= registers * pixelsAtOnce; count -= registers * pixelsAtOnce) {
        Bytes widest = {};
        for (int i = 0; i < registers; ++i, haystack += pixelsAtOnce, needle += pixelsAtOnce) {
            widest = larger(widest, differences(layouts, load(haystack), load(needle)));
        }
        if (!allWithin(widest, layouts.limit)) return false;
    }
    for (; count >= pixelsAtOnce; count -= pixelsAtOnce, haystack += pixelsAtOnce, needle += pixelsAtOnce) {
        if (!allWithin(differences(layouts, load(haystack), load(needle)), layouts.limit)) return false;
    }
    return count == 0 ||
           allWithin(differences(layouts, loadPart(haystack, count), loadPart(needle, count)), layouts.limit);
}

template <class Layouts>
bool needleMatches(const Layouts& layouts, const SearchSettings& settings, std::int32_t x, std::int32_t y) {
    for (std::int32_t row = 0; row < settings.needle.height; ++row) {
        if (!rowMatches(layouts, rowOf(settings.haystack, y + row) + x, rowOf(settings.needle, row),
                        settings.needle.width)) {
            return false;
        }
    }
    return true;
}

// The needle's first pixel is compared with a block of candidates at once; the whole needle only where that matches.
constexpr int blockRegisters = 4;
constexpr std::int32_t blockPixels = blockRegisters * pixelsAtOnce;

template <class Layouts>
std::int32_t findInRow(const SearchSettings& settings, std::int32_t y, std::int32_t from, std::int32_t candidates) {
    const Layouts layouts(settings);
    const std::uint32_t* row = rowOf(settings.haystack, y);
    const Words first = broadcast(*rowOf(settings.needle, 0));
    for (std::int32_t x = from; x < candidates; x += blockPixels) {
        const std::int32_t count = candidates - x < blockPixels ? candidates - x : blockPixels;
        std::uint32_t rest[blockPixels];
        const std::uint32_t* block = row + x;
        if (count < blockPixels) {
            __builtin_memset(rest, 0, sizeof rest);
            __builtin_memcpy(rest, block, static_cast<std::size_t>(count) * sizeof *block);
            block = rest;
        }
        Words matching[blockRegisters];
        Words any = {};
        for (int i = 0; i < blockRegisters; ++i) {
            matching[i] = pixelsWithin(differences(layouts, load(block + i * pixelsAtOnce), first), layouts.limit);
            any |= matching[i];
        }
        if (!anyBit(any)) continue;
        std::uint32_t flags[blockPixels];
        __builtin_memcpy(flags, matching, sizeof flags);
        for (std::int32_t i = 0; i < count; ++i) {
            if (flags[i] != 0 && needleMatches(layouts, settings, x + i, y)) return x + i;
        }
    }
    return candidates;
}

std::int32_t findInRowOf(const SearchSettings& settings, std::int32_t y, std::int32_t from, std::int32_t candidates) {
    const FamilyLayout& haystack = settings.haystack.layout;
    const FamilyLayout& needle = settings.needle.layout;
    const bool same = colorMask(haystack) == colorMask(needle) && haystack.redMask == needle.redMask;
    const auto find = same ? findInRow<SameLayout> : findInRow<MixedLayouts>;
    return find(settings, y, from, candidates);
}

constexpr PictureSearchKernels table = {.findInRow = findInRowOf};

}  // namespace

constinit const PictureSearchKernels PictureSearchKernels::PXK_ISA = table;

}  // namespace pxk
