/// Several pixels at once as double-precision lanes, where the instruction set has them (AVX2 and up).
///
/// Written by hand because the conversion from double is the heart of it: the processor's truncating conversion gives
/// INT_MIN for whatever does not fit 32 bits, and packing saturates, so that neither rule costs an instruction. C++
/// cannot ask for that conversion, and what it can ask for takes more than twice the time.
#pragma once

#ifdef __AVX2__

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "picture/pixel_families.h"

namespace pxk {

namespace {

#ifdef __AVX512VBMI__

inline constexpr std::ptrdiff_t laneCount = 8;
using Lanes = __m512d;
using LaneIntegers = __m256i;  // one 32-bit integer a lane; also the words of laneCount pixels
using PixelBytes = __m512i;

inline LaneIntegers loadWords(const std::uint32_t* words) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}
inline void storeWords(std::uint32_t* words, LaneIntegers values) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(words), values);
}
inline LaneIntegers broadcast(std::int32_t value) { return _mm256_set1_epi32(value); }
inline LaneIntegers loadControl(const std::int8_t (&control)[16]) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(control)));
}

inline PixelBytes loadPixels(const std::uint32_t* words) { return _mm512_castsi256_si512(loadWords(words)); }
// The lowest byte of each lane from the pixels, the other bytes from `background`.
inline Lanes lowBytes(PixelBytes pixels, std::int64_t background, const std::int8_t (&control)[64]) {
    const __m512i order = _mm512_loadu_si512(control);
    return _mm512_castsi512_pd(
        _mm512_mask_permutexvar_epi8(_mm512_set1_epi64(background), 0x0101010101010101U, order, pixels));
}

inline LaneIntegers truncated(Lanes values) { return _mm512_maskz_cvttpd_epi32(0xFF, values); }
inline LaneIntegers lowByte(LaneIntegers values) { return _mm256_and_si256(values, broadcast(0xFF)); }
inline LaneIntegers packBytes(LaneIntegers a, LaneIntegers b, LaneIntegers c, LaneIntegers d) {
    return _mm256_packus_epi16(_mm256_packs_epi32(a, b), _mm256_packs_epi32(c, d));
}
inline LaneIntegers orderBytes(LaneIntegers bytes, LaneIntegers control) { return _mm256_shuffle_epi8(bytes, control); }

#else

inline constexpr std::ptrdiff_t laneCount = 4;
using Lanes = __m256d;
using LaneIntegers = __m128i;
using PixelBytes = __m256i;

inline LaneIntegers loadWords(const std::uint32_t* words) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(words));
}
inline void storeWords(std::uint32_t* words, LaneIntegers values) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(words), values);
}
inline LaneIntegers broadcast(std::int32_t value) { return _mm_set1_epi32(value); }
inline LaneIntegers loadControl(const std::int8_t (&control)[16]) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(control));
}

// In both halves, since bytes cannot be taken across them.
inline PixelBytes loadPixels(const std::uint32_t* words) { return _mm256_broadcastsi128_si256(loadWords(words)); }
inline Lanes lowBytes(PixelBytes pixels, std::int64_t background, const std::int8_t (&control)[64]) {
    const __m256i order = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(control));
    return _mm256_castsi256_pd(_mm256_or_si256(_mm256_shuffle_epi8(pixels, order), _mm256_set1_epi64x(background)));
}

inline LaneIntegers truncated(Lanes values) { return _mm256_cvttpd_epi32(values); }
inline LaneIntegers lowByte(LaneIntegers values) { return _mm_and_si128(values, broadcast(0xFF)); }
inline LaneIntegers packBytes(LaneIntegers a, LaneIntegers b, LaneIntegers c, LaneIntegers d) {
    return _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
}
inline LaneIntegers orderBytes(LaneIntegers bytes, LaneIntegers control) { return _mm_shuffle_epi8(bytes, control); }

#endif

// 2^52: with a byte in its lowest bits, the double 2^52 + byte.
inline constexpr std::int64_t biasBits = 0x4330000000000000;
inline constexpr double bias = 0x1p52;

/// A channel of each pixel, 2^52 too high. Every use of it subtracts something, which removes the bias at no cost: both
/// are integers, so the difference is exact.
struct LaneChannel {
    Lanes biased;
};

inline Lanes operator-(LaneChannel channel, double value) { return channel.biased - (bias + value); }

struct LanePixels {
    LaneChannel red;
    LaneChannel green;
    LaneChannel blue;
};

/// New channels as 32-bit integers, which packing clamps to 0-255.
struct LaneColours {
    LaneIntegers red;
    LaneIntegers green;
    LaneIntegers blue;
};

struct LaneOrder {
    std::int8_t control[64];
};

// Puts byte `place` of the word of pixel i into the lowest byte of lane i.
constexpr LaneOrder laneOrder(std::int32_t place) {
    constexpr std::int8_t zero = -128;
    LaneOrder order{};
    for (int i = 0; i < 64; ++i) {
        order.control[i] = i % 8 == 0 ? static_cast<std::int8_t>(i / 8 * 4 + place) : zero;
    }
    return order;
}

struct WordOrder {
    std::int8_t control[16];
};

// From four bytes each of red, green, blue and alpha to four opaque words of the family.
template <class Result>
constexpr WordOrder wordOrder() {
    constexpr std::uint32_t labelled = Result::opaque({1, 2, 3});
    WordOrder order{};
    for (int i = 0; i < 16; ++i) {
        const std::int32_t label = byteOf(labelled, i % 4 * 8);
        const std::int32_t plane = label >= 1 && label <= 3 ? label - 1 : 3;
        order.control[i] = static_cast<std::int8_t>(plane * 4 + i / 4);
    }
    return order;
}

template <class Source>
LanePixels loadLanes(const std::uint32_t* words) {
    constexpr Rgb places = Source::read(0x03020100);
    static constexpr LaneOrder red = laneOrder(places.red);
    static constexpr LaneOrder green = laneOrder(places.green);
    static constexpr LaneOrder blue = laneOrder(places.blue);
    const PixelBytes pixels = loadPixels(words);
    return {{lowBytes(pixels, biasBits, red.control)},
            {lowBytes(pixels, biasBits, green.control)},
            {lowBytes(pixels, biasBits, blue.control)}};
}

template <class Result>
void storeLanes(std::uint32_t* words, const LaneColours& colours) {
    constexpr std::int32_t alpha = Result::opaque({0, 0, 0}) == 0 ? 0 : 255;
    static constexpr WordOrder order = wordOrder<Result>();
    storeWords(words, orderBytes(packBytes(colours.red, colours.green, colours.blue, broadcast(alpha)),
                                 loadControl(order.control)));
}

}  // namespace

}  // namespace pxk

#endif
