#include "bench/peers/reasons.h"

#include <array>
#include <string_view>
#include <utility>

namespace pxkbench {
namespace {

// By how the row's name begins.
constexpr std::array<std::pair<std::string_view, std::string_view>, 13> reasons = {{
    {"ChangeSaturation", "three products of 32 bits a pixel, and a division by 255 that rounds toward zero."},
    {"Change",
     "the curve is computed for each pixel: where single precision cannot give the same bytes, in double "
     "precision, of which a register holds half as many."},
    {"Tint", "six products a pixel in double precision, of which a register holds few."},
    {"PictureSepia", "three products of 32 bits a pixel, and a division that rounds toward zero."},
    {"ExtractColorRectangleMask", "the boxes are found and drawn between reading the picture and writing the result."},
    {"CountColors",
     "three counters in memory are raised for each pixel, which no instruction does for several at once."},
    {"TransformColors",
     "without byte permutes of whole registers, which AVX-512 VBMI has, each byte is looked up by "
     "itself."},
    {"PictureLut3D", "four points of the table in double precision are fetched for each pixel and interpolated."},
    {"isGray",
     "bytes are compared with their neighbours within each pixel, which takes several instructions for each "
     "register of pixels."},
    {"Colorness", "two differences and four comparisons a pixel, where the limit is a single addition."},
    {"FindPicture",
     "each pixel is compared with the needle's first one, and the places where it matches are looked at "
     "again."},
    {"RenderSamples", "the samples are added up by column, and the picture is drawn, with smooth lines, besides."},
    {"Scroll", "the bytes that leave are put aside and come back."},
}};

}  // namespace

std::string reasonFor(const std::string& row) {
    for (const auto& [start, reason] : reasons)
        if (row.starts_with(start)) return std::string(reason);
    return "not known.";
}

}  // namespace pxkbench
