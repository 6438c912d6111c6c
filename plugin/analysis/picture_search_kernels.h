/// Comparisons of a needle with the places of a haystack.
#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/family_layout.h"

namespace pxk {

/// An open picture as the search sees it.
struct SearchPicture {
    FamilyLayout layout;
    const unsigned char* start;
    std::ptrdiff_t rowBytes;
    /// Where the rows are when they are not `rowBytes` apart; nil when they are.
    int* const* rowTable;
    std::int32_t width;
    std::int32_t height;
};

struct SearchSettings {
    SearchPicture haystack;
    SearchPicture needle;
    /// The largest difference in a channel that still matches, 0 to 255.
    std::int32_t largestDifference;
};

struct PictureSearchKernels {
    static const PictureSearchKernels baseline, avx2, avx512;

    /// The first column from `from` to before `candidates` where the needle matches with its top row in row `y` of the
    /// haystack; or `candidates`, also when `from` is not before it. The needle has at least one pixel, and fits into
    /// the haystack at all these columns and in row `y`.
    std::int32_t (*findInRow)(const SearchSettings& settings, std::int32_t y, std::int32_t from,
                              std::int32_t candidates);
};

}  // namespace pxk
