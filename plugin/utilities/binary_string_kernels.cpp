#include "utilities/binary_string_kernels.h"

#ifdef __AVX2__
#include <immintrin.h>
#endif

#include "picture/instruction_sets.h"

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

// Four pixels at a time, with the byte shuffle that the compilers do not find in the loops above: three times as fast.

struct ByteOrder {
    std::int8_t control[16];
};

inline __m128i load(const void* bytes) { return _mm_loadu_si128(static_cast<const __m128i*>(bytes)); }
inline void store(void* bytes, __m128i value) { _mm_storeu_si128(static_cast<__m128i*>(bytes), value); }

// From four words to twelve bytes, and four zeros behind them.
template <class Source>
constexpr ByteOrder orderToBytes() {
    constexpr Rgb place = Source::read(0x03020100);
    constexpr std::int32_t places[3] = {place.red, place.green, place.blue};
    ByteOrder order = {};
    for (int i = 0; i < 16; ++i) order.control[i] = static_cast<std::int8_t>(i < 12 ? i / 3 * 4 + places[i % 3] : -1);
    return order;
}

// From twelve bytes to four words without the bits that make them opaque.
template <class Result>
constexpr ByteOrder orderFromBytes() {
    constexpr std::uint32_t labels = Result::opaque({1, 2, 3}) & ~Result::opaque({0, 0, 0});
    ByteOrder order = {};
    for (int i = 0; i < 16; ++i) {
        const std::int32_t label = byteOf(labels, i % 4 * 8);
        order.control[i] = static_cast<std::int8_t>(label != 0 ? i / 4 * 3 + label - 1 : -1);
    }
    return order;
}

// Sixteen bytes are stored or loaded where twelve count: two pixels more have to follow.
constexpr std::ptrdiff_t pixelsTouched = 6;

template <class Source>
void shuffleToBytes(const std::uint32_t* __restrict words, unsigned char* __restrict bytes, std::ptrdiff_t count) {
    static constexpr ByteOrder byteOrder = orderToBytes<Source>();
    const __m128i order = load(byteOrder.control);
    std::ptrdiff_t x = 0;
    for (; x + pixelsTouched <= count; x += 4) store(bytes + 3 * x, _mm_shuffle_epi8(load(words + x), order));
    toBytes<Source>(words + x, bytes + 3 * x, count - x);
}

template <class Result>
void shuffleFromBytes(const unsigned char* __restrict bytes, std::uint32_t* __restrict words, std::ptrdiff_t count) {
    static constexpr ByteOrder byteOrder = orderFromBytes<Result>();
    const __m128i order = load(byteOrder.control);
    const __m128i opaque = _mm_set1_epi32(static_cast<int>(Result::opaque({0, 0, 0})));
    std::ptrdiff_t x = 0;
    for (; x + pixelsTouched <= count; x += 4) {
        store(words + x, _mm_or_si128(_mm_shuffle_epi8(load(bytes + 3 * x), order), opaque));
    }
    fromBytes<Result>(bytes + 3 * x, words + x, count - x);
}

constexpr BinaryStringKernels binaryStringKernels = {
    .toBytes = {shuffleToBytes<AlphaLast>, shuffleToBytes<AlphaFirst>, shuffleToBytes<GdTrueColor>, toBytes<NoFamily>},
    .fromBytes = {shuffleFromBytes<AlphaLast>, shuffleFromBytes<AlphaFirst>, shuffleFromBytes<GdTrueColor>}};

#else

constexpr BinaryStringKernels binaryStringKernels = {
    .toBytes = {toBytes<AlphaLast>, toBytes<AlphaFirst>, toBytes<GdTrueColor>, toBytes<NoFamily>},
    .fromBytes = {fromBytes<AlphaLast>, fromBytes<AlphaFirst>, fromBytes<GdTrueColor>}};

#endif

}  // namespace

template <>
const BinaryStringKernels& kernelsFor<BinaryStringKernels, InstructionSet::PXK_INSTRUCTION_SET>() {
    return binaryStringKernels;
}

}  // namespace pxk
