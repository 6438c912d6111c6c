/// Sums of negative and of other samples, for each sample format.
#pragma once

#include <cstddef>

namespace pxk {

/// The sums of a run of samples: of those below 0, and of all others. NaN is not below 0.
struct SampleSums {
    double negative;
    double others;
};

/// Sums `count` samples, which may lie at any address; no sample gives 0 and 0.
using SumSamples = SampleSums (*)(const unsigned char* samples, std::ptrdiff_t count);

/// One for each way in which a sample is stored. Unsigned samples are taken as their distance from the middle.
struct EnvelopeKernels {
    static const EnvelopeKernels baseline, avx2, avx512;

    SumSamples signed8;
    SumSamples unsigned8;
    SumSamples signed16;
    SumSamples unsigned16;
    SumSamples float32;
    SumSamples float64;
};

}  // namespace pxk
