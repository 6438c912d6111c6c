/// What a picture file said about its picture, which pixels do not hold.
#pragma once

#include <cstdint>
#include <vector>

namespace pxkhost {

/// Handed on from the file that a picture was read from to the files that results are written to.
struct FileMetadata {
    std::vector<std::uint8_t> profile;  ///< an ICC profile; empty like the others when there was none
    std::vector<std::uint8_t> exif;
    std::vector<std::uint8_t> xmp;
    double horizontalDensity = 0;  ///< pixels per millimetre, 0 when unknown
    double verticalDensity = 0;
};

}  // namespace pxkhost
