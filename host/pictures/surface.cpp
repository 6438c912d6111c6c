#include "host/pictures/surface.h"

#include <cstring>
#include <string>

#include "host/objects/errors.h"

namespace pxkhost {

namespace {

[[noreturn]] void refuseLayout(PixelLayout layout) {
    throw HostError("a bitmap of alpha info " + std::to_string(static_cast<unsigned>(layout)) +
                    " has no 32-bit colour pixels; layouts 1 to 6 and libgd have");
}

// libgd counts transparency from 0 (opaque) to 127; doubling the top bit makes both ends meet 255 and 0.
constexpr std::uint32_t alphaFromGd(std::uint32_t transparency) {
    return 255 - (transparency << 1 | transparency >> 6);
}
constexpr std::uint32_t gdFromAlpha(std::uint32_t alpha) { return (255 - alpha) >> 1; }

constexpr Argb argbFromLast(std::uint32_t word) {
    return (word & 0xFF00FF00u) | (word & 0xFF) << 16 | (word >> 16 & 0xFF);
}

}  // namespace

Argb argbFromWord(PixelLayout layout, std::uint32_t word) {
    switch (layout) {
        case PixelLayout::premultipliedLast:
        case PixelLayout::last:
            return argbFromLast(word);
        case PixelLayout::noneSkipLast:
            return argbFromLast(word) | opaqueAlpha;
        case PixelLayout::premultipliedFirst:
        case PixelLayout::first:
            return __builtin_bswap32(word);
        case PixelLayout::noneSkipFirst:
            return __builtin_bswap32(word) | opaqueAlpha;
        case PixelLayout::gd:
            return (word & 0xFFFFFFu) | alphaFromGd(word >> 24 & 0x7F) << 24;
        case PixelLayout::none:
        case PixelLayout::alphaOnly:
            break;
    }
    refuseLayout(layout);
}

std::uint32_t wordFromArgb(PixelLayout layout, Argb pixel) {
    switch (layout) {
        case PixelLayout::premultipliedLast:
        case PixelLayout::last:
            return argbFromLast(pixel);
        case PixelLayout::noneSkipLast:
            return argbFromLast(pixel) | opaqueAlpha;
        case PixelLayout::premultipliedFirst:
        case PixelLayout::first:
            return __builtin_bswap32(pixel);
        case PixelLayout::noneSkipFirst:
            return __builtin_bswap32(pixel | opaqueAlpha);
        case PixelLayout::gd:
            return (pixel & 0xFFFFFFu) | gdFromAlpha(pixel >> 24) << 24;
        case PixelLayout::none:
        case PixelLayout::alphaOnly:
            break;
    }
    refuseLayout(layout);
}

void copyPixels(const Surface& source, const Surface& target) {
    for (int y = 0; y < source.height; ++y) {
        const std::uint32_t* const from = source.row(y);
        std::uint32_t* const to = target.row(y);
        if (source.layout == target.layout) {
            std::memcpy(to, from, static_cast<std::size_t>(source.width) * sizeof(std::uint32_t));
        } else {
            for (int x = 0; x < source.width; ++x)
                to[x] = wordFromArgb(target.layout, argbFromWord(source.layout, from[x]));
        }
    }
}

}  // namespace pxkhost
