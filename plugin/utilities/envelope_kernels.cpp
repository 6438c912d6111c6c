#include "utilities/envelope_kernels.h"

#include <cstdint>

namespace pxk {

namespace {

template <class Sample>
Sample sampleAt(const unsigned char* samples, std::ptrdiff_t i) {
    Sample sample;
    __builtin_memcpy(&sample, samples + i * static_cast<std::ptrdiff_t>(sizeof sample), sizeof sample);
    return sample;
}

std::int16_t centred(std::int8_t sample) { return sample; }
std::int16_t centred(std::uint8_t sample) { return static_cast<std::int16_t>(sample - 128); }
std::int16_t centred(std::int16_t sample) { return sample; }
std::int16_t centred(std::uint16_t sample) { return static_cast<std::int16_t>(sample - 32768); }

// So many samples of 16 bits sum up to no more than 2^30 in either direction.
constexpr std::ptrdiff_t blockSize = 32768;

struct WholeSums {
    std::int32_t negative;
    std::int32_t others;
};

// Each sum is a dot product with factors of 0 and -1, for which the compilers know one instruction; this takes half the
// time of choosing by the sign.
template <class Sample>
WholeSums sumBlock(const unsigned char* samples, std::ptrdiff_t count) {
    WholeSums negated = {0, 0};
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const std::int16_t value = centred(sampleAt<Sample>(samples, i));
        const auto whenNegative = static_cast<std::int16_t>(value >> 15);
        const auto otherwise = static_cast<std::int16_t>(~whenNegative);
        negated.negative += value * whenNegative;
        negated.others += value * otherwise;
    }
    return {-negated.negative, -negated.others};
}

// In integers: fewer than 2^31 samples of 16 bits sum up to less than 2^46, which a double holds exactly, so adding in
// doubles one sample after another would give the same.
template <class Sample>
SampleSums sumIntegers(const unsigned char* samples, std::ptrdiff_t count) {
    std::int64_t negative = 0;
    std::int64_t others = 0;
    while (count > 0) {
        const std::ptrdiff_t size = count < blockSize ? count : blockSize;
        const WholeSums block = sumBlock<Sample>(samples, size);
        negative += block.negative;
        others += block.others;
        samples += size * static_cast<std::ptrdiff_t>(sizeof(Sample));
        count -= size;
    }
    return {static_cast<double>(negative), static_cast<double>(others)};
}

// One sample after another: sums of floating-point numbers depend on their order.
template <class Sample>
SampleSums sumInOrder(const unsigned char* samples, std::ptrdiff_t count) {
    SampleSums sums = {0, 0};
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto value = static_cast<double>(sampleAt<Sample>(samples, i));
        const bool negative = value < 0;
        sums.negative += negative ? value : 0;
        sums.others += negative ? 0 : value;
    }
    return sums;
}

constexpr EnvelopeKernels table = {.signed8 = sumIntegers<std::int8_t>,
                                   .unsigned8 = sumIntegers<std::uint8_t>,
                                   .signed16 = sumIntegers<std::int16_t>,
                                   .unsigned16 = sumIntegers<std::uint16_t>,
                                   .float32 = sumInOrder<float>,
                                   .float64 = sumInOrder<double>};

}  // namespace

constinit const EnvelopeKernels EnvelopeKernels::PXK_ISA = table;

}  // namespace pxk
