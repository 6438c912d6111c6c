/// Several pixels at once, byte by byte.
///
/// A register of pixel words is also a register of four times as many bytes, and differences and limits need no more
/// than bytes. The compiler does not see that in a loop over pixels: it widens each channel to 32 bits, which takes up
/// to three times as long. The types below are the compiler's own vectors, as wide as the registers of the instruction
/// set, so that one source serves every processor.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pxk {

namespace {

#if defined(__AVX512BW__)
inline constexpr std::ptrdiff_t laneBytes = 64;
#elif defined(__AVX2__)
inline constexpr std::ptrdiff_t laneBytes = 32;
#else
inline constexpr std::ptrdiff_t laneBytes = 16;
#endif

/// Pixels in one register.
inline constexpr std::ptrdiff_t pixelsAtOnce = laneBytes / 4;

using Words = std::uint32_t __attribute__((vector_size(laneBytes)));
using Bytes = unsigned char __attribute__((vector_size(laneBytes)));

inline Words load(const void* pixels) {
    Words words;
    __builtin_memcpy(&words, pixels, sizeof words);
    return words;
}

inline void store(void* pixels, Words words) { __builtin_memcpy(pixels, &words, sizeof words); }

/// The first `count` pixels, fewer than a register holds, and 0 after them: nothing beyond them is read.
inline Words loadPart(const std::uint32_t* pixels, std::ptrdiff_t count) {
    Words words = {};
    if (count > 0) __builtin_memcpy(&words, pixels, static_cast<std::size_t>(count) * sizeof *pixels);
    return words;
}

inline Words broadcast(std::uint32_t word) { return Words{} + word; }

inline Bytes larger(Bytes a, Bytes b) { return a > b ? a : b; }
inline Bytes smaller(Bytes a, Bytes b) { return a < b ? a : b; }
/// Sums and differences that saturate at 255 and at 0.
inline Bytes saturatingAdd(Bytes a, Bytes b) { return a + smaller(b, ~a); }
inline Bytes saturatingSubtract(Bytes a, Bytes b) { return a - smaller(a, b); }

inline Bytes difference(Bytes a, Bytes b) { return larger(a, b) - smaller(a, b); }

/// All bits set in each pixel none of whose bytes is above the limit's byte.
inline Words pixelsWithin(Bytes values, Words limit) {
    return reinterpret_cast<Words>(reinterpret_cast<Words>(larger(values, reinterpret_cast<Bytes>(limit))) == limit);
}

inline bool anyBit(Words words) {
    using Halves = std::uint64_t __attribute__((vector_size(laneBytes)));
    const auto halves = reinterpret_cast<Halves>(words);
    std::uint64_t bits = 0;
    for (std::ptrdiff_t i = 0; i < laneBytes / 8; ++i) bits |= halves[i];
    return bits != 0;
}

/// Whether no byte is above the limit's byte.
inline bool allWithin(Bytes values, Words limit) {
    return !anyBit(reinterpret_cast<Words>(larger(values, reinterpret_cast<Bytes>(limit))) ^ limit);
}

}  // namespace

}  // namespace pxk
