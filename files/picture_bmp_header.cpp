// BMP headers, read before libgd sees the file.
#include <algorithm>
#include <array>
#include <cstddef>

#include "files/picture_bytes.h"
#include "files/picture_header.h"

namespace pxkhost {
namespace {

constexpr std::size_t headerAt = 14;
constexpr std::size_t plainHeaderSize = 40;
constexpr std::size_t masksAt = headerAt + plainHeaderSize;

void putLittle32(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index) bytes[at + index] = static_cast<std::uint8_t>(value >> 8 * index);
}

// Masks for red, green and blue, at the place where both a long header and a plain one with masks behind it keep them.
bool masksAreUsual(const PictureBytes& file) {
    const std::array<std::uint32_t, 3> masks = {file.little32(masksAt), file.little32(masksAt + 4),
                                                file.little32(masksAt + 8)};
    const std::uint32_t depth = file.little16(28);
    return (depth == 32 && masks == std::array<std::uint32_t, 3>{0xFF0000, 0xFF00, 0xFF}) ||
           (depth == 16 && masks == std::array<std::uint32_t, 3>{0x7C00, 0x3E0, 0x1F});
}

}  // namespace

void simplifyBmpHeader(std::vector<std::uint8_t>& bytes) {
    const PictureBytes file(bytes);
    const std::uint32_t pixelOffset = file.little32(10);
    const std::uint32_t headerSize = file.little32(headerAt);
    constexpr std::array<std::uint32_t, 4> longHeaders = {52, 56, 108, 124};
    const bool isLong = std::find(longHeaders.begin(), longHeaders.end(), headerSize) != longHeaders.end();
    if (headerSize != plainHeaderSize && !isLong) return;

    constexpr std::uint32_t withMasks = 3;
    if (file.little32(30) == withMasks && masksAreUsual(file)) putLittle32(bytes, 30, 0);
    if (isLong) {
        file.require(headerAt + headerSize);
        const auto surplus = static_cast<std::uint32_t>(headerSize - plainHeaderSize);
        const auto first = bytes.begin() + masksAt;
        bytes.erase(first, first + surplus);
        putLittle32(bytes, headerAt, plainHeaderSize);
        if (pixelOffset >= surplus) putLittle32(bytes, 10, pixelOffset - surplus);
    }
}

}  // namespace pxkhost
