/// Runs a check on the kernels of every instruction set that this processor can run.
#pragma once

#include <gtest/gtest.h>

#include <type_traits>

#include "picture/instruction_sets.h"

namespace pxk::test {

inline const char* nameOf(InstructionSet set) {
    switch (set) {
        case InstructionSet::baseline:
            return "baseline";
        case InstructionSet::avx2:
            return "avx2";
        case InstructionSet::avx512:
            return "avx512";
    }
    return "?";
}

/// Calls `check(kernels)` with the kernels of each set.
template <class Kernels, class Check>
void forEveryInstructionSet(Check check) {
    const auto run = [&](InstructionSet set, const Kernels& kernels) {
        SCOPED_TRACE(nameOf(set));
        check(kernels);
    };
    run(InstructionSet::baseline, kernelsFor<Kernels, InstructionSet::baseline>());
    if constexpr (wideSetsBuilt) {
        if (instructionSet() >= InstructionSet::avx2) {
            run(InstructionSet::avx2, kernelsFor<Kernels, InstructionSet::avx2>());
        }
        if (instructionSet() >= InstructionSet::avx512) {
            run(InstructionSet::avx512, kernelsFor<Kernels, InstructionSet::avx512>());
        }
    }
}

}  // namespace pxk::test
