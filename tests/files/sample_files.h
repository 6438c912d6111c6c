/// Small picture files made by hand, independent of the libraries that read them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "files/files_module.h"

namespace pxkfiles::test {

void appendLittle(FileBytes& bytes, std::uint32_t value, int count);
void appendBig(FileBytes& bytes, std::uint32_t value, int count);
void append(FileBytes& bytes, const FileBytes& more);
void append(FileBytes& bytes, std::string_view text);

/// Where a text begins in a file; it must be there.
std::size_t find(const FileBytes& bytes, std::string_view text);

using PngChunks = std::vector<std::pair<std::string, FileBytes>>;

/// `rows` are the filtered rows, each with its leading filter byte, together less than 64 KiB.
FileBytes pngFile(std::uint32_t width, std::uint32_t height, int depth, int colourType, const FileBytes& rows,
                  const PngChunks& before = {}, const PngChunks& behind = {});

struct BmpHeader {
    std::uint32_t headerSize = 40;
    std::int32_t width = 2;
    std::int32_t height = 2;
    std::uint32_t depth = 24;
    std::uint32_t compression = 0;
    FileBytes behindHeader{};  ///< the rest of a long header or the masks, then the palette
};

FileBytes bmpFile(const BmpHeader& header, const FileBytes& rows);

struct TiffTag {
    std::uint32_t tag = 0;
    std::uint32_t value = 0;
    std::uint32_t type = 3;  ///< 16 bits; 4 is 32 bits
};

/// One strip of plain samples behind the directory.
FileBytes tiffFile(std::vector<TiffTag> tags, const FileBytes& samples);

/// Plain EXIF with an orientation, the size of some picture, and a camera's name; in either byte order.
FileBytes exifWith(int orientation, bool bigEndian = false);

/// A JPEG with a segment of EXIF, before all others.
FileBytes jpegWithExif(const FileBytes& jpeg, const FileBytes& exif);

/// A WebP with a chunk of EXIF; `webp` holds a picture without alpha and nothing else.
FileBytes webpWithExif(const FileBytes& webp, const FileBytes& exif, int width, int height);

/// An AVIF whose picture is to be turned as the EXIF orientation says, exactly encoded.
FileBytes turnedAvif(const Raster& picture, int orientation);

/// An AVIF of 1000 x 8 greys, exactly encoded, of 10 or 12 bits: 0, 5, 10 and so on from the left, up to the largest.
FileBytes deepAvif(int bits);

/// An ICC profile of RGB that no library has built in, with a name.
FileBytes rgbProfile(const char* name);

}  // namespace pxkfiles::test
