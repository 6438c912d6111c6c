#include "picture/isa.h"

namespace pxk {

namespace {

#ifdef PXK_FORCED_ISA

// One whatever the processor has, so that tests know which one they test.
Isa detectIsa() { return Isa::PXK_FORCED_ISA; }

#elif defined(__x86_64__)

Isa detectIsa() {
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi")) {
        return Isa::avx512;
    }
    return __builtin_cpu_supports("avx2") ? Isa::avx2 : Isa::baseline;
}

#else

Isa detectIsa() { return Isa::baseline; }

#endif

}  // namespace

Isa processorIsa() {
    static const Isa found = detectIsa();
    return found;
}

}  // namespace pxk
