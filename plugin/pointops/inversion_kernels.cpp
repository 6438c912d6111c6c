#include "pointops/inversion_kernels.h"

#include <type_traits>

namespace pxk {

namespace {

Rgb invert(const Invert&, Rgb pixel) { return {255 - pixel.red, 255 - pixel.green, 255 - pixel.blue}; }

Rgb invertGray(const InvertGray&, Rgb pixel) { return isGrey(pixel) ? invert({}, pixel) : pixel; }

// Within one family whole words are inverted: the compiler does not see that from channels.
template <class Pixels, class Operation>
void invertWords(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
                 const Operation&) {
    constexpr bool greyOnly = std::is_same_v<Operation, InvertGray>;
    constexpr std::uint32_t opaque = Pixels::opaque({0, 0, 0});
    constexpr std::uint32_t colour = Pixels::opaque({255, 255, 255}) ^ opaque;
    constexpr std::uint32_t besideHigher = colour & (colour >> 8);
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const std::uint32_t word = source[x];
        const bool inverted = !greyOnly || ((word ^ (word >> 8)) & besideHigher) == 0;
        result[x] = ((inverted ? ~word : word) & colour) | opaque;
    }
}

constexpr InversionKernels table = {
    .invert = pointKernel<Invert, invert>(invertWords<AlphaLast, Invert>, invertWords<AlphaFirst, Invert>,
                                          invertWords<GdTrueColor, Invert>),
    .invertGray = pointKernel<InvertGray, invertGray>(
        invertWords<AlphaLast, InvertGray>, invertWords<AlphaFirst, InvertGray>, invertWords<GdTrueColor, InvertGray>)};

}  // namespace

constinit const InversionKernels InversionKernels::PXK_ISA = table;

}  // namespace pxk
