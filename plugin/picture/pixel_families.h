/// What a 32-bit pixel word means: the three families of formats, defined in this one place.
///
/// Everything here has internal linkage: kernels are compiled once per instruction set, and the linker could keep the
/// copy of a shared inline function that this processor cannot run.
#pragma once

#include <cstdint>

namespace pxk {

/// The families, in the order in which the kernels' tables have them.
enum class Family : std::uint8_t { alphaLast, alphaFirst, gd, none };

/// The number of families that can be written; the last of all is never written.
inline constexpr int familyCount = 4;
inline constexpr int writableFamilyCount = 3;

namespace {

/// A pixel's colour, each channel 0 to 255.
struct Rgb {
    std::int32_t red;
    std::int32_t green;
    std::int32_t blue;
};

inline bool isGrey(Rgb pixel) { return pixel.red == pixel.green && pixel.green == pixel.blue; }

constexpr std::int32_t byteOf(std::uint32_t word, int shift) {
    return static_cast<std::int32_t>((word >> shift) & 0xFF);
}
constexpr std::uint32_t byteAt(std::int32_t value, int shift) { return static_cast<std::uint32_t>(value) << shift; }

/// Bytes R, G, B, A. Premultiplied or not, the colour is taken as it stands; so it is in every family.
struct AlphaLast {
    static constexpr Rgb read(std::uint32_t word) { return {byteOf(word, 0), byteOf(word, 8), byteOf(word, 16)}; }
    static constexpr std::int32_t alpha(std::uint32_t word) { return byteOf(word, 24); }
    static constexpr std::uint32_t opaque(Rgb pixel) {
        return 0xFF000000U | byteAt(pixel.blue, 16) | byteAt(pixel.green, 8) | byteAt(pixel.red, 0);
    }
};

/// Bytes A, R, G, B.
struct AlphaFirst {
    static constexpr Rgb read(std::uint32_t word) { return {byteOf(word, 8), byteOf(word, 16), byteOf(word, 24)}; }
    static constexpr std::int32_t alpha(std::uint32_t word) { return byteOf(word, 0); }
    static constexpr std::uint32_t opaque(Rgb pixel) {
        return byteAt(pixel.blue, 24) | byteAt(pixel.green, 16) | byteAt(pixel.red, 8) | 0xFFU;
    }
};

/// libgd true colour: bytes B, G, R and seven bits of alpha, 0 opaque and 127 transparent.
struct GdTrueColor {
    static constexpr Rgb read(std::uint32_t word) { return {byteOf(word, 16), byteOf(word, 8), byteOf(word, 0)}; }
    static constexpr std::int32_t alpha(std::uint32_t word) {
        const std::int32_t seven = byteOf(word, 24) & 0x7F;
        return (seven << 1) | (seven & 1);
    }
    static constexpr std::uint32_t opaque(Rgb pixel) {
        return byteAt(pixel.red, 16) | byteAt(pixel.green, 8) | byteAt(pixel.blue, 0);
    }
};

/// Any other format reads as black, and is never written.
struct NoFamily {
    static constexpr Rgb read(std::uint32_t) { return {0, 0, 0}; }
    static constexpr std::int32_t alpha(std::uint32_t) { return 0; }
};

}  // namespace

/// The family of an editor's format code.
constexpr Family familyOf(std::int32_t format) {
    constexpr std::uint32_t alphaLastCodes = 0x2A;
    constexpr std::uint32_t alphaFirstCodes = 0x54;
    if (format == 8) return Family::gd;
    if (format < 0 || format > 7) return Family::none;
    if ((alphaLastCodes >> format) & 1) return Family::alphaLast;
    if ((alphaFirstCodes >> format) & 1) return Family::alphaFirst;
    return Family::none;
}

}  // namespace pxk
