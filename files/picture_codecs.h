/// The formats' decoders and encoders.
#pragma once

#include <gd.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "files/picture_format.h"

namespace pxkhost {

struct GdPictureDeleter {
    void operator()(gdImagePtr picture) const { gdImageDestroy(picture); }
};
using GdPicture = std::unique_ptr<gdImage, GdPictureDeleter>;

using FileBytes = std::vector<std::uint8_t>;

/// A new true-colour picture whose pixels are stored as they are set.
/// @throws BadPicture when there is not enough memory.
GdPicture newTrueColourPicture(int width, int height);

/// Whether any pixel is less than opaque.
bool hasAlpha(const gdImage& picture);

/// gd's alpha (0 opaque to 127 transparent) as file formats store it (255 opaque to 0), and back.
constexpr int fileAlpha(int gdAlpha) { return gdAlpha == gdAlphaMax ? 0 : 255 - (gdAlpha << 1) - (gdAlpha >> 6); }
constexpr int gdAlpha(int fileAlpha) { return gdAlphaMax - (fileAlpha >> 1); }

/// Keeps what libgd reports while it lives; libgd would print it. One at a time.
class GdReports {
  public:
    GdReports();
    ~GdReports();
    GdReports(const GdReports&) = delete;
    GdReports& operator=(const GdReports&) = delete;

    /// The reports so far, in order, each without line ends.
    const std::vector<std::string>& all() const { return reports_; }

    /// " (first report)", or nothing when there was none.
    std::string inBrackets() const;

  private:
    std::vector<std::string> reports_;
};

/// PNG, JPEG, GIF, BMP and WebP, through libgd. The bytes have passed checkStructure().
/// @throws BadPicture
GdPicture decodeWithGd(PictureFormat format, std::span<std::uint8_t> bytes);
FileBytes encodeWithGd(PictureFormat format, gdImagePtr picture);

/// TIFF, through libtiff itself: libgd 2.3.3 swaps black and white of two-level pictures and mixes the two kinds of
/// alpha that the format knows.
/// @throws BadPicture
GdPicture decodeTiff(FileBytes bytes);
FileBytes encodeTiff(const gdImage& picture);

/// AVIF, through libavif itself: libgd 2.3.3 loses memory with each file that it reads or writes. Written without
/// loss.
/// @throws BadPicture
GdPicture decodeAvif(std::span<const std::uint8_t> bytes);
FileBytes encodeAvif(const gdImage& picture);

}  // namespace pxkhost
