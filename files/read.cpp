#include "files/read.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "files/bmp.h"
#include "files/byte_reader.h"
#include "files/limits.h"
#include "files/messages.h"
#include "files/metadata.h"
#include "files/vips_image.h"

namespace pxkfiles {
namespace {

// Opens a file's header; page 0 is the one that the format itself prefers.
Image openImage(Format format, std::span<const std::uint8_t> file, int page) {
    VipsImage* image = nullptr;
    const std::unique_ptr<VipsSource, ReleaseObject> source(vips_source_new_from_memory(file.data(), file.size()));
    const auto load = [&](auto loader, auto... options) {
        const int failed = loader(source.get(), &image, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                  VIPS_FAIL_ON_TRUNCATED, options..., nullptr);
        if (failed != 0) throwReadingProblem();
        return Image(image);
    };
    const auto loadPage = [&](auto loader, auto... options) {
        return page == 0 ? load(loader, options...) : load(loader, "page", page - 1, options...);
    };
    switch (format) {
        case Format::png:
            return load(vips_pngload_source);
        case Format::jpeg:
            return load(vips_jpegload_source);
        case Format::gif:
            return loadPage(vips_gifload_source);
        case Format::webp:
            return loadPage(vips_webpload_source);
        case Format::tiff:
            return loadPage(vips_tiffload_source);
        default:
            loadHeifModule();
            return loadPage(vips_heifload_source, "unlimited", TRUE);  // sizes are checked here
    }
}

void checkPage(int page, int pages) {
    if (page > pages)
        throw FileProblem("there is no page " + std::to_string(page) + "; the file has " + std::to_string(pages));
}

std::span<const std::uint8_t> blobOf(VipsImage* image, const char* name) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (vips_image_get_typeof(image, name) == 0 || vips_image_get_blob(image, name, &data, &size) != 0) return {};
    return {static_cast<const std::uint8_t*>(data), size};
}

int bitsPerSample(Format format, std::span<const std::uint8_t> file, VipsImage* image) {
    constexpr std::size_t pngDepthAt = 24;
    if (format == Format::png) return file[pngDepthAt];
    int bits = 0;
    if (vips_image_get_typeof(image, "heif-bitdepth") != 0 && vips_image_get_int(image, "heif-bitdepth", &bits) == 0)
        return bits;
    return image->BandFmt == VIPS_FORMAT_USHORT || image->BandFmt == VIPS_FORMAT_SHORT ? 16 : 8;
}

// libvips hands out the bits of AVIF and HEIC as the upper ones of 16.
int largestSample(int bitsPerSample) {
    return bitsPerSample > 8 && bitsPerSample < 16 ? ((1 << bitsPerSample) - 1) << (16 - bitsPerSample) : 65535;
}

void checkSamples(VipsImage* image) {
    const bool lab = image->Type == VIPS_INTERPRETATION_LABS || image->Coding == VIPS_CODING_LABQ;
    const bool whole = image->BandFmt == VIPS_FORMAT_UCHAR || image->BandFmt == VIPS_FORMAT_USHORT;
    if (!whole && !lab)
        throw FileProblem(std::string("samples of the kind \"") +
                          vips_enum_nick(VIPS_TYPE_BAND_FORMAT, image->BandFmt) +
                          "\" are not supported; whole numbers of 1 to 16 bits without a sign are");
    if (image->Type == VIPS_INTERPRETATION_MULTIBAND)
        throw FileProblem("its kind of colour is not supported; grey, palettes, RGB, CMYK and Lab are");
}

// Grey and RGB stay as they are; other kinds of colour become sRGB.
Image toRgb(Image image) {
    VipsImage* converted = nullptr;
    int failed = 0;
    if (image->Type == VIPS_INTERPRETATION_CMYK) {
        failed = vips_icc_transform(image.get(), &converted, "srgb", "embedded", TRUE, "input_profile", "cmyk", "depth",
                                    8, nullptr);
    } else if (image->Type == VIPS_INTERPRETATION_LABS || image->Coding == VIPS_CODING_LABQ) {
        failed = vips_colourspace(image.get(), &converted, VIPS_INTERPRETATION_sRGB, nullptr);
    } else {
        return image;
    }
    if (failed != 0) throwReadingProblem();
    return Image(converted);
}

Image turned(Image image, int orientation) {
    const Image memory(vips_image_copy_memory(image.get()));
    if (!memory) throwReadingProblem();
    vips_image_set_int(memory.get(), VIPS_META_ORIENTATION, orientation);
    VipsImage* upright = nullptr;
    if (vips_autorot(memory.get(), &upright, nullptr) != 0) throwReadingProblem();
    return Image(upright);
}

// libjpeg goes on after damage and leaves a warning; stray bytes between segments do no harm. Where warnings have piled
// up, this one may be missing.
void checkWarnings(Format format) {
    constexpr std::size_t manyWarnings = 4096;
    const std::string_view warnings = vips_error_buffer();
    if (format != Format::jpeg || warnings.empty()) return;
    for (const char* damage : {"remature end", "bad Huffman code", "instead of RST"})
        if (warnings.find(damage) != std::string_view::npos) throwReadingProblem();
    if (warnings.size() > manyWarnings) throw FileProblem("its data is damaged in many places");
}

// Some programs write a PNG's EXIF behind its pixels, where libvips does not look.
std::span<const std::uint8_t> lateExifOfPng(std::span<const std::uint8_t> file) {
    const ByteReader reader(file);
    for (std::size_t at = 8; reader.text(at + 4, 4) != "IEND"; at += std::size_t{12} + reader.big32(at))
        if (reader.text(at + 4, 4) == "eXIf") return reader.part(at + 8, reader.big32(at));
    return {};
}

// libvips makes a GIF's canvas no larger than its frames, and opaque where no frame has painted.
struct GifCanvas {
    GifCanvas(GifLayout read, const VipsImage& image)
        : layout(std::move(read)),
          width(std::max(layout.width, image.Xsize)),
          height(std::max(layout.height, image.Ysize)) {}

    bool isCovered() const {
        const bool hasFrame = !layout.frames.empty();
        const GifLayout::Frame first = hasFrame ? layout.frames[0] : GifLayout::Frame{};
        return hasFrame && first.left == 0 && first.top == 0 && first.width >= width && first.height >= height;
    }

    /// The canvas with a page on it, as the frames up to that page have painted it; transparent elsewhere.
    std::unique_ptr<std::uint32_t[]> painted(const std::uint32_t* words, const VipsImage& image, int page) const {
        const auto rowLength = static_cast<std::size_t>(width);
        std::unique_ptr<std::uint32_t[]> canvas(new std::uint32_t[rowLength * static_cast<std::size_t>(height)]());
        for (std::size_t index = 0; index < std::min(layout.frames.size(), static_cast<std::size_t>(page)); ++index) {
            const GifLayout::Frame& frame = layout.frames[index];
            const int right = std::min(frame.left + frame.width, image.Xsize);
            const int bottom = std::min(frame.top + frame.height, image.Ysize);
            for (int y = frame.top; y < bottom && frame.left < right; ++y) {
                const std::uint32_t* row = words + static_cast<std::size_t>(y) * static_cast<std::size_t>(image.Xsize);
                std::copy(row + frame.left, row + right,
                          canvas.get() + static_cast<std::size_t>(y) * rowLength + frame.left);
            }
        }
        return canvas;
    }

    GifLayout layout;
    int width;
    int height;
};

Bytes keep(std::vector<std::uint8_t>& kept, std::span<const std::uint8_t> bytes) {
    kept.assign(bytes.begin(), bytes.end());
    return {kept.data(), kept.size()};
}

void describe(OwnedPicture& picture, Format format, std::span<const std::uint8_t> file, VipsImage* image) {
    Picture& view = picture.view;
    picture.setProfile(blobOf(image, VIPS_META_ICC_NAME));
    view.metadata.xmp = keep(picture.xmp, blobOf(image, VIPS_META_XMP_NAME));
    const auto exif = blobOf(image, VIPS_META_EXIF_NAME);
    view.metadata.exif =
        keep(picture.exif, plainExif(exif.empty() && format == Format::png ? lateExifOfPng(file) : exif));

    const bool fromTag = format == Format::tiff;
    const bool fromExif = format == Format::png || format == Format::jpeg || format == Format::webp;
    view.origin.orientation = fromTag    ? vips_image_get_orientation(image)
                              : fromExif ? exifOrientation(picture.exif)
                                         : 1;                  // AVIF and HEIC are turned by their decoder
    const bool stated = image->Xres != 1 || image->Yres != 1;  // what libvips puts where a file states nothing
    const bool transposed = view.origin.orientation >= 5;
    view.metadata.horizontalDensity = stated ? (transposed ? image->Yres : image->Xres) : 0;
    view.metadata.verticalDensity = stated ? (transposed ? image->Xres : image->Yres) : 0;
    view.width = transposed ? image->Ysize : image->Xsize;
    view.height = transposed ? image->Xsize : image->Ysize;
    view.hasAlpha = vips_image_hasalpha(image) != 0;
    view.origin.pages = vips_image_get_n_pages(image);
    view.origin.bitsPerSample = bitsPerSample(format, file, image);
}

}  // namespace

void OwnedPicture::setProfile(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) return;
    profileName = pxkfiles::profileName(bytes);
    view.origin.profileName = profileName.c_str();
    if (isRgbProfile(bytes)) view.metadata.profile = keep(profile, bytes);
}

namespace {

void readWithVips(Format format, std::span<const std::uint8_t> file, const ReadOptions& options,
                  OwnedPicture& picture) {
    checkStructure(format, file);
    Image image = openImage(format, file, 0);
    checkPage(options.page, vips_image_get_n_pages(image.get()));
    if (options.page > 0) image = openImage(format, file, options.page);

    Picture& view = picture.view;
    describe(picture, format, file, image.get());
    std::optional<GifCanvas> canvas;
    if (format == Format::gif) {
        canvas.emplace(gifLayout(file), *image);
        view.width = canvas->width;
        view.height = canvas->height;
        view.hasAlpha = view.hasAlpha || !canvas->isCovered();
    }
    checkSize(view.width, view.height);
    checkFileCanHold(format, view.width, view.height, file.size());
    checkSamples(image.get());
    if (options.headerOnly) return;

    // The GIF decoder ends the process when memory is short.
    if (canvas) requireMemory(static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height) * 12);
    const int largest = largestSample(view.origin.bitsPerSample);
    image = toRgb(std::move(image));
    if (view.origin.orientation != 1) image = turned(std::move(image), view.origin.orientation);
    picture.pixels = wordsOf(*image, largest);
    checkWarnings(format);
    if (canvas && !canvas->isCovered())
        picture.pixels = canvas->painted(picture.pixels.get(), *image, std::max(options.page, 1));
}

}  // namespace

std::unique_ptr<OwnedPicture> readPicture(Format format, std::span<const std::uint8_t> file,
                                          const ReadOptions& options) {
    if (options.page < 0) throw FileProblem("there is no page " + std::to_string(options.page) + "; the first is 1");
    auto picture = std::make_unique<OwnedPicture>();
    if (format == Format::bmp) {
        readBmp(file, options.headerOnly, *picture);
        checkPage(options.page, 1);
    } else {
        const QuietStderr quiet;
        readWithVips(format, file, options, *picture);
    }
    picture->view.origin.format = nameOf(format);
    picture->view.pixels = picture->pixels.get();
    picture->view.owner = picture.get();
    return picture;
}

}  // namespace pxkfiles
