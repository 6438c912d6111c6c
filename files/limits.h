/// What is refused before a library decodes it: sizes, and files that would take too long or too much memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "files/formats.h"

namespace pxkfiles {

constexpr std::int64_t longestSide = 32767;
constexpr std::int64_t mostPixels = std::int64_t{1} << 28;

/// @throws FileProblem when a side or the number of pixels is out of range
void checkSize(std::int64_t width, std::int64_t height);

/// Refuses a size that a file of so many bytes cannot hold, so that little files take little memory.
/// @throws FileProblem
void checkFileCanHold(Format format, std::int64_t width, std::int64_t height, std::size_t fileSize);

/// Refuses what the decoder would not notice or would take too long over: a PNG, JPEG or GIF that lacks its end, and a
/// JPEG with more scans than any program writes.
/// @throws FileProblem
void checkStructure(Format format, std::span<const std::uint8_t> file);

/// Where a GIF's frames lie on its canvas.
struct GifLayout {
    struct Frame {
        int left = 0;
        int top = 0;
        int width = 0;
        int height = 0;
    };

    int width = 0;
    int height = 0;
    std::vector<Frame> frames;
};

/// @throws FileProblem when the file lacks its end
GifLayout gifLayout(std::span<const std::uint8_t> bytes);

/// Tries to reserve so many bytes, for libraries that end the process when they get none.
/// @throws std::bad_alloc
void requireMemory(std::size_t bytes);

}  // namespace pxkfiles
