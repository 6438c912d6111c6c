#include "files/limits.h"

#include <cstdlib>
#include <new>
#include <string>

#include "files/byte_reader.h"
#include "files/messages.h"

namespace pxkfiles {
namespace {

// Chunks of length, name, data and checksum, up to IEND. libvips stops reading after the last row.
void checkPng(const ByteReader& file) {
    constexpr std::size_t signatureSize = 8;
    for (std::size_t at = signatureSize;; at += std::size_t{12} + file.big32(at)) {
        file.require(std::uint64_t{at} + 12 + file.big32(at));
        if (file.text(at + 4, 4) == "IEND") return;
    }
}

// A marker is 0xFF and a code. In coded data 0xFF 0x00 is a plain byte, and any number of 0xFF may stand before a code.
std::size_t nextMarker(const ByteReader& file, std::size_t at) {
    for (;; ++at)
        if (file.byte(at) == 0xFF && file.byte(at + 1) != 0 && file.byte(at + 1) != 0xFF) return at;
}

// Markers with segments, and coded data between them, up to the end marker.
void checkJpeg(const ByteReader& file) {
    constexpr std::uint32_t endOfPicture = 0xD9;
    constexpr std::uint32_t startOfScan = 0xDA;
    constexpr int mostScans = 64;
    const auto standsAlone = [](std::uint32_t code) { return code == 0x01 || (code >= 0xD0 && code <= 0xD8); };

    int scans = 0;
    for (std::size_t at = nextMarker(file, 2);; at = nextMarker(file, at)) {
        const std::uint32_t code = file.byte(at + 1);
        if (code == endOfPicture) break;
        if (code == startOfScan) ++scans;
        at += standsAlone(code) ? 2 : 2 + file.big16(at + 2);
    }
    // Each scan is a pass over the whole picture, however little data it has. Programs write 10, optimisers up to 30.
    if (scans > mostScans)
        throw FileProblem("it asks for too many passes over the picture: " + std::to_string(scans) + "; " +
                          std::to_string(mostScans) + " are the most");
}

std::size_t gifPaletteSize(std::uint32_t flags) {
    return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

std::size_t behindGifBlocks(const ByteReader& file, std::size_t at) {
    while (const std::uint32_t length = file.byte(at)) at += 1 + length;
    return at + 1;
}

// How many pixels a byte can stand for at the very most, or 0 where a file of any length can hold any size.
std::int64_t mostPixelsOfByte(Format format) {
    switch (format) {
        case Format::png:
            return std::int64_t{8} * 1032;  // deflate shrinks 1032 times, and a pixel has one bit at least
        case Format::jpeg:
            return std::int64_t{8} * 64;  // each block of 8 x 8 takes a bit at least
        case Format::gif:
            return 4096;  // a code of 12 bits stands for less than that
        case Format::bmp:
            return 128;  // two bytes stand for a run of 255
        default:
            return 0;
    }
}

}  // namespace

void checkSize(std::int64_t width, std::int64_t height) {
    const auto size = [&] { return std::to_string(width) + " x " + std::to_string(height) + " pixels"; };
    if (width <= 0 || height <= 0) throw FileProblem("its size of " + size() + " is empty");
    if (width > longestSide || height > longestSide)
        throw FileProblem("its size of " + size() + " is too large; a side may have at most " +
                          std::to_string(longestSide));
    if (width * height > mostPixels)
        throw FileProblem("its size of " + size() + " is too large; " + std::to_string(mostPixels) +
                          " pixels in all are the most");
}

void checkFileCanHold(Format format, std::int64_t width, std::int64_t height, std::size_t fileSize) {
    constexpr std::int64_t harmless = 1 << 22;
    const std::int64_t most = mostPixelsOfByte(format) * static_cast<std::int64_t>(fileSize);
    if (most > 0 && width * height > harmless && width * height > most)
        throw FileProblem("it has too little data for its size of " + std::to_string(width) + " x " +
                          std::to_string(height) + " pixels");
}

void checkStructure(Format format, std::span<const std::uint8_t> file) {
    if (format == Format::png) checkPng(ByteReader(file));
    if (format == Format::jpeg) checkJpeg(ByteReader(file));
    if (format == Format::gif) gifLayout(file);
}

// A screen, then extensions and frames made of blocks, up to a closing byte.
GifLayout gifLayout(std::span<const std::uint8_t> bytes) {
    constexpr std::uint32_t extension = '!';
    constexpr std::uint32_t frame = ',';
    constexpr std::uint32_t end = ';';
    const ByteReader file(bytes);
    const auto number = [&](std::size_t at) { return static_cast<int>(file.little16(at)); };

    GifLayout layout{number(6), number(8), {}};
    for (std::size_t at = 13 + gifPaletteSize(file.byte(10));;) {
        const std::uint32_t kind = file.byte(at);
        if (kind == end) return layout;
        if (kind == extension) {
            at = behindGifBlocks(file, at + 2);
        } else if (kind == frame) {
            layout.frames.push_back({number(at + 1), number(at + 3), number(at + 5), number(at + 7)});
            at = behindGifBlocks(file, at + 11 + gifPaletteSize(file.byte(at + 9)));
        } else {
            ++at;  // decoders pass over bytes that open nothing
        }
    }
}

void requireMemory(std::size_t bytes) {
    void* volatile memory = std::malloc(bytes);  // volatile, or the compiler leaves both calls out
    if (memory == nullptr) throw std::bad_alloc();
    std::free(memory);
}

}  // namespace pxkfiles
