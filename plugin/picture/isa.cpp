#include "picture/instruction_sets.h"

namespace pxk {

namespace {

#ifdef PXK_FORCED_SET

// One set whatever the processor, so that tests know which one they test.
InstructionSet findInstructionSet() { return InstructionSet::PXK_FORCED_SET; }

#elif defined(__x86_64__)

InstructionSet findInstructionSet() {
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi")) {
        return InstructionSet::avx512;
    }
    return __builtin_cpu_supports("avx2") ? InstructionSet::avx2 : InstructionSet::baseline;
}

#else

InstructionSet findInstructionSet() { return InstructionSet::baseline; }

#endif

}  // namespace

InstructionSet instructionSet() {
    static const InstructionSet found = findInstructionSet();
    return found;
}

}  // namespace pxk
