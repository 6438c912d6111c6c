#include "bench/peers/reasons.h"

#include <array>
#include <string_view>
#include <utility>

namespace pxkbench {
namespace {

// The first whose key the row's name starts with.
constexpr std::array<std::pair<std::string_view, std::string_view>, 13> reasons = {{
    {"ChangeSaturation", "three 32-bit multiplications per pixel, and a division by 255 that truncates towards zero."},
    {"Change",
     "the curve is computed for each pixel; where single precision would not give the same bytes, it takes double "
     "precision, of which a register holds half as many values."},
    {"Tint", "six multiplications per pixel in double precision, of which a register holds few values."},
    {"PictureSepia", "three 32-bit multiplications per pixel, and a division that truncates towards zero."},
    {"ExtractColorRectangleMask",
     "between reading the picture and writing the result, the boxes are searched and filled."},
    {"CountColors", "three counters in memory are incremented for each pixel, which does not vectorise."},
    {"TransformColors", "without the byte permutes of AVX-512 VBMI, each byte takes a table lookup of its own."},
    {"PictureLut3D", "for each pixel, four grid points of the table are fetched and interpolated in double precision."},
    {"isGray",
     "the channels of each pixel are compared with one another, which takes several instructions per register of "
     "pixels."},
    {"Colorness", "two differences and four comparisons per pixel, where the limit takes a single addition."},
    {"FindPicture",
     "each pixel is compared with the needle's first one, and positions where it matches are compared further."},
    {"RenderSamples", "besides summing the samples for each column, the picture is drawn, with anti-aliased lines."},
    {"Scroll", "the rows or columns that wrap around are saved first and copied back."},
}};

}  // namespace

std::string reasonFor(const std::string& row) {
    for (const auto& [start, reason] : reasons)
        if (row.starts_with(start)) return std::string(reason);
    return "unknown.";
}

}  // namespace pxkbench
