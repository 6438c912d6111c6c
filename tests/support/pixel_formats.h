/// What a pixel word means in every format, one pixel at a time and independent of the plugin's own code.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

namespace pxk::test {

/// A colour of three channels, 0 to 255.
struct Colour {
    int red = 0;
    int green = 0;
    int blue = 0;

    bool operator==(const Colour&) const = default;
};

/// Format codes: bitmap contexts 1 to 6 by their alpha-info code, libgd 8; anything else is no known format.
inline constexpr std::array<int, 7> formats = {1, 2, 3, 4, 5, 6, 8};

inline bool alphaIsLast(int format) { return format == 1 || format == 3 || format == 5; }
inline bool alphaIsFirst(int format) { return format == 2 || format == 4 || format == 6; }

inline std::array<std::uint8_t, 4> bytesOf(std::uint32_t word) {
    std::array<std::uint8_t, 4> bytes{};
    std::memcpy(bytes.data(), &word, 4);
    return bytes;
}

inline std::uint32_t wordOf(std::array<std::uint8_t, 4> bytes) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data(), 4);
    return word;
}

/// The colour of a word; black when the format is not known.
inline Colour readColour(int format, std::uint32_t word) {
    const auto bytes = bytesOf(word);
    if (alphaIsLast(format)) return {bytes[0], bytes[1], bytes[2]};
    if (alphaIsFirst(format)) return {bytes[1], bytes[2], bytes[3]};
    if (format == 8) return {bytes[2], bytes[1], bytes[0]};
    return {};
}

/// The opaque word of a colour in a known format.
inline std::uint32_t opaqueWord(int format, Colour colour) {
    const auto red = static_cast<std::uint8_t>(colour.red);
    const auto green = static_cast<std::uint8_t>(colour.green);
    const auto blue = static_cast<std::uint8_t>(colour.blue);
    if (alphaIsLast(format)) return wordOf({red, green, blue, 255});
    if (alphaIsFirst(format)) return wordOf({255, red, green, blue});
    return wordOf({blue, green, red, 0});
}

}  // namespace pxk::test
