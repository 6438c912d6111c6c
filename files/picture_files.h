/// Reading and writing picture files.
#pragma once

#include <gd.h>

#include <filesystem>
#include <stdexcept>

namespace pxkhost {

/// Why a picture file could not be read or written: one line without a final full stop that says what was wrong, with
/// which file, and what would be right.
class PictureFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a picture file: PNG, JPEG, GIF, BMP, WebP, TIFF or AVIF, told by its content and never by its name.
///
/// The result is always true colour: palette and grey files are widened, samples of 16 bits keep their upper 8, alpha
/// is kept in gd's form (0 opaque to 127 transparent), and of an animation the first picture is taken. Colour profiles
/// and other metadata are left aside, so a picture that asks to be turned comes as it is stored; BMP files are read as
/// opaque. No side may be longer than 32767 pixels, and no picture larger than 2^28 pixels.
///
/// The caller owns the picture and gives it back with gdImageDestroy().
/// @throws PictureFileError for a missing, unreadable, empty, foreign, cut short, broken or oversized file.
gdImagePtr readPictureFile(const std::filesystem::path& path);

/// Writes a picture in the format that the path's ending names, in any letter case: .png .jpg .jpeg .gif .bmp .webp
/// .tif .tiff .avif.
///
/// PNG, BMP, WebP, TIFF and AVIF keep every opaque pixel exactly; PNG, WebP, TIFF and AVIF keep alpha (WebP may change
/// the colour of wholly transparent pixels). GIF is exact up to 256 colours, with alpha reduced to see-through or not,
/// and dithers beyond. JPEG is written at quality 92; JPEG and BMP leave alpha out.
///
/// The file is written beside its place and then renamed, so a failure leaves what was there before. A replaced file
/// hands on its permissions; a symbolic link is followed.
/// @throws PictureFileError when the ending names no format, the format cannot hold the picture's size, or the place
///         cannot be written.
void writePictureFile(gdImagePtr picture, const std::filesystem::path& path);

}  // namespace pxkhost
