// Reads a picture file, whatever it holds.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <utility>

#include "files/picture_codecs.h"
#include "files/picture_files.h"
#include "files/picture_header.h"
#include "files/picture_path.h"
#include "files/picture_quiet.h"

namespace pxkhost {
namespace {

constexpr std::uintmax_t mostFileBytes = std::numeric_limits<int>::max();  // libgd counts bytes in an int

FileBytes readWholeFile(const std::filesystem::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) throw BadPicture(std::strerror(errno));
    if (S_ISDIR(status.st_mode)) throw BadPicture("it is a folder; a picture file is needed");
    if (!S_ISREG(status.st_mode)) throw BadPicture("it is no ordinary file; a picture file is needed");
    if (status.st_size == 0) throw BadPicture("the file is empty; a picture file is needed");
    if (static_cast<std::uintmax_t>(status.st_size) > mostFileBytes)
        throw BadPicture("the file is too large; 2 GiB are the most");

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) throw BadPicture(std::strerror(errno));
    FileBytes bytes(static_cast<std::size_t>(status.st_size));
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get()) != 0) throw BadPicture(std::strerror(errno));
    return bytes;
}

GdPicture decode(PictureFormat format, FileBytes bytes) {
    const QuietStderr quiet;
    if (format == PictureFormat::tiff) return decodeTiff(std::move(bytes));
    if (format == PictureFormat::avif) return decodeAvif(bytes);
    if (format == PictureFormat::bmp) simplifyBmpHeader(bytes);
    checkStructure(format, bytes);
    return decodeWithGd(format, bytes);
}

// What a decoder leaves in the fields that steer later drawing and saving is not part of the picture.
void clearSettings(gdImage& picture) {
    picture.transparent = -1;
    picture.interlace = 0;
    picture.alphaBlendingFlag = 0;
    picture.saveAlphaFlag = 1;
}

}  // namespace

gdImagePtr readPictureFile(const std::filesystem::path& path) {
    std::string kind = "picture";
    try {
        FileBytes bytes = readWholeFile(path);
        const std::optional<PictureFormat> format = formatOfContent(bytes);
        if (!format) throw BadPicture("its content is none of " + listOfFormats());
        kind = std::string(formatName(*format)) + " picture";
        GdPicture picture = decode(*format, std::move(bytes));
        clearSettings(*picture);
        return picture.release();
    } catch (const BadPicture& problem) {
        throw PictureFileError("cannot read " + kind + " " + quoted(path) + ": " + problem.what());
    } catch (const std::bad_alloc&) {
        throw PictureFileError("cannot read " + kind + " " + quoted(path) + ": there is not enough memory");
    }
}

}  // namespace pxkhost
