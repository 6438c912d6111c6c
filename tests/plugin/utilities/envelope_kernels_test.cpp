// The sums of samples in every format, compared with their definition.
#include "utilities/envelope_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "support/isa_tests.h"
#include "support/random.h"

namespace pxk::test {
namespace {

template <class Sample>
std::vector<Sample> randomSamples(std::size_t count, Random& random) {
    std::vector<Sample> samples(count);
    for (Sample& sample : samples) {
        if constexpr (std::is_floating_point_v<Sample>) {
            sample = static_cast<Sample>(std::ldexp(random.between(-1000000, 1000000), random.between(-40, 40)));
        } else {
            sample = static_cast<Sample>(random.word());
        }
    }
    return samples;
}

// The definition: in doubles, one sample after another.
template <class Sample>
SampleSums summed(const std::vector<Sample>& samples, double middle) {
    SampleSums sums = {0, 0};
    for (const Sample sample : samples) {
        const double value = static_cast<double>(sample) - middle;
        (value < 0 ? sums.negative : sums.others) += value;
    }
    return sums;
}

// At an address that no sample type is aligned to, and of exactly the size that may be read.
template <class Sample>
SampleSums sumOf(SumSamples sum, const std::vector<Sample>& samples) {
    const std::size_t size = samples.size() * sizeof(Sample);
    const std::unique_ptr<unsigned char[]> bytes(new unsigned char[size + 1]);
    if (size > 0) std::memcpy(bytes.get() + 1, samples.data(), size);
    return sum(bytes.get() + 1, static_cast<std::ptrdiff_t>(samples.size()));
}

template <class Sample>
void check(SumSamples sum, const std::vector<Sample>& samples, double middle = 0) {
    const SampleSums expected = summed(samples, middle);
    const SampleSums actual = sumOf(sum, samples);
    ASSERT_EQ(actual.negative, expected.negative) << samples.size() << " samples";
    ASSERT_EQ(actual.others, expected.others) << samples.size() << " samples";
}

template <class Sample>
void checkSizes(SumSamples sum, double middle = 0) {
    Random random(1);
    for (std::size_t count = 0; count <= 130; ++count) check(sum, randomSamples<Sample>(count, random), middle);
    for (const std::size_t count : {32767U, 32768U, 32769U, 100001U}) {
        check(sum, randomSamples<Sample>(count, random), middle);
        check(sum, std::vector<Sample>(count, std::numeric_limits<Sample>::lowest()), middle);
        check(sum, std::vector<Sample>(count, std::numeric_limits<Sample>::max()), middle);
    }
}

TEST(EnvelopeKernels, EqualTheirDefinitions) {
    forEveryIsa<EnvelopeKernels>([](const EnvelopeKernels& kernels) {
        checkSizes<std::int8_t>(kernels.signed8);
        checkSizes<std::uint8_t>(kernels.unsigned8, 128);
        checkSizes<std::int16_t>(kernels.signed16);
        checkSizes<std::uint16_t>(kernels.unsigned16, 32768);
        checkSizes<float>(kernels.float32);
        checkSizes<double>(kernels.float64);
    });
}

TEST(EnvelopeKernels, SumFloatingPointNumbersInTheirOrder) {
    // Any other order loses the ones.
    const std::vector<double> samples = {1e16, 1, 1, -1e16, -1, -1, 1, 1};
    const std::vector<double> backwards(samples.rbegin(), samples.rend());
    forEveryIsa<EnvelopeKernels>([&](const EnvelopeKernels& kernels) {
        EXPECT_EQ(sumOf(kernels.float64, samples).others, 1e16);
        EXPECT_EQ(sumOf(kernels.float64, backwards).others, 1e16 + 4);
        EXPECT_EQ(sumOf(kernels.float64, samples).negative, -1e16);
        EXPECT_EQ(sumOf(kernels.float64, backwards).negative, -1e16 - 2);
    });
}

TEST(EnvelopeKernels, CountNaNWithTheOthersAndKeepInfinitiesApart) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    forEveryIsa<EnvelopeKernels>([&](const EnvelopeKernels& kernels) {
        const SampleSums withNaN = sumOf<double>(kernels.float64, {-1, nan, 2, -3});
        EXPECT_EQ(withNaN.negative, -4);
        EXPECT_TRUE(std::isnan(withNaN.others));
        const SampleSums infinite = sumOf<double>(kernels.float64, {-infinity, 5, infinity, -5});
        EXPECT_EQ(infinite.negative, -infinity);
        EXPECT_EQ(infinite.others, infinity);
        const SampleSums small = sumOf<float>(kernels.float32, {-0.0F, 0.0F});
        EXPECT_EQ(small.negative, 0);
        EXPECT_FALSE(std::signbit(small.others));
    });
}

}  // namespace
}  // namespace pxk::test
