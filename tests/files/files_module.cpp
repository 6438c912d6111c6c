#include "files/files_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

// What libraries lose, which the leak sanitizer would put down to the tests: libheif 1.15.1 a damaged AVIF's data on
// the way to dav1d, and x265 its parameters, which only encoding HEIC needs.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdav1d.so\nleak:libx265.so\n";
}

namespace pxkfiles::test {

namespace {

FileBytes copied(const Bytes& bytes) {
    return bytes.size == 0 ? FileBytes() : FileBytes(bytes.data, bytes.data + bytes.size);
}

Reading taken(bool succeeded, Picture& picture, const Message& message) {
    Reading result;
    if (!succeeded) {
        result.message = message.text;
        EXPECT_NE(result.message, "");
        return result;
    }
    const std::size_t size = picture.pixels == nullptr
                                 ? 0
                                 : static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    result.picture = {picture.width,
                      picture.height,
                      picture.hasAlpha,
                      std::vector<std::uint32_t>(picture.pixels, picture.pixels + size),
                      copied(picture.metadata.profile),
                      copied(picture.metadata.exif),
                      copied(picture.metadata.xmp),
                      picture.metadata.horizontalDensity,
                      picture.metadata.verticalDensity};
    result.format = picture.origin.format;
    result.bitsPerSample = picture.origin.bitsPerSample;
    result.profileName = picture.origin.profileName;
    result.orientation = picture.origin.orientation;
    result.pages = picture.origin.pages;
    module().release(&picture);
    EXPECT_EQ(picture.owner, nullptr);
    return result;
}

Picture viewOf(const Raster& raster) {
    Picture picture;
    picture.width = raster.width;
    picture.height = raster.height;
    picture.hasAlpha = raster.hasAlpha;
    picture.pixels = raster.pixels.data();
    picture.metadata = {{raster.profile.data(), raster.profile.size()},
                        {raster.exif.data(), raster.exif.size()},
                        {raster.xmp.data(), raster.xmp.size()},
                        raster.horizontalDensity,
                        raster.verticalDensity};
    return picture;
}

}  // namespace

const Functions& module() {
    static const Functions* functions = [] {
        void* library = dlopen(PXK_FILES_MODULE, RTLD_LAZY | RTLD_LOCAL);
        if (library == nullptr) {
            ADD_FAILURE() << dlerror();
            std::abort();
        }
        return reinterpret_cast<decltype(&pxk_files)>(dlsym(library, "pxk_files"))();
    }();
    return *functions;
}

Reading readBytes(const FileBytes& file, const ReadOptions& options) {
    Picture picture;
    Message message;
    const bool succeeded = module().readBytes({file.data(), file.size()}, "test picture", &options, &picture, &message);
    return taken(succeeded, picture, message);
}

Reading readFile(const std::filesystem::path& path, const ReadOptions& options) {
    Picture picture;
    Message message;
    const bool succeeded = module().readFile(path.c_str(), &options, &picture, &message);
    return taken(succeeded, picture, message);
}

Raster pictureIn(const FileBytes& file, const ReadOptions& options) {
    Reading reading = readBytes(file, options);
    EXPECT_EQ(reading.message, "");
    return reading.picture;
}

FileBytes written(const Raster& picture, const char* format, WriteOptions options) {
    options.format = format;
    const Picture view = viewOf(picture);
    File file;
    Message message;
    EXPECT_TRUE(module().writeBytes(&view, "test picture", &options, &file, &message)) << message.text;
    FileBytes bytes = copied(file.bytes);
    module().releaseFile(&file);
    return bytes;
}

std::string messageOfWriting(const Raster& picture, const char* format, WriteOptions options) {
    options.format = format;
    const Picture view = viewOf(picture);
    File file;
    Message message;
    EXPECT_FALSE(module().writeBytes(&view, "test picture", &options, &file, &message));
    return message.text;
}

std::string writeFile(const Raster& picture, const std::filesystem::path& path, const WriteOptions& options) {
    const Picture view = viewOf(picture);
    Message message;
    const bool succeeded = module().writeFile(&view, path.c_str(), &options, &message);
    EXPECT_EQ(succeeded, message.text[0] == 0) << message.text;
    return message.text;
}

Raster raster(int width, int height, const std::function<std::uint32_t(int, int)>& pixelAt) {
    Raster result{width, height, false, {}, {}, {}, {}, 0, 0};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) result.pixels.push_back(pixelAt(x, y));
    result.hasAlpha =
        std::any_of(result.pixels.begin(), result.pixels.end(), [](std::uint32_t pixel) { return pixel >> 24 != 255; });
    return result;
}

Raster smoothPicture(int width, int height) {
    return raster(width, height, [&](int x, int y) {
        const int blue = 128 + 100 * (x - y) / (width + height);
        return 0xFF000000 | static_cast<std::uint32_t>((255 * x / width) << 16 | (255 * y / height) << 8 | blue);
    });
}

Raster noisePicture(int width, int height) {
    std::mt19937 random(7);
    return raster(width, height, [&](int, int) { return static_cast<std::uint32_t>(random()) | 0xFF000000; });
}

Raster flagPicture() {
    return raster(33, 21, [](int x, int) { return x < 11 ? 0xFFC92111 : x < 22 ? 0xFFFEFFFD : 0xFF033C8D; });
}

Raster alphaPicture() {
    return raster(16, 16, [](int x, int y) {
        return static_cast<std::uint32_t>(x + 16 * y) << 24 |
               static_cast<std::uint32_t>(x * 16 << 16 | y * 15 << 8 | 200);
    });
}

int largestDifference(const Raster& one, const Raster& other) {
    if (one.width != other.width || one.height != other.height) return 999;
    int largest = 0;
    for (std::size_t index = 0; index < one.pixels.size(); ++index)
        for (int shift = 0; shift <= 24; shift += 8)
            largest = std::max(largest, std::abs(static_cast<int>(one.pixels[index] >> shift & 255) -
                                                 static_cast<int>(other.pixels[index] >> shift & 255)));
    return largest;
}

const std::vector<const char*>& formats() {
    static const std::vector<const char*> names = {"png", "jpg", "gif", "bmp", "webp", "tif", "avif"};
    return names;
}

}  // namespace pxkfiles::test
