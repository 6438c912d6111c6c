#include "utilities/envelope.h"

#include <algorithm>

#include "frame/allocation.h"
#include "picture/isa.h"

namespace pxk {

namespace {

constexpr SampleFormat sampleFormats[] = {
    {7, 1, 127, false, &EnvelopeKernels::signed8},    {8, 1, 127, true, &EnvelopeKernels::unsigned8},
    {15, 2, 32767, true, &EnvelopeKernels::signed16}, {16, 2, 32767, true, &EnvelopeKernels::unsigned16},
    {-32, 4, 1.0, true, &EnvelopeKernels::float32},   {-64, 8, 1.0, true, &EnvelopeKernels::float64},
};

// In this order of operations, whose rounding decides where a column begins.
std::int64_t columnStart(std::int32_t column, std::int32_t width, std::int32_t sampleCount) {
    return static_cast<std::int64_t>(static_cast<double>(column) / width * sampleCount);
}

void smoothValues(double* values, std::int32_t count, double weight) {
    for (std::int32_t i = 1; i < count; ++i) values[i] = values[i - 1] * (1 - weight) + values[i] * weight;
}

void scaleValues(double* values, std::int32_t count, double height, double fullScale) {
    for (std::int32_t i = 0; i < count; ++i) values[i] = values[i] * height / fullScale;
}

}  // namespace

const SampleFormat* findSampleFormat(std::int32_t bits) {
    const auto* found = std::ranges::find(sampleFormats, bits, &SampleFormat::bits);
    return found != std::end(sampleFormats) ? found : nullptr;
}

bool Envelope::allocate(std::int32_t width) {
    if (width < 1) return false;
    low_ = allocateZeroed<double>(static_cast<std::uint64_t>(width));
    high_ = allocateZeroed<double>(static_cast<std::uint64_t>(width));
    width_ = width;
    return low_ != nullptr && high_ != nullptr;
}

void Envelope::measure(const SampleRun& run, const SampleFormat& format) {
    const SumSamples sum = kernels<EnvelopeKernels>().*format.sum;
    double* const low = low_.get();
    double* const high = high_.get();
    for (std::int32_t i = 0; i < width_; ++i) {
        const std::int64_t first = columnStart(i, width_, run.wanted);
        const std::int64_t end = columnStart(i + 1, width_, run.wanted);
        if (end <= first) continue;
        const std::int64_t held = std::min(end, run.available) - first;
        if (held < 1) break;
        const SampleSums sums = sum(run.samples + first * format.bytesPerSample, static_cast<std::ptrdiff_t>(held));
        const double half = static_cast<double>(end - first) * 0.5;
        low[i] = sums.negative / half;
        high[i] = sums.others / half;
    }
}

double Envelope::peak(const SampleFormat& format) const {
    double peak = 0;
    for (std::int32_t i = 0; i < width_; ++i) {
        if (high()[i] > peak) peak = high()[i];
        if (format.peakOnBothSides && -low()[i] > peak) peak = -low()[i];
    }
    return peak;
}

void Envelope::smooth(std::int32_t smooth) {
    const double weight = 2.0 / (static_cast<double>(smooth) + 1.0);
    // With the weight 1 the average would only turn what follows an infinite column into NaN.
    if (!(weight > 0) || weight == 1) return;
    smoothValues(low_.get(), width_, weight);
    smoothValues(high_.get(), width_, weight);
}

void Envelope::scale(std::int32_t height, double fullScale) {
    scaleValues(low_.get(), width_, height, fullScale);
    scaleValues(high_.get(), width_, height, fullScale);
}

}  // namespace pxk
