#include "utilities/binary_string_kernels.h"

#ifdef __AVX2__
#include <immintrin.h>
#endif

namespace pxk {

namespace {

template <class Source>
void toBytes(const std::uint32_t* __restrict words, unsigned char* __restrict bytes, std::ptrdiff_t count) {
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const Rgb pixel = Source::read(words[x]);
        bytes[3 * x] = static_cast<unsigned char>(pixel.red);
        bytes[3 * x + 1] = static_cast<unsigned char>(pixel.green);
        bytes[3 * x + 2] = static_cast<unsigned char>(pixel.blue);
    }
}

template <class Result>
void fromBytes(const unsigned char* __restrict bytes, std::uint32_t* __restrict words, std::ptrdiff_t count) {
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        words[x] = Result::opaque({bytes[3 * x], bytes[3 * x + 1], bytes[3 * x + 2]});
    }
}

#ifdef __AVX2__

// Eight pixels at a time, with the byte shuffle that the compilers do not find in the loops above: three times as fast.

// For each byte of a register, its place in the same half of the register that it comes from; 0 where that is negative.
struct ByteOrder {
    std::int8_t places[32];
};

inline __m256i load(const void* bytes) { return _mm256_loadu_si256(static_cast<const __m256i*>(bytes)); }
inline void store(void* bytes, __m256i value) { _mm256_storeu_si256(static_cast<__m256i*>(bytes), value); }

// The first and the last sixteen of twenty-four bytes.
inline __m256i load24(const unsigned char* bytes) {
    const auto* first = reinterpret_cast<const __m128i*>(bytes);
    const auto* last = reinterpret_cast<const __m128i*>(bytes + 8);
    return _mm256_loadu2_m128i(last, first);
}

inline void store24(unsigned char* bytes, __m256i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm256_castsi256_si128(value));
    _mm_storeu_si64(bytes + 16, _mm256_extracti128_si256(value, 1));
}

// From four words in each half to twelve bytes, and four zeros behind them.
template <class Source>
constexpr ByteOrder orderToBytes() {
    constexpr Rgb place = Source::read(0x03020100);
    constexpr std::int32_t places[3] = {place.red, place.green, place.blue};
    ByteOrder order = {};
    for (int i = 0; i < 32; ++i) {
        const int byte = i % 16;
        order.places[i] = static_cast<std::int8_t>(byte < 12 ? byte / 3 * 4 + places[byte % 3] : -1);
    }
    return order;
}

// From twelve bytes, which begin at the fourth in the upper half, to four words without the bits that make them opaque.
template <class Result>
constexpr ByteOrder orderFromBytes() {
    constexpr std::uint32_t labels = Result::opaque({1, 2, 3}) & ~Result::opaque({0, 0, 0});
    ByteOrder order = {};
    for (int i = 0; i < 32; ++i) {
        const std::int32_t label = byteOf(labels, i % 4 * 8);
        const int begin = i < 16 ? 0 : 4;
        order.places[i] = static_cast<std::int8_t>(label != 0 ? begin + i % 16 / 4 * 3 + label - 1 : -1);
    }
    return order;
}

template <class Source>
void shuffleToBytes(const std::uint32_t* __restrict words, unsigned char* __restrict bytes, std::ptrdiff_t count) {
    static constexpr ByteOrder byteOrder = orderToBytes<Source>();
    const __m256i order = load(byteOrder.places);
    const __m256i together = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    std::ptrdiff_t x = 0;
    for (; x + 8 <= count; x += 8) {
        store24(bytes + 3 * x, _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(load(words + x), order), together));
    }
    toBytes<Source>(words + x, bytes + 3 * x, count - x);
}

template <class Result>
void shuffleFromBytes(const unsigned char* __restrict bytes, std::uint32_t* __restrict words, std::ptrdiff_t count) {
    static constexpr ByteOrder byteOrder = orderFromBytes<Result>();
    const __m256i order = load(byteOrder.places);
    const __m256i opaque = _mm256_set1_epi32(static_cast<int>(Result::opaque({0, 0, 0})));
    std::ptrdiff_t x = 0;
    for (; x + 8 <= count; x += 8) {
        store(words + x, _mm256_or_si256(_mm256_shuffle_epi8(load24(bytes + 3 * x), order), opaque));
    }
    fromBytes<Result>(bytes + 3 * x, words + x, count - x);
}

constexpr BinaryStringKernels table = {
    .toBytes = {shuffleToBytes<AlphaLast>, shuffleToBytes<AlphaFirst>, shuffleToBytes<GdTrueColor>, toBytes<NoFamily>},
    .fromBytes = {shuffleFromBytes<AlphaLast>, shuffleFromBytes<AlphaFirst>, shuffleFromBytes<GdTrueColor>}};

#else

constexpr BinaryStringKernels table = {
    .toBytes = {toBytes<AlphaLast>, toBytes<AlphaFirst>, toBytes<GdTrueColor>, toBytes<NoFamily>},
    .fromBytes = {fromBytes<AlphaLast>, fromBytes<AlphaFirst>, fromBytes<GdTrueColor>}};

#endif

}  // namespace

constinit const BinaryStringKernels BinaryStringKernels::PXK_ISA = table;

}  // namespace pxk
