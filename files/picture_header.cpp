#include "files/picture_header.h"

#include <string>

#include "files/picture_bytes.h"

namespace pxkhost {
namespace {

// ---- PNG: chunks of length, name, data and checksum, from IHDR to IEND

void checkPng(const PictureBytes& file) {
    constexpr std::size_t signatureSize = 8;
    if (file.text(signatureSize + 4, 4) != "IHDR") throw BadPicture("its first chunk is not a PNG header");
    const std::uint32_t width = file.big32(16);
    const std::uint32_t height = file.big32(20);
    const std::uint32_t bitDepth = file.byte(24);
    checkStatedSize(width, height);

    std::uint64_t compressedSize = 0;
    for (std::size_t at = signatureSize;;) {
        const std::uint32_t length = file.big32(at);
        const std::string_view name = file.text(at + 4, 4);
        file.require(std::uint64_t{at} + 12 + length);
        if (name == "IEND") break;
        if (name == "IDAT") compressedSize += length;
        at += std::size_t{12} + length;
    }
    // Deflate shrinks at most 1032 times, so a little file with a huge size is told without reserving the picture.
    const std::uint64_t leastPixelBytes = (std::uint64_t{width} * bitDepth + 7) / 8 * height;
    if (compressedSize * 1032 + 1024 < leastPixelBytes) throw BadPicture("it has too little data for its size");
}

// ---- JPEG: markers with segments, and coded data between them, from SOI to EOI

// A marker is 0xFF and a code. In coded data 0xFF 0x00 is a plain byte, and any number of 0xFF may stand before a code.
std::size_t nextMarker(const PictureBytes& file, std::size_t at) {
    for (;; ++at)
        if (file.byte(at) == 0xFF && file.byte(at + 1) != 0 && file.byte(at + 1) != 0xFF) return at;
}

void checkJpeg(const PictureBytes& file) {
    constexpr std::uint32_t endOfPicture = 0xD9;
    constexpr std::uint32_t startOfScan = 0xDA;
    const auto standsAlone = [](std::uint32_t code) { return code == 0x01 || (code >= 0xD0 && code <= 0xD8); };
    const auto startsFrame = [](std::uint32_t code) {
        return code >= 0xC0 && code <= 0xCF && code != 0xC4 && code != 0xC8 && code != 0xCC;
    };

    std::int64_t pixels = 0;
    std::int64_t scans = 0;
    for (std::size_t at = nextMarker(file, 2);; at = nextMarker(file, at)) {
        const std::uint32_t code = file.byte(at + 1);
        if (code == endOfPicture) break;
        if (standsAlone(code)) {
            at += 2;
            continue;
        }
        if (startsFrame(code) && pixels == 0) {
            const std::int64_t height = file.big16(at + 5);
            const std::int64_t width = file.big16(at + 7);
            checkStatedSize(width, height);
            pixels = width * height;
        }
        if (code == startOfScan) ++scans;
        at += 2 + file.big16(at + 2);
    }
    if (pixels == 0 || scans == 0) throw BadPicture("it holds no JPEG picture");
    // A progressive file can ask for thousands of passes over the whole picture in a few bytes each. This bound allows
    // 64 passes at the largest size, and what any camera or program writes at every size.
    if (pixels * scans > mostPixels * 64) throw BadPicture("it asks for too many passes over the picture");
}

// ---- GIF: a screen, then extensions and frames made of sub-blocks, up to a closing byte

std::size_t gifColourTableSize(std::uint32_t flags) {
    return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

std::size_t behindSubBlocks(const PictureBytes& file, std::size_t at) {
    while (const std::uint32_t length = file.byte(at)) at += 1 + length;
    return at + 1;
}

void checkGif(const PictureBytes& file) {
    constexpr std::uint32_t extension = '!';
    constexpr std::uint32_t frame = ',';
    constexpr std::uint32_t end = ';';
    bool hasFrame = false;
    checkStatedSize(file.little16(6), file.little16(8));
    for (std::size_t at = 13 + gifColourTableSize(file.byte(10));;) {
        const std::uint32_t kind = file.byte(at);
        if (kind == end) break;
        if (kind == extension) {
            at = behindSubBlocks(file, at + 2);
        } else if (kind == frame) {
            if (!hasFrame) checkStatedSize(file.little16(at + 5), file.little16(at + 7));
            hasFrame = true;
            at = behindSubBlocks(file, at + 11 + gifColourTableSize(file.byte(at + 9)));
        } else {
            ++at;  // gd passes over bytes that open nothing
        }
    }
    if (!hasFrame) throw BadPicture("it holds no frame");
}

// ---- BMP: two headers, a palette, and rows padded to 4 bytes

void checkBmp(const PictureBytes& file) {
    const std::uint32_t pixelOffset = file.little32(10);
    const std::uint32_t headerSize = file.little32(14);
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::uint32_t depth = 0;
    std::uint32_t compression = 0;
    if (headerSize == 12) {
        width = file.little16(18);
        height = file.little16(20);
        depth = file.little16(24);
    } else if (headerSize == 40 || headerSize == 64) {
        width = static_cast<std::int32_t>(file.little32(18));
        height = static_cast<std::int32_t>(file.little32(22));
        depth = file.little16(28);
        compression = file.little32(30);
    } else {
        throw BadPicture("its header of " + std::to_string(headerSize) +
                         " bytes is of no known kind; 12, 40, 52, 56, 64, 108 or 124 are");
    }
    if (height < 0) height = -height;  // rows from the top down
    checkStatedSize(width, height);

    const bool packed = compression == 0 && (depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 ||
                                             (depth == 32 && headerSize != 12));
    const bool runLengths = (compression == 1 && depth == 8) || (compression == 2 && depth == 4);
    if (!packed && !runLengths)
        throw BadPicture("compression " + std::to_string(compression) + " at " + std::to_string(depth) +
                         " bits a pixel is not understood; plain pixels of 1, 4, 8, 16, 24 or 32 bits, run lengths at "
                         "4 or 8 bits, and the usual bit masks at 16 or 32 bits are");
    if (packed) {
        const std::int64_t rowBytes = (width * depth + 31) / 32 * 4;
        file.require(pixelOffset + static_cast<std::uint64_t>(rowBytes * height));
    }
}

// ---- WebP: a RIFF container whose first chunk states the size

void checkWebp(const PictureBytes& file) {
    file.require(std::uint64_t{file.little32(4)} + 8);
    const std::string_view kind = file.text(12, 4);
    if (kind == "VP8X") {
        constexpr std::uint32_t animated = 0x02;
        checkStatedSize(std::int64_t{file.little24(24)} + 1, std::int64_t{file.little24(27)} + 1);
        if ((file.byte(20) & animated) != 0) throw BadPicture("it is animated; a WebP file with one picture is needed");
    } else if (kind == "VP8L") {
        const std::uint32_t sides = file.little32(21);
        checkStatedSize((sides & 0x3FFF) + 1, (sides >> 14 & 0x3FFF) + 1);
    } else if (kind == "VP8 ") {
        checkStatedSize(file.little16(26) & 0x3FFF, file.little16(28) & 0x3FFF);
    } else {
        throw BadPicture("its first chunk is not a WebP picture");
    }
}

}  // namespace

void checkStatedSize(std::int64_t width, std::int64_t height) {
    const auto size = [&] { return std::to_string(width) + " x " + std::to_string(height) + " pixels"; };
    if (width <= 0 || height <= 0) throw BadPicture("its size of " + size() + " is empty");
    if (width > longestSide || height > longestSide)
        throw BadPicture("its size of " + size() + " is too large; a side may have at most " +
                         std::to_string(longestSide));
    if (width * height > mostPixels)
        throw BadPicture("its size of " + size() + " is too large; " + std::to_string(mostPixels) +
                         " pixels in all are the most");
}

void checkStructure(PictureFormat format, std::span<const std::uint8_t> bytes) {
    const PictureBytes file(bytes);
    switch (format) {
        case PictureFormat::png:
            return checkPng(file);
        case PictureFormat::jpeg:
            return checkJpeg(file);
        case PictureFormat::gif:
            return checkGif(file);
        case PictureFormat::bmp:
            return checkBmp(file);
        case PictureFormat::webp:
            return checkWebp(file);
        case PictureFormat::tiff:
        case PictureFormat::avif:
            return;
    }
}

}  // namespace pxkhost
