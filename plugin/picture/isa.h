/// The processor's instruction set architecture, and the kernels that were compiled for it.
///
/// A group of kernels is a struct of function pointers in a header `*_kernels.h`, with one static object for each
/// architecture: `baseline`, `avx2` and `avx512`. Its source is compiled once for each, with the name of the
/// architecture as `PXK_ISA`, and defines the object of that name.
#pragma once

namespace pxk {

/// `baseline` is what every processor of the platform has; `avx512` means AVX-512 F, BW, DQ, VL and VBMI together.
enum class Isa : unsigned char { baseline, avx2, avx512 };

/// Whether there are kernels for more than the baseline.
#ifdef __x86_64__
inline constexpr bool wideIsasBuilt = true;
#else
inline constexpr bool wideIsasBuilt = false;
#endif

/// The widest of these that the running processor has, detected once.
Isa processorIsa();

/// A group's kernels for the running processor.
template <class Kernels>
const Kernels& kernels() {
    if constexpr (wideIsasBuilt) {
        if (processorIsa() == Isa::avx512) return Kernels::avx512;
        if (processorIsa() == Isa::avx2) return Kernels::avx2;
    }
    return Kernels::baseline;
}

}  // namespace pxk
