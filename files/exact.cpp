#include "files/exact.h"

#include <avif/avif.h>
#include <cgif.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string>
#include <unordered_map>

#include "files/messages.h"

namespace pxkfiles {
namespace {

// A picture as indices into a palette.
struct IndexedPicture {
    std::vector<std::uint8_t> indices;
    std::vector<std::uint8_t> palette;  // red, green, blue, and so on
    bool firstIsTransparent = false;
};

std::optional<IndexedPicture> indexed(const Picture& picture) {
    constexpr std::size_t mostColours = 256;
    constexpr std::uint32_t transparent = 0;
    constexpr std::uint32_t opaque = 0xFF000000;
    const std::size_t size = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    const auto colourOf = [&](std::uint32_t pixel) { return pixel >> 31 != 0 ? pixel | opaque : transparent; };

    IndexedPicture result;
    std::unordered_map<std::uint32_t, std::uint8_t> indexOf;
    const auto add = [&](std::uint32_t colour) {
        indexOf.emplace(colour, static_cast<std::uint8_t>(indexOf.size()));
        for (const int shift : {16, 8, 0}) result.palette.push_back(static_cast<std::uint8_t>(colour >> shift));
    };
    const std::uint32_t* end = picture.pixels + size;
    result.firstIsTransparent =
        picture.hasAlpha && std::any_of(picture.pixels, end, [](std::uint32_t pixel) { return pixel >> 31 == 0; });
    if (result.firstIsTransparent) add(transparent);

    result.indices.reserve(size);
    std::uint32_t last = 0;
    std::uint8_t index = 0;
    for (const std::uint32_t* pixel = picture.pixels; pixel != end; ++pixel) {
        const std::uint32_t colour = picture.hasAlpha ? colourOf(*pixel) : *pixel | opaque;
        if (pixel == picture.pixels || colour != last) {
            if (!indexOf.contains(colour)) {
                if (indexOf.size() == mostColours) return std::nullopt;
                add(colour);
            }
            index = indexOf[colour];
            last = colour;
        }
        result.indices.push_back(index);
    }
    return result;
}

int appendBytes(void* file, const std::uint8_t* bytes, std::size_t size) {
    auto& destination = *static_cast<std::vector<std::uint8_t>*>(file);
    try {
        destination.insert(destination.end(), bytes, bytes + size);
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

void requireAvif(avifResult result) {
    if (result == AVIF_RESULT_OUT_OF_MEMORY) throw std::bad_alloc();
    if (result != AVIF_RESULT_OK)
        throw FileProblem("it cannot be encoded (" + std::string(avifResultToString(result)) + ")");
}

}  // namespace

std::optional<std::vector<std::uint8_t>> exactGif(const Picture& picture) {
    std::optional<IndexedPicture> source = indexed(picture);
    if (!source) return std::nullopt;

    std::vector<std::uint8_t> file;
    CGIF_Config config{};
    config.width = static_cast<std::uint16_t>(picture.width);
    config.height = static_cast<std::uint16_t>(picture.height);
    // cgif writes which colour is transparent for animations only; one frame that does not repeat is none.
    config.attrFlags = source->firstIsTransparent ? CGIF_ATTR_IS_ANIMATED | CGIF_ATTR_NO_LOOP : 0;
    config.pGlobalPalette = source->palette.data();
    config.numGlobalPaletteEntries = static_cast<std::uint16_t>(source->palette.size() / 3);
    config.pWriteFn = appendBytes;
    config.pContext = &file;
    CGIF* gif = cgif_newgif(&config);
    if (gif == nullptr) throw std::bad_alloc();
    CGIF_FrameConfig frame{};
    frame.pImageData = source->indices.data();
    frame.attrFlags = source->firstIsTransparent ? CGIF_FRAME_ATTR_HAS_ALPHA : 0;
    frame.transIndex = 0;
    const bool added = cgif_addframe(gif, &frame) == CGIF_OK;
    if (cgif_close(gif) != CGIF_OK || !added) throw std::bad_alloc();  // nothing else can fail with such a frame
    return file;
}

std::vector<std::uint8_t> exactAvif(const Picture& picture, bool withAlpha, std::span<const std::uint8_t> exif) {
    const std::unique_ptr<avifImage, void (*)(avifImage*)> image(
        avifImageCreate(static_cast<std::uint32_t>(picture.width), static_cast<std::uint32_t>(picture.height), 8,
                        AVIF_PIXEL_FORMAT_YUV444),
        avifImageDestroy);
    if (!image) throw std::bad_alloc();
    image->colorPrimaries = AVIF_COLOR_PRIMARIES_BT709;
    image->transferCharacteristics = AVIF_TRANSFER_CHARACTERISTICS_SRGB;
    image->matrixCoefficients = AVIF_MATRIX_COEFFICIENTS_IDENTITY;  // red, green and blue as they are

    const std::size_t size = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    std::vector<std::uint8_t> samples;
    samples.reserve(size * (withAlpha ? 4 : 3));
    for (const std::uint32_t* pixel = picture.pixels; pixel != picture.pixels + size; ++pixel) {
        for (const int shift : {16, 8, 0}) samples.push_back(static_cast<std::uint8_t>(*pixel >> shift));
        if (withAlpha) samples.push_back(static_cast<std::uint8_t>(*pixel >> 24));
    }
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, image.get());
    rgb.format = withAlpha ? AVIF_RGB_FORMAT_RGBA : AVIF_RGB_FORMAT_RGB;
    rgb.rowBytes = image->width * (withAlpha ? 4U : 3U);
    rgb.pixels = samples.data();
    requireAvif(avifImageRGBToYUV(image.get(), &rgb));
    const auto& [profile, ignoredExif, xmp, horizontal, vertical] = picture.metadata;
    if (profile.size > 0) avifImageSetProfileICC(image.get(), profile.data, profile.size);
    if (!exif.empty()) avifImageSetMetadataExif(image.get(), exif.data(), exif.size());
    if (xmp.size > 0) avifImageSetMetadataXMP(image.get(), xmp.data, xmp.size);

    const std::unique_ptr<avifEncoder, void (*)(avifEncoder*)> encoder(avifEncoderCreate(), avifEncoderDestroy);
    if (!encoder) throw std::bad_alloc();
    encoder->speed = 8;
    encoder->minQuantizer = encoder->maxQuantizer = AVIF_QUANTIZER_LOSSLESS;
    encoder->minQuantizerAlpha = encoder->maxQuantizerAlpha = AVIF_QUANTIZER_LOSSLESS;
    avifRWData output = AVIF_DATA_EMPTY;
    const std::unique_ptr<avifRWData, void (*)(avifRWData*)> releasesOutput(&output, avifRWDataFree);
    requireAvif(avifEncoderWrite(encoder.get(), image.get(), &output));
    return {output.data, output.data + output.size};
}

}  // namespace pxkfiles
