#include "bench/files/picture_files.h"

#include <gd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace pxkbench {
namespace {

using GdImage = std::unique_ptr<gdImage, decltype(&gdImageDestroy)>;

GdImage readImage(const std::filesystem::path& path) {
    GdImage image(gdImageCreateFromFile(path.c_str()), gdImageDestroy);
    if (!image) throw std::runtime_error("cannot read " + path.string());
    return image;
}

void writeImage(gdImage* image, const std::filesystem::path& path) {
    if (!gdImageFile(image, path.c_str())) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace

void writeSources(PictureSize size, const std::filesystem::path& folder) {
    GdImage image = readImage(PXK_SOURCE_DIR "/examples/sample.png");
    if (size != PictureSize{gdImageSX(image), gdImageSY(image)}) {
        gdImageSetInterpolationMethod(image.get(), GD_BICUBIC_FIXED);
        image.reset(gdImageScale(image.get(), static_cast<unsigned>(size.width), static_cast<unsigned>(size.height)));
        if (!image) throw std::runtime_error("cannot scale the sample picture");
    }
    gdImageSaveAlpha(image.get(), 0);
    writeImage(image.get(), folder / "source.png");
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen((folder / "source.jpg").c_str(), "wb"),
                                                                  std::fclose);
    if (!file) throw std::runtime_error("cannot write source.jpg");
    gdImageJpeg(image.get(), file.get(), 85);  // from 90 on, libgd does not subsample chroma
}

double inversionError(const std::filesystem::path& source, const std::filesystem::path& result) {
    const GdImage before = readImage(source);
    const GdImage after = readImage(result);
    const int width = gdImageSX(before);
    const int height = gdImageSY(before);
    if (gdImageSX(after) != width || gdImageSY(after) != height)
        throw std::runtime_error("the result has another size than its source");
    long long sum = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int old = gdImageGetTrueColorPixel(before.get(), x, y);
            const int now = gdImageGetTrueColorPixel(after.get(), x, y);
            sum += std::abs(255 - gdTrueColorGetRed(old) - gdTrueColorGetRed(now));
            sum += std::abs(255 - gdTrueColorGetGreen(old) - gdTrueColorGetGreen(now));
            sum += std::abs(255 - gdTrueColorGetBlue(old) - gdTrueColorGetBlue(now));
        }
    }
    return static_cast<double>(sum) / (3.0 * width * height);
}

double toleranceFor(const std::filesystem::path& source, const std::filesystem::path& result) {
    return source.extension() == ".png" && result.extension() == ".png" ? 0 : 3;
}

std::string chromaSubsampling(const std::filesystem::path& file) {
    if (file.extension() != ".jpg") return "-";
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const auto byte = [&](std::size_t at) -> unsigned { return static_cast<unsigned char>(text.at(at)); };
    // Segments, each a marker and a length, up to the one that starts a frame.
    std::size_t at = 2;
    while (byte(at + 1) < 0xC0 || byte(at + 1) > 0xC2) at += 2 + (byte(at + 2) << 8) + byte(at + 3);
    if (byte(at + 9) != 3) return "grey";
    const unsigned luma = byte(at + 11);
    const unsigned chroma = byte(at + 14);
    const unsigned across = (luma >> 4) / (chroma >> 4);
    const unsigned down = (luma & 15) / (chroma & 15);
    if (across == 1) return down == 1 ? "4:4:4" : "4:4:0";
    return down == 1 ? "4:2:2" : "4:2:0";
}

}  // namespace pxkbench
