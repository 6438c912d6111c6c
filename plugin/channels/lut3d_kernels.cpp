#include "channels/lut3d_kernels.h"

#ifdef __AVX2__
#include <immintrin.h>
#endif

namespace pxk {

namespace {

// Vectors as the compiler knows them, so that one source serves every instruction set.
#ifdef __AVX2__
constexpr int laneBytes = 32;
#else
constexpr int laneBytes = 16;
#endif
constexpr std::ptrdiff_t laneCount = laneBytes / 2;
using Lanes = std::int16_t __attribute__((vector_size(laneBytes)));
using UnsignedLanes = std::uint16_t __attribute__((vector_size(laneBytes)));

constexpr std::int16_t step = 17;
constexpr std::int16_t blueStride = Lut3DTable::channels;
constexpr std::int16_t greenStride = blueStride * Lut3DTable::points;
constexpr std::int16_t redStride = greenStride * Lut3DTable::points;

// Pixels are taken in blocks: all the comparing is done for a block at once, without a branch, and the looking up after
// that.
constexpr std::ptrdiff_t blockSize = 64;

template <class Value>
using Column = Value[blockSize];

struct Block {
    // Each pixel's channels.
    Column<std::int16_t> red;
    Column<std::int16_t> green;
    Column<std::int16_t> blue;
    // The corners of its tetrahedron, from the lowest to the highest: where the first of their doubles is in the table.
    Column<std::int16_t> corners[4];
    // Its fractions, from the largest to the smallest, in seventeenths.
    Column<std::int16_t> fractions[3];
};

struct Fractions {
    constexpr Fractions() {
        for (int k = 0; k < step; ++k) values[k] = k / static_cast<double>(step);
    }
    double values[step] = {};
};
constexpr Fractions fractions;

void readChannels(const std::uint32_t* source, std::ptrdiff_t count, const FamilyLayout& layout, Block& block) {
    const auto [red, green, blue, redMask, greenMask, blueMask, opaque] = layout;
    const std::uint32_t mask = redMask >> red;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        block.red[i] = static_cast<std::int16_t>((source[i] >> red) & mask);
        block.green[i] = static_cast<std::int16_t>((source[i] >> green) & mask);
        block.blue[i] = static_cast<std::int16_t>((source[i] >> blue) & mask);
    }
}

Lanes load(const std::int16_t* from) {
    Lanes lanes;
    __builtin_memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

void store(std::int16_t* to, Lanes lanes) { __builtin_memcpy(to, &lanes, sizeof lanes); }

// The cell's lower point on an axis: a byte divided by 17.
Lanes lowerPoint(Lanes value) {
    return reinterpret_cast<Lanes>((reinterpret_cast<UnsignedLanes>(value) * std::uint16_t{241}) >> std::uint16_t{12});
}

// The way to the cell's upper point on an axis. The last point has none above it.
Lanes wayUp(Lanes value, std::int16_t stride) { return (value != 255) & stride; }

Lanes larger(Lanes a, Lanes b) { return a > b ? a : b; }
Lanes smaller(Lanes a, Lanes b) { return a < b ? a : b; }

// The tetrahedron goes from the lowest corner of the cell to the highest, along the axis of the largest fraction first
// and along that of the smallest last. Equal fractions leave a choice, which shows in a table that holds infinities:
// it is made by the comparisons as they stand.
void findCorners(Block& block, std::ptrdiff_t i) {
    const Lanes red = load(block.red + i);
    const Lanes green = load(block.green + i);
    const Lanes blue = load(block.blue + i);
    const Lanes redPoint = lowerPoint(red);
    const Lanes greenPoint = lowerPoint(green);
    const Lanes bluePoint = lowerPoint(blue);
    const Lanes r = red - redPoint * step;
    const Lanes g = green - greenPoint * step;
    const Lanes b = blue - bluePoint * step;
    const Lanes redUp = wayUp(red, redStride);
    const Lanes greenUp = wayUp(green, greenStride);
    const Lanes blueUp = wayUp(blue, blueStride);

    const Lanes redAboveGreen = r > g;
    const Lanes firstWay = redAboveGreen ? (r > b ? redUp : blueUp) : (b > g ? blueUp : greenUp);
    const Lanes lastWay = redAboveGreen ? (g > b ? blueUp : greenUp) : (b > r ? redUp : blueUp);
    const Lanes lowest = redPoint * redStride + greenPoint * greenStride + bluePoint * blueStride;
    const Lanes highest = lowest + redUp + greenUp + blueUp;
    store(block.corners[0] + i, lowest);
    store(block.corners[1] + i, lowest + firstWay);
    store(block.corners[2] + i, highest - lastWay);
    store(block.corners[3] + i, highest);

    const Lanes largest = larger(larger(r, g), b);
    const Lanes smallest = smaller(smaller(r, g), b);
    store(block.fractions[0] + i, largest);
    store(block.fractions[1] + i, r + g + b - largest - smallest);
    store(block.fractions[2] + i, smallest);
}

// Interpolation is (1 - largest) * lowest corner + (largest - middle) * second + (middle - smallest) * third + smallest
// * highest corner, added in this order, for each channel; then clamped to 0-255 and truncated. NaN becomes 0.
#ifdef __AVX2__

// The three channels at once and, since four doubles are loaded as easily as three, one more that is not used. There
// always is one: the table continues after the last point that is looked up.
void interpolate(const Block& block, std::uint32_t* result, std::ptrdiff_t count, const double* table,
                 const FamilyLayout& layout) {
    unsigned char places[16] = {0x80, 0x80, 0x80, 0x80};  // where a byte of the result comes from; 0x80: it is 0
    places[layout.red / 8] = 0;
    places[layout.green / 8] = 2;
    places[layout.blue / 8] = 4;
    const __m128i toResult = _mm_loadu_si128(reinterpret_cast<const __m128i*>(places));
    const std::uint32_t opaque = layout.opaque;
    const __m256d one = _mm256_set1_pd(1.0);
    const __m256d most = _mm256_set1_pd(255.0);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto fraction = [&](int k) { return _mm256_broadcast_sd(&fractions.values[block.fractions[k][i]]); };
        const auto corner = [&](int k) { return _mm256_loadu_pd(table + block.corners[k][i]); };
        const __m256d largest = fraction(0);
        const __m256d middle = fraction(1);
        const __m256d smallest = fraction(2);
        const __m256d sum = (one - largest) * corner(0) + (largest - middle) * corner(1) +
                            (middle - smallest) * corner(2) + smallest * corner(3);
        // What is too small or no number converts to the smallest integer, and packing makes 0 of what is negative.
        const __m128i color = _mm256_cvttpd_epi32(most < sum ? most : sum);
        const __m128i bytes = _mm_shuffle_epi8(_mm_packus_epi32(color, color), toResult);
        result[i] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(bytes)) | opaque;
    }
}

#else

std::int32_t toByte(double value) {
    const double positive = value > 0.0 ? value : 0.0;
    return static_cast<std::int32_t>(positive < 255.0 ? positive : 255.0);
}

void interpolate(const Block& block, std::uint32_t* result, std::ptrdiff_t count, const double* table,
                 const FamilyLayout& layout) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto fraction = [&](int k) { return fractions.values[block.fractions[k][i]]; };
        const auto channel = [&](int x) {
            const auto corner = [&](int k) { return table[block.corners[k][i] + x]; };
            return toByte((1 - fraction(0)) * corner(0) + (fraction(0) - fraction(1)) * corner(1) +
                          (fraction(1) - fraction(2)) * corner(2) + fraction(2) * corner(3));
        };
        result[i] = byteAt(channel(0), layout.red) | byteAt(channel(1), layout.green) |
                    byteAt(channel(2), layout.blue) | layout.opaque;
    }
}

#endif

void lookUp(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count, const Lut3DTable& table,
            const FamilyLayout& sourceLayout, const FamilyLayout& resultLayout) {
    Block block{};
    for (std::ptrdiff_t x = 0; x < count; x += blockSize) {
        const std::ptrdiff_t size = count - x < blockSize ? count - x : blockSize;
        readChannels(source + x, size, sourceLayout, block);
        for (std::ptrdiff_t i = 0; i < size; i += laneCount) findCorners(block, i);
        interpolate(block, result + x, size, &table.entries[0][0][0][0], resultLayout);
    }
}

constexpr Lut3DKernels table = {.lookUp = lookUp};

}  // namespace

constinit const Lut3DKernels Lut3DKernels::PXK_ISA = table;

}  // namespace pxk
