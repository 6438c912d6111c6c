#include "files/write.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "files/bmp.h"
#include "files/byte_reader.h"
#include "files/exact.h"
#include "files/limits.h"
#include "files/messages.h"
#include "files/metadata.h"
#include "files/vips_image.h"

namespace pxkfiles {
namespace {

using FileBytes = std::vector<std::uint8_t>;

constexpr int jpegQuality = 90;
constexpr int webpQuality = 80;
constexpr int avifQuality = 60;
// Several times as fast as level 6 with a choice of all filters, which others use, at nearly its size.
constexpr int pngCompression = 4;
constexpr int pngFilter = VIPS_FOREIGN_PNG_FILTER_PAETH;

void checkOptions(Format format, const WriteOptions& options) {
    const bool hasQuality = format == Format::jpeg || format == Format::webp || format == Format::avif;
    const bool hasCompression = format == Format::png || format == Format::tiff;
    if (options.quality < 0 || options.quality > 100)
        throw FileProblem("a quality of " + std::to_string(options.quality) + " is out of range; 1 to 100 are");
    if (options.compression < -1 || options.compression > 9)
        throw FileProblem("a compression of " + std::to_string(options.compression) + " is out of range; 0 to 9 are");
    if (options.quality != 0 && !hasQuality) throw FileProblem("the format has no quality; JPEG, WebP and AVIF have");
    if (options.quality != 0 && options.lossless) throw FileProblem("a lossless picture has no quality");
    if (options.compression != -1 && !hasCompression)
        throw FileProblem("the format has no compression to choose; PNG and TIFF have");
    if (options.lossless && format == Format::jpeg)
        throw FileProblem("the format is never lossless; PNG, BMP, WebP, TIFF and AVIF can be");
}

void checkSide(const Picture& picture, int most) {
    if (picture.width > most || picture.height > most)
        throw FileProblem("its size of " + std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                          " pixels does not fit the format; a side may have at most " + std::to_string(most));
}

bool hasTransparency(const Picture& picture) {
    const std::size_t size = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    return picture.hasAlpha &&
           std::any_of(picture.pixels, picture.pixels + size, [](std::uint32_t pixel) { return pixel >> 24 != 255; });
}

void attach(VipsImage* image, const char* name, const std::uint8_t* data, std::size_t size) {
    if (size > 0) vips_image_set_blob_copy(image, name, data, size);
}

// EXIF for the picture as it is; longer than this libvips refuses to hold it.
FileBytes exifOf(const Picture& picture, const Metadata& metadata) {
    constexpr std::size_t longest = 1 << 20;
    const auto exif = plainExif({metadata.exif.data, metadata.exif.size});
    return exif.size() > longest ? FileBytes() : updatedExif(exif, picture.width, picture.height);
}

Image withMetadata(Image image, const Metadata& metadata, std::span<const std::uint8_t> exif) {
    if (metadata.horizontalDensity > 0) image->Xres = metadata.horizontalDensity;
    if (metadata.verticalDensity > 0) image->Yres = metadata.verticalDensity;
    attach(image.get(), VIPS_META_ICC_NAME, metadata.profile.data, metadata.profile.size);
    attach(image.get(), VIPS_META_EXIF_NAME, exif.data(), exif.size());
    attach(image.get(), VIPS_META_XMP_NAME, metadata.xmp.data, metadata.xmp.size);
    vips_image_set_int(image.get(), VIPS_META_ORIENTATION, 1);
    return image;
}

// Calls a saver of libvips; without metadata it is told to strip, as it would make up EXIF otherwise.
template <class Saver, class... Options>
FileBytes save(const Image& image, bool strip, Saver saver, Options... options) {
    void* data = nullptr;
    std::size_t size = 0;
    const int failed = saver(image.get(), &data, &size, "strip", strip ? TRUE : FALSE, options..., nullptr);
    const std::unique_ptr<void, void (*)(void*)> releasesData(data, g_free);
    if (failed != 0) throwWritingProblem();
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    return {bytes, bytes + size};
}

// libvips 8.14 does not strip WebP files: it adds EXIF of its own, as the last chunk of an extended file.
FileBytes withoutExif(FileBytes webp) {
    constexpr std::size_t featuresAt = 20;
    constexpr std::uint8_t exifFeature = 0x08;
    const ByteReader file(webp);
    if (file.text(12, 4) != "VP8X" || (file.byte(featuresAt) & exifFeature) == 0) return webp;
    std::size_t at = 12;
    while (file.text(at, 4) != "EXIF") at += 8 + (std::size_t{file.little32(at + 4)} + 1) / 2 * 2;
    webp.resize(at);
    webp[featuresAt] &= static_cast<std::uint8_t>(~exifFeature);
    for (std::size_t index = 0; index < 4; ++index) webp[4 + index] = static_cast<std::uint8_t>((at - 8) >> 8 * index);
    return webp;
}

FileBytes quantisedGif(Picture& picture, bool withAlpha, bool lossless) {
    if (lossless) throw FileProblem("it has more than 256 colours, so that the format cannot hold it without loss");
    constexpr std::size_t bytesOfPixel = 32;  // libvips and its quantiser end the process when memory is short
    requireMemory(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * bytesOfPixel);
    return save(imageOver(picture, withAlpha), true, vips_gifsave_buffer);
}

}  // namespace

FileBytes writePicture(const Picture& picture, Format format, const WriteOptions& options) {
    checkSize(picture.width, picture.height);
    checkOptions(format, options);
    if (format == Format::webp) checkSide(picture, 16383);
    const Metadata metadata = options.strip ? Metadata{} : picture.metadata;
    const bool hasMetadata = metadata.profile.size > 0 || metadata.exif.size > 0 || metadata.xmp.size > 0;
    const bool alpha = format != Format::jpeg && hasTransparency(picture);
    const FileBytes exif = exifOf(picture, metadata);
    Picture source = picture;
    source.metadata = metadata;

    if (format == Format::bmp) return writeBmp(source, alpha);
    if (format == Format::gif) {
        std::optional<FileBytes> exact = exactGif(source);
        return exact ? std::move(*exact) : quantisedGif(source, alpha, options.lossless);
    }
    if (format == Format::avif && options.lossless) return exactAvif(source, alpha, exif);

    const Image image = withMetadata(imageOver(source, alpha), metadata, exif);
    const auto saveWith = [&](auto saver, auto... saverOptions) {
        return save(image, !hasMetadata, saver, saverOptions...);
    };
    const auto quality = [&](int usual) { return options.quality == 0 ? usual : options.quality; };
    switch (format) {
        case Format::png:
            return saveWith(vips_pngsave_buffer, "compression",
                            options.compression == -1 ? pngCompression : options.compression, "filter",
                            options.compression == 0 ? int{VIPS_FOREIGN_PNG_FILTER_NONE} : pngFilter);
        case Format::jpeg:
            return saveWith(vips_jpegsave_buffer, "Q", quality(jpegQuality), "optimize_coding", TRUE);
        case Format::webp: {
            FileBytes file =
                saveWith(vips_webpsave_buffer, "lossless", options.lossless ? TRUE : FALSE, "Q", quality(webpQuality));
            return hasMetadata ? file : withoutExif(std::move(file));
        }
        case Format::tiff:
            return saveWith(
                vips_tiffsave_buffer, "compression",
                options.compression == 0 ? VIPS_FOREIGN_TIFF_COMPRESSION_NONE : VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE,
                "predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL);
        default:
            loadHeifModule();
            return saveWith(vips_heifsave_buffer, "compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1, "Q",
                            quality(avifQuality), "effort", 2);
    }
}

}  // namespace pxkfiles
