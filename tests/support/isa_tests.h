/// Runs a check on the kernels for every instruction set architecture that this processor has.
#pragma once

#include <gtest/gtest.h>

#include "picture/isa.h"

namespace pxk::test {

inline const char* nameOf(Isa isa) {
    switch (isa) {
        case Isa::baseline:
            return "baseline";
        case Isa::avx2:
            return "avx2";
        case Isa::avx512:
            return "avx512";
    }
    return "?";
}

/// Calls `check(kernels)` with the kernels for each of them.
template <class Kernels, class Check>
void forEveryIsa(Check check) {
    const auto run = [&](Isa isa, const Kernels& kernels) {
        SCOPED_TRACE(nameOf(isa));
        check(kernels);
    };
    run(Isa::baseline, Kernels::baseline);
    if constexpr (wideIsasBuilt) {
        if (processorIsa() >= Isa::avx2) run(Isa::avx2, Kernels::avx2);
        if (processorIsa() >= Isa::avx512) run(Isa::avx512, Kernels::avx512);
    }
}

}  // namespace pxk::test
