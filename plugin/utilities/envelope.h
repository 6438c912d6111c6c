/// The envelope of a run of samples: for each column of a waveform, how far its samples reach below and above 0.
#pragma once

#include <cstdint>
#include <memory>

#include "utilities/envelope_kernels.h"

namespace pxk {

/// One way of storing samples.
struct SampleFormat {
    /// What a program calls it by: 7 and 8 are signed and unsigned bytes, 15 and 16 signed and unsigned 16-bit
    /// integers, -32 and -64 floats and doubles, all in native byte order.
    std::int32_t bits;
    std::uint32_t bytesPerSample;
    /// The value that a waveform without automatic scale shows as the whole height.
    double fullScale;
    /// Whether the automatic scale looks at the negative samples too.
    bool peakOnBothSides;
    SumSamples EnvelopeKernels::*sum;
};

/// The format of that name, or nil.
const SampleFormat* findSampleFormat(std::int32_t bits);

/// The samples of a memory block.
struct SampleRun {
    const unsigned char* samples;
    /// How many the block holds.
    std::int64_t available;
    /// How many the program asks for: what the block lacks of them counts as silence. Below 1 there are none.
    std::int32_t wanted;
};

/// Two values a column: `low`, the negative side, is 0 or below, `high` 0 or above, and each is twice the mean that the
/// samples of its sign contribute to the column. Floating-point samples may bring infinities and NaN, which travel
/// through every step by the rules of IEEE arithmetic.
class Envelope {
  public:
    /// Makes room for `width` columns, all 0. False when `width` is below 1 or there is no memory.
    bool allocate(std::int32_t width);

    /// Splits the wanted samples into equal runs, one a column: column i holds the samples from
    /// trunc(i / width * wanted) to before trunc((i + 1) / width * wanted). A column without samples is 0.
    void measure(const SampleRun& run, const SampleFormat& format);

    /// The largest value on the sides that the format looks at; 0 when there is none above. NaN is never the largest.
    double peak(const SampleFormat& format) const;

    /// An exponential moving average over the columns, in which a column has the weight 2 / (`smooth` + 1): 1 changes
    /// nothing, larger numbers smooth more. Below -1 the weight is negative, and nothing is done. 0 has the weight 2,
    /// which overshoots, and -1 an infinite one, which makes every column but the first NaN.
    void smooth(std::int32_t smooth);

    /// Multiplies every value by `height` and divides it by `fullScale`.
    void scale(std::int32_t height, double fullScale);

    const double* low() const { return low_.get(); }
    const double* high() const { return high_.get(); }
    std::int32_t width() const { return width_; }

  private:
    std::unique_ptr<double[]> low_;
    std::unique_ptr<double[]> high_;
    std::int32_t width_ = 0;
};

}  // namespace pxk
