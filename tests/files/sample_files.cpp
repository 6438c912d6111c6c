#include "files/sample_files.h"

#include <avif/avif.h>
#include <gtest/gtest.h>
#include <lcms2.h>

#include <algorithm>
#include <array>

namespace pxkfiles::test {

namespace {

std::uint32_t crc32(const FileBytes& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

void appendChunk(FileBytes& file, std::string_view name, const FileBytes& data) {
    FileBytes checked;
    append(checked, name);
    append(checked, data);
    appendBig(file, static_cast<std::uint32_t>(data.size()), 4);
    append(file, checked);
    appendBig(file, crc32(checked), 4);
}

// Takes the picture over.
FileBytes exactlyEncoded(avifImage* image) {
    avifEncoder* encoder = avifEncoderCreate();
    encoder->speed = 8;
    encoder->minQuantizer = encoder->maxQuantizer = AVIF_QUANTIZER_LOSSLESS;
    avifRWData output = AVIF_DATA_EMPTY;
    EXPECT_EQ(avifEncoderWrite(encoder, image, &output), AVIF_RESULT_OK);
    FileBytes file(output.data, output.data + output.size);
    avifRWDataFree(&output);
    avifEncoderDestroy(encoder);
    avifImageDestroy(image);
    return file;
}

}  // namespace

void appendLittle(FileBytes& bytes, std::uint32_t value, int count) {
    for (int index = 0; index < count; ++index) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * index));
}

void appendBig(FileBytes& bytes, std::uint32_t value, int count) {
    for (int index = count - 1; index >= 0; --index) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * index));
}

void append(FileBytes& bytes, const FileBytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

void append(FileBytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

std::size_t find(const FileBytes& bytes, std::string_view text) {
    const auto sameByte = [](std::uint8_t byte, char c) { return byte == static_cast<std::uint8_t>(c); };
    const auto found = std::search(bytes.begin(), bytes.end(), text.begin(), text.end(), sameByte);
    EXPECT_NE(found, bytes.end()) << text;
    return static_cast<std::size_t>(found - bytes.begin());
}

FileBytes pngFile(std::uint32_t width, std::uint32_t height, int depth, int colourType, const FileBytes& rows,
                  const PngChunks& before, const PngChunks& behind) {
    FileBytes header;
    appendBig(header, width, 4);
    appendBig(header, height, 4);
    append(header, FileBytes{static_cast<std::uint8_t>(depth), static_cast<std::uint8_t>(colourType), 0, 0, 0});

    FileBytes stored = {0x78, 0x01, 0x01};
    appendLittle(stored, static_cast<std::uint32_t>(rows.size()), 2);
    appendLittle(stored, ~static_cast<std::uint32_t>(rows.size()), 2);
    append(stored, rows);
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const std::uint8_t byte : rows) {
        low = (low + byte) % 65521;
        high = (high + low) % 65521;
    }
    appendBig(stored, high << 16 | low, 4);

    FileBytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    appendChunk(file, "IHDR", header);
    for (const auto& [name, data] : before) appendChunk(file, name, data);
    appendChunk(file, "IDAT", stored);
    for (const auto& [name, data] : behind) appendChunk(file, name, data);
    appendChunk(file, "IEND", {});
    return file;
}

FileBytes bmpFile(const BmpHeader& header, const FileBytes& rows) {
    FileBytes info;
    appendLittle(info, header.headerSize, 4);
    appendLittle(info, static_cast<std::uint32_t>(header.width), 4);
    appendLittle(info, static_cast<std::uint32_t>(header.height), 4);
    appendLittle(info, 1, 2);
    appendLittle(info, header.depth, 2);
    appendLittle(info, header.compression, 4);
    info.resize(40);
    append(info, header.behindHeader);
    FileBytes file = {'B', 'M'};
    appendLittle(file, static_cast<std::uint32_t>(14 + info.size() + rows.size()), 4);
    appendLittle(file, 0, 4);
    appendLittle(file, static_cast<std::uint32_t>(14 + info.size()), 4);
    append(file, info);
    append(file, rows);
    return file;
}

FileBytes tiffFile(std::vector<TiffTag> tags, const FileBytes& samples) {
    constexpr std::uint32_t stripOffset = 273;
    constexpr std::uint32_t stripSize = 279;
    tags.push_back({stripOffset, 0, 4});
    tags.push_back({stripSize, static_cast<std::uint32_t>(samples.size()), 4});
    std::sort(tags.begin(), tags.end(), [](const TiffTag& one, const TiffTag& other) { return one.tag < other.tag; });
    FileBytes file = {'I', 'I', '*', 0, 8, 0, 0, 0};
    const auto samplesAt = static_cast<std::uint32_t>(file.size() + 2 + 12 * tags.size() + 4);
    appendLittle(file, static_cast<std::uint32_t>(tags.size()), 2);
    for (const TiffTag& tag : tags) {
        appendLittle(file, tag.tag, 2);
        appendLittle(file, tag.type, 2);
        appendLittle(file, 1, 4);
        appendLittle(file, tag.tag == stripOffset ? samplesAt : tag.value, 4);
    }
    appendLittle(file, 0, 4);
    append(file, samples);
    return file;
}

FileBytes exifWith(int orientation, bool bigEndian) {
    FileBytes exif;
    const auto put = [&](std::uint32_t value, int count) {
        bigEndian ? appendBig(exif, value, count) : appendLittle(exif, value, count);
    };
    const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value) {
        put(tag, 2);
        put(type, 2);
        put(count, 4);
        if (type == 3) {
            put(value, 2);
            put(0, 2);
        } else {
            put(value, 4);
        }
    };
    append(exif, bigEndian ? "MM" : "II");
    put(42, 2);
    put(8, 4);
    put(3, 2);
    entry(0x0110, 2, 14, 50);  // the camera's model, behind the directory
    entry(0x0112, 3, 1, static_cast<std::uint32_t>(orientation));
    entry(0x8769, 4, 1, 64);
    put(0, 4);
    append(exif, std::string_view("Test camera 1\0", 14));
    put(3, 2);
    entry(0x9000, 7, 4, bigEndian ? 0x30323231 : 0x31323230);
    entry(0xA002, 3, 1, 4000);
    entry(0xA003, 4, 1, 3000);
    put(0, 4);
    return exif;
}

FileBytes jpegWithExif(const FileBytes& jpeg, const FileBytes& exif) {
    FileBytes file = {0xFF, 0xD8, 0xFF, 0xE1};
    appendBig(file, static_cast<std::uint32_t>(exif.size() + 8), 2);
    append(file, std::string_view("Exif\0\0", 6));
    append(file, exif);
    file.insert(file.end(), jpeg.begin() + 2, jpeg.end());
    return file;
}

FileBytes webpWithExif(const FileBytes& webp, const FileBytes& exif, int width, int height) {
    constexpr std::uint32_t exifFlag = 8;
    FileBytes chunks;
    append(chunks, "WEBPVP8X");
    appendLittle(chunks, 10, 4);
    appendLittle(chunks, exifFlag, 4);
    appendLittle(chunks, static_cast<std::uint32_t>(width - 1), 3);
    appendLittle(chunks, static_cast<std::uint32_t>(height - 1), 3);
    const bool extended = std::string_view(reinterpret_cast<const char*>(webp.data()) + 12, 4) == "VP8X";
    chunks.insert(chunks.end(), webp.begin() + (extended ? 30 : 12), webp.end());
    append(chunks, "EXIF");
    appendLittle(chunks, static_cast<std::uint32_t>(exif.size()), 4);
    append(chunks, exif);
    if (exif.size() % 2 != 0) chunks.push_back(0);
    FileBytes file;
    append(file, "RIFF");
    appendLittle(file, static_cast<std::uint32_t>(chunks.size()), 4);
    append(file, chunks);
    return file;
}

FileBytes turnedAvif(const Raster& picture, int orientation) {
    avifImage* image = avifImageCreate(static_cast<std::uint32_t>(picture.width),
                                       static_cast<std::uint32_t>(picture.height), 8, AVIF_PIXEL_FORMAT_YUV444);
    image->matrixCoefficients = AVIF_MATRIX_COEFFICIENTS_IDENTITY;
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, image);
    rgb.format = AVIF_RGB_FORMAT_BGRA;
    rgb.rowBytes = image->width * 4;
    std::vector<std::uint32_t> pixels = picture.pixels;
    rgb.pixels = reinterpret_cast<std::uint8_t*>(pixels.data());
    rgb.ignoreAlpha = AVIF_TRUE;
    EXPECT_EQ(avifImageRGBToYUV(image, &rgb), AVIF_RESULT_OK);

    // Turned anticlockwise by so many quarters, then mirrored: 0 top to bottom, 1 left to right.
    struct Turn {
        int quarters;
        int mirror;
    };
    constexpr std::array<Turn, 9> turns = {
        {{0, -1}, {0, -1}, {0, 1}, {2, -1}, {0, 0}, {1, 0}, {3, -1}, {3, 0}, {1, -1}}};
    const Turn turn = turns[static_cast<std::size_t>(orientation)];
    if (turn.quarters > 0) image->transformFlags |= AVIF_TRANSFORM_IROT;
    image->irot.angle = static_cast<std::uint8_t>(turn.quarters);
    if (turn.mirror >= 0) image->transformFlags |= AVIF_TRANSFORM_IMIR;
    image->imir.mode = static_cast<std::uint8_t>(std::max(turn.mirror, 0));

    return exactlyEncoded(image);
}

FileBytes deepAvif(int bits) {
    constexpr int width = 1000;
    constexpr int height = 8;
    avifImage* image = avifImageCreate(width, height, static_cast<std::uint32_t>(bits), AVIF_PIXEL_FORMAT_YUV444);
    image->matrixCoefficients = AVIF_MATRIX_COEFFICIENTS_IDENTITY;
    avifImageAllocatePlanes(image, AVIF_PLANES_YUV);
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                reinterpret_cast<std::uint16_t*>(image->yuvPlanes[plane] +
                                                 static_cast<std::size_t>(y) * image->yuvRowBytes[plane])[x] =
                    static_cast<std::uint16_t>(std::min(x * 5, (1 << bits) - 1));
    return exactlyEncoded(image);
}

FileBytes rgbProfile(const char* name) {
    const cmsCIExyY white = {0.31, 0.33, 1};
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 2.2);
    std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves.data());
    cmsMLU* text = cmsMLUalloc(nullptr, 1);
    cmsMLUsetASCII(text, "en", "US", name);
    cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    FileBytes bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsMLUfree(text);
    cmsFreeToneCurve(curve);
    cmsCloseProfile(profile);
    return bytes;
}

}  // namespace pxkfiles::test
