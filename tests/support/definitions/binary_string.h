/// Pictures as binary strings, byte by byte.
#pragma once

#include <string>
#include <vector>

#include "support/pixel_formats.h"

namespace pxk::test {

inline std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

/// A header with any values in its fields.
inline std::string binaryHeader(std::uint32_t length, std::uint32_t width, std::uint32_t height,
                                std::uint32_t pixelOffset = 40) {
    return std::string("PPIC") + bigEndian(length) + bigEndian(width) + bigEndian(height) + bigEndian(32) +
           bigEndian(pixelOffset) + std::string(16, '\0');
}

inline std::string binaryPixels(const std::vector<Colour>& colours) {
    std::string bytes;
    for (const Colour& colour : colours) {
        for (const int channel : {colour.red, colour.green, colour.blue}) bytes += static_cast<char>(channel);
    }
    return bytes;
}

/// The whole string of a picture, given as its colours row by row.
inline std::string binaryString(int width, const std::vector<Colour>& colours) {
    const auto count = static_cast<std::uint32_t>(colours.size());
    const auto columns = static_cast<std::uint32_t>(width);
    return binaryHeader(40 + 3 * count, columns, count / columns) + binaryPixels(colours);
}

}  // namespace pxk::test
