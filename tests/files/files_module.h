/// The module of picture files as the tests call it: results that own what they hold, and failures as words.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "files/pxkfiles.h"

namespace pxkfiles::test {

using FileBytes = std::vector<std::uint8_t>;

/// The module, opened as the host opens it.
const Functions& module();

/// A picture of the tests' own.
struct Raster {
    int width = 0;
    int height = 0;
    bool hasAlpha = false;
    std::vector<std::uint32_t> pixels;  ///< 0xAARRGGBB
    FileBytes profile;
    FileBytes exif;
    FileBytes xmp;
    double horizontalDensity = 0;
    double verticalDensity = 0;

    std::uint32_t at(int x, int y) const { return pixels[placeOf(x, y)]; }
    std::uint32_t& at(int x, int y) { return pixels[placeOf(x, y)]; }

    std::size_t placeOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

/// What reading gave: a picture, or a message.
struct Reading {
    Raster picture;
    std::string format;
    int bitsPerSample = 0;
    std::string profileName;
    int orientation = 0;
    int pages = 0;
    std::string message;  ///< "" when it succeeded
};

Reading readBytes(const FileBytes& file, const ReadOptions& options = {});
Reading readFile(const std::filesystem::path& path, const ReadOptions& options = {});

/// The picture in a file that must be a good one.
Raster pictureIn(const FileBytes& file, const ReadOptions& options = {});

/// The bytes of a file that must succeed; `format` is "png" and so on.
FileBytes written(const Raster& picture, const char* format, WriteOptions options = {});

/// The message of writing what cannot be written.
std::string messageOfWriting(const Raster& picture, const char* format, WriteOptions options = {});

/// Writes a file; returns the message, "" when it succeeded.
std::string writeFile(const Raster& picture, const std::filesystem::path& path, const WriteOptions& options = {});

Raster raster(int width, int height, const std::function<std::uint32_t(int, int)>& pixelAt);
Raster smoothPicture(int width = 37, int height = 29);
Raster noisePicture(int width = 37, int height = 29);
Raster flagPicture();   ///< three colours
Raster alphaPicture();  ///< 16 x 16 with every alpha, over changing colours

/// The largest difference of any channel; 999 when the sizes differ.
int largestDifference(const Raster& one, const Raster& other);

/// The extensions that are written, without the dot, one a format.
const std::vector<const char*>& formats();

}  // namespace pxkfiles::test
