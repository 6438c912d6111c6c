// AVIF files.
#include <avif/avif.h>

#include <algorithm>
#include <string>
#include <thread>

#include "files/picture_codecs.h"
#include "files/picture_header.h"

namespace pxkhost {
namespace {

int threadCount() { return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 8U)); }

// Where libavif finds or leaves pixels of 8 bits a sample, red first.
avifRGBImage interleaved(const avifImage& image, std::vector<std::uint8_t>& pixels, bool alpha) {
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, &image);
    rgb.depth = 8;
    rgb.format = alpha ? AVIF_RGB_FORMAT_RGBA : AVIF_RGB_FORMAT_RGB;
    rgb.rowBytes = image.width * (alpha ? 4U : 3U);
    pixels.resize(std::size_t{rgb.rowBytes} * image.height);
    rgb.pixels = pixels.data();
    return rgb;
}

}  // namespace

GdPicture decodeAvif(std::span<const std::uint8_t> bytes) {
    const auto require = [](avifResult result) {
        if (result != AVIF_RESULT_OK)
            throw BadPicture("its data is cut short or damaged (" + std::string(avifResultToString(result)) + ")");
    };
    const std::unique_ptr<avifDecoder, void (*)(avifDecoder*)> decoder(avifDecoderCreate(), avifDecoderDestroy);
    decoder->maxThreads = threadCount();
    decoder->ignoreExif = AVIF_TRUE;
    decoder->ignoreXMP = AVIF_TRUE;
    decoder->imageSizeLimit = static_cast<std::uint32_t>(mostPixels);
    decoder->imageDimensionLimit = static_cast<std::uint32_t>(longestSide);
    // Well-known writers left this property out for years.
    decoder->strictFlags &= ~static_cast<avifStrictFlags>(AVIF_STRICT_PIXI_REQUIRED);
    require(avifDecoderSetIOMemory(decoder.get(), bytes.data(), bytes.size()));
    require(avifDecoderParse(decoder.get()));
    checkStatedSize(decoder->image->width, decoder->image->height);
    require(avifDecoderNextImage(decoder.get()));

    const avifImage& image = *decoder->image;
    checkStatedSize(image.width, image.height);
    std::vector<std::uint8_t> pixels;
    avifRGBImage rgb = interleaved(image, pixels, true);
    require(avifImageYUVToRGB(&image, &rgb));

    GdPicture picture = newTrueColourPicture(static_cast<int>(image.width), static_cast<int>(image.height));
    const std::uint8_t* sample = pixels.data();
    for (int y = 0; y < picture->sy; ++y)
        for (int x = 0; x < picture->sx; ++x, sample += 4)
            picture->tpixels[y][x] = gdTrueColorAlpha(sample[0], sample[1], sample[2], gdAlpha(sample[3]));
    return picture;
}

FileBytes encodeAvif(const gdImage& picture) {
    const auto require = [](avifResult result) {
        if (result != AVIF_RESULT_OK)
            throw BadPicture("it could not be encoded (" + std::string(avifResultToString(result)) + ")");
    };
    const std::unique_ptr<avifImage, void (*)(avifImage*)> image(
        avifImageCreate(static_cast<std::uint32_t>(picture.sx), static_cast<std::uint32_t>(picture.sy), 8,
                        AVIF_PIXEL_FORMAT_YUV444),
        avifImageDestroy);
    image->colorPrimaries = AVIF_COLOR_PRIMARIES_BT709;
    image->transferCharacteristics = AVIF_TRANSFER_CHARACTERISTICS_SRGB;
    image->matrixCoefficients = AVIF_MATRIX_COEFFICIENTS_IDENTITY;  // red, green and blue as they are

    const bool alpha = hasAlpha(picture);
    std::vector<std::uint8_t> pixels;
    avifRGBImage rgb = interleaved(*image, pixels, alpha);
    std::uint8_t* sample = pixels.data();
    for (int y = 0; y < picture.sy; ++y) {
        for (int x = 0; x < picture.sx; ++x) {
            const int pixel = picture.tpixels[y][x];
            *sample++ = static_cast<std::uint8_t>(gdTrueColorGetRed(pixel));
            *sample++ = static_cast<std::uint8_t>(gdTrueColorGetGreen(pixel));
            *sample++ = static_cast<std::uint8_t>(gdTrueColorGetBlue(pixel));
            if (alpha) *sample++ = static_cast<std::uint8_t>(fileAlpha(gdTrueColorGetAlpha(pixel)));
        }
    }
    require(avifImageRGBToYUV(image.get(), &rgb));

    const std::unique_ptr<avifEncoder, void (*)(avifEncoder*)> encoder(avifEncoderCreate(), avifEncoderDestroy);
    encoder->maxThreads = threadCount();
    encoder->speed = 8;
    encoder->minQuantizer = encoder->maxQuantizer = AVIF_QUANTIZER_LOSSLESS;
    encoder->minQuantizerAlpha = encoder->maxQuantizerAlpha = AVIF_QUANTIZER_LOSSLESS;
    avifRWData output = AVIF_DATA_EMPTY;
    const avifResult result = avifEncoderWrite(encoder.get(), image.get(), &output);
    const std::unique_ptr<avifRWData, void (*)(avifRWData*)> releasesOutput(&output, avifRWDataFree);
    require(result);
    return {output.data, output.data + output.size};
}

}  // namespace pxkhost
