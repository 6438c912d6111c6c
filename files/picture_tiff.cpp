// TIFF files.
#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <utility>

#include "files/picture_codecs.h"
#include "files/picture_header.h"

namespace pxkhost {
namespace {

// A TIFF file in memory, read and written as libtiff asks, with the first complaint it makes.
struct MemoryFile {
    FileBytes bytes;
    std::uint64_t position = 0;
    std::string complaint;

    std::string complaintInBrackets() const { return complaint.empty() ? "" : " (" + complaint + ")"; }
};

MemoryFile& memoryFile(thandle_t handle) { return *static_cast<MemoryFile*>(handle); }

tmsize_t readBytes(thandle_t handle, void* buffer, tmsize_t wanted) {
    MemoryFile& file = memoryFile(handle);
    if (wanted <= 0 || file.position >= file.bytes.size()) return 0;
    const std::uint64_t count =
        std::min<std::uint64_t>(static_cast<std::uint64_t>(wanted), file.bytes.size() - file.position);
    std::memcpy(buffer, file.bytes.data() + file.position, count);
    file.position += count;
    return static_cast<tmsize_t>(count);
}

tmsize_t writeBytes(thandle_t handle, void* buffer, tmsize_t count) {
    MemoryFile& file = memoryFile(handle);
    const std::uint64_t end = file.position + static_cast<std::uint64_t>(count);
    if (end > file.bytes.size()) file.bytes.resize(end);
    std::memcpy(file.bytes.data() + file.position, buffer, static_cast<std::size_t>(count));
    file.position = end;
    return count;
}

toff_t seek(thandle_t handle, toff_t offset, int from) {
    MemoryFile& file = memoryFile(handle);
    if (from == SEEK_CUR) offset += file.position;
    if (from == SEEK_END) offset += file.bytes.size();
    file.position = offset;
    return offset;
}

int closeFile(thandle_t) { return 0; }

toff_t sizeOf(thandle_t handle) { return memoryFile(handle).bytes.size(); }

int keepComplaint(TIFF*, void* file, const char*, const char* format, va_list arguments) {
    MemoryFile& kept = *static_cast<MemoryFile*>(file);
    if (!kept.complaint.empty()) return 1;
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    kept.complaint = text;
    kept.complaint.erase(kept.complaint.find_last_not_of(" .\n") + 1);
    return 1;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }

using Tiff = std::unique_ptr<TIFF, void (*)(TIFF*)>;

// No single piece of the file may ask for more memory than the largest picture takes.
constexpr tmsize_t mostPieceBytes = tmsize_t{mostPixels} * 4;

Tiff openTiff(MemoryFile& file, const char* mode) {
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                               TIFFOpenOptionsFree);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), mostPieceBytes);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepComplaint, &file);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignoreWarning, nullptr);
    return {TIFFClientOpenExt("memory", mode, &file, readBytes, writeBytes, seek, closeFile, sizeOf, nullptr, nullptr,
                              options.get()),
            TIFFClose};
}

enum class Alpha { none, separate, multipliedIn };

// What the first extra sample is. libtiff multiplies separate alpha into the colours unless it takes it for already
// multiplied in, so it is told that; the colours then stay as they are stored.
Alpha takeAlphaAsStored(TIFF* tiff) {
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) == 0 || count == 0) return Alpha::none;
    if (kinds[0] == EXTRASAMPLE_ASSOCALPHA) return Alpha::multipliedIn;
    if (kinds[0] != EXTRASAMPLE_UNASSALPHA) return Alpha::none;
    std::vector<std::uint16_t> changed(kinds, kinds + count);
    changed[0] = EXTRASAMPLE_ASSOCALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, static_cast<int>(count), changed.data());
    return Alpha::separate;
}

int gdPixel(std::uint32_t pixel, Alpha kind) {
    const int alpha = kind == Alpha::none ? 255 : static_cast<int>(TIFFGetA(pixel));
    const auto colour = [&](std::uint32_t sample) {
        const int value = static_cast<int>(sample);
        if (kind != Alpha::multipliedIn || alpha == 0) return value;
        return std::min(255, (value * 255 + alpha / 2) / alpha);
    };
    return gdTrueColorAlpha(colour(TIFFGetR(pixel)), colour(TIFFGetG(pixel)), colour(TIFFGetB(pixel)), gdAlpha(alpha));
}

}  // namespace

GdPicture decodeTiff(FileBytes bytes) {
    MemoryFile file{std::move(bytes), 0, {}};
    const auto damaged = [&] { return BadPicture("its data is cut short or damaged" + file.complaintInBrackets()); };
    const Tiff tiff = openTiff(file, "r");
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    if (!tiff || TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) == 0 ||
        TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height) == 0)
        throw damaged();
    checkStatedSize(width, height);
    const std::uint64_t pieceBytes =
        TIFFIsTiled(tiff.get()) != 0 ? TIFFTileSize64(tiff.get()) : TIFFStripSize64(tiff.get());
    if (pieceBytes > static_cast<std::uint64_t>(mostPieceBytes)) throw BadPicture("its tiles or strips are too large");

    const Alpha alpha = takeAlphaAsStored(tiff.get());
    std::vector<std::uint32_t> pixels(std::size_t{width} * height);
    constexpr int stopAtDamage = 1;
    if (TIFFReadRGBAImageOriented(tiff.get(), width, height, pixels.data(), ORIENTATION_TOPLEFT, stopAtDamage) == 0)
        throw damaged();

    GdPicture picture = newTrueColourPicture(static_cast<int>(width), static_cast<int>(height));
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) picture->tpixels[y][x] = gdPixel(pixels[y * width + x], alpha);
    return picture;
}

FileBytes encodeTiff(const gdImage& picture) {
    MemoryFile file;
    const auto failed = [&] { return BadPicture("it could not be encoded" + file.complaintInBrackets()); };
    Tiff tiff = openTiff(file, "w");
    if (!tiff) throw failed();
    const bool alpha = hasAlpha(picture);
    const std::size_t samples = alpha ? 4 : 3;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(picture.sx) * samples);
    constexpr std::uint32_t stripBytes = 256 * 1024;
    const std::uint32_t rowsPerStrip = std::max(1U, stripBytes / static_cast<std::uint32_t>(row.size()));

    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.sx));
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(picture.sy));
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(samples));
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(tiff.get(), TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
    if (alpha) {
        const std::uint16_t kind = EXTRASAMPLE_UNASSALPHA;
        TIFFSetField(tiff.get(), TIFFTAG_EXTRASAMPLES, 1, &kind);
    }

    for (int y = 0; y < picture.sy; ++y) {
        std::uint8_t* sample = row.data();
        for (int x = 0; x < picture.sx; ++x) {
            const int pixel = picture.tpixels[y][x];
            *sample++ = static_cast<std::uint8_t>(gdTrueColorGetRed(pixel));
            *sample++ = static_cast<std::uint8_t>(gdTrueColorGetGreen(pixel));
            *sample++ = static_cast<std::uint8_t>(gdTrueColorGetBlue(pixel));
            if (alpha) *sample++ = static_cast<std::uint8_t>(fileAlpha(gdTrueColorGetAlpha(pixel)));
        }
        if (TIFFWriteScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y), 0) < 0) throw failed();
    }
    tiff.reset();  // writes the directory
    if (!file.complaint.empty()) throw failed();
    return std::move(file.bytes);
}

}  // namespace pxkhost
