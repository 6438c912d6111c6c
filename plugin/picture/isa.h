/// Kernels are compiled once per instruction set; this finds the copy for the running processor.
#pragma once

namespace pxk {

/// `avx512` means AVX-512 F, BW, DQ, VL and VBMI together.
enum class InstructionSet : unsigned char { baseline, avx2, avx512 };

#ifdef __x86_64__
inline constexpr bool wideSetsBuilt = true;
#else
inline constexpr bool wideSetsBuilt = false;
#endif

/// The widest set that this processor has, found out once.
InstructionSet instructionSet();

/// A group's kernels for one set. Every kernel file defines this for its group, for the set that it is compiled for.
template <class Kernels, InstructionSet set>
const Kernels& kernelsFor();

/// A group's kernels for the running processor.
template <class Kernels>
const Kernels& kernels() {
    if constexpr (wideSetsBuilt) {
        if (instructionSet() == InstructionSet::avx512) return kernelsFor<Kernels, InstructionSet::avx512>();
        if (instructionSet() == InstructionSet::avx2) return kernelsFor<Kernels, InstructionSet::avx2>();
    }
    return kernelsFor<Kernels, InstructionSet::baseline>();
}

}  // namespace pxk
