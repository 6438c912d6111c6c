#include "pointops/exact_colors_kernels.h"

namespace pxk {

namespace {

template <class Source, class Result>
void replaceRow(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
                const ExactColor& given) {
    const ExactColor color = given;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const std::uint32_t own = Result::opaque(Source::read(source[x]));
        result[x] = (source[x] & color.mask) == color.wanted ? color.found : own;
    }
}

void extractRow(const std::uint32_t* __restrict source, std::uint32_t* __restrict result, std::ptrdiff_t count,
                const ExactColor& given) {
    const ExactColor color = given;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        result[x] = (source[x] & color.mask) == color.wanted ? color.found : color.background;
    }
}

template <class Source>
constexpr void useReplaceRows(PointRow<ExactColor> (&rows)[writableFamilyCount]) {
    rows[0] = replaceRow<Source, AlphaLast>;
    rows[1] = replaceRow<Source, AlphaFirst>;
    rows[2] = replaceRow<Source, GdTrueColor>;
}

constexpr PointKernel<ExactColor> replaceKernel() {
    PointKernel<ExactColor> kernel{};
    useReplaceRows<AlphaLast>(kernel.rows[0]);
    useReplaceRows<AlphaFirst>(kernel.rows[1]);
    useReplaceRows<GdTrueColor>(kernel.rows[2]);
    useReplaceRows<NoFamily>(kernel.rows[3]);
    return kernel;
}

// The settings say all about both families.
constexpr PointKernel<ExactColor> extractKernel() {
    PointKernel<ExactColor> kernel{};
    for (auto& rows : kernel.rows) {
        for (auto& row : rows) row = extractRow;
    }
    return kernel;
}

constexpr ExactColorKernels table = {.replace = replaceKernel(), .extract = extractKernel()};

}  // namespace

constinit const ExactColorKernels ExactColorKernels::PXK_ISA = table;

}  // namespace pxk
